// Text conversions and variant kinds of binary data, durations, dates, decimals and
// big integers. All texts are ASCII.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>

#include "foundation/BinaryData.h"
#include "foundation/QvException.h"
#include "values/Conversions.h"
#include "values/QvVariant.h"

#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

struct TextCase {
    ItemType type;
    const char* text;
    CWhitespaceUtils::WhitespaceRule rule;
    const char* format;
    const char* printed; // ToString of the parsed variant
};

} // namespace

// Each text goes through QvVariant::FromString (and so the conversion of its kind) and
// back through ToString.
TEST(RichKinds, ParseAndPrintThroughTheVariant) {
    const TextCase cases[] = {
        {ItemType_decimal, "1.5", kNone, "3", "1.500"},
        {ItemType_decimal, "1.5", kNone, nullptr, "1.5"},
        {ItemType_decimal, "1.5", kNone, "x", "2."}, // atoi gives 0 digits: rounded, ends in a point
        {ItemType_integer, "1.6", kNone, nullptr, "2"},
        {ItemType_integer, "123456789012345678901234567890", kNone, "3", "123456789012345678901234567890"},
        {ItemType_date, "2000-05", kNone, nullptr, "2000-05"}, // the shape decides: a gYearMonth
        {ItemType_datetime, "  2000-01-02T03:04:05Z ", kCollapse, nullptr, "2000-01-02T03:04:05Z"},
        {ItemType_time, "13:20:00", kNone, nullptr, "13:20:00"},
        {ItemType_yearMonth, "1999-12", kNone, nullptr, "1999-12"},
        {ItemType_monthDay, "--12-31", kNone, nullptr, "--12-31"},
        {ItemType_duration, "P1Y2M3DT4H5M6S", kNone, nullptr, "P1Y2M3DT4H5M6S"},
        {ItemType_hexBinary, "0aFF", kNone, nullptr, "0AFF"},
        {ItemType_base64Binary, "AQID", kNone, nullptr, "AQID"},
        {ItemType_year, "2000-05-01", kNone, nullptr, "2000"},
        {ItemType_year, "-0005", kNone, nullptr, "65531"}, // cut to 16 bits
        {ItemType_month, "--05", kNone, nullptr, "--05"},
        {ItemType_day, "---09", kNone, nullptr, "---09"},
    };
    for (const TextCase& c : cases) {
        QvVariant value;
        value.FromString(c.text, c.type, c.rule);
        EXPECT_EQ(value.GetItemType(), c.type) << c.text;
        EXPECT_EQ(value.ToString(c.format), c.printed) << c.text;
    }
}

TEST(RichKinds, FailuresKeepTheEarlierValue) {
    struct {
        ItemType type;
        const char* text;
        CWhitespaceUtils::WhitespaceRule rule;
        const char* message;
    } const cases[] = {
        {ItemType_date, "2000-01-01T00:00:00", kNone, "Invalid Date ('T' not allowed)"},
        {ItemType_month, "---05", kNone, "Failed to GetMonth. Invalid Date Type: gDay."},
        {ItemType_duration, "", kNone, "Invalid XSD Duration (Empty String)"},
        {ItemType_hexBinary, "ABC", kNone, "Invalid length in hex string"},
    };
    for (const auto& c : cases) {
        QvVariant value;
        value.SetI4(7);
        EXPECT_EQ(FailureOf([&] { value.FromString(c.text, c.type, c.rule); }), c.message) << c.text;
        EXPECT_EQ(value.GetItemType(), ItemType_i4);
        EXPECT_EQ(value.GetI4(), 7);
    }
    // Leading blanks that the rule keeps reach the date parser.
    EXPECT_NE(FailureOf([] { CConversions::datetimeFromString(" 2000-01-02T03:04:05", kNone); }), "no exception");
}

TEST(RichKinds, ConversionsFollowTheValueNotTheFunctionName) {
    const CDateTime date = CConversions::dateFromString("2012-03-04", kNone);
    EXPECT_EQ(CConversions::timeToString(date), "2012-03-04");
    EXPECT_EQ(CConversions::decimalToString(CDecimal("2.25"), ""), "2.25");
    EXPECT_EQ(CConversions::hexBinaryToString(CConversions::base64BinaryFromString("AQID", kNone)), "010203");

    QvVariant year;
    year.SetDate(CConversions::yearMonthFromString("2012", kNone)); // a gYear in a date variant
    EXPECT_EQ(year.GetType(), "date");
    EXPECT_EQ(year.ToString(), "2012");
}

TEST(RichKinds, CopiesAreDeepAndBinaryDataIsShared) {
    QvVariant first;
    first.SetDecimal(CDecimal("1.25"));
    QvVariant second(first);
    first.SetDecimal(CDecimal("9"));
    EXPECT_EQ(second.GetDecimal().ToString(), "1.25");
    EXPECT_EQ(first.GetDecimal().ToString(), "9");

    QvVariant binary;
    binary.SetHexBinary(CBinaryData("abc"));
    const QvVariant copy = binary;
    EXPECT_EQ(copy.GetHexBinary().GetData(), binary.GetHexBinary().GetData());
    EXPECT_EQ(copy.ToString(), "616263");

    // Each rich kind: names, copies and clears.
    const std::tuple<std::function<void(QvVariant&)>, const char*, const char*> kinds[] = {
        {[](QvVariant& v) { v.SetHexBinary(CBinaryData("a")); }, "hexBinary", "61"},
        {[](QvVariant& v) { v.SetBase64Binary(CBinaryData("a")); }, "base64Binary", "YQ=="},
        {[](QvVariant& v) { v.SetDuration(CConversions::durationFromString("PT1S", kNone)); }, "duration", "PT1S"},
        {[](QvVariant& v) { v.SetYearMonth(CConversions::yearMonthFromString("2001-02", kNone)); }, "yearMonth",
         "2001-02"},
        {[](QvVariant& v) { v.SetMonthDay(CConversions::monthDayFromString("--02-03", kNone)); }, "monthDay",
         "--02-03"},
        {[](QvVariant& v) { v.SetDate(CConversions::dateFromString("2001-02-03", kNone)); }, "date", "2001-02-03"},
        {[](QvVariant& v) { v.SetDateTime(CConversions::datetimeFromString("2001-02-03T04:05:06", kNone)); },
         "datetime", "2001-02-03T04:05:06"},
        {[](QvVariant& v) { v.SetTime(CConversions::timeFromString("04:05:06", kNone)); }, "time", "04:05:06"},
        {[](QvVariant& v) { v.SetDecimal(CDecimal("-0.5")); }, "decimal", "-0.5"},
        {[](QvVariant& v) { v.SetInteger(CBigInteger("-18446744073709551617")); }, "integer", "-18446744073709551617"},
    };
    for (const auto& [set, name, text] : kinds) {
        QvVariant value;
        set(value);
        QvVariant copy(value);
        EXPECT_EQ(copy.GetType(), name);
        EXPECT_EQ(copy.ToString(), text) << name;
        copy.SetNil();
        EXPECT_TRUE(copy.IsNil());
        EXPECT_EQ(copy.GetType(), name);
        EXPECT_EQ(QvVariant(copy).ToString(), ""); // nil carries no value
        const QvVariant& alias = value;
        value = alias; // self-assignment empties
        EXPECT_FALSE(value.IsValid());
    }
}
