#include "foundation/Encoder.h"

#include "internal/BinaryHandOver.h"
#include "internal/ByteScan.h"
#include "internal/Locale.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <stdexcept>
#include <vector>

namespace QvXmlLib10 {

bool ASCII_ONLY = false;

void ASCIIOnly(bool asciiOnly) { ASCII_ONLY = asciiOnly; }

namespace {

const uint32_t kReplacementChar = 0xFFFD;
const uint32_t kMaxLegalUtf32 = 0x10FFFF;

// Number of trailing octets after a first octet. Octets 0x80 to 0xBF can't
// start a sequence; IsLegalUTF8 refuses them.
const unsigned char trailingBytesForUTF8[256] = {
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5};

// Subtracted from the sum of a sequence's octets to remove the marker bits.
const uint32_t offsetsFromUTF8[6] = {0x00000000UL, 0x00003080UL, 0x000E2080UL,
                                     0x03C82080UL, 0xFA082080UL, 0x82082080UL};

// First octet of a sequence by its total length.
const unsigned char firstByteMark[7] = {0x00, 0x00, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};

// Checks one sequence of `length` octets: trailing octets in range, no overlong
// form, no surrogate, nothing above U+10FFFF.
bool IsLegalUTF8(const unsigned char* source, int length) {
    unsigned char a;
    const unsigned char* srcptr = source + length;
    switch (length) {
    default:
        return false;
    case 4:
        if ((a = (*--srcptr)) < 0x80 || a > 0xBF) return false;
        [[fallthrough]];
    case 3:
        if ((a = (*--srcptr)) < 0x80 || a > 0xBF) return false;
        [[fallthrough]];
    case 2:
        if ((a = (*--srcptr)) > 0xBF) return false;
        switch (*source) {
        case 0xE0:
            if (a < 0xA0) return false;
            break;
        case 0xED:
            if (a > 0x9F) return false;
            break;
        case 0xF0:
            if (a < 0x90) return false;
            break;
        case 0xF4:
            if (a > 0x8F) return false;
            break;
        default:
            if (a < 0x80) return false;
        }
        [[fallthrough]];
    case 1:
        if (*source >= 0x80 && *source < 0xC2) return false;
    }
    return *source <= 0xF4;
}

bool IsSurrogate(uint32_t ch) { return ch >= 0xD800 && ch <= 0xDFFF; }

// Decoders: read one code point at p, advance p and return true, or return
// false on refused or cut-off input.

inline bool DecodeUtf8(const unsigned char*& p, const unsigned char* end, uint32_t& ch) {
    if (*p < 0x80) {
        ch = *p++;
        return true;
    }
    const unsigned extra = trailingBytesForUTF8[*p];
    if (extra >= static_cast<size_t>(end - p)) return false;
    if (!IsLegalUTF8(p, static_cast<int>(extra) + 1)) return false;
    uint32_t c = 0;
    switch (extra) {
    case 5:
        c += *p++;
        c <<= 6;
        [[fallthrough]];
    case 4:
        c += *p++;
        c <<= 6;
        [[fallthrough]];
    case 3:
        c += *p++;
        c <<= 6;
        [[fallthrough]];
    case 2:
        c += *p++;
        c <<= 6;
        [[fallthrough]];
    case 1:
        c += *p++;
        c <<= 6;
        [[fallthrough]];
    case 0:
        c += *p++;
    }
    ch = c - offsetsFromUTF8[extra];
    return true;
}

template <class Unit> inline bool DecodeUtf16(const Unit*& p, const Unit* end, uint32_t& ch) {
    const uint32_t c = static_cast<uint16_t>(*p);
    if (c >= 0xD800 && c <= 0xDBFF) {
        if (end - p < 2) return false;
        const uint32_t c2 = static_cast<uint16_t>(p[1]);
        if (c2 < 0xDC00 || c2 > 0xDFFF) return false;
        ch = ((c - 0xD800) << 10) + (c2 - 0xDC00) + 0x10000;
        p += 2;
        return true;
    }
    if (c >= 0xDC00 && c <= 0xDFFF) return false;
    ch = c;
    ++p;
    return true;
}

template <class Unit> inline bool DecodeUtf32(const Unit*& p, const Unit*, uint32_t& ch) {
    const uint32_t c = static_cast<uint32_t>(*p);
    if (IsSurrogate(c)) return false;
    ch = c;
    ++p;
    return true;
}

// Encoders: Units gives the number of units a code point takes, 0 if refused;
// Write stores them.

struct Utf8Encoder {
    static unsigned Units(uint32_t ch) {
        if (ch < 0x80) return 1;
        if (ch < 0x800) return 2;
        if (ch < 0x10000) return 3;
        if (ch <= kMaxLegalUtf32) return 4;
        return 3; // U+FFFD
    }
    template <class Unit> static void Write(uint32_t ch, unsigned units, Unit* target) {
        if (ch > kMaxLegalUtf32) ch = kReplacementChar;
        Unit* p = target + units;
        switch (units) {
        case 4:
            *--p = static_cast<Unit>((ch | 0x80) & 0xBF);
            ch >>= 6;
            [[fallthrough]];
        case 3:
            *--p = static_cast<Unit>((ch | 0x80) & 0xBF);
            ch >>= 6;
            [[fallthrough]];
        case 2:
            *--p = static_cast<Unit>((ch | 0x80) & 0xBF);
            ch >>= 6;
            [[fallthrough]];
        case 1:
            *--p = static_cast<Unit>(ch | firstByteMark[units]);
        }
    }
};

struct Utf16Encoder {
    static unsigned Units(uint32_t ch) {
        if (ch <= 0xFFFF) return 1;
        return ch <= kMaxLegalUtf32 ? 2 : 0;
    }
    template <class Unit> static void Write(uint32_t ch, unsigned units, Unit* target) {
        if (units == 1) {
            target[0] = static_cast<Unit>(ch);
            return;
        }
        ch -= 0x10000;
        target[0] = static_cast<Unit>((ch >> 10) + 0xD800);
        target[1] = static_cast<Unit>((ch & 0x3FF) + 0xDC00);
    }
};

struct Utf32Encoder {
    static unsigned Units(uint32_t) { return 1; }
    template <class Unit> static void Write(uint32_t ch, unsigned, Unit* target) {
        // Only reachable from UTF-32 input: the UTF-8 legality test stops at U+10FFFF.
        target[0] = static_cast<Unit>(ch > kMaxLegalUtf32 ? kReplacementChar : ch);
    }
};

// Walks the source one code point at a time; see the header for the contract.
template <class Encoder, class Source, class Target, class Decode>
unsigned long Convert(const Source* source, const Source* sourceEnd, Target* target, Target* targetEnd, Decode decode) {
    const bool measuring = target == nullptr;
    unsigned long count = 0;
    while (source && source < sourceEnd) {
        uint32_t ch;
        if (!decode(source, sourceEnd, ch)) return measuring ? 0 : count;
        const unsigned units = Encoder::Units(ch);
        if (units == 0) return measuring ? 0 : count;
        if (!measuring) {
            if (targetEnd < target || static_cast<size_t>(targetEnd - target) < units) return count;
            Encoder::Write(ch, units, target);
            target += units;
        }
        count += units;
    }
    return count;
}

template <class Source> bool DecodeUtf8Fn(const Source*& p, const Source* end, uint32_t& ch) {
    return DecodeUtf8(p, end, ch);
}

// UTF-16 in memory that may not be aligned for 16-bit access.
bool IsAligned16(const void* p) { return reinterpret_cast<uintptr_t>(p) % alignof(uint16_t) == 0; }

// A growing byte array that ends up adopted by a CBinaryData.
class CByteBuilder {
public:
    explicit CByteBuilder(size_t capacity)
        : m_data(new unsigned char[capacity ? capacity : 1]), m_size(0), m_capacity(capacity ? capacity : 1) {}
    unsigned char* Reserve(size_t extra) {
        if (m_capacity - m_size < extra) {
            const size_t capacity = 2 * (m_size + extra);
            std::unique_ptr<unsigned char[]> grown(new unsigned char[capacity]);
            std::memcpy(grown.get(), m_data.get(), m_size);
            m_data = std::move(grown);
            m_capacity = capacity;
        }
        return m_data.get() + m_size;
    }
    void Commit(size_t count) { m_size += count; }
    void Put(const unsigned char* bytes, size_t count) {
        std::memcpy(Reserve(count), bytes, count);
        m_size += count;
    }
    CBinaryData Take() {
        if (m_size == 0) return CBinaryData();
        return Internal::AdoptBytes(std::move(m_data), m_size);
    }

private:
    std::unique_ptr<unsigned char[]> m_data;
    size_t m_size;
    size_t m_capacity;
};

// Calls sink(codePoint) for each character of a local code page text of n
// octets. Under ASCII_ONLY the text is UTF-8. An octet that doesn't start a
// valid character becomes "?" and is stepped over alone.
template <class Sink> void ForEachLocalCharacter(const char* text, size_t n, Sink sink) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* const end = p + n;
    if (ASCII_ONLY) {
        while (p < end) {
            uint32_t ch;
            if (DecodeUtf8(p, end, ch)) {
                sink(ch);
            } else {
                sink('?');
                ++p;
            }
        }
        return;
    }
    std::mbstate_t state{};
    bool initial = true; // ASCII octets in the initial shift state stand for themselves
    while (p < end) {
        if (*p < 0x80 && initial) {
            sink(*p++);
            continue;
        }
        wchar_t wc;
        const size_t used = std::mbrtowc(&wc, reinterpret_cast<const char*>(p), static_cast<size_t>(end - p), &state);
        if (used == static_cast<size_t>(-1) || used == static_cast<size_t>(-2)) {
            sink('?');
            ++p;
            state = std::mbstate_t{};
            initial = true;
            continue;
        }
        sink(static_cast<uint32_t>(wc));
        p += used == 0 ? 1 : used;
        initial = std::mbsinit(&state) != 0;
    }
}

// Writes the wide text of `length` characters in the local code page at out,
// which must hold length * MB_CUR_MAX octets; returns the octets written.
size_t WideToLocal(const wchar_t* text, size_t length, char* out) {
    Internal::CLocalCharWriter writer(out);
    for (size_t i = 0; i < length; ++i)
        writer.Put(text[i]);
    return static_cast<size_t>(writer.Position() - out);
}

} // namespace

// ---------------------------------------------------------------------------
// Code-unit converters

unsigned long ConvertUTF32toUTF16(const uint32_t* sourceStart, const uint32_t* sourceEnd, uint16_t* targetStart,
                                  uint16_t* targetEnd) {
    return Convert<Utf16Encoder>(sourceStart, sourceEnd, targetStart, targetEnd, DecodeUtf32<uint32_t>);
}

unsigned long ConvertUTF16toUTF32(const uint16_t* sourceStart, const uint16_t* sourceEnd, uint32_t* targetStart,
                                  uint32_t* targetEnd) {
    return Convert<Utf32Encoder>(sourceStart, sourceEnd, targetStart, targetEnd, DecodeUtf16<uint16_t>);
}

unsigned long ConvertUTF16toUTF8(const uint16_t* sourceStart, const uint16_t* sourceEnd, unsigned char* targetStart,
                                 unsigned char* targetEnd) {
    return Convert<Utf8Encoder>(sourceStart, sourceEnd, targetStart, targetEnd, DecodeUtf16<uint16_t>);
}

unsigned long ConvertUTF8toUTF16(const unsigned char* sourceStart, const unsigned char* sourceEnd,
                                 uint16_t* targetStart, uint16_t* targetEnd) {
    return Convert<Utf16Encoder>(sourceStart, sourceEnd, targetStart, targetEnd, DecodeUtf8Fn<unsigned char>);
}

unsigned long ConvertUTF32toUTF8(const uint32_t* sourceStart, const uint32_t* sourceEnd, unsigned char* targetStart,
                                 unsigned char* targetEnd) {
    return Convert<Utf8Encoder>(sourceStart, sourceEnd, targetStart, targetEnd, DecodeUtf32<uint32_t>);
}

unsigned long ConvertUTF8toUTF32(const unsigned char* sourceStart, const unsigned char* sourceEnd,
                                 uint32_t* targetStart, uint32_t* targetEnd) {
    return Convert<Utf32Encoder>(sourceStart, sourceEnd, targetStart, targetEnd, DecodeUtf8Fn<unsigned char>);
}

// ---------------------------------------------------------------------------
// Wrappers

unsigned long UTF8ToUnicode(unsigned char* utf8, unsigned long length, wchar_t* out, unsigned long outLength) {
    if (!utf8) return 0;
    return Convert<Utf32Encoder>(static_cast<const unsigned char*>(utf8), utf8 + length, out,
                                 out ? out + outLength : nullptr, DecodeUtf8Fn<unsigned char>);
}

unsigned long UnicodeToUTF8(const wchar_t* text, unsigned long length, unsigned char* out, unsigned long outLength) {
    if (!text) return 0;
    return Convert<Utf8Encoder>(text, text + length, out, out ? out + outLength : nullptr, DecodeUtf32<wchar_t>);
}

unsigned long UTF16ToUnicode(unsigned char* utf16, unsigned long length, wchar_t* out, unsigned long outLength) {
    if (!utf16) return 0;
    wchar_t* const outEnd = out ? out + outLength : nullptr;
    if (IsAligned16(utf16)) {
        const uint16_t* units = reinterpret_cast<const uint16_t*>(utf16);
        return Convert<Utf32Encoder>(units, units + length, out, outEnd, DecodeUtf16<uint16_t>);
    }
    std::vector<uint16_t> aligned(length);
    if (length) std::memcpy(aligned.data(), utf16, length * sizeof(uint16_t));
    return Convert<Utf32Encoder>(static_cast<const uint16_t*>(aligned.data()), aligned.data() + length, out, outEnd,
                                 DecodeUtf16<uint16_t>);
}

unsigned long UnicodeToUTF16(const wchar_t* text, unsigned long length, unsigned char* out, unsigned long outLength) {
    if (!text) return 0;
    if (!out || IsAligned16(out)) {
        uint16_t* units = reinterpret_cast<uint16_t*>(out);
        return Convert<Utf16Encoder>(text, text + length, units, units ? units + outLength : nullptr,
                                     DecodeUtf32<wchar_t>);
    }
    std::vector<uint16_t> aligned(outLength);
    const unsigned long written =
        Convert<Utf16Encoder>(text, text + length, aligned.data(), aligned.data() + outLength, DecodeUtf32<wchar_t>);
    if (written) std::memcpy(out, aligned.data(), written * sizeof(uint16_t));
    return written;
}

bool DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(const wchar_t* text, int length) {
    for (int i = 0; text && i < length; ++i)
        if (static_cast<uint32_t>(text[i]) >= 0x80) return true;
    return false;
}

bool DoesUTF8StrContainAnyCharsLargerThanOneByte(unsigned char* text, unsigned long length) {
    return text && Internal::FindNonAscii(text, text + length) != text + length;
}

std::string UnicodeToMultiByte(const wchar_t* text) {
    if (!text) return std::string();
    const size_t length = std::wcslen(text);
    if (ASCII_ONLY) {
        // The local code page is UTF-8; what UTF-8 can't carry becomes "?".
        std::string result;
        result.reserve(length);
        for (size_t i = 0; i < length; ++i) {
            const uint32_t ch = static_cast<uint32_t>(text[i]);
            if (IsSurrogate(ch) || ch > kMaxLegalUtf32) {
                result += '?';
                continue;
            }
            char encoded[4];
            const unsigned units = Utf8Encoder::Units(ch);
            Utf8Encoder::Write(ch, units, encoded);
            result.append(encoded, units);
        }
        return result;
    }
    // MB_CUR_MAX octets per character bound the output of wcrtomb exactly.
    std::string result(length * MB_CUR_MAX, '\0');
    result.resize(WideToLocal(text, length, &result[0]));
    return result;
}

// ---------------------------------------------------------------------------
// CEncoder

std::string CEncoder::Utf8ToLocalCodePage(unsigned char* utf8, int length, wchar_t* /*wideBuffer*/,
                                          unsigned long /*wideCapacity*/, char* narrowBuffer,
                                          unsigned long narrowCapacity) {
    // The conversion streams one code point at a time and needs no wide work space.
    if (!utf8 || length <= 0) return std::string();
    const size_t n = static_cast<size_t>(length);
    if (ASCII_ONLY) return std::string(reinterpret_cast<const char*>(utf8), n);

    const unsigned char* const begin = utf8;
    const unsigned char* const end = begin + n;
    const unsigned char* const firstHigh = Internal::FindNonAscii(begin, end);

    // The text ends at the first NUL.
    const void* nul = std::memchr(begin, 0, static_cast<size_t>(firstHigh - begin));
    if (nul) return std::string(reinterpret_cast<const char*>(begin), static_cast<const unsigned char*>(nul) - begin);
    // Pure ASCII reads the same in every locale.
    if (firstHigh == end) return std::string(reinterpret_cast<const char*>(begin), n);

    if (Internal::IsUtf8Locale()) {
        // The local text is the UTF-8 text up to its first NUL or invalid sequence.
        const unsigned char* p = firstHigh;
        while (p < end) {
            const unsigned char* const start = p;
            uint32_t ch;
            if (!DecodeUtf8(p, end, ch) || ch == 0) {
                p = start;
                break;
            }
        }
        return std::string(reinterpret_cast<const char*>(begin), static_cast<size_t>(p - begin));
    }

    // One code point per octet at most, and MB_CUR_MAX octets per code point.
    const size_t bound = n * MB_CUR_MAX;
    std::string result;
    char* out;
    const bool useScratch = narrowBuffer && bound < narrowCapacity;
    if (useScratch) {
        out = narrowBuffer;
    } else {
        result.resize(bound);
        out = &result[0];
    }

    const size_t asciiPrefix = static_cast<size_t>(firstHigh - begin);
    std::memcpy(out, begin, asciiPrefix);
    Internal::CLocalCharWriter writer(out + asciiPrefix);
    const unsigned char* s = firstHigh;
    while (s < end) {
        uint32_t ch;
        if (!DecodeUtf8(s, end, ch) || ch == 0) break;
        writer.Put(static_cast<wchar_t>(ch));
    }

    const size_t written = static_cast<size_t>(writer.Position() - out);
    if (useScratch) return std::string(out, written);
    result.resize(written);
    return result;
}

std::string CEncoder::Utf8ToLocalCodePage(unsigned char* utf8, int length) {
    return Utf8ToLocalCodePage(utf8, length, nullptr, 0, nullptr, 0);
}

std::string CEncoder::Utf8ToLocalCodePage(const char* utf8) {
    return Utf8ToLocalCodePage(utf8, nullptr, 0, nullptr, 0);
}

std::string CEncoder::Utf8ToLocalCodePage(const char* utf8, wchar_t* wideBuffer, unsigned long wideCapacity,
                                          char* narrowBuffer, unsigned long narrowCapacity) {
    if (!utf8) return std::string();
    return Utf8ToLocalCodePage(reinterpret_cast<unsigned char*>(const_cast<char*>(utf8)),
                               static_cast<int>(std::strlen(utf8)), wideBuffer, wideCapacity, narrowBuffer,
                               narrowCapacity);
}

std::string CEncoder::Utf16ToLocalCodePage(unsigned char* /*data*/, int /*length*/) {
    // UTF-16 strings are refused, not converted: the result would be built from a null text.
    throw std::logic_error("basic_string: construction from null is not valid");
}

CBinaryData CEncoder::LocalCodePageToUnicodeBinary(const char* text) {
    if (!text || !*text) return CBinaryData();
    const size_t n = std::strlen(text);
    // Four octets for each input octet, and room for a terminator.
    std::unique_ptr<unsigned char[]> wide(new unsigned char[(n + 1) * sizeof(wchar_t)]);
    size_t count = 0;
    unsigned char* const out = wide.get();
    ForEachLocalCharacter(text, n, [&](uint32_t ch) {
        const wchar_t wc = static_cast<wchar_t>(ch);
        std::memcpy(out + count * sizeof(wchar_t), &wc, sizeof(wchar_t));
        ++count;
    });
    return Internal::AdoptBytes(std::move(wide), count * sizeof(wchar_t));
}

CBinaryData CEncoder::UnicodeToUtf8Binary(const wchar_t* text) {
    if (!text || !*text) return CBinaryData();
    const size_t length = std::wcslen(text);
    const size_t size = DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(text, static_cast<int>(length))
                            ? UnicodeToUTF8(text, static_cast<unsigned long>(length), nullptr, 0)
                            : length;
    if (size == 0) return CBinaryData();
    std::unique_ptr<unsigned char[]> utf8(new unsigned char[size]);
    const unsigned long written =
        UnicodeToUTF8(text, static_cast<unsigned long>(length), utf8.get(), static_cast<unsigned long>(size));
    return Internal::AdoptBytes(std::move(utf8), written);
}

CBinaryData CEncoder::LocalCodePageToUtf8Binary(const char* text) {
    if (!text || !*text) return CBinaryData();
    const size_t n = std::strlen(text);
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(text);
    CByteBuilder out(n);
    if (ASCII_ONLY || Internal::FindNonAscii(bytes, bytes + n) == bytes + n) {
        out.Put(bytes, n);
        return out.Take();
    }
    ForEachLocalCharacter(text, n, [&](uint32_t ch) {
        if (ch < 0x80) {
            *out.Reserve(1) = static_cast<unsigned char>(ch);
            out.Commit(1);
            return;
        }
        if (IsSurrogate(ch)) ch = kReplacementChar; // and the encoder does so above U+10FFFF
        const unsigned units = Utf8Encoder::Units(ch);
        Utf8Encoder::Write(ch, units, out.Reserve(units));
        out.Commit(units);
    });
    return out.Take();
}

} // namespace QvXmlLib10
