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

const double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string Fail(const std::string& value) { return "Facet: Invalid Value for x [" + value + "]"; }

// Checks the value under the name "x".
#define CHECK(kind, value, facets) [] { H::CheckRestrictionFor##kind("x", value, facets); }

// Each facet of each primitive kind, at and beside its bound: "pass", or the failure.
TEST(RestrictionTest, FacetsOfEachKind) {
    const std::pair<std::function<void()>, std::string> cases[] = {
        // Each bound of i4, at and beside the bound.
        {CHECK(i4, 4, Bounds("5", "", "", "")), Fail("4")},
        {CHECK(i4, 5, Bounds("5", "", "", "")), "pass"},
        {CHECK(i4, 5, Bounds("", "5", "", "")), "pass"},
        {CHECK(i4, 6, Bounds("", "5", "", "")), Fail("6")},
        {CHECK(i4, 5, Bounds("", "", "5", "")), Fail("5")},
        {CHECK(i4, 6, Bounds("", "", "5", "")), "pass"},
        {CHECK(i4, 5, Bounds("", "", "", "5")), Fail("5")},
        {CHECK(i4, 4, Bounds("", "", "", "5")), "pass"},
        {CHECK(i4, LONG_MAX, Bounds("", "0", "", "")), Fail("9223372036854775807")},
        {CHECK(i4, 5, Bounds(" 5 ", "\t5\n", "", "")), "pass"},
        // The other integers, each showing its value its own way.
        {CHECK(i1, static_cast<char>(-100), Bounds("-50", "", "", "")), Fail("-100")},
        {CHECK(i1, static_cast<char>(-128), Bounds("-128", "127", "", "")), "pass"},
        {CHECK(i2, 32767, Bounds("", "", "", "32767")), Fail("32767")},
        {CHECK(ui1, 255, Bounds("", "254", "", "")), Fail("255")},
        {CHECK(ui2, 0, Bounds("", "", "0", "")), Fail("0")},
        {CHECK(ui4, 4000000000UL, Bounds("", "10", "", "")), Fail("4000000000")},
        {CHECK(ui4, ULONG_MAX, Bounds("", "-1", "", "")), "pass"},
        {CHECK(i8, LLONG_MIN, Bounds("0", "", "", "")), Fail("-9223372036854775808")},
        {CHECK(ui8, ULLONG_MAX, Bounds("", "", "", "18446744073709551615")), Fail("18446744073709551615")},
        // Floats, NaN included.
        {CHECK(r8, 1.5, Bounds("", "", "", "1.5")), Fail("1.500000")},
        {CHECK(r8, kNaN, Bounds("", "", "", "1.5")), Fail("nan")},
        {CHECK(r8, kNaN, Bounds("-INF", "", "", "")), Fail("nan")},
        {CHECK(r8, kNaN, Lengths(1, 1, 1, "(")), "pass"},
        {CHECK(r8, 0.0, Bounds("", "NaN", "", "")), Fail("0.000000")},
        {CHECK(r8, 1e308, Bounds("", "INF", "-INF", "")), "pass"},
        {CHECK(r8, HUGE_VAL, Bounds("", "", "", "INF")), Fail("inf")},
        {CHECK(r4, 0.25f, Bounds("0.5", "", "", "")), Fail("0.250000")},
        {CHECK(r4, 0.1f, Bounds("0.1", "0.1", "", "")), "pass"},
        // Bounds that do not parse fail in their parser's words, once reached.
        {CHECK(i4, 5, Bounds("x", "", "", "")), "InvalidValue: The value [x] can not be converted to a i4"},
        {CHECK(i1, 5, Bounds("", "200", "", "")), "InvalidValue: The value [200] is to large to fit in a i1"},
        {CHECK(i1, 5, Bounds("", "", "five", "")), "InvalidValue: The value [five] can not be converted to a i4"},
        {CHECK(r8, 5, Bounds("", "", "", "1,5")), "InvalidValue: The value [1,5] can not be converted to a r8"},
        // The first failing facet ends the check before a later bad bound.
        {CHECK(i4, 1, Bounds("5", "bad", "", "")), Fail("1")},
        {CHECK(i4, 7, Bounds("5", "bad", "", "")), "InvalidValue: The value [bad] can not be converted to a i4"},
        // Patterns and lengths mean nothing to numbers.
        {CHECK(i4, 7, Lengths(5, 0, 3, "(")), "pass"},
        // Strings: lengths and patterns.
        {CHECK(string, "a", Lengths(2, -1, -1)), Fail("a")},
        {CHECK(string, "ab", Lengths(2, -1, -1)), "pass"},
        {CHECK(string, "", Lengths(-1, 0, -1)), "pass"},
        {CHECK(string, "a", Lengths(-1, 0, -1)), Fail("a")},
        {CHECK(string, "", Lengths(-1, -1, 0)), "pass"},
        {CHECK(string, "abcd", Lengths(-1, -1, 3)), Fail("abcd")},
        // Lengths count bytes, a NUL included; the message shows the text up to it.
        {CHECK(string, "ab\0cd"s, Lengths(-1, -1, 5)), "pass"},
        {CHECK(string, "ab\0cd"s, Lengths(-1, 4, -1)), Fail("ab")},
        {CHECK(string, "abc", Lengths(-1, -1, -1, "[a-z]+")), "pass"},
        {CHECK(string, "abc1", Lengths(-1, -1, -1, "[a-z]+")), Fail("abc1")},
        {CHECK(string, "abc\n", Lengths(-1, -1, -1, "abc")), Fail("abc\n")},
        {CHECK(string, "v", Lengths(-1, -1, -1, "(")),
         "Facet: Invalid Regular Expression: v Error: 'missing )'\nInvalid Value for x [v]"},
        {CHECK(string, "a", Lengths(2, -1, -1, "(")), Fail("a")},
        {CHECK(boolean, true, CPrimitiveRestrictions("(", 9, 0, "x", "x", "x", "x", 9)), "pass"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i)
        EXPECT_EQ(cases[i].second, Outcome(cases[i].first)) << "case " << i;
}

#undef CHECK

TEST(RestrictionTest, UnsetByDefault) {
    const CPrimitiveRestrictions none;
    // Null texts are empty: no facet.
    const CPrimitiveRestrictions nulls(nullptr, -1, -1, nullptr, nullptr, nullptr, "9", -1);
    EXPECT_EQ("pass", Outcome([&] { H::CheckRestrictionForstring("x", "anything", nulls); }));
    EXPECT_EQ(Fail("9"), Outcome([&] { H::CheckRestrictionFori4("x", 9, nulls); }));
    EXPECT_EQ("pass", Outcome([&] { H::CheckRestrictionForr8("x", kNaN, none); }));
    EXPECT_EQ("pass", Outcome([&] { H::CheckRestrictionForstring("x", std::string(100000, 'q'), none); }));
}

std::string String(const std::string& value, const CPrimitiveRestrictions& facets) {
    return Outcome([&] { H::CheckRestrictionForstring("x", value, facets); });
}

TEST(RestrictionTest, LengthsCountUtf8Bytes) {
    // "é" is given as its UTF-8 bytes and read as the local code page under ASCIIOnly(true).
    ScopedAsciiOnly ascii(true);
    EXPECT_EQ("pass", String("\xC3\xA9", Lengths(2, 2, 2)));
    EXPECT_EQ(Fail("\xC3\xA9"), String("\xC3\xA9", Lengths(-1, 1, -1)));
    EXPECT_EQ("pass", String("\xC3\xA9\xC3\xA9", Lengths(-1, -1, -1, "\xC3\xA9+")));
    EXPECT_EQ("pass", String("\xC3\xA9", Lengths(-1, -1, -1, ".")));
}

TEST(RestrictionTest, PatternIsTakenFromTheLocalCodePage) {
    // Under a UTF-8 locale (restored afterwards) the pattern and the value pass
    // through the locale conversion to UTF-8.
    REQUIRE_UTF8_LOCALE(locale);
    ScopedAsciiOnly ascii(false);
    EXPECT_EQ("pass", String("\xC3\xA9\xC3\xA9", Lengths(-1, -1, -1, "\xC3\xA9{2}")));
    EXPECT_EQ("pass", String("\xC3\xA9", Lengths(-1, -1, -1, "\\p{IsLatin-1Supplement}")));
}

TEST(RestrictionTest, CheckRestrictionDispatchesOnTheGivenType) {
    QvVariant v;
    const auto Checked = [&](ItemType type, const CPrimitiveRestrictions& facets) {
        return Outcome([&] { H::CheckRestriction("x", v, type, facets); });
    };
    v.SetI4(4);
    EXPECT_EQ(Fail("4"), Checked(ItemType_i4, Bounds("5", "", "", "")));
    v.SetR8(1.5);
    EXPECT_EQ(Fail("1.500000"), Checked(ItemType_r8, Bounds("", "", "", "1.5")));
    v.SetString("abc1");
    EXPECT_EQ(Fail("abc1"), Checked(ItemType_string, Lengths(-1, -1, -1, "[a-z]*")));
    // A nil string holds no text: the empty string is checked.
    v.SetNil();
    EXPECT_EQ(Fail(""), Checked(ItemType_string, Lengths(1, -1, -1)));
    v.SetBoolean(false);
    EXPECT_EQ("pass", Checked(ItemType_boolean, Lengths(5, 0, 3, "(")));
    // The type is what counts: a ui8 variant is read as the ui1 it is asked for.
    v.SetUI8(7);
    EXPECT_EQ(Fail("7"), Checked(ItemType_ui1, Bounds("", "6", "", "")));

    // Types without a check name the variant's type.
    v.SetChar('c');
    EXPECT_EQ("InvalidValue: unknown type [char]", Checked(ItemType_char, CPrimitiveRestrictions()));
    v.SetString("s");
    for (ItemType type : {ItemType_Invalid, ItemType_XmlObject, static_cast<ItemType>(-3)})
        EXPECT_EQ("InvalidValue: unknown type [string]", Checked(type, CPrimitiveRestrictions()));
    // A variant of no primitive kind fails in GetType's words.
    v.Clear();
    EXPECT_EQ("Facet: Invalid Type 0", Checked(ItemType_char, CPrimitiveRestrictions()));
}

} // namespace
