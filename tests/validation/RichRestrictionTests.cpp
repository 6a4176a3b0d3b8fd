// Facet checks of binary, date, duration, year, month, day, decimal and integer values,
// through CheckRestriction. All texts are ASCII.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "values/Conversions.h"
#include "values/QvVariant.h"

using namespace QvXmlLib10;
using H = CXmlObjectHelper;

namespace {

std::string FailureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "";
}

CPrimitiveRestrictions Bounds(const char* minIn, const char* maxIn, const char* minEx, const char* maxEx) {
    return CPrimitiveRestrictions("", -1, -1, minIn, maxIn, minEx, maxEx, -1);
}

CPrimitiveRestrictions Lengths(int minLength, int maxLength, int length) {
    return CPrimitiveRestrictions("", minLength, maxLength, "", "", "", "", length);
}

// Parses `text` as `type` and checks it under the name "x".
std::string Check(ItemType type, const char* text, const CPrimitiveRestrictions& restrictions) {
    QvVariant value;
    value.FromString(text, type, CWhitespaceUtils::WhitespaceRule_None);
    return FailureOf([&] { H::CheckRestriction("x", value, type, restrictions); });
}

} // namespace

TEST(RichRestrictions, EachKindAgainstItsFacets) {
    struct {
        ItemType type;
        const char* value;
        CPrimitiveRestrictions restrictions;
        const char* failure; // "" for a pass
    } const cases[] = {
        {ItemType_decimal, "1.50", Bounds("", "1.5", "", ""), ""},
        {ItemType_decimal, "1.6", Bounds("", " 1.5 ", "", ""), "Invalid Value for x [1.6]"},
        {ItemType_decimal, "1.5", Bounds("1", "", "1.5", ""), "Invalid Value for x [1.5]"},
        {ItemType_decimal, "-0.01", Bounds("0", "", "", ""), "Invalid Value for x [-0.01]"},
        {ItemType_integer, "1180591620717411303424", Bounds("", "", "", "1180591620717411303424"),
         "Invalid Value for x [1180591620717411303424]"},
        {ItemType_integer, "1180591620717411303423", Bounds("", "", "", "1180591620717411303424"), ""},
        {ItemType_year, "1999", Bounds("2000", "", "", ""), "Invalid Value for x [1999]"},
        {ItemType_month, "--05", Bounds("", "", "", "--05"), "Invalid Value for x [5]"},
        {ItemType_day, "---09", Bounds("---01", "---10", "", ""), ""},
        {ItemType_day, "---09", Bounds("---10", "", "", ""), "Invalid Value for x [9]"},
        // A zone against a bound without one is indeterminate: every facet passes.
        {ItemType_date, "2000-01-01Z", Bounds("2000-01-01", "2000-01-01", "2000-01-01", "2000-01-01"), ""},
        {ItemType_date, "2000-01-01", Bounds("2000-01-02", "", "", ""), "Invalid Value for x [2000-01-01]"},
        {ItemType_date, "2000-01-02", Bounds("", "2000-01-01", "", ""), "Invalid Value for x [2000-01-02]"},
        {ItemType_datetime, "2000-01-01T10:00:00Z", Bounds("", "", "2000-01-01T10:00:00Z", ""),
         "Invalid Value for x [2000-01-01T10:00:00Z]"},
        {ItemType_datetime, "2000-01-01T10:00:00Z", Bounds("", "", "", "2000-01-01T11:00:00+00:30"), ""},
        {ItemType_time, "10:00:00", Bounds("", "", "", "10:00:00"), "Invalid Value for x [10:00:00]"},
        {ItemType_yearMonth, "1999-02", Bounds("2000-03", "", "", ""), "Invalid Value for x [1999-02]"},
        {ItemType_monthDay, "--02-29", Bounds("", "--02-28", "", ""), "Invalid Value for x [--02-29]"},
        {ItemType_duration, "P1D", Bounds("", "", "", "P1D"), "Invalid Value for x [P1D]"},
        {ItemType_duration, "P1M", Bounds("P30D", "P30D", "", ""), ""}, // 28 to 31 days: indeterminate
        {ItemType_duration, "PT1H", Bounds("", "", "PT1H", ""), "Invalid Value for x [PT1H]"},
        // Binary lengths count bytes; both kinds show the value in hexadecimal.
        {ItemType_hexBinary, "6162", Lengths(2, 2, 2), ""},
        {ItemType_base64Binary, "AQID", Lengths(-1, 1, -1), "Invalid Value for x [010203]"},
        {ItemType_base64Binary, "AQID", Lengths(4, -1, -1), "Invalid Value for x [010203]"},
        {ItemType_base64Binary, "AQID", Bounds("x", "x", "x", "x"), ""}, // no bound is looked at
    };
    for (const auto& c : cases)
        EXPECT_EQ(Check(c.type, c.value, c.restrictions), c.failure) << c.type << " " << c.value;
}

TEST(RichRestrictions, BoundsParseOnlyWhenReachedAndFollowTheirText) {
    // A failed facet stops before a later bound that does not parse ...
    CPrimitiveRestrictions restrictions = Bounds("2001-01-01", "junk", "", "");
    EXPECT_EQ(Check(ItemType_date, "2000-01-01", restrictions), "Invalid Value for x [2000-01-01]");
    // ... and a bound that does not parse fails in its parser's words whenever it is reached.
    EXPECT_EQ(Check(ItemType_date, "2002-01-01", restrictions),
              "Invalid XSD Date [junk] expected CCYY-MM-DD[Z|[+|-]hh:mm]");
    EXPECT_EQ(Check(ItemType_date, "2002-01-01", restrictions),
              "Invalid XSD Date [junk] expected CCYY-MM-DD[Z|[+|-]hh:mm]");

    // Bounds kept from one check follow a changed text and a changed kind.
    restrictions = Bounds("", "5", "", "");
    EXPECT_EQ(Check(ItemType_decimal, "5", restrictions), "");
    restrictions.m_strMaxInclusive = "4";
    EXPECT_EQ(Check(ItemType_decimal, "5", restrictions), "Invalid Value for x [5]");
    EXPECT_EQ(Check(ItemType_integer, "4", restrictions), "");
    restrictions.m_strMaxInclusive = "2000";
    EXPECT_EQ(Check(ItemType_year, "2001", restrictions), "Invalid Value for x [2001]");

    // The exported alias of the yearMonth check.
    const CDateTime value = CConversions::yearMonthFromString("1999-02", CWhitespaceUtils::WhitespaceRule_None);
    EXPECT_EQ(FailureOf([&] { H::CheckRestrictionFormonthYear("y", value, Bounds("2000-03", "", "", "")); }),
              "Invalid Value for y [1999-02]");
}
