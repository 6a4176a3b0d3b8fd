#pragma once

// Word-at-a-time byte tests: eight bytes per step, with unaligned loads through memcpy.
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace QvXmlLib10 {
namespace Internal {

inline constexpr uint64_t kByteOnes = 0x0101010101010101ull;
inline constexpr uint64_t kByteHighBits = 0x8080808080808080ull;

inline uint64_t Load64(const void* p) {
    uint64_t word;
    std::memcpy(&word, p, 8);
    return word;
}

inline uint32_t Load32(const void* p) {
    uint32_t word;
    std::memcpy(&word, p, 4);
    return word;
}

// Non-zero when a byte of the word is below `limit` (at most 0x80). Only the lowest such
// byte is marked reliably; use the result as a truth value.
constexpr uint64_t BytesBelow(uint64_t word, unsigned char limit) {
    return (word - kByteOnes * limit) & ~word & kByteHighBits;
}

// Non-zero when a byte of the word is NUL.
constexpr uint64_t ZeroBytes(uint64_t word) { return BytesBelow(word, 1); }

// Non-zero when a byte of the word equals `byte`.
constexpr uint64_t BytesEqual(uint64_t word, unsigned char byte) { return ZeroBytes(word ^ (kByteOnes * byte)); }

// The first byte at or above 0x80, or `end`.
inline const unsigned char* FindNonAscii(const unsigned char* p, const unsigned char* end) {
    while (end - p >= 8 && (Load64(p) & kByteHighBits) == 0)
        p += 8;
    while (p < end && *p < 0x80)
        ++p;
    return p;
}

// Whether a byte is at or above 0x80.
inline bool HasHighByte(const char* text, size_t length) {
    const unsigned char* const p = reinterpret_cast<const unsigned char*>(text);
    return FindNonAscii(p, p + length) != p + length;
}

// Whether a byte is NUL, or at or above 0x80 unless `highBytesPass`.
inline bool HasNulOrHighByte(const char* text, size_t length, bool highBytesPass) {
    const uint64_t highBits = highBytesPass ? 0 : kByteHighBits;
    size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        const uint64_t word = Load64(text + i);
        if (ZeroBytes(word) | (word & highBits)) return true;
    }
    for (; i < length; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == 0 || (!highBytesPass && c >= 0x80)) return true;
    }
    return false;
}

// Whether one of at most 16 bytes is NUL: two overlapping loads instead of a loop.
inline bool HasNulShort(const char* data, size_t size) {
    if (size >= 8) return (ZeroBytes(Load64(data)) | ZeroBytes(Load64(data + size - 8))) != 0;
    if (size >= 4) return ZeroBytes(Load32(data) | static_cast<uint64_t>(Load32(data + size - 4)) << 32) != 0;
    for (size_t i = 0; i < size; ++i)
        if (data[i] == '\0') return true;
    return false;
}

// Copies at most 16 bytes with overlapping word moves rather than a call.
inline void CopyShort(char* to, const char* from, size_t length) {
    if (length >= 8) {
        const uint64_t head = Load64(from), tail = Load64(from + length - 8);
        std::memcpy(to, &head, 8);
        std::memcpy(to + length - 8, &tail, 8);
    } else if (length >= 4) {
        const uint32_t head = Load32(from), tail = Load32(from + length - 4);
        std::memcpy(to, &head, 4);
        std::memcpy(to + length - 4, &tail, 4);
    } else if (length > 0) {
        to[0] = from[0];
        to[length / 2] = from[length / 2];
        to[length - 1] = from[length - 1];
    }
}

} // namespace Internal
} // namespace QvXmlLib10
