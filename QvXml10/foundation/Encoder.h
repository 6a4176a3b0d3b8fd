#pragma once

#include "QvExport.h"

#include "BinaryData.h"

#include <cstdint>
#include <string>

namespace QvXmlLib10 {

// While true, the local code page is taken to be UTF-8 and text passes the
// UTF-8 edges unconverted. A plain global, set before conversions run.
extern QVXML_API bool ASCII_ONLY;
QVXML_API void ASCIIOnly(bool asciiOnly);

// Code-unit converters. Each takes a source range and a destination range and
// returns the number of units written; a null destination measures instead,
// returning the number of units needed. Surrogate code points, unpaired
// surrogates, illegal or overlong UTF-8 and sequences cut off by the end of the
// source are refused: measuring then returns 0, writing returns what was
// written before the fault. Writing also stops when the destination is full.
// A code point above U+10FFFF becomes U+FFFD in UTF-8 and UTF-32 output and is
// refused in UTF-16 output.
QVXML_API unsigned long ConvertUTF32toUTF16(const uint32_t* sourceStart, const uint32_t* sourceEnd,
                                            uint16_t* targetStart, uint16_t* targetEnd);
QVXML_API unsigned long ConvertUTF16toUTF32(const uint16_t* sourceStart, const uint16_t* sourceEnd,
                                            uint32_t* targetStart, uint32_t* targetEnd);
QVXML_API unsigned long ConvertUTF16toUTF8(const uint16_t* sourceStart, const uint16_t* sourceEnd,
                                           unsigned char* targetStart, unsigned char* targetEnd);
QVXML_API unsigned long ConvertUTF8toUTF16(const unsigned char* sourceStart, const unsigned char* sourceEnd,
                                           uint16_t* targetStart, uint16_t* targetEnd);
QVXML_API unsigned long ConvertUTF32toUTF8(const uint32_t* sourceStart, const uint32_t* sourceEnd,
                                           unsigned char* targetStart, unsigned char* targetEnd);
QVXML_API unsigned long ConvertUTF8toUTF32(const unsigned char* sourceStart, const unsigned char* sourceEnd,
                                           uint32_t* targetStart, uint32_t* targetEnd);

// Wrappers over the converters with a pointer and a count in units for each
// side; a null destination measures. UTF-16 is in the machine's byte order.
QVXML_API unsigned long UTF8ToUnicode(unsigned char* utf8, unsigned long length, wchar_t* out, unsigned long outLength);
QVXML_API unsigned long UnicodeToUTF8(const wchar_t* text, unsigned long length, unsigned char* out,
                                      unsigned long outLength);
// length counts 16-bit units.
QVXML_API unsigned long UTF16ToUnicode(unsigned char* utf16, unsigned long length, wchar_t* out,
                                       unsigned long outLength);
// outLength counts 16-bit units.
QVXML_API unsigned long UnicodeToUTF16(const wchar_t* text, unsigned long length, unsigned char* out,
                                       unsigned long outLength);

// True if any of the characters is 128 or above.
QVXML_API bool DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(const wchar_t* text, int length);
// True if any octet is 128 or above.
QVXML_API bool DoesUTF8StrContainAnyCharsLargerThanOneByte(unsigned char* text, unsigned long length);

// The wide text in the local code page; characters the locale can't represent
// become "?".
QVXML_API std::string UnicodeToMultiByte(const wchar_t* text);

// Conversions between the local code page (the encoding of the process's
// locale), UTF-8 and wide characters (one code point each).
class QVXML_API CEncoder {
public:
    // UTF-8 to the local code page. The text ends at the first NUL or at the
    // first invalid sequence; characters the locale can't represent become "?".
    // The buffers are optional scratch space (null with capacity 0): a result
    // that fits in the narrow buffer costs no allocation besides the string.
    static std::string Utf8ToLocalCodePage(unsigned char* utf8, int length, wchar_t* wideBuffer,
                                           unsigned long wideCapacity, char* narrowBuffer,
                                           unsigned long narrowCapacity);
    static std::string Utf8ToLocalCodePage(unsigned char* utf8, int length);
    static std::string Utf8ToLocalCodePage(const char* utf8);
    static std::string Utf8ToLocalCodePage(const char* utf8, wchar_t* wideBuffer, unsigned long wideCapacity,
                                           char* narrowBuffer, unsigned long narrowCapacity);
    // UTF-16 strings are not accepted: always throws std::logic_error.
    static std::string Utf16ToLocalCodePage(unsigned char* data, int length);

    // The text as wide characters, four octets each, without terminator. An
    // octet that doesn't start a character of the locale becomes "?".
    static CBinaryData LocalCodePageToUnicodeBinary(const char* text);
    static CBinaryData UnicodeToUtf8Binary(const wchar_t* text);
    // The text in UTF-8; under ASCII_ONLY the octets as they are.
    static CBinaryData LocalCodePageToUtf8Binary(const char* text);
};

} // namespace QvXmlLib10
