// CDateTime: parsers, text form, validation, arithmetic and order, checked against an
// independent proleptic Gregorian calendar where the class follows ordinary arithmetic.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>

#include "foundation/QvException.h"
#include "values/DateTime.h"

using namespace QvXmlLib10;

namespace {

using DT = CDateTime;

template <typename Exception, typename Call> void ExpectFailure(const Call& call, const std::string& message) {
    try {
        call();
        ADD_FAILURE() << "no exception, expected: " << message;
    } catch (const Exception& e) {
        EXPECT_EQ(message, e.GetFullMessage());
    }
}

// Parses `text` by `kind` (D date forms, T time, X dateTime) and gives the "s" text, or
// "!" and the whole message of the CQvInvalidValueException.
std::string ParseAndPrint(char kind, const char* text) {
    try {
        DT value;
        if (kind == 'D') value.ParseXSDDate(text);
        if (kind == 'T') value.ParseXSDTime(text);
        if (kind == 'X') value.ParseXSDDateTime(text);
        return value.ToString();
    } catch (const CQvInvalidValueException& e) {
        return "!" + e.GetFullMessage();
    }
}

DT Parsed(const char* text) {
    DT value;
    if (std::strchr(text, 'T') != nullptr)
        value.ParseXSDDateTime(text);
    else if (text[2] == ':')
        value.ParseXSDTime(text);
    else
        value.ParseXSDDate(text);
    return value;
}

CDateTimeSpan Span(const char* text) {
    CDateTimeSpan span;
    span.ParseXSDDuration(text);
    return span;
}

TEST(DateTimeTest, ParsesAndPrintsEachFormOrFailsWithItsMessage) {
    // Texts that print as they were read.
    for (const char* text :
         {"2000-02-29", "-0044-03-15", "-0001", "--02-29", "---07Z", "2000-01-01Z", "2000-01-01+00:00"})
        EXPECT_EQ(text, ParseAndPrint('D', text));
    for (const char* text : {"12:00:00.5", "12:00:00.000000001", "23:59:59.120000005-05:30"})
        EXPECT_EQ(text, ParseAndPrint('T', text));
    EXPECT_EQ("-0044-03-15T23:59:59.999+14:00", ParseAndPrint('X', "-0044-03-15T23:59:59.999+14:00"));
    const char kDay[] = "!Invalid Day [29] (1 <= day <= days in month";
    const struct {
        char kind;
        const char* text;
        const char* expected;
    } cases[] = {
        {'D', "1900-02-29", kDay},
        {'D', "0000-01-01", "!Invalid Year [0] (9999 <= year <= -9999 && year != 0)"},
        {'D', "12345-01-01", "!Invalid XSD Date [12345-01-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {'D', "2000-1-01", "!Invalid XSD Date [2000-1-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {'D', "2000-13", "!Invalid Month [13] (1 <= month <= 12)"},
        {'D', "--02-30", "!Invalid Day [30] (1 <= day <= days in month)"},
        {'D', "---32", "!Invalid Day [32] (1 <= day <= 31)"},
        {'D', "--05--", "--05"},
        {'D', "--05xx", "--05"},
        {'D', "2000-01-01-00:30", "2000-01-01+00:30"},
        {'D', "2000-01-01+24:30", "2000-01-01+00:30"},
        {'D', "2000-01-01x05:00", "2000-01-01"},
        {'D', "2000-01-01+05:00Z", "!Invalid Date (Bad Zone value)"},
        {'D', "2000-01-01+23:60", "!Invalid TimeZone [23:60]"},
        {'D', "2000-01+0a:00", "!Invalid XSD Time Zone [+0a:00]"},
        {'D', "", "!Invalid Date (Empty String)"},
        {'D', "2000-01-01T", "!Invalid Date ('T' not allowed)"},
        {'T', "12:00:00abc", "12:00:00"},
        {'T', "12:00:00.", "12:00:00"},
        {'T', "12:00:00.1234567891", "!Invalid XSD Time [12:00:00.1234567891] Fraction part too long"},
        {'T', "24:00:00", "!Invalid XSD Time [24:00:00] expected hh:mm:ss[.ff]"},
        {'T', "12:00", "!Invalid XSD Time [12:00] expected hh:mm:ss[.ff]"},
        {'T', "", "!Invalid XSD Time (Empty String)"},
        {'X', "2000-01-01", "!Invalid XSD DateTime [2000-01-01]"},
        {'X', "2000-01T10:00:00", "!Invalid XSD DateTime [2000-01T10:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {'X', "2000-01-01T1:00:00", "!Invalid XSD Time [1:00:00] expected hh:mm:ss[.ff]"},
        {'X', "2001-02-30T00:00:00", "!Invalid Day [30] (1 <= day <= days in month"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, ParseAndPrint(c.kind, c.text)) << c.kind << " " << c.text;
}

TEST(DateTimeTest, CalendarHelpers) {
    // Single precision: 2^24 + 1 is not representable.
    EXPECT_EQ(16777216, GetQuotient(16777217, 1));
    EXPECT_EQ(1, GetModulo(16777217, 1));
    EXPECT_EQ(-1, GetQuotient(-1, 12));
    EXPECT_EQ(11, GetModulo(-1, 12));
    EXPECT_TRUE(IsLeapYear(-4) && IsLeapYear(-400) && IsLeapYear(0) && !IsLeapYear(-100));
}

TEST(DateTimeTest, FailuresOfStateAndValueCarryTheirTexts) {
    using State = CQvInvalidStateException;
    using Value = CQvInvalidValueException;
    DT date("2000-03-15T10:00:00");
    date.SetDateTime(DT(date), DT::DTType_date);
    ExpectFailure<State>([&] { date.SetTime(1, 2, 3); },
                         "Failed to copy CDateTime. Invalid Date Type: time, expected: date.");
    ExpectFailure<State>([&] { date.GetHour(); }, "Failed to GetHour. Invalid Date Type: date.");
    ExpectFailure<State>([&] { DT(DT::DTType_time).SetYear(1); }, "Failed to GetYear. Invalid Date Type: time.");
    ExpectFailure<State>([&] { DT(DT::DTType_gDay).GetDayOfYear(); },
                         "Failed to GetDayOfYear. Invalid Date Type: gDay.");
    ExpectFailure<State>([&] { date.GetZoneHour(); }, "TimeZone is not been used");
    EXPECT_EQ(0, Parsed("2000-01-01Z").GetZoneHour());
    DT noMonth(date);
    noMonth.SetMonth(0);
    ExpectFailure<Value>([&] { noMonth.GetDayOfYear(); }, "Invalid Month [0] (1 <= month <= 12)");
    ExpectFailure<Value>([&] { DT(date).SetTimeZone(-24, 0); }, "Invalid TimeZone [-24:0]");
    ExpectFailure<Value>([&] { DT(DT::DTType_time).GetTime(); },
                         "Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: time.");
    ExpectFailure<Value>([&] { DT(DT::DTType_time).CheckConversion(static_cast<DT::DTType>(42), DT::DTType_date); },
                         "Unknown date type 42.");
    DT year;
    year.SetGYear(2000);
    ExpectFailure<Value>([&] { DT().SetDateTime(year, DT::DTType_date); },
                         "Attempting to set a CDateTime of type date using an XmlDateTime of type gYear. The source "
                         "CDateTime does not contian enough data to allow the conversion.");
    // The conversion copies all fields and does not validate; Validate then names the leftover.
    DT converted;
    converted.SetDateTime(date, DT::DTType_gYear);
    ExpectFailure<Value>([&] { converted.Validate(); }, "Invalid Month [3] for type gYear");
    ExpectFailure<Value>([&] { DT().SetTime(24, 0, 0); }, "Invalid Hour [24] (0 <= hour <= 23)");
    ExpectFailure<Value>([&] { DT().SetFracTime(0, 0, 1000); }, "Invalid Nano-Second [1000] (0 <= nano <= 999)");
    ExpectFailure<Value>([&] { DT().Validate(); }, "Invalid Year Zero");
    ExpectFailure<Value>([&] { DT().ParseXSDDateTime(nullptr); }, "Invalid DateTime (Null String)");
    ExpectFailure<Value>([&] { DT().ParseXSDDate(nullptr); }, "Invalid Date (Null String)");
    ExpectFailure<Value>([&] { DT().ParseXSDTime(nullptr); }, "Invalid Time (Null String)");
    // Constructors from fields swallow the failure and leave an empty value.
    EXPECT_EQ(DT::DTType_yearZero, DT(2001, 2, 30).GetType());
    ExpectFailure<Value>([&] { DT(2001, 2, 30).ToString(); }, "Date Not Set");
    ExpectFailure<Value>([&] { DT(DT::DTType_date).ToString(); }, "Date Not Set");
    EXPECT_EQ("00:00:00", DT(DT::DTType_time).ToString());
}

TEST(DateTimeTest, FormatsOtherThanSortable) {
    const DT value(2000, 1, 2);
    EXPECT_EQ("Unknown Format: x", value.ToString("x"));
    EXPECT_EQ("", value.ToString("G"));
    EXPECT_EQ("", value.ToString(nullptr));
    EXPECT_EQ("2000-01-02T03:04:05.006007008", DT(2000, 1, 2, 3, 4, 5, 6, 7, 8).ToString());
    EXPECT_EQ(".00001", ToFracString(0, 10, 0));
    EXPECT_EQ("", ToFracString(0, 0, 0));
}

TEST(DateTimeTest, ArithmeticNeitherClampsNorSkipsYearZero) {
    const struct {
        const char* start;
        char op;
        const char* span;
        const char* expected;
    } cases[] = {
        {"2012-01-31", '+', "P1M", "2012-02-31"},
        {"2012-03-01", '-', "P1D", "2012-02-29"},
        {"2012-01-01", '-', "P1D", "2011-12-31"},
        {"2012-03-01", '-', "-P1D", "2012-02-29"}, // subtracting a negative span moves backward too
        {"2012-03-01", '+', "-P1Y13M", "2010-02-01"},
        {"-0001-12-31", '+', "P1D", "0000-01-01"},
        {"2000-01-01", '+', "P146097D", "2400-01-01"},
        {"2000-01-01", '-', "P730485D", "0000-01-01"},
        {"2000-03-01", '+', "P23936532D", "2000-03-01"}, // one round of all 16-bit years
        {"2000-03-01", '-', "P23936533D", "2000-02-29"},
        {"1999-12-31T23:59:59.999999999", '+', "PT0.000000001S", "2000-01-01T00:00:00"},
        {"2000-01-01T00:00:00", '-', "PT1.5S", "1999-12-31T23:59:58.5"},
        {"2000-01-01T00:00:00+05:30", '+', "PT90M", "2000-01-01T01:30:00+05:30"},
        {"23:00:00Z", '+', "PT2H", "01:00:00Z"},
    };
    for (const auto& c : cases) {
        const DT start = Parsed(c.start);
        const DT result = c.op == '+' ? start + Span(c.span) : start - Span(c.span);
        EXPECT_EQ(c.expected, result.ToString()) << c.start << " " << c.op << " " << c.span;
    }
    EXPECT_EQ("P", (DT(2000, 1, 1) - DT(1999, 1, 1)).ToString());
    EXPECT_EQ("2000-01-01T12:00:00+00:00", Parsed("2000-01-01T17:30:00+05:30").GetNormalized().ToString());
    EXPECT_EQ("2000-01-01T12:00:00Z", Parsed("2000-01-01T12:00:00Z").GetNormalized().ToString());
    EXPECT_EQ("2000-01-01T11:30:00+00:00", Parsed("2000-01-01T12:00:00-00:30").GetNormalized().ToString());
    // The month of a time takes part in the arithmetic too: 0 - 1 wraps to December of year -1.
    DT time = Parsed("10:00:00");
    time += Span("PT1H");
    ExpectFailure<CQvInvalidValueException>([&] { time.Validate(); }, "Invalid Month [12] for type time");
}

TEST(DateTimeTest, PartialOrderAcrossZonesAndTypes) {
    const struct {
        const char* a;
        const char* b;
        int expected;
    } cases[] = {
        {"2000-01-15", "2000-02-10", 2}, // months do not count
        {"2000-01-15", "2000-02-15", 0},
        {"2000", "---05", 3},
        {"-0001-01-01", "0001-01-01", 3},
        {"2000-01-01T12:00:00.5", "2000-01-01T12:00:00.25", 2},
        {"2000-01-01T12:00:00Z", "2000-01-01T12:00:00+00:00", 0},
        {"2000-01-01T12:00:00+01:00", "2000-01-01T11:00:00Z", 0},
        {"2000-01-01T12:00:00Z", "2000-01-01T12:00:00", 3},
        {"2000-01-01T12:00:00Z", "2000-01-03T12:00:00", 1},
        {"2000-01-01T12:00:00Z", "1999-12-30T12:00:00", 2},
        {"1999-12-30T12:00:00", "2000-01-01T12:00:00Z", 1},
        {"2000-01-03T12:00:00", "2000-01-01T12:00:00Z", 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, Parsed(c.a).CompareTo(Parsed(c.b))) << c.a << " vs " << c.b;
    const DT z = Parsed("2000-01-01T12:00:00Z"), local = Parsed("2000-01-01T12:00:00");
    EXPECT_TRUE(z != local && !(z == local) && !(z <= local) && !(z >= local));
    EXPECT_TRUE(Parsed("2000-01-01") <= Parsed("2000-01-02") && Parsed("2000-01-02") >= Parsed("2000-01-02"));
    // The month of the second operand is read from the first one.
    ExpectFailure<CQvInvalidStateException>([] { Compare(Parsed("---05"), Parsed("--05-05")); },
                                            "Failed to GetMonth. Invalid Date Type: gDay.");
}

// Any span on any date ends, whatever the counts (the walk over days skips whole rounds).
TEST(DateTimeTest, ArithmeticWithExtremeCountsEnds) {
    std::mt19937_64 random(3);
    const unsigned long long extremes[] = {0, 1, 0x7fffffffULL, 0x80000000ULL, ~0ULL, 1ULL << 63, (1ULL << 63) - 1};
    auto count = [&] { return random() % 2 ? extremes[random() % 7] : random(); };
    for (int i = 0; i < 2000; ++i) {
        CDateTimeSpan span(static_cast<unsigned short>(count()), count(), count(), count(), count(), count(),
                           static_cast<unsigned short>(count()), static_cast<unsigned short>(count()),
                           static_cast<unsigned short>(count()));
        if (random() % 2) span.Negate();
        DT value = Parsed(i % 2 ? "-9999-12-31T23:59:59.999999999-23:59" : "---31");
        value += span;
        value -= span;
        EXPECT_NO_THROW(value.GetNormalized());
    }
}

// Independent calendar: days since 1970-01-01 of a proleptic Gregorian date, year 0
// included (the usual era arithmetic).
long long DaysFromCivil(long long y, unsigned m, unsigned d) {
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long long>(doe) - 719468;
}

// Sets TZ for the life of the object and restores the previous value.
class ZoneScope {
public:
    explicit ZoneScope(const char* zone) : m_had(std::getenv("TZ") != nullptr), m_old(m_had ? std::getenv("TZ") : "") {
        setenv("TZ", zone, 1);
        tzset();
    }
    ~ZoneScope() {
        m_had ? setenv("TZ", m_old.c_str(), 1) : unsetenv("TZ");
        tzset();
    }

private:
    const bool m_had;
    const std::string m_old;
};

TEST(DateTimeTest, CalendarAgreesWithIndependentArithmetic) {
    std::mt19937 random(20261123);
    std::uniform_int_distribution<int> yearOf(-9999, 9999), monthOf(1, 12), secondOf(0, 86399);
    std::uniform_int_distribution<long long> shift(-3000000, 3000000);
    for (int i = 0; i < 4000; ++i) {
        int y = yearOf(random);
        if (y == 0) y = 1;
        const unsigned m = static_cast<unsigned>(monthOf(random));
        const long long length = DaysFromCivil(m == 12 ? y + 1 : y, m == 12 ? 1 : m + 1, 1) - DaysFromCivil(y, m, 1);
        const unsigned d = i < 2 ? (i == 0 ? 1u : static_cast<unsigned>(length)) : 1u + random() % length;
        const long long days = DaysFromCivil(y, m, d);
        const bool leap = DaysFromCivil(y, 3, 1) - DaysFromCivil(y, 2, 28) == 2;
        const DT date(static_cast<short>(y), static_cast<unsigned char>(m), static_cast<unsigned char>(d));
        ASSERT_EQ(DT::DTType_date, date.GetType()) << y << "-" << m << "-" << d;
        ASSERT_EQ(leap, IsLeapYear(y)) << y;
        ASSERT_EQ(days - DaysFromCivil(y, 1, 1) + 1 + (leap && m <= 2) - (leap && m > 2), date.GetDayOfYear());

        // Adding days walks the calendar as the era arithmetic does, in both directions.
        const long long n = shift(random);
        const CDateTimeSpan magnitude(0, 0, static_cast<unsigned long>(std::llabs(n)), 0, 0, 0);
        const DT byOperator = n < 0 ? date - magnitude : date + magnitude;
        const DT byText = date + Span(((n < 0 ? "-P" : "P") + std::to_string(std::llabs(n)) + "D").c_str());
        for (const DT& moved : {byOperator, byText})
            ASSERT_EQ(days + n, DaysFromCivil(moved.GetYear(), moved.GetMonth(), moved.GetDay()))
                << date.ToString() << " + " << n;

        // Read as UTC in every zone; the day of the week is that of the local time.
        const int second = secondOf(random);
        const DT stamp(static_cast<short>(y), static_cast<unsigned char>(m), static_cast<unsigned char>(d),
                       static_cast<unsigned char>(second / 3600), static_cast<unsigned char>(second / 60 % 60),
                       static_cast<unsigned char>(second % 60));
        const long long epoch = days * 86400 + second;
        for (const char* zone : {"UTC", "America/St_Johns", "Australia/Adelaide"}) {
            ZoneScope scope(zone);
            ASSERT_EQ(epoch, stamp.GetTime()) << zone << " " << stamp.ToString();
        }
        ZoneScope utc("UTC");
        EXPECT_EQ(((days % 7 + 11) % 7) + 1, date.GetDayOfWeek()) << date.ToString();
    }
}

TEST(DateTimeTest, DayOfWeekIsThatOfTheLocalTime) {
    // 2000-01-01 is a Saturday (7); 20:00 UTC is already Sunday in Adelaide (+10:30 in summer), and UTC
    // midnight still Friday in St. John's.
    const struct {
        const char* zone;
        const char* value;
        int expected;
    } cases[] = {{"UTC", "2000-01-01", 7},
                 {"America/St_Johns", "2000-01-01", 6},
                 {"Australia/Adelaide", "2000-01-01T20:00:00", 1},
                 {"Australia/Adelaide", "2000-01-01T13:29:59", 7},
                 {"UTC", "2000-01-01T23:00:00-02:00", 1}};
    for (const auto& c : cases) {
        ZoneScope scope(c.zone);
        EXPECT_EQ(c.expected, Parsed(c.value).GetDayOfWeek()) << c.zone << " " << c.value;
    }
    ZoneScope scope("America/St_Johns");
    const DT fromTime(static_cast<long>(951782400)); // 2000-02-29T00:00:00 UTC
    EXPECT_EQ("2000-02-29T00:00:00", fromTime.ToString());
    EXPECT_EQ(951782400, fromTime.GetTime());
    EXPECT_EQ(DT::DTType_dateTime, DT::GetCurrentTime().GetType());
}

// Random and mutated texts: every parser gives a value that prints and reads back the
// same, or a CQvInvalidValueException.
TEST(DateTimeTest, BadTextGivesAValueOrTheInvalidValueException) {
    const std::string seeds[] = {"2000-02-29",
                                 "-0044-03-15Z",
                                 "--02-29",
                                 "---31+14:00",
                                 "--05--",
                                 "2000-01",
                                 "12:30:45.123456789-05:30",
                                 "2000-01-01T23:59:59.5+24:00",
                                 "9999"};
    const char alphabet[] = "0123456789-+:.TZx ";
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string text = seeds[random() % 9];
        for (int edits = 1 + random() % 3; edits > 0; --edits) {
            const size_t at = random() % (text.size() + 1);
            const char c = alphabet[random() % (sizeof alphabet - 1)];
            const unsigned edit = random() % 3;
            if (edit == 0)
                text.insert(at, 1, c);
            else if (at < text.size())
                edit == 1 ? void(text[at] = c) : void(text.erase(at, 1));
        }
        if (i % 4 == 0) {
            text.resize(random() % 12);
            for (char& c : text)
                c = alphabet[random() % (sizeof alphabet - 1)];
        }
        for (char kind : {'D', 'T', 'X'}) {
            const std::string printed = ParseAndPrint(kind, text.c_str());
            if (printed[0] != '!') EXPECT_EQ(printed, ParseAndPrint(kind, printed.c_str())) << text;
        }
        DT zone(DT::DTType_time);
        try {
            zone.SetZone(text.c_str());
        } catch (const CQvInvalidValueException&) {
        }
    }
}

} // namespace
