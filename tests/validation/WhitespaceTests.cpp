#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "foundation/QvException.h"
#include "support/TestSupport.h"
#include "validation/WhitespaceUtils.h"

using namespace QvXmlLib10;
using WS = CWhitespaceUtils;

namespace {

using namespace std::string_literals;

constexpr auto kNone = WS::WhitespaceRule_None, kPreserve = WS::WhitespaceRule_Preserve,
               kReplace = WS::WhitespaceRule_Replace, kCollapse = WS::WhitespaceRule_Collapse;

TEST(WhitespaceTest, ApplyRuleGivesExpectedText) {
    const std::tuple<WS::WhitespaceRule, std::string, std::string> cases[] = {
        // None leaves everything, CR included.
        {kNone, " a\r\n\tb ", " a\r\n\tb "},
        {kNone, "a\0b"s, "a\0b"s},
        // Preserve: CR LF and lone CR become LF.
        {kPreserve, "a\r\n\rb", "a\n\nb"},
        {kPreserve, "a\n\r\nb", "a\n\nb"},
        {kPreserve, "a\r", "a\n"},
        {kPreserve, " \t\n", " \t\n"},
        {kPreserve, "", ""},
        // Without a CR the text comes back whole, NUL bytes included; with one it stops at the NUL.
        {kPreserve, "a\0b"s, "a\0b"s},
        {kPreserve, "a\r\0b"s, "a\n"},
        // Replace: CR LF is one space, LF CR two.
        {kReplace, "a\r\nb", "a b"},
        {kReplace, "a\n\rb", "a  b"},
        {kReplace, "a\r", "a "},
        {kReplace, "\ta\n", " a "},
        {kReplace, "  a  ", "  a  "},
        {kReplace, "a\0\tb"s, "a"},
        {kReplace, "a\0 b"s, "a\0 b"s},
        // Collapse.
        {kCollapse, "  a \r\n\t b  ", "a b"},
        {kCollapse, "   ", ""},
        {kCollapse, "", ""},
        {kCollapse, "a", "a"},
        {kCollapse, "\xC3\xA9 \xC3\xA9", "\xC3\xA9 \xC3\xA9"},
        {kCollapse, "\va\f", "\va\f"},
        // The result stops at the first NUL; a space written before it stays.
        {kCollapse, "a\0b "s, "a"},
        {kCollapse, " a \0b"s, "a "},
    };
    for (const auto& [rule, input, expected] : cases)
        EXPECT_EQ(expected, WS::ApplyRule(rule, input)) << rule << " [" << input << "]";
}

TEST(WhitespaceTest, IsWhiteSpaceKnowsExactlyFourBytes) {
    for (int c = -128; c < 128; ++c) {
        const bool expected = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        EXPECT_EQ(expected, WS::IsWhiteSpace(static_cast<char>(c))) << c;
    }
}

TEST(WhitespaceTest, UnknownRuleThrowsBaseException) {
    for (int rule : {4, -1, 1000})
        EXPECT_EQ("Unknown WhitespaceRule",
                  FailureOf<CQvException>([&] { WS::ApplyRule(static_cast<WS::WhitespaceRule>(rule), "x"); }));
}

TEST(WhitespaceTest, PreserveOfBufferReadsOnlyTheGivenBytes) {
    const char buffer[] = {'a', '\r', '\r', '\n', 'b', '\r'};
    EXPECT_EQ("a\n\n", WS::Preserve(buffer, 4));
    // The final CR looks at no byte past the given length.
    EXPECT_EQ("a\n\nb\n", WS::Preserve(buffer, 6));
    EXPECT_EQ("a\n", WS::Preserve(buffer, 2));
    EXPECT_EQ("", WS::Preserve(buffer, 0));
    EXPECT_EQ("", WS::Preserve(buffer, -5));
    // The buffer form always reads back as a C string.
    const char withNul[] = {'a', '\0', 'b'};
    EXPECT_EQ("a", WS::Preserve(withNul, 3));
}

TEST(WhitespaceTest, LongTextCollapses) {
    std::string text;
    for (int i = 0; i < 100000; ++i)
        text += " \t x";
    const std::string result = WS::Collapse(text);
    ASSERT_EQ(2u * 100000 - 1, result.size());
    EXPECT_EQ("x x", result.substr(0, 3));
    EXPECT_EQ('x', result.back());
}

} // namespace
