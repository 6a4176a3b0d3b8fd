#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

using namespace QvXmlLib10;

namespace {

using U32 = std::vector<uint32_t>;

std::vector<uint32_t> WideOf(const CBinaryData& data) {
    std::vector<uint32_t> chars(data.GetLength() / sizeof(wchar_t));
    for (size_t i = 0; i < chars.size(); ++i) {
        wchar_t wc;
        std::memcpy(&wc, data.GetData() + i * sizeof(wchar_t), sizeof wc);
        chars[i] = static_cast<uint32_t>(wc);
    }
    return chars;
}

// Converts the units `source` with a destination of `room` units, then measures with a
// null one: "written units in hex | measured count".
template <class S, class T>
std::string Convert(unsigned long (*convert)(const S*, const S*, T*, T*), std::vector<uint32_t> units, size_t room) {
    const std::vector<S> source(units.begin(), units.end());
    std::vector<T> out(room + 1, T(0xEE));
    const unsigned long written = convert(source.data(), source.data() + source.size(), out.data(), out.data() + room);
    EXPECT_EQ(out[room], T(0xEE)) << "wrote past the destination";
    std::string result;
    char hex[16];
    for (unsigned long i = 0; i < written; ++i) {
        std::snprintf(hex, sizeof hex, "%X ", static_cast<unsigned>(out[i]));
        result += hex;
    }
    return result + "| " + std::to_string(convert(source.data(), source.data() + source.size(), nullptr, nullptr));
}

std::vector<uint32_t> Octets(const std::string& text) { return {text.begin(), text.end()}; }

} // namespace

TEST(ConvertUTF, EachDirectionAtTheBoundaries) {
    const auto u8to32 = &ConvertUTF8toUTF32;
    const auto u8to16 = &ConvertUTF8toUTF16;
    const auto u32to8 = &ConvertUTF32toUTF8;
    const auto u32to16 = &ConvertUTF32toUTF16;
    const auto u16to32 = &ConvertUTF16toUTF32;
    const auto u16to8 = &ConvertUTF16toUTF8;
    const U32 good{0x41, 0xE9, 0x20AC, 0x1F600};
    const U32 pair{0xD83D, 0xDE00, 0x41};
    const U32 smiley = Octets("a\xF0\x9F\x98\x80\x62");
    struct Row {
        std::string result;
        const char* expected;
    } rows[] = {
        {Convert(u8to32, Octets("abc"), 16), "61 62 63 | 3"},
        {Convert(u8to32, Octets("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), 16), "E9 20AC 1F600 | 3"},
        {Convert(u8to32, Octets("\xF4\x8F\xBF\xBF"), 16), "10FFFF | 1"},
        // Refused: overlong forms, surrogates, beyond U+10FFFF, five octets, lone or bad
        // trailing octets, a sequence cut off by the end. UTF-16 refuses the same.
        {Convert(u8to32, Octets("A\xC0\x80"), 16), "41 | 0"},
        {Convert(u8to32, Octets("\xE0\x80\x80"), 16), "| 0"},
        {Convert(u8to32, Octets("z\xF0\x80\x80\x80"), 16), "7A | 0"},
        {Convert(u8to32, Octets("x\xED\xA0\x80y"), 16), "78 | 0"},
        {Convert(u8to32, Octets("a\xF4\x90\x80\x80"), 16), "61 | 0"},
        {Convert(u8to32, Octets("\xF8\x88\x80\x80\x80"), 16), "| 0"},
        {Convert(u8to32, Octets("a\x80"), 16), "61 | 0"},
        {Convert(u8to32, Octets("ab\xE2\x82"), 16), "61 62 | 0"},
        {Convert(u8to32, Octets("\xC3("), 16), "| 0"},
        {Convert(u8to16, Octets("x\xED\xA0\x80y"), 16), "78 | 0"},
        {Convert(u8to16, Octets("\xC3("), 16), "| 0"},
        {Convert(u8to16, Octets("ab\xE2\x82"), 16), "61 62 | 0"},
        // Pairs are written whole or not at all.
        {Convert(u8to16, smiley, 8), "61 D83D DE00 62 | 4"},
        {Convert(u8to16, smiley, 2), "61 | 4"},
        {Convert(u8to16, smiley, 0), "| 4"},
        {Convert(u32to8, good, 16), "41 C3 A9 E2 82 AC F0 9F 98 80 | 10"},
        {Convert(u32to16, good, 16), "41 E9 20AC D83D DE00 | 5"},
        // Above U+10FFFF: U+FFFD in UTF-8, refused in UTF-16; surrogates refused in both.
        {Convert(u32to8, {0x41, 0x110000, 0x42}, 16), "41 EF BF BD 42 | 5"},
        {Convert(u32to16, {0x41, 0x110000, 0x42}, 16), "41 | 0"},
        {Convert(u32to8, {0x41, 0xDC00, 0x42}, 16), "41 | 0"},
        {Convert(u32to16, {0x41, 0xDC00, 0x42}, 16), "41 | 0"},
        // A destination too small ends before the character that does not fit.
        {Convert(u32to8, good, 5), "41 C3 A9 | 10"},
        {Convert(u32to16, good, 4), "41 E9 20AC | 5"},
        {Convert(u16to32, pair, 8), "1F600 41 | 2"},
        {Convert(u16to8, pair, 8), "F0 9F 98 80 41 | 5"},
        {Convert(u16to32, {0x41, 0xDC00, 0x42}, 8), "41 | 0"},
        {Convert(u16to32, {0x41, 0xD83D}, 8), "41 | 0"},
        {Convert(u16to32, {0xD83D, 0x41}, 8), "| 0"},
        {Convert(u16to8, {0x41, 0xDC00, 0x42}, 8), "41 | 0"},
        {Convert(u16to8, {0x41, 0xD83D}, 8), "41 | 0"},
        {Convert(u16to8, {0xD83D, 0x41}, 8), "| 0"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.result, row.expected);
}

TEST(ConvertUTF, WrappersCountUnitsAndMeasureWithoutDestination) {
    unsigned char utf8[] = "a\xC3\xA9\xF0\x9F\x98\x80";
    wchar_t wide[8] = {};
    EXPECT_EQ(UTF8ToUnicode(utf8, 7, nullptr, 0), 3u);
    ASSERT_EQ(UTF8ToUnicode(utf8, 7, wide, 8), 3u);
    EXPECT_EQ(std::wstring(wide), std::wstring(L"a\xE9\U0001F600"));
    EXPECT_EQ(UTF8ToUnicode(utf8, 7, wide, 2), 2u);

    unsigned char back[16] = {};
    EXPECT_EQ(UnicodeToUTF8(wide, 3, nullptr, 0), 7u);
    EXPECT_EQ(UnicodeToUTF8(wide, 3, back, 16), 7u);
    EXPECT_EQ(std::memcmp(back, utf8, 7), 0);

    // UTF-16 in machine order, also at an odd address.
    const uint16_t units[] = {0x61, 0xE9, 0xD83D, 0xDE00};
    for (size_t offset : {0, 1}) {
        SCOPED_TRACE(offset);
        alignas(4) unsigned char storage[16] = {};
        unsigned char* out = storage + offset;
        EXPECT_EQ(UnicodeToUTF16(wide, 3, nullptr, 0), 4u);
        ASSERT_EQ(UnicodeToUTF16(wide, 3, out, 4), 4u);
        EXPECT_EQ(std::memcmp(out, units, sizeof units), 0);
        EXPECT_EQ(UnicodeToUTF16(wide, 3, out, 3), 2u);

        wchar_t decoded[4] = {};
        EXPECT_EQ(UTF16ToUnicode(out, 4, nullptr, 0), 3u);
        ASSERT_EQ(UTF16ToUnicode(out, 4, decoded, 4), 3u);
        EXPECT_EQ(std::wstring(decoded), std::wstring(L"a\xE9\U0001F600"));
    }
    EXPECT_EQ(UTF8ToUnicode(nullptr, 5, nullptr, 0), 0u);
}

TEST(ConvertUTF, LargerThanOneByteTests) {
    EXPECT_FALSE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(L"abc\x80", 3));
    EXPECT_TRUE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(L"abc\x80", 4));
    EXPECT_TRUE(DoesUnicodeStrContainAnyUTF8CharsLargerThanOneByte(L"\x7F\x100", 2));
    unsigned char text[] = "0123456789abcdefghij\x80xyz";
    EXPECT_FALSE(DoesUTF8StrContainAnyCharsLargerThanOneByte(text, 20));
    EXPECT_TRUE(DoesUTF8StrContainAnyCharsLargerThanOneByte(text, 21));
    EXPECT_TRUE(DoesUTF8StrContainAnyCharsLargerThanOneByte(text + 19, 2));
    EXPECT_FALSE(DoesUTF8StrContainAnyCharsLargerThanOneByte(text, 0));
}

// Locale C: plain ASCII, so every non-ASCII character becomes "?".
TEST(Encoder, Utf8ToLocalCodePageInTheCLocale) {
    ScopedLocale locale("C");
    ScopedAsciiOnly ascii(false);
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("plain text"), "plain text");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("caf\xC3\xA9 \xE2\x82\xAC!"), "caf? ?!");
    // The text ends at the first invalid sequence or NUL.
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("ab\xC0\x80\x63\x64"), "ab");
    unsigned char withNul[] = {'a', 'b', 0, 'c', 0xC3, 0xA9};
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(withNul, 6), "ab");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(withNul + 3, 3), "c?");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(withNul, 0), "");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(withNul, -3), "");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(static_cast<const char*>(nullptr)), "");

    // With scratch space that fits and that doesn't.
    wchar_t wide[8];
    char narrow[8];
    std::string longText, longExpected;
    for (int i = 0; i < 2000; ++i) {
        longText += "x\xC3\xA9";
        longExpected += "x?";
    }
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\xC3\xA9t\xC3\xA9", wide, 8, narrow, 8), "?t?");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(longText.c_str(), wide, 8, narrow, 8), longExpected);
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(longText.c_str()), longExpected);
}

TEST(Encoder, LocalToWideAndUtf8InTheCLocale) {
    ScopedLocale locale("C");
    ScopedAsciiOnly ascii(false);
    EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("a\xE9\x62")), (U32{'a', '?', 'b'}));
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary("a\xE9\x62")), "a?b");
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary("<a>text</a>")), "<a>text</a>");
    EXPECT_EQ(UnicodeToMultiByte(L"a\xE9\x62"), "a?b");
    // An empty text gives an empty value.
    EXPECT_TRUE(CEncoder::LocalCodePageToUnicodeBinary("") == CBinaryData());
    EXPECT_TRUE(CEncoder::LocalCodePageToUtf8Binary("") == CBinaryData());
    EXPECT_TRUE(CEncoder::UnicodeToUtf8Binary(L"") == CBinaryData());
    EXPECT_EQ(UnicodeToMultiByte(L""), "");

    EXPECT_EQ(Bytes(CEncoder::UnicodeToUtf8Binary(L"abc")), "abc");
    EXPECT_EQ(Bytes(CEncoder::UnicodeToUtf8Binary(L"a\x20AC\U0001F600")), "a\xE2\x82\xAC\xF0\x9F\x98\x80");
    // A surrogate makes the measure refuse the whole text.
    EXPECT_EQ(CEncoder::UnicodeToUtf8Binary(L"a\xD800").GetLength(), 0u);
}

// ASCIIOnly(true): the local code page is UTF-8 and nothing is converted.
TEST(Encoder, AsciiOnlyPassesUtf8Unchanged) {
    ScopedLocale locale("C");
    ScopedAsciiOnly ascii(true);
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary("\xC3\xA9")), "\xC3\xA9");
    // Not even checked: the octets stay as they are.
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\xFF\xC0\x80"), "\xFF\xC0\x80");
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary("\xFF")), "\xFF");
    unsigned char withNul[] = {'a', 0, 'b'};
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(withNul, 3), std::string("a\0b", 3));
    // Wide forms read and write the local text as UTF-8.
    EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("\xC3\xA9\xFF\x61")), (U32{0xE9, '?', 'a'}));
    EXPECT_EQ(UnicodeToMultiByte(L"\xE9\x20AC"), "\xC3\xA9\xE2\x82\xAC");
    // UTF-16 output reads the text as UTF-8.
    CTextStream utf16(XmlEncoding_UTF16NoDecl);
    utf16.Append("\xC3\xA9");
    EXPECT_EQ(Bytes(utf16.GetEncodedStream()), std::string("\xE9\0", 2));
}

TEST(Encoder, Utf16IsRefusedWithALogicError) {
    unsigned char data[] = {0x61, 0x00};
    // CQvException has no base class: a logic_error is not one of the library's exceptions.
    EXPECT_THROW(CEncoder::Utf16ToLocalCodePage(data, 2), std::logic_error);
}

// The tests below run under a UTF-8 locale (C.UTF-8), restored afterwards.
TEST(EncoderUtf8Locale, Utf8ToLocalCodePageKeepsLongNonAsciiText) {
    REQUIRE_UTF8_LOCALE(locale);
    ScopedAsciiOnly ascii(false);
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text += "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 x";
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(text.c_str()), text);
    wchar_t wide[128];
    char narrow[512];
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(text.c_str(), wide, 128, narrow, 512), text);
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\xC3\xA9t", wide, 128, narrow, 512), "\xC3\xA9t");

    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\xC3\xA9\xED\xA0\x80zz"), "\xC3\xA9");
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage("\xC3\xA9\xE2\x82"), "\xC3\xA9");
    unsigned char withNul[] = {0xC3, 0xA9, 0, 'x'};
    EXPECT_EQ(CEncoder::Utf8ToLocalCodePage(withNul, 4), "\xC3\xA9");
}

TEST(EncoderUtf8Locale, UnicodeToMultiByteSizesMultibyteOutput) {
    REQUIRE_UTF8_LOCALE(locale);
    ScopedAsciiOnly ascii(false);
    std::wstring wide;
    std::string expected;
    for (int i = 0; i < 3000; ++i) {
        wide += L"\xE9\x20AC\U0001F600";
        expected += "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    }
    EXPECT_EQ(UnicodeToMultiByte(wide.c_str()), expected);
    // Unrepresentable wide values become "?".
    EXPECT_EQ(UnicodeToMultiByte(L"a\xD800\x62"), "a?b");
}

TEST(EncoderUtf8Locale, LocalTextToWideAndUtf8) {
    REQUIRE_UTF8_LOCALE(locale);
    ScopedAsciiOnly ascii(false);
    EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("\xC3\xA9\xF0\x9F\x98\x80")), (U32{0xE9, 0x1F600}));
    // One "?" for each offending octet, including a sequence cut off at the end.
    EXPECT_EQ(WideOf(CEncoder::LocalCodePageToUnicodeBinary("\xC3\xA9\xC3(\xE2\x82")), (U32{0xE9, '?', '(', '?', '?'}));
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary("\xC3\xA9")), "\xC3\xA9");
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary("a\xC3(\xE2\x82")), "a?(??");

    std::string text;
    for (int i = 0; i < 3000; ++i)
        text += "<\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80>";
    EXPECT_EQ(Bytes(CEncoder::LocalCodePageToUtf8Binary(text.c_str())), text);
}

TEST(EncoderUtf8Locale, EncodedStreamForEachEncoding) {
    REQUIRE_UTF8_LOCALE(locale);
    ScopedAsciiOnly ascii(false);
    const char* text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    const std::string utf16le("a\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE", 10);
    for (XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoDecl}) {
        SCOPED_TRACE(encoding);
        CTextStream stream(encoding);
        stream.Append(text);
        EXPECT_EQ(Bytes(stream.GetEncodedStream()), encoding == XmlEncoding_UTF8 ? std::string(text) : utf16le);
        stream.Open();
        EXPECT_EQ(stream.GetEncodedStream().GetLength(), 0u);
    }

    // Long text across many blocks.
    CTextStream stream(XmlEncoding_UTF16);
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        stream.Append(text);
        expected += utf16le;
    }
    EXPECT_EQ(Bytes(stream.GetEncodedStream()), expected);

    // A five-octet form, which the platform decodes beyond U+10FFFF, becomes U+FFFD.
    CTextStream odd(XmlEncoding_UTF16);
    odd.Append("\xF8\x88\x80\x80\x80");
    EXPECT_EQ(Bytes(odd.GetEncodedStream()), "\xFD\xFF");
}

