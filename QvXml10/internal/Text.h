#pragma once

// Small text helpers shared inside the library.
#include <cstddef>
#include <cstring>

namespace QvXmlLib10 {
namespace Internal {

// A null text reads as the empty text.
inline const char* OrEmpty(const char* text) noexcept { return text != nullptr ? text : ""; }

// Calls put(run, runLength) for each non-empty run of the text between carriage returns,
// which are dropped. The text ends at `length` or at its first NUL.
template <class Put> void ForEachRunWithoutCR(const char* text, size_t length, Put&& put) {
    if (text == nullptr) return;
    const char* p = text;
    const char* const end = text + strnlen(text, length);
    while (p != end) {
        const char* cr = static_cast<const char*>(std::memchr(p, '\r', static_cast<size_t>(end - p)));
        const char* runEnd = cr != nullptr ? cr : end;
        if (runEnd != p) put(p, static_cast<size_t>(runEnd - p));
        p = cr != nullptr ? cr + 1 : end;
    }
}

} // namespace Internal
} // namespace QvXmlLib10
