// CDateTimeSpan: parser, text form, sign rules and the order through reference dates.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "foundation/QvException.h"
#include "values/DateTime.h"
#include "values/DateTimeSpan.h"

using namespace QvXmlLib10;

namespace {

// The text form of the parsed span, or "!" and the whole message of the failure.
std::string ParseAndPrint(const char* text) {
    try {
        CDateTimeSpan span;
        span.ParseXSDDuration(text);
        return span.ToString();
    } catch (const CQvInvalidValueException& e) {
        return "!" + e.GetFullMessage();
    }
}

CDateTimeSpan Span(const char* text) {
    CDateTimeSpan span;
    span.ParseXSDDuration(text);
    return span;
}

TEST(DateTimeSpanTest, ParsesAndPrintsOrFailsWithItsMessage) {
    const std::string expected = "] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]";
    for (const char* same : {"P1Y2M3DT4H5M6S", "-P1D", "PT1.5S", "PT0.5S", "PT90M", "P1Y", "PT0.000000001S"})
        EXPECT_EQ(same, ParseAndPrint(same));
    const struct {
        const char* text;
        std::string printed;
    } cases[] = {
        {"PY", "P"},
        {"PT1.", "PT1S"},
        {"P1M2Y", "P2Y1M"},
        {"PT1S2Y", "P2YT1S"},
        {"PT.5S", "PT0.5S"},
        {"P70000Y", "P4464Y"},
        {"P2147483647D", "P2147483647D"},
        {"P2147483648D", "P18446744071562067968D"},
        {"PT0.0000000012S", "!Invalid XSD Duration [PT0.0000000012S] Fraction part too long"},
        {nullptr, "!Invalid XSD Duration (Null String)"},
        {"", "!Invalid XSD Duration (Empty String)"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.printed, ParseAndPrint(c.text)) << (c.text ? c.text : "null");
    for (const char* bad : {"P", "-P", "PT", "P1DT", "P1", "1Y", "P-1D", "PT1.2", "PT1.5X", "P1D2M", "PT1H2H", "P1S"})
        EXPECT_EQ("!Invalid XSD Duration [" + std::string(bad) + expected, ParseAndPrint(bad)) << bad;
}

TEST(DateTimeSpanTest, FractionAndFieldsAsRead) {
    const CDateTimeSpan span = Span("PT0.123456789S");
    EXPECT_EQ(123, span.GetMilliSeconds());
    EXPECT_EQ(456, span.GetMicroSeconds());
    EXPECT_EQ(9, span.GetNanoSeconds());
    // The seventh to ninth digits each replace the nanoseconds.
    EXPECT_EQ(2, Span("PT0.00000012S").GetNanoSeconds());
    // A failed parse keeps what it had read.
    CDateTimeSpan partial;
    EXPECT_THROW(partial.ParseXSDDuration("-P3Y4MT"), CQvInvalidValueException);
    EXPECT_EQ("-P3Y4M", partial.ToString());
}

TEST(DateTimeSpanTest, SignRules) {
    CDateTimeSpan span = Span("-P1D");
    EXPECT_TRUE(span.IsNegative());
    EXPECT_TRUE(span.GetAsNegative().IsNegative());
    EXPECT_TRUE(Span("P1D").GetAsNegative().IsNegative());
    span.Negate();
    EXPECT_FALSE(span.IsNegative());
    span.Negate();
    span.SetDateTimeSpan(1, 2, 3);
    EXPECT_EQ("PT1H2M3S", span.ToString());
    span = Span("-P1D");
    span.Clear();
    EXPECT_EQ("P", span.ToString());
    EXPECT_EQ("P1Y2M3DT4H5M6.007008009S", CDateTimeSpan(1, 2, 3, 4, 5, 6, 7, 8, 9).ToString());
}

TEST(DateTimeSpanTest, OrderThroughTheFourReferenceDates) {
    const struct {
        const char* a;
        const char* b;
        int expected;
    } cases[] = {
        {"P1D", "PT24H", 0}, {"P1M", "P30D", 3}, {"PT1H", "PT2H", 0}, // hours are not compared on dates
        {"P1M", "P2M", 0}, // nor are months, so only the day of the month decides below
        {"P1Y", "P364D", 1}, {"-P1D", "P1D", 2}, {"-P1Y", "P1Y", 1},  {"P1D", "P2D", 1}, {"P1Y", "P365D", 3},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, Span(c.a).CompareTo(Span(c.b))) << c.a << " vs " << c.b;
    EXPECT_TRUE(Span("P1D") == Span("PT24H"));
    EXPECT_TRUE(Span("P1M") != Span("P30D"));
    EXPECT_TRUE(Span("P1D") < Span("P2D") && Span("P2D") > Span("P1D"));
}

// Random and mutated texts give a span that prints and reads back the same, or a
// CQvInvalidValueException.
TEST(DateTimeSpanTest, BadTextGivesAValueOrTheInvalidValueException) {
    const std::string seeds[] = {"P1Y2M3DT4H5M6.789S", "-PT0.123456789S", "P2147483648M", "PT1.", "P1M2Y"};
    const char alphabet[] = "0123456789-.PYMDTHS";
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        std::string text = seeds[random() % 5];
        for (int edits = 1 + random() % 3; edits > 0; --edits) {
            const size_t at = random() % (text.size() + 1);
            const char c = alphabet[random() % (sizeof alphabet - 1)];
            if (random() % 2)
                text.insert(at, 1, c);
            else if (at < text.size())
                text.erase(at, 1);
        }
        const std::string printed = ParseAndPrint(text.c_str());
        if (printed[0] != '!' && printed != "P" && printed != "-P")
            EXPECT_EQ(printed, ParseAndPrint(printed.c_str())) << text;
    }
}

} // namespace
