#include <gtest/gtest.h>

#include <clocale>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <typeinfo>

#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "support/TestSupport.h"
#include "validation/XmlObjectHelper.h"
#include "values/QvVariant.h"

using namespace QvXmlLib10;

namespace {

using namespace std::string_literals;
using H = CXmlObjectHelper;

CPrimitiveRestrictions Bounds(const char* minInclusive, const char* maxInclusive, const char* minExclusive,
                              const char* maxExclusive) {
    return CPrimitiveRestrictions("", -1, -1, minInclusive, maxInclusive, minExclusive, maxExclusive, -1);
}

CPrimitiveRestrictions Lengths(int minLength, int maxLength, int length, const char* pattern = "") {
    return CPrimitiveRestrictions(pattern, minLength, maxLength, "", "", "", "", length);
}

// What a check did: "pass", or the dynamic class and full message of what it threw.
std::string Outcome(const std::function<void()>& check) {
    try {
        check();
    } catch (const CQvInvalidValueException& e) {
        return "InvalidValue: " + e.GetFullMessage();
    } catch (const CQvValidationException& e) {
        return "Validation: " + e.GetFullMessage();
    } catch (const CQvException& e) {
        // Failed facets are the base class itself.
        return (typeid(e) == typeid(CQvException) ? "Facet: " : "Other: ") + e.GetFullMessage();
    }
    return "pass";
}

struct CheckCase {
    const char* label;
    std::function<void()> check;
    std::string outcome;
};

class FacetTest : public ::testing::TestWithParam<CheckCase> {};

TEST_P(FacetTest, Outcome) { EXPECT_EQ(GetParam().outcome, Outcome(GetParam().check)); }

std::string LabelOf(const ::testing::TestParamInfo<CheckCase>& info) { return info.param.label; }

const double kNaN = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    OrderedKinds, FacetTest,
    ::testing::Values(
        // Each bound of i4, at and beside the bound.
        CheckCase{"i4MinInclusiveBelow", [] { H::CheckRestrictionFori4("x", 4, Bounds("5", "", "", "")); },
                  "Facet: Invalid Value for x [4]"},
        CheckCase{"i4MinInclusiveAt", [] { H::CheckRestrictionFori4("x", 5, Bounds("5", "", "", "")); }, "pass"},
        CheckCase{"i4MaxInclusiveAt", [] { H::CheckRestrictionFori4("x", 5, Bounds("", "5", "", "")); }, "pass"},
        CheckCase{"i4MaxInclusiveAbove", [] { H::CheckRestrictionFori4("x", 6, Bounds("", "5", "", "")); },
                  "Facet: Invalid Value for x [6]"},
        CheckCase{"i4MinExclusiveAt", [] { H::CheckRestrictionFori4("x", 5, Bounds("", "", "5", "")); },
                  "Facet: Invalid Value for x [5]"},
        CheckCase{"i4MinExclusiveAbove", [] { H::CheckRestrictionFori4("x", 6, Bounds("", "", "5", "")); }, "pass"},
        CheckCase{"i4MaxExclusiveAt", [] { H::CheckRestrictionFori4("x", 5, Bounds("", "", "", "5")); },
                  "Facet: Invalid Value for x [5]"},
        CheckCase{"i4MaxExclusiveBelow", [] { H::CheckRestrictionFori4("x", 4, Bounds("", "", "", "5")); }, "pass"},
        CheckCase{"i4Large", [] { H::CheckRestrictionFori4("x", LONG_MAX, Bounds("", "0", "", "")); },
                  "Facet: Invalid Value for x [9223372036854775807]"},
        CheckCase{"i4BoundCollapsed", [] { H::CheckRestrictionFori4("x", 5, Bounds(" 5 ", "\t5\n", "", "")); }, "pass"},
        // The other integers, each showing its value its own way.
        CheckCase{"i1Below", [] { H::CheckRestrictionFori1("n", static_cast<char>(-100), Bounds("-50", "", "", "")); },
                  "Facet: Invalid Value for n [-100]"},
        CheckCase{"i1Range",
                  [] { H::CheckRestrictionFori1("n", static_cast<char>(-128), Bounds("-128", "127", "", "")); },
                  "pass"},
        CheckCase{"i2Above", [] { H::CheckRestrictionFori2("n", 32767, Bounds("", "", "", "32767")); },
                  "Facet: Invalid Value for n [32767]"},
        CheckCase{"ui1Above", [] { H::CheckRestrictionForui1("n", 255, Bounds("", "254", "", "")); },
                  "Facet: Invalid Value for n [255]"},
        CheckCase{"ui2Below", [] { H::CheckRestrictionForui2("n", 0, Bounds("", "", "0", "")); },
                  "Facet: Invalid Value for n [0]"},
        CheckCase{"ui4Large", [] { H::CheckRestrictionForui4("n", 4000000000UL, Bounds("", "10", "", "")); },
                  "Facet: Invalid Value for n [4000000000]"},
        CheckCase{"ui4MinusOneBound", [] { H::CheckRestrictionForui4("n", ULONG_MAX, Bounds("", "-1", "", "")); },
                  "pass"},
        CheckCase{"i8Below", [] { H::CheckRestrictionFori8("n", LLONG_MIN, Bounds("0", "", "", "")); },
                  "Facet: Invalid Value for n [-9223372036854775808]"},
        CheckCase{"ui8AtMaxExclusive",
                  [] { H::CheckRestrictionForui8("n", ULLONG_MAX, Bounds("", "", "", "18446744073709551615")); },
                  "Facet: Invalid Value for n [18446744073709551615]"},
        // Floats, NaN included.
        CheckCase{"r8MaxExclusiveAt", [] { H::CheckRestrictionForr8("x", 1.5, Bounds("", "", "", "1.5")); },
                  "Facet: Invalid Value for x [1.500000]"},
        CheckCase{"r8NaNWithFacet", [] { H::CheckRestrictionForr8("x", kNaN, Bounds("", "", "", "1.5")); },
                  "Facet: Invalid Value for x [nan]"},
        CheckCase{"r8NaNFailsMinInclusive", [] { H::CheckRestrictionForr8("x", kNaN, Bounds("-INF", "", "", "")); },
                  "Facet: Invalid Value for x [nan]"},
        CheckCase{"r8NaNWithoutFacet", [] { H::CheckRestrictionForr8("x", kNaN, Lengths(1, 1, 1, "(")); }, "pass"},
        CheckCase{"r8NaNBound", [] { H::CheckRestrictionForr8("x", 0.0, Bounds("", "NaN", "", "")); },
                  "Facet: Invalid Value for x [0.000000]"},
        CheckCase{"r8InfiniteBounds", [] { H::CheckRestrictionForr8("x", 1e308, Bounds("", "INF", "-INF", "")); },
                  "pass"},
        CheckCase{"r8Infinity", [] { H::CheckRestrictionForr8("x", HUGE_VAL, Bounds("", "", "", "INF")); },
                  "Facet: Invalid Value for x [inf]"},
        CheckCase{"r4Below", [] { H::CheckRestrictionForr4("x", 0.25f, Bounds("0.5", "", "", "")); },
                  "Facet: Invalid Value for x [0.250000]"},
        CheckCase{"r4BoundNarrowed", [] { H::CheckRestrictionForr4("x", 0.1f, Bounds("0.1", "0.1", "", "")); }, "pass"},
        // Bounds that do not parse fail in their parser's words, once reached.
        CheckCase{"i4BadBound", [] { H::CheckRestrictionFori4("x", 5, Bounds("x", "", "", "")); },
                  "InvalidValue: The value [x] can not be converted to a i4"},
        CheckCase{"i1BoundOutOfRange", [] { H::CheckRestrictionFori1("x", 5, Bounds("", "200", "", "")); },
                  "InvalidValue: The value [200] is to large to fit in a i1"},
        CheckCase{"i1BoundNotNumber", [] { H::CheckRestrictionFori1("x", 5, Bounds("", "", "five", "")); },
                  "InvalidValue: The value [five] can not be converted to a i4"},
        CheckCase{"r8BadBound", [] { H::CheckRestrictionForr8("x", 5, Bounds("", "", "", "1,5")); },
                  "InvalidValue: The value [1,5] can not be converted to a r8"},
        CheckCase{"StopsAtFirstFailure", [] { H::CheckRestrictionFori4("x", 1, Bounds("5", "bad", "", "")); },
                  "Facet: Invalid Value for x [1]"},
        CheckCase{"LaterBadBoundReached", [] { H::CheckRestrictionFori4("x", 7, Bounds("5", "bad", "", "")); },
                  "InvalidValue: The value [bad] can not be converted to a i4"},
        // Patterns and lengths mean nothing to numbers.
        CheckCase{"NumbersIgnoreLengthAndPattern", [] { H::CheckRestrictionFori4("x", 7, Lengths(5, 0, 3, "(")); },
                  "pass"}),
    LabelOf);

INSTANTIATE_TEST_SUITE_P(
    Strings, FacetTest,
    ::testing::Values(
        CheckCase{"MinLengthShort", [] { H::CheckRestrictionForstring("x", "a", Lengths(2, -1, -1)); },
                  "Facet: Invalid Value for x [a]"},
        CheckCase{"MinLengthMet", [] { H::CheckRestrictionForstring("x", "ab", Lengths(2, -1, -1)); }, "pass"},
        CheckCase{"MaxLengthZeroEmpty", [] { H::CheckRestrictionForstring("x", "", Lengths(-1, 0, -1)); }, "pass"},
        CheckCase{"MaxLengthZero", [] { H::CheckRestrictionForstring("x", "a", Lengths(-1, 0, -1)); },
                  "Facet: Invalid Value for x [a]"},
        CheckCase{"LengthZeroEmpty", [] { H::CheckRestrictionForstring("x", "", Lengths(-1, -1, 0)); }, "pass"},
        CheckCase{"LengthDiffers", [] { H::CheckRestrictionForstring("x", "abcd", Lengths(-1, -1, 3)); },
                  "Facet: Invalid Value for x [abcd]"},
        // Lengths count bytes, a NUL included; the message shows the text up to it.
        CheckCase{"LengthWithNul", [] { H::CheckRestrictionForstring("x", "ab\0cd"s, Lengths(-1, -1, 5)); }, "pass"},
        CheckCase{"LengthWithNulFails", [] { H::CheckRestrictionForstring("x", "ab\0cd"s, Lengths(-1, 4, -1)); },
                  "Facet: Invalid Value for x [ab]"},
        CheckCase{"Pattern", [] { H::CheckRestrictionForstring("x", "abc", Lengths(-1, -1, -1, "[a-z]+")); }, "pass"},
        CheckCase{"PatternFails", [] { H::CheckRestrictionForstring("x", "abc1", Lengths(-1, -1, -1, "[a-z]+")); },
                  "Facet: Invalid Value for x [abc1]"},
        CheckCase{"PatternFinalNewline", [] { H::CheckRestrictionForstring("x", "abc\n", Lengths(-1, -1, -1, "abc")); },
                  "Facet: Invalid Value for x [abc\n]"},
        CheckCase{"PatternRefused", [] { H::CheckRestrictionForstring("x", "v", Lengths(-1, -1, -1, "(")); },
                  "Facet: Invalid Regular Expression: v Error: 'missing )'\nInvalid Value for x [v]"},
        CheckCase{"LengthBeforePattern", [] { H::CheckRestrictionForstring("x", "a", Lengths(2, -1, -1, "(")); },
                  "Facet: Invalid Value for x [a]"},
        CheckCase{
            "Boolean",
            [] { H::CheckRestrictionForboolean("x", true, CPrimitiveRestrictions("(", 9, 0, "x", "x", "x", "x", 9)); },
            "pass"}),
    LabelOf);

TEST(RestrictionTest, UnsetByDefault) {
    const CPrimitiveRestrictions none;
    EXPECT_EQ("", none.m_strPattern);
    EXPECT_EQ(-1, none.m_nMinLength);
    EXPECT_EQ(-1, none.m_nMaxLength);
    EXPECT_EQ(-1, none.m_nLength);
    const CPrimitiveRestrictions nulls(nullptr, 1, 2, nullptr, nullptr, nullptr, "9", 3);
    EXPECT_EQ("", nulls.m_strMinInclusive);
    EXPECT_EQ("9", nulls.m_strMaxExclusive);
    EXPECT_EQ(3, nulls.m_nLength);
    EXPECT_EQ("pass", Outcome([&] { H::CheckRestrictionForr8("x", kNaN, none); }));
    EXPECT_EQ("pass", Outcome([&] { H::CheckRestrictionForstring("x", std::string(100000, 'q'), none); }));
}

TEST(RestrictionTest, LengthsCountUtf8Bytes) {
    // "é" is given as its UTF-8 bytes and read as the local code page under ASCIIOnly(true).
    ScopedAsciiOnly ascii(true);
    EXPECT_EQ("pass", Outcome([] { H::CheckRestrictionForstring("x", "\xC3\xA9", Lengths(2, 2, 2)); }));
    EXPECT_EQ("Facet: Invalid Value for x [\xC3\xA9]",
              Outcome([] { H::CheckRestrictionForstring("x", "\xC3\xA9", Lengths(-1, 1, -1)); }));
    EXPECT_EQ("pass",
              Outcome([] { H::CheckRestrictionForstring("x", "\xC3\xA9\xC3\xA9", Lengths(-1, -1, -1, "\xC3\xA9+")); }));
    EXPECT_EQ("pass", Outcome([] { H::CheckRestrictionForstring("x", "\xC3\xA9", Lengths(-1, -1, -1, ".")); }));
}

TEST(RestrictionTest, PatternIsTakenFromTheLocalCodePage) {
    // Under a UTF-8 locale (restored afterwards) the pattern and the value pass
    // through the locale conversion to UTF-8.
    REQUIRE_UTF8_LOCALE(locale);
    ScopedAsciiOnly ascii(false);
    EXPECT_EQ("pass", Outcome([] {
                  H::CheckRestrictionForstring("x", "\xC3\xA9\xC3\xA9", Lengths(-1, -1, -1, "\xC3\xA9{2}"));
              }));
    EXPECT_EQ("pass", Outcome([] {
                  H::CheckRestrictionForstring("x", "\xC3\xA9", Lengths(-1, -1, -1, "\\p{IsLatin-1Supplement}"));
              }));
}

TEST(RestrictionTest, CheckRestrictionDispatchesOnTheGivenType) {
    QvVariant v;
    v.SetI4(4);
    EXPECT_EQ("Facet: Invalid Value for x [4]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_i4, Bounds("5", "", "", "")); }));
    v.SetR8(1.5);
    EXPECT_EQ("Facet: Invalid Value for x [1.500000]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_r8, Bounds("", "", "", "1.5")); }));
    v.SetString("abc1");
    EXPECT_EQ("Facet: Invalid Value for x [abc1]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_string, Lengths(-1, -1, -1, "[a-z]*")); }));
    // A nil string holds no text: the empty string is checked.
    v.SetNil();
    EXPECT_EQ("Facet: Invalid Value for x []",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_string, Lengths(1, -1, -1)); }));
    v.SetBoolean(false);
    EXPECT_EQ("pass", Outcome([&] { H::CheckRestriction("x", v, ItemType_boolean, Lengths(5, 0, 3, "(")); }));

    // The type is what counts: a ui8 variant is read as the ui1 it is asked for.
    v.SetUI8(7);
    EXPECT_EQ("Facet: Invalid Value for x [7]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_ui1, Bounds("", "6", "", "")); }));
}

TEST(RestrictionTest, TypesWithoutACheck) {
    QvVariant v;
    v.SetChar('c');
    EXPECT_EQ("InvalidValue: unknown type [char]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_char, CPrimitiveRestrictions()); }));
    v.SetString("s");
    EXPECT_EQ("InvalidValue: unknown type [string]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_Invalid, CPrimitiveRestrictions()); }));
    EXPECT_EQ("InvalidValue: unknown type [string]",
              Outcome([&] { H::CheckRestriction("x", v, ItemType_XmlObject, CPrimitiveRestrictions()); }));
    EXPECT_EQ("InvalidValue: unknown type [string]",
              Outcome([&] { H::CheckRestriction("x", v, static_cast<ItemType>(-3), CPrimitiveRestrictions()); }));
    // A variant of no primitive kind fails in GetType's words.
    const QvVariant empty;
    EXPECT_EQ("Facet: Invalid Type 0",
              Outcome([&] { H::CheckRestriction("x", empty, ItemType_char, CPrimitiveRestrictions()); }));
}

} // namespace
