// FindReplace on replacements that form the search text anew with the text around them.

#include "foundation/QvException.h"
#include "foundation/Utilities.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib10;

namespace {

const char kEndless[] = "FindReplace can not finish: its replacements keep forming the search text";

template <typename String> std::string FailureOf(String text, const String& find, const String& replacement) {
    try {
        FindReplace(text, find, replacement);
    } catch (const CQvInvalidParamException& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

} // namespace

// "ab" by "baa" in "a" and thirty "b" would take about 2^30 rounds.
TEST(FindReplaceLimit, ReplacementThatKeepsFormingTheSearchTextIsRefused) {
    EXPECT_EQ(FailureOf<std::string>("a" + std::string(30, 'b'), "ab", "baa"), kEndless);
    EXPECT_EQ(FailureOf<std::wstring>(L"a" + std::wstring(30, L'b'), L"ab", L"baa"), kEndless);
    // Growing without end, the replacement moving across the text behind it.
    EXPECT_EQ(FailureOf<std::string>("aab", "ab", "bbaa"), kEndless);
}

// Chains that end are followed to their end: a shorter replacement always ends, and
// so does one of the same length within as many rounds as the text has characters.
TEST(FindReplaceLimit, ChainsThatEndAreCompleted) {
    struct Case {
        const char* text;
        const char* find;
        const char* replacement;
        const char* expected;
    } cases[] = {
        {"aaaaaaab", "ab", "b", "b"},   {"aabb", "ab", "ba", "bbaa"},      {"abab", "ab", "ba", "bbaa"},
        {"aab", "ab", "bba", "bbbbaa"}, {"x-ab-ab-", "ab", "c", "x-c-c-"},
    };
    for (const Case& c : cases) {
        std::string text = c.text;
        FindReplace(text, c.find, c.replacement);
        EXPECT_EQ(text, c.expected) << c.text;
    }
}
