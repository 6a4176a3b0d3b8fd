#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "foundation/QvException.h"
#include "foundation/Utilities.h"

using namespace QvXmlLib10;

namespace {

struct FindReplaceCase {
    std::string text;
    std::string find;
    std::string replacement;
    std::string expected;
};

class FindReplaceTest : public ::testing::TestWithParam<FindReplaceCase> {};

TEST_P(FindReplaceTest, NarrowAndWideAgree) {
    const FindReplaceCase& c = GetParam();
    std::string narrow = c.text;
    FindReplace(narrow, c.find, c.replacement);
    EXPECT_EQ(c.expected, narrow);

    const auto widen = [](const std::string& s) { return std::wstring(s.begin(), s.end()); };
    std::wstring wide = widen(c.text);
    FindReplace(wide, widen(c.find), widen(c.replacement));
    EXPECT_EQ(widen(c.expected), wide);
}

INSTANTIATE_TEST_SUITE_P(
    Utilities, FindReplaceTest,
    ::testing::Values(FindReplaceCase{"a-b-c", "-", "+", "a+b+c"}, FindReplaceCase{"abc", "x", "y", "abc"},
                      FindReplaceCase{"", "x", "y", ""}, FindReplaceCase{"abcabc", "abc", "", ""},
                      // Every pass searches from the start, so a replacement that forms a new
                      // occurrence with what stands before or behind it is replaced as well.
                      FindReplaceCase{"aaaa", "aa", "a", "a"}, FindReplaceCase{"aabb", "ab", "", ""},
                      FindReplaceCase{"xaab", "ab", "b", "xb"}, FindReplaceCase{"\\\\i\\i", "\\\\", "\x01", "\x01i\\i"},
                      FindReplaceCase{"\x01i\x01", "\x01", "\\\\", "\\\\i\\\\"},
                      // A replacement that contains the search text is fine while there is nothing to find.
                      FindReplaceCase{"abc", "x", "xx", "abc"}));

TEST(UtilitiesTest, FindReplaceThatWouldNotEndThrows) {
    std::string text = "axb";
    EXPECT_THROW(FindReplace(text, "x", "xx"), CQvInvalidParamException);
    EXPECT_THROW(FindReplace(text, "", "y"), CQvInvalidParamException);
    EXPECT_EQ("axb", text);
    std::wstring wide = L"axb";
    EXPECT_THROW(FindReplace(wide, L"x", L"yxy"), CQvInvalidParamException);
    EXPECT_EQ(L"axb", wide);
}

TEST(UtilitiesTest, FindReplaceOnLongText) {
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "ab";
    FindReplace(text, "b", "cc");
    EXPECT_EQ(60000u, text.size());
    EXPECT_EQ("accacc", text.substr(0, 6));
}

TEST(UtilitiesTest, PadZero) {
    EXPECT_EQ("0005", PadZero(5, 4));
    EXPECT_EQ("12345", PadZero(12345, 2));
    EXPECT_EQ("-05", PadZero(-5, 3));
    EXPECT_EQ("0", PadZero(0, 0));
    EXPECT_EQ("-2147483648", PadZero(INT_MIN, 1));
    EXPECT_EQ(std::string(254, '0') + "7", PadZero(7, 255));
    EXPECT_EQ("-" + std::string(253, '0') + "7", PadZero(-7, 255));
}

TEST(UtilitiesTest, TrimTrainingZeros) {
    EXPECT_EQ("1.5", TrimTrainingZeros("1.500"));
    EXPECT_EQ("1.", TrimTrainingZeros("1.0"));
    EXPECT_EQ("105", TrimTrainingZeros("105"));
    EXPECT_EQ("0", TrimTrainingZeros("000"));
    EXPECT_EQ("0", TrimTrainingZeros("0"));
    EXPECT_EQ("", TrimTrainingZeros(""));
}

TEST(UtilitiesTest, Strupr) {
    char text[] = "abc-Xyz \xE9";
    EXPECT_EQ(text, strupr(text));
    EXPECT_STREQ("ABC-XYZ \xE9", text);
    char empty[] = "";
    EXPECT_STREQ("", strupr(empty));
    EXPECT_EQ(nullptr, strupr(nullptr));
}

} // namespace
