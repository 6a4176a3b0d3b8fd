#include <gtest/gtest.h>

#include <string>

#include "foundation/QvException.h"
#include "validation/WhitespaceUtils.h"

using namespace QvXmlLib10;
using WS = CWhitespaceUtils;

namespace {

using namespace std::string_literals;

struct RuleCase {
    WS::WhitespaceRule rule;
    std::string input;
    std::string expected;
};

class WhitespaceRuleTest : public ::testing::TestWithParam<RuleCase> {};

TEST_P(WhitespaceRuleTest, ApplyRuleGivesExpectedText) {
    const RuleCase& c = GetParam();
    EXPECT_EQ(c.expected, WS::ApplyRule(c.rule, c.input));
}

INSTANTIATE_TEST_SUITE_P(
    AllRules, WhitespaceRuleTest,
    ::testing::Values(
        // None leaves everything, CR included.
        RuleCase{WS::WhitespaceRule_None, " a\r\n\tb ", " a\r\n\tb "},
        RuleCase{WS::WhitespaceRule_None, "a\0b"s, "a\0b"s},
        // Preserve: CR LF and lone CR become LF.
        RuleCase{WS::WhitespaceRule_Preserve, "a\r\n\rb", "a\n\nb"},
        RuleCase{WS::WhitespaceRule_Preserve, "a\n\r\nb", "a\n\nb"},
        RuleCase{WS::WhitespaceRule_Preserve, "a\r", "a\n"}, RuleCase{WS::WhitespaceRule_Preserve, " \t\n", " \t\n"},
        RuleCase{WS::WhitespaceRule_Preserve, "", ""},
        // Without a CR the text comes back whole, NUL bytes included; with one it stops at the NUL.
        RuleCase{WS::WhitespaceRule_Preserve, "a\0b"s, "a\0b"s},
        RuleCase{WS::WhitespaceRule_Preserve, "a\r\0b"s, "a\n"},
        // Replace: CR LF is one space, LF CR two.
        RuleCase{WS::WhitespaceRule_Replace, "a\r\nb", "a b"}, RuleCase{WS::WhitespaceRule_Replace, "a\n\rb", "a  b"},
        RuleCase{WS::WhitespaceRule_Replace, "a\r", "a "}, RuleCase{WS::WhitespaceRule_Replace, "\ta\n", " a "},
        RuleCase{WS::WhitespaceRule_Replace, "  a  ", "  a  "}, RuleCase{WS::WhitespaceRule_Replace, "a\0\tb"s, "a"},
        RuleCase{WS::WhitespaceRule_Replace, "a\0 b"s, "a\0 b"s},
        // Collapse.
        RuleCase{WS::WhitespaceRule_Collapse, "  a \r\n\t b  ", "a b"},
        RuleCase{WS::WhitespaceRule_Collapse, "   ", ""}, RuleCase{WS::WhitespaceRule_Collapse, "", ""},
        RuleCase{WS::WhitespaceRule_Collapse, "a", "a"},
        RuleCase{WS::WhitespaceRule_Collapse, "\xC3\xA9 \xC3\xA9", "\xC3\xA9 \xC3\xA9"},
        RuleCase{WS::WhitespaceRule_Collapse, "\va\f", "\va\f"},
        // The result stops at the first NUL; a space written before it stays.
        RuleCase{WS::WhitespaceRule_Collapse, "a\0b "s, "a"}, RuleCase{WS::WhitespaceRule_Collapse, " a \0b"s, "a "}));

TEST(WhitespaceTest, IsWhiteSpaceKnowsExactlyFourBytes) {
    for (int c = -128; c < 128; ++c) {
        const bool expected = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        EXPECT_EQ(expected, WS::IsWhiteSpace(static_cast<char>(c))) << c;
    }
}

TEST(WhitespaceTest, UnknownRuleThrowsBaseException) {
    for (int rule : {4, -1, 1000}) {
        try {
            WS::ApplyRule(static_cast<WS::WhitespaceRule>(rule), "x");
            FAIL() << rule;
        } catch (const CQvValidationException&) {
            FAIL() << "a validation exception for rule " << rule;
        } catch (const CQvException& e) {
            EXPECT_EQ("Unknown WhitespaceRule", e.GetFullMessage());
        }
    }
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
