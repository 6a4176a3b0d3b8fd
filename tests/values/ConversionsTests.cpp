#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "foundation/QvException.h"
#include "values/Conversions.h"

#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

using namespace std::string_literals;
using C = CConversions;
constexpr auto None = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto Collapse = CWhitespaceUtils::WhitespaceRule_Collapse;

// Each failure is a CQvInvalidValueException with exactly this message. Bad text is quoted
// after the rule, except by boolean; the narrow integer kinds use the words of i4 / ui4
// for bad text, and their own for the range, quoting the argument as it came in.
TEST(ConversionsTest, FailuresNameTheValueAndTheKind) {
    const std::string kBoolean = "A Boolean Value read from an XML document was invalid [",
                      kBooleanEnd = "]. Valid values are 'true', 'false', '1', or '0'";
    const auto Bad = [](std::string text, std::string kind) {
        return "The value [" + text + "] can not be converted to a " + kind;
    };
    const auto Large = [](std::string text, std::string kind) {
        return "The value [" + text + "] is to large to fit in a " + kind;
    };
    const std::string kCharEnd = "] can not be a char as it is either empty of greater than 1 char long";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[] { C::i4FromString("12x", None); }, Bad("12x", "i4")},
        {[] { C::i4FromString("-", None); }, Bad("-", "i4")},
        {[] { C::i4FromString("5 ", None); }, Bad("5 ", "i4")},
        {[] { C::i4FromString(" 1  2 ", Collapse); }, Bad("1 2", "i4")},
        {[] { C::i8FromString("abc", None); }, Bad("abc", "i8")},
        {[] { C::ui4FromString("0x10", None); }, Bad("0x10", "ui4")},
        {[] { C::ui8FromString("1.0", None); }, Bad("1.0", "ui8")},
        {[] { C::i4FromString(" 9223372036854775808 ", Collapse); }, Large("9223372036854775808", "i4")},
        {[] { C::i4FromString("-9223372036854775809", None); }, Large("-9223372036854775809", "i4")},
        {[] { C::i8FromString("9223372036854775808", None); }, Large("9223372036854775808", "i8")},
        {[] { C::i8FromString("\t-9223372036854775809", Collapse); }, Large("-9223372036854775809", "i8")},
        {[] { C::ui4FromString("18446744073709551616", None); }, Large("18446744073709551616", "ui4")},
        {[] { C::ui8FromString("99999999999999999999", None); }, Large("99999999999999999999", "ui8")},
        {[] { C::i1FromString("12x", None); }, Bad("12x", "i4")},
        {[] { C::i2FromString("99999999999999999999", None); }, Large("99999999999999999999", "i4")},
        {[] { C::ui1FromString(" x ", Collapse); }, Bad("x", "ui4")},
        {[] { C::ui2FromString("--1", None); }, Bad("--1", "ui4")},
        {[] { C::i1FromString("128", None); }, Large("128", "i1")},
        {[] { C::i1FromString(" -129 ", Collapse); }, Large(" -129 ", "i1")},
        {[] { C::i2FromString("40000", None); }, Large("40000", "i2")},
        {[] { C::i2FromString("-40000", None); }, Large("-40000", "i2")},
        {[] { C::ui1FromString("256", None); }, Large("256", "ui1")},
        {[] { C::ui1FromString("-1", None); }, Large("-1", "ui1")},
        {[] { C::ui2FromString("65536\n", Collapse); }, Large("65536\n", "ui2")},
        {[] { C::r8FromString("1.5x", None); }, Bad("1.5x", "r8")},
        {[] { C::r8FromString("1.5 ", None); }, Bad("1.5 ", "r8")},
        {[] { C::r8FromString("-inf x", Collapse); }, Bad("-inf x", "r8")},
        {[] { C::r4FromString(" abc ", Collapse); }, Bad("abc", "r4")},
        {[] { C::booleanFromString("", None); }, kBoolean + "" + kBooleanEnd},
        {[] { C::booleanFromString(" yes ", Collapse); }, kBoolean + " yes " + kBooleanEnd},
        {[] { C::booleanFromString("2", None); }, kBoolean + "2" + kBooleanEnd},
        {[] { C::charFromString("", None); }, "The value [" + kCharEnd},
        {[] { C::charFromString(" ab ", Collapse); }, "The value [ab" + kCharEnd},
        {[] { C::charFromString("   ", Collapse); }, "The value [" + kCharEnd},
        {[] { C::charFromString("\xC3\xA9", None); }, "The value [\xC3\xA9" + kCharEnd},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.second, FailureOf<CQvInvalidValueException>(c.first));
}

TEST(ConversionsTest, IntegersAtTheOtherBounds) {
    EXPECT_EQ(127, C::i1FromString("127", None));
    EXPECT_EQ(32767, C::i2FromString(" 32767 ", Collapse));
    EXPECT_EQ(LONG_MAX, C::i4FromString("9223372036854775807", None));
    EXPECT_EQ(LLONG_MIN, C::i8FromString("-9223372036854775808", None));
    EXPECT_EQ(0, C::ui1FromString("0", None));
    // strtoul takes a leading minus and wraps.
    EXPECT_EQ(ULONG_MAX, C::ui4FromString("-1", None));
    EXPECT_EQ(ULLONG_MAX, C::ui8FromString("-1", None));
}

TEST(ConversionsTest, IntegerTextThatTheLibraryFunctionTolerates) {
    // Empty text is 0, a plus sign and leading blanks left by the rule are taken,
    // and an embedded NUL ends the number.
    EXPECT_EQ(0, C::i4FromString("", None));
    EXPECT_EQ(0, C::i1FromString("", None));
    EXPECT_EQ(0u, C::ui8FromString("   ", Collapse));
    EXPECT_EQ(5, C::i4FromString("+5", None));
    EXPECT_EQ(5, C::i4FromString(" \t5", None));
    EXPECT_EQ(7, C::i2FromString("7\0x"s, None));
    EXPECT_EQ(42, C::i8FromString("\r\n\t42", CWhitespaceUtils::WhitespaceRule_Replace));
    EXPECT_THROW(C::i8FromString("42\r\n", CWhitespaceUtils::WhitespaceRule_Replace), CQvInvalidValueException);
}

TEST(ConversionsTest, UnknownRuleReachesTheCaller) {
    EXPECT_EQ("Unknown WhitespaceRule",
              FailureOf([] { C::i4FromString("1", static_cast<CWhitespaceUtils::WhitespaceRule>(9)); }));
}

TEST(ConversionsTest, FloatSpecialTexts) {
    for (const char* text : {"", "NaN", "1.#QNAN", "-NAN", "nan"}) {
        EXPECT_TRUE(std::isnan(C::r8FromString(text, None))) << text;
        EXPECT_TRUE(std::isnan(C::r4FromString(text, None))) << text;
        EXPECT_EQ("NaN", C::r8ToString(C::r8FromString(text, None))) << text;
        EXPECT_EQ("NaN", C::r4ToString(C::r4FromString(text, None))) << text;
    }
    EXPECT_TRUE(std::isnan(C::r8FromString("  ", Collapse)));
    EXPECT_EQ(-HUGE_VAL, C::r8FromString("-INF", None));
    EXPECT_EQ(HUGE_VAL, C::r8FromString("INF", None));
    EXPECT_EQ(HUGE_VAL, C::r8FromString("inf", None));
    EXPECT_EQ(HUGE_VAL, C::r8FromString("1e999", None));
    EXPECT_EQ(-HUGE_VALF, C::r4FromString(" -INF ", Collapse));
    EXPECT_EQ("-INF", C::r8ToString(-HUGE_VAL));
    EXPECT_EQ("INF", C::r8ToString(HUGE_VAL));
    EXPECT_EQ("-INF", C::r4ToString(-HUGE_VALF, "%f"));
}

TEST(ConversionsTest, FloatNumbers) {
    EXPECT_EQ(1.5, C::r8FromString(" 1.5 ", Collapse));
    EXPECT_EQ(1.5, C::r8FromString(" 1.5", None));
    EXPECT_EQ(1000.0, C::r8FromString("+1e3", None));
    EXPECT_EQ(0.0, C::r8FromString("1e-999", None));
    EXPECT_EQ(0.1f, C::r4FromString("0.1", None));
    // Narrowing to float: beyond the range is an infinity, not a failure.
    EXPECT_EQ(HUGE_VALF, C::r4FromString("1e300", None));
    EXPECT_EQ(-HUGE_VALF, C::r4FromString("-1e300", None));
    EXPECT_EQ("INF", C::r4ToString(C::r4FromString("1e300", None)));
    EXPECT_EQ(std::numeric_limits<float>::max(), C::r4FromString("3.4028235e38", None));
    EXPECT_EQ(std::numeric_limits<float>::max(), C::r4FromString("3.4028235677973e38", None));
    EXPECT_EQ(HUGE_VALF, C::r4FromString("3.40282356779733662e38", None));
    EXPECT_EQ(0.0f, C::r4FromString("1e-50", None));
}

TEST(ConversionsTest, FloatToText) {
    EXPECT_EQ("0.1", C::r8ToString(0.1));
    EXPECT_EQ("1e+20", C::r8ToString(1e20));
    EXPECT_EQ("-2.5", C::r8ToString(-2.5));
    EXPECT_EQ("0.1000000000000000", C::r8ToString(0.1, "%.16f"));
    EXPECT_EQ("1.50", C::r8ToString(1.5, "%.2f"));
    EXPECT_EQ("1.677722e+07", C::r4ToString(16777216.0f));
    EXPECT_EQ("0.1", C::r4ToString(0.1f));
    EXPECT_EQ("3.40282347e+38", C::r4ToString(std::numeric_limits<float>::max(), "%.9g"));
    // Long output is cut at the buffer: 47 bytes for r8, 31 for r4.
    EXPECT_EQ("1." + std::string(45, '0'), C::r8ToString(1.0, "%.60f"));
    EXPECT_EQ("1." + std::string(29, '0'), C::r4ToString(1.0f, "%.60f"));
}

TEST(ConversionsTest, IntegersAndDatePartsToText) {
    EXPECT_EQ("-56", C::i1ToString(static_cast<char>(200)));
    EXPECT_EQ("9223372036854775807", C::i4ToString(LONG_MAX));
    EXPECT_EQ("0", C::ui8ToString(0));
    EXPECT_EQ("65535", C::yearToString(65535));
    EXPECT_EQ("--255", C::monthToString(255));
    EXPECT_EQ("---31", C::dayToString(31));
}

TEST(ConversionsTest, BooleanCharAndString) {
    EXPECT_TRUE(C::booleanFromString("TRUE", None));
    EXPECT_FALSE(C::booleanFromString("False", None));
    EXPECT_TRUE(C::booleanFromString(" 1 ", Collapse));
    EXPECT_FALSE(C::booleanFromString("0", None));
    EXPECT_EQ("true", C::booleanToString(true));
    EXPECT_EQ("false", C::booleanToString(false));

    EXPECT_EQ('a', C::charFromString(" a ", Collapse));
    EXPECT_EQ(' ', C::charFromString(" ", None));
    EXPECT_EQ("x", C::charToString('x'));
    EXPECT_EQ("", C::charToString('\0'));

    EXPECT_EQ("a b", C::stringFromString(" a \r\n b ", Collapse));
    EXPECT_EQ("a\0b"s, C::stringFromString("a\0b"s, None));
    EXPECT_EQ("a\0b"s, C::stringToString("a\0b"s));
}

TEST(ConversionsTest, VeryLongTextFailsCleanly) {
    const std::string digits(100000, '9');
    EXPECT_THROW(C::i8FromString(digits, None), CQvInvalidValueException);
    EXPECT_THROW(C::i1FromString(digits, None), CQvInvalidValueException);
    EXPECT_EQ(HUGE_VAL, C::r8FromString(digits, None));
    EXPECT_EQ("The value [" + std::string(5000, 'x') + "] can not be converted to a i4",
              FailureOf<CQvInvalidValueException>([] { C::i4FromString(std::string(5000, 'x'), None); }));
}

} // namespace
