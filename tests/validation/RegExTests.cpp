#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "validation/RegEx.h"

#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

using namespace std::string_literals;

// Non-ASCII values here are UTF-8 bytes, read as the local code page under ASCIIOnly(true).

struct MatchCase {
    std::string pattern;
    std::string value;
    bool matches;
};

void PrintTo(const MatchCase& c, std::ostream* os) {
    *os << "pattern \"" << c.pattern << "\", value \"" << c.value << "\"";
}

class RegExMatchTest : public ::testing::TestWithParam<MatchCase> {};

TEST_P(RegExMatchTest, WholeValueMatch) {
    const ScopedAsciiOnly asciiOnly(true);
    const MatchCase& c = GetParam();
    EXPECT_EQ(c.matches, TestRegEx(c.pattern, c.value)) << "pattern " << c.pattern << ", value " << c.value;
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, RegExMatchTest,
    ::testing::Values(
        // Anchored at both ends.
        MatchCase{"a+", "aaa", true}, MatchCase{"a+", "aab", false}, MatchCase{"a+", "", false},
        MatchCase{"a*", "", true}, MatchCase{"abc", "xabc", false}, MatchCase{"abc", "abcx", false},
        MatchCase{"a|b", "b", true}, MatchCase{"a|bc", "ab", false},
        // "$" stops before a final newline, the offset test does not.
        MatchCase{"abc", "abc\n", false}, MatchCase{"abc\\s", "abc\n", true}, MatchCase{"abc\n?", "abc\n", true},
        // The subject ends at its first NUL.
        MatchCase{"abc", "abc\0def"s, true}, MatchCase{"abc\\x00def", "abc\0def"s, false},
        // \i and \c: word-class approximations of XML name characters.
        MatchCase{"\\i\\c*", "a1:b", true}, MatchCase{"\\i\\c*", "_x.y-z", true}, MatchCase{"\\i\\c*", ":a", true},
        MatchCase{"\\i\\c*", "1a", false}, MatchCase{"\\i\\c*", "-a", false}, MatchCase{"\\i\\c*", "a b", false},
        // \I and \C: their complements.
        MatchCase{"\\I", "1", true}, MatchCase{"\\I", "-", true}, MatchCase{"\\I", "a", false},
        MatchCase{"\\C", "!", true}, MatchCase{"\\C", " ", true}, MatchCase{"\\C+", ".", false},
        MatchCase{"\\C", "-", false}, MatchCase{"\\C", ":", false}, MatchCase{"\\C", "a", false},
        // An escaped backslash survives the rewrites.
        MatchCase{"\\\\i", "\\i", true}, MatchCase{"\\\\i", "a", false}, MatchCase{"\\\\\\i", "\\a", true},
        MatchCase{"\\\\\\\\c", "\\\\c", true}, MatchCase{"a\\\\", "a\\", true},
        // Unicode blocks.
        MatchCase{"\\p{IsBasicLatin}+", "abc", true}, MatchCase{"\\p{IsBasicLatin}+", "\xC3\xA9", false},
        MatchCase{"\\p{IsBasicLatin}", "\x7F", true}, MatchCase{"\\p{IsLatin-1Supplement}", "\xC3\xA9", true},
        MatchCase{"\\p{IsLatin-1Supplement}", "e", false}, MatchCase{"\\p{IsLatin-1Supplement}", "\xC2\x80", true},
        MatchCase{"\\p{IsLatinExtended-A}", "\xC5\x91", true}, MatchCase{"\\p{IsLatinExtended-A}", "\xC3\xA9", false},
        MatchCase{"\\p{IsLatinExtended-A}", "\xC5\xBF", true}, MatchCase{"\\p{IsLatinExtended-A}", "\xC6\x80", false},
        // Other blocks are left to PCRE.
        MatchCase{"\\p{L}+", "abc\xC3\xA9", true}, MatchCase{"\\p{Nd}", "a", false},
        // A value that is not UTF-8 does not match, and is no failure.
        MatchCase{".*", "\xFF\xFE", false}, MatchCase{"\\C*", "\xC3", false},
        // A match that runs out of PCRE's budget is no match.
        MatchCase{"(a+)+b", std::string(40, 'a'), false}));

// Runs TestRegEx and returns the full message of the CQvException it throws.
std::string FailureOf(const std::string& pattern, const std::string& value) {
    try {
        TestRegEx(pattern, value);
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "<no exception>";
}

TEST(RegExTest, RefusedPatternsNameTheValue) {
    const ScopedAsciiOnly asciiOnly(true);
    EXPECT_EQ("Invalid Regular Expression: abc Error: 'missing )'", FailureOf("(", "abc"));
    EXPECT_EQ("Invalid Regular Expression:  Error: 'nothing to repeat'", FailureOf("*", ""));
    EXPECT_EQ("Invalid Regular Expression: x Error: 'missing terminating ] for character class'", FailureOf("[a", "x"));
    // The last block keeps its historical bound \1117, which PCRE reads as \111 and "7".
    EXPECT_EQ("Invalid Regular Expression: \xC8\x80 Error: 'range out of order in character class'",
              FailureOf("\\p{IsLatinExtended-B}", "\xC8\x80"));
    // Rewriting is plain text, inside a class as well, where the group breaks the class.
    EXPECT_EQ("Invalid Regular Expression: a Error: 'unmatched parentheses'", FailureOf("[\\i]", "a"));
    EXPECT_EQ("Invalid Regular Expression: v Error: 'invalid UTF-8 string'", FailureOf("\xFF", "v"));
    EXPECT_EQ("Invalid Regular Expression: v Error: 'unknown property name after \\P or \\p'",
              FailureOf("\\p{IsGreek}", "v"));
}

TEST(RegExTest, LongValues) {
    const ScopedAsciiOnly asciiOnly(true);
    const std::string longValue(1 << 20, 'a');
    EXPECT_TRUE(TestRegEx("a*", longValue));
    EXPECT_TRUE(TestRegEx("[a-z]+", longValue));
    EXPECT_FALSE(TestRegEx("a*", longValue + "b"));
    EXPECT_EQ("Invalid Regular Expression: " + longValue + " Error: 'missing )'", FailureOf("(", longValue));
    // A repeated group backtracks once per character, deeper than a thread's stack
    // could take in PCRE's interpreter.
    const std::string deepValue(100000, 'a');
    EXPECT_TRUE(TestRegEx("(a|b)*", deepValue));
    EXPECT_FALSE(TestRegEx("(a|b)*", deepValue + "c"));
    EXPECT_TRUE(TestRegEx("([a-z]|[0-9])+", std::string(3000, 'x') + "0"));
    // A value beyond even that budget gives no match rather than a crash.
    EXPECT_FALSE(TestRegEx("(a|b)*", std::string(8 << 20, 'a')));
}

TEST(RegExTest, ValueIsConvertedFromTheLocale) {
    // Under the C locale (ASCIIOnly off), a byte above 0x7F is no character of the
    // locale and reaches PCRE as "?".
    const ScopedAsciiOnly asciiOnly(false);
    EXPECT_TRUE(TestRegEx("a\\?b", "a\xE9"
                                   "b"));
}

} // namespace
