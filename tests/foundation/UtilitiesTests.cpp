#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "foundation/QvException.h"
#include "foundation/Utilities.h"
#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

std::wstring Widen(const std::string& s) { return std::wstring(s.begin(), s.end()); }

TEST(UtilitiesTest, FindReplaceNarrowAndWideAgree) {
    const struct {
        const char *text, *find, *replacement, *expected;
    } cases[] = {
        {"a-b-c", "-", "+", "a+b+c"}, {"abc", "x", "y", "abc"}, {"", "x", "y", ""}, {"abcabc", "abc", "", ""},
        // Every pass searches from the start, so a replacement that forms a new occurrence
        // with what stands before or behind it is replaced as well.
        {"aaaa", "aa", "a", "a"}, {"aabb", "ab", "", ""}, {"xaab", "ab", "b", "xb"},
        {"\\\\i\\i", "\\\\", "\x01", "\x01i\\i"}, {"\x01i\x01", "\x01", "\\\\", "\\\\i\\\\"},
        // A replacement that contains the search text is fine while there is nothing to find.
        {"abc", "x", "xx", "abc"},
        // Chains that end are followed to their end: a shorter replacement always ends, and
        // so does one of the same length within as many rounds as the text has characters.
        {"aaaaaaab", "ab", "b", "b"}, {"aabb", "ab", "ba", "bbaa"}, {"abab", "ab", "ba", "bbaa"},
        {"aab", "ab", "bba", "bbbbaa"}, {"x-ab-ab-", "ab", "c", "x-c-c-"},
    };
    for (const auto& c : cases) {
        std::string narrow = c.text;
        FindReplace(narrow, c.find, c.replacement);
        EXPECT_EQ(c.expected, narrow) << c.text;
        std::wstring wide = Widen(c.text);
        FindReplace(wide, Widen(c.find), Widen(c.replacement));
        EXPECT_EQ(Widen(c.expected), wide) << c.text;
    }
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "ab";
    FindReplace(text, "b", "cc");
    EXPECT_EQ(60000u, text.size());
    EXPECT_EQ("accacc", text.substr(0, 6));
}

TEST(UtilitiesTest, FindReplaceThatWouldNotEndThrows) {
    std::string text = "axb";
    EXPECT_THROW(FindReplace(text, "x", "xx"), CQvInvalidParamException);
    EXPECT_THROW(FindReplace(text, "", "y"), CQvInvalidParamException);
    EXPECT_EQ("axb", text);
    std::wstring wide = L"axb";
    EXPECT_THROW(FindReplace(wide, L"x", L"yxy"), CQvInvalidParamException);
    EXPECT_EQ(L"axb", wide);
    // "ab" by "baa" in "a" and thirty "b" would take about 2^30 rounds; "aab" by "bbaa"
    // grows without end, the replacement moving across the text behind it.
    const std::string endless = "FindReplace can not finish: its replacements keep forming the search text";
    std::string doubling = "a" + std::string(30, 'b'), growing = "aab";
    std::wstring wideDoubling = L"a" + std::wstring(30, L'b');
    EXPECT_EQ(endless, FailureOf<CQvInvalidParamException>([&] { FindReplace(doubling, "ab", "baa"); }));
    EXPECT_EQ(endless, FailureOf<CQvInvalidParamException>([&] { FindReplace(wideDoubling, L"ab", L"baa"); }));
    EXPECT_EQ(endless, FailureOf<CQvInvalidParamException>([&] { FindReplace(growing, "ab", "bbaa"); }));
}

TEST(UtilitiesTest, PadZeroTrimAndUpperCase) {
    EXPECT_EQ("0005", PadZero(5, 4));
    EXPECT_EQ("12345", PadZero(12345, 2));
    EXPECT_EQ("-05", PadZero(-5, 3));
    EXPECT_EQ("0", PadZero(0, 0));
    EXPECT_EQ("-2147483648", PadZero(INT_MIN, 1));
    EXPECT_EQ(std::string(254, '0') + "7", PadZero(7, 255));
    EXPECT_EQ("-" + std::string(253, '0') + "7", PadZero(-7, 255));

    EXPECT_EQ("1.5", TrimTrainingZeros("1.500"));
    EXPECT_EQ("1.", TrimTrainingZeros("1.0"));
    EXPECT_EQ("105", TrimTrainingZeros("105"));
    EXPECT_EQ("0", TrimTrainingZeros("000"));
    EXPECT_EQ("", TrimTrainingZeros(""));

    char text[] = "abc-Xyz \xE9";
    EXPECT_EQ(text, strupr(text));
    EXPECT_STREQ("ABC-XYZ \xE9", text);
    EXPECT_EQ(nullptr, strupr(nullptr));
}

} // namespace
