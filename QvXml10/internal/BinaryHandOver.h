#pragma once

// Hands a buffer built with new[] to a CBinaryData, which frees it.
#include "../foundation/BinaryData.h"

#include <cstddef>
#include <memory>

namespace QvXmlLib10 {
namespace Internal {

// The first `length` bytes of `bytes` as binary data; the data owns the buffer from here on.
inline CBinaryData AdoptBytes(std::unique_ptr<unsigned char[]> bytes, size_t length) {
    CBinaryData result(bytes.get(), static_cast<unsigned long>(length), true);
    (void)bytes.release();
    return result;
}

} // namespace Internal
} // namespace QvXmlLib10
