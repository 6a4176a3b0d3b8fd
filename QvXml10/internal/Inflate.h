#pragma once

#include <cstddef>
#include <memory>

namespace QvXmlLib10 {
namespace Internal {

// Inflates a complete gzip or zlib stream into a new array, leaving the input alone (it may
// belong to the caller). False, with nothing allocated, when the bytes are not such a stream.
bool InflateComplete(const unsigned char* data, size_t length, std::unique_ptr<unsigned char[]>& out,
                     size_t& outLength);

} // namespace Internal
} // namespace QvXmlLib10
