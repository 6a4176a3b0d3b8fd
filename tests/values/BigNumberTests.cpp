// Edge cases of CBigInteger and CDecimal, including the kept quirks (negative zero,
// ties toward zero, the fraction that rounds up to 10^scale, postfix ++).

#include <gtest/gtest.h>

#include <QvXml10/values/BigInteger.h>
#include <QvXml10/values/Decimal.h>
#include <QvXml10/foundation/QvException.h>

#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>

using namespace QvXmlLib10;

namespace {

// Used during static initialisation of this program, before main.
const std::string g_boundsAtStaticInit = CBigInteger::MIN_LONGLONG.ToString() + " " +
                                         std::to_string(CDecimal("9.5").ToLong()) + " " +
                                         (CBigInteger("1.7E+308") == CBigInteger::MAX_DOUBLE ? "same" : "differ");

// What `f` returns, or the whole message chain of the E it throws.
template <typename E = CQvInvalidValueException> std::string Outcome(const std::function<std::string()>& f) {
    try {
        return f();
    } catch (const E& e) {
        return e.GetFullMessage();
    }
}

template <typename T> std::string Text(const char* text) {
    return Outcome([&] { return T(text).ToString(); });
}

// The outcome of "a op b"; the assigning operators work on a copy of a.
template <typename T> std::string Apply(const std::string& expression) {
    std::istringstream in(expression);
    std::string a, op, b;
    in >> a >> op >> b;
    return Outcome([&] {
        T x(a.c_str()), y(b.c_str());
        if (op == "+") return (x + y).ToString();
        if (op == "-") return (x - y).ToString();
        if (op == "*") return (x * y).ToString();
        if (op == "/") return (x / y).ToString();
        if (op == "-=") return (x -= y).ToString();
        if (op == "/=") return (x /= y).ToString();
        if constexpr (std::is_same_v<T, CBigInteger>) {
            if (op == "%") return (x % y).ToString();
            if (op == "%=") return (x %= y).ToString();
        }
        return std::string("unknown operator");
    });
}

std::string InvalidChar(int position, const std::string& text) {
    return "The string representing a Decimal, contained an invalid char at position " + std::to_string(position) +
           " [" + text + "]";
}

} // namespace

TEST(BigInteger, ConstantsAreBuiltBeforeStaticUse) {
    EXPECT_EQ("-9223372036854775808 9 same", g_boundsAtStaticInit);
    EXPECT_EQ("2147483647 -2147483648 9223372036854775807", CBigInteger::MAX_LONG.ToString() + " " +
                                                                CBigInteger::MIN_LONG.ToString() + " " +
                                                                CBigInteger::MAX_LONGLONG.ToString());
    EXPECT_EQ("-17" + std::string(307, '0'), CBigInteger::MIN_DOUBLE.ToString());
}

TEST(BigInteger, ParsesAndPrints) {
    const std::pair<const char*, std::string> cases[] = {
        {"", "0"},          {"   ", "0"},   {"-0", "0"},
        {"  -12  ", "-12"}, {"+12", "12"},  {"1-2", "2"},
        {"12 34", "34"},    {"12\t", "0"},  {"\t-5", "5"},
        {"-", "0"},         {"1.9", "2"},   {"1.5", "1"},
        {"-1.5", "-1"},     {"-1.6", "-2"}, {"1E2", "100"},
        {"000120", "120"},  {nullptr, "0"}, {"1x", InvalidChar(1, "1x")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.second, Text<CBigInteger>(c.first)) << (c.first ? c.first : "null");
    EXPECT_EQ("2 -3 0 3", CBigInteger(2.5).ToString() + " " + CBigInteger(-2.6).ToString() + " " +
                              CBigInteger(std::numeric_limits<double>::quiet_NaN()).ToString() + " " +
                              CBigInteger(2.6).ToString());
    EXPECT_EQ("-2147483648", CBigInteger(-2147483647 - 1).ToString());
}

TEST(BigInteger, Arithmetic) {
    const char* const good[] = {"7 / -2",  "-7 / 2", "7 % 2",    "-7 % 2", "-7 /= 2",
                                "-7 %= 3", "5 - 5",  "-5 -= -8", "-5 + 8", "-3 * 0"};
    std::string results;
    for (const char* expression : good)
        results += Apply<CBigInteger>(expression) + " ";
    EXPECT_EQ("-3 -3 1 -1 -3 -1 0 3 3 0 ", results);
    const std::pair<const char*, const char*> bad[] = {
        {"7 / 0", "/."}, {"7 / -0", "/."}, {"7 % -2", "%."}, {"7 /= -2", " /=."}, {"7 %= -2", "%=."}, {"7 % 0", "%."},
    };
    for (const auto& c : bad)
        EXPECT_EQ(std::string("ERROR: Overflow in operator") + c.second, Apply<CBigInteger>(c.first)) << c.first;

    // Negative zero: equal to zero, yet less than it.
    const CBigInteger minusZero("-0"), zero(0);
    EXPECT_TRUE(minusZero == zero && minusZero < zero && !(zero <= minusZero));
    EXPECT_TRUE(CBigInteger(-3) * zero < zero);
}

TEST(BigInteger, SquareRootIntAndInPlaceOperations) {
    for (const auto& c : {std::pair<int, int>{1, 1}, {15, 3}, {16, 4}, {10000, 100}, {99, 9}})
        EXPECT_EQ(c.second, static_cast<int>(CBigInteger(c.first).SquareRoot())) << c.first;
    EXPECT_EQ("ERROR: Overflow in operator/.", Outcome([] { return CBigInteger(0).SquareRoot().ToString(); }));
    EXPECT_EQ("ERROR: Negative Number in function SquareRoot().",
              Outcome([] { return CBigInteger(-4).SquareRoot().ToString(); }));
    EXPECT_EQ(2147483647, static_cast<int>(CBigInteger("2147483647")));
    EXPECT_EQ(-2147483647 - 1, static_cast<int>(CBigInteger("-2147483648")));
    EXPECT_EQ("ERROR: Value out of bound of int.",
              Outcome([] { return std::to_string(static_cast<int>(CBigInteger("2147483648"))); }));

    CBigInteger x(5);
    -x;
    EXPECT_EQ("-5", x.ToString());
    x.Negate();
    EXPECT_EQ("5 -5", x.ToString() + " " + x.GetNegative().ToString());

    CBigInteger::Digits digits;
    EXPECT_EQ(1, CBigInteger::Position(digits));
    CBigInteger::Build(std::string("12a34"), digits);
    EXPECT_EQ((CBigInteger::Digits{4, 3}), digits);
}

TEST(Decimal, ParsesAndPrints) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "0"},         {"1.50", "1.5"},         {"1.0", "1"},         {"-0.05", "-0.05"},
        {"+1.5E2", "150"}, {"1.5E-2", "0.015"},     {"1E", "1"},          {"1e+-3", "0.001"},
        {"1-2", "-12"},    {" 1 2 . 5 \n", "12.5"}, {"-1.5e-1", "-0.15"}, {"5e-31", "0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.second, Text<CDecimal>(c.first)) << c.first;
    EXPECT_EQ("0." + std::string(29, '0') + "1", Text<CDecimal>("6e-31"));
    // 31 fraction digits round to 30: a tie toward zero, and no carry out of the fraction.
    EXPECT_EQ("0.123456789012345678901234567890", Text<CDecimal>("0.1234567890123456789012345678905"));
    EXPECT_EQ("0.123456789012345678901234567891", Text<CDecimal>("0.1234567890123456789012345678906"));
    EXPECT_EQ("0.1" + std::string(30, '0'), Text<CDecimal>(("0." + std::string(31, '9')).c_str()));
    const std::pair<const char*, int> bad[] = {{"1.2x", 3},  {"x", 0},    {"1E5 ", 3},
                                               {"1.2.3", 3}, {"1.-2", 2}, {"1e1000001", 8}};
    for (const auto& c : bad)
        EXPECT_EQ(InvalidChar(c.second, c.first), Text<CDecimal>(c.first));
    EXPECT_EQ("1.5 0.1", CDecimal(1.5).ToString() + " " + CDecimal(0.1).ToString());
    EXPECT_EQ(InvalidChar(0, "nan\n"),
              Outcome([] { return CDecimal(std::numeric_limits<double>::quiet_NaN()).ToString(); }));
    CDecimal value("7.25");
    EXPECT_EQ(InvalidChar(1, "1x"), Outcome([&] {
                  value.Parse("1x");
                  return std::string();
              }));
    EXPECT_EQ("7.25", value.ToString());
}

TEST(Decimal, Arithmetic) {
    const std::pair<const char*, const char*> cases[] = {
        {"0.1 + 0.2", "0.3"},     {"1.5 + -1.5", "0"},
        {"-0.75 + 0.5", "-0.25"}, {"1.99 + 0.01", "2"},
        {"1 -= 1.25", "-0.25"},   {"-1.25 * 3.5", "-4.375"},
        {"-7.5 / 2.5", "-3"},     {"1 / 0", "ERROR: Overflow in operator/."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.second, Apply<CDecimal>(c.first)) << c.first;
    // Products and quotients are rounded to 30 fraction digits, a tie toward zero.
    EXPECT_EQ("0." + std::string(29, '0') + "1", Apply<CDecimal>("0.000000000000001 * 0.0000000000000015"));
    EXPECT_EQ("0." + std::string(30, '3'), Apply<CDecimal>("1 / 3"));
    EXPECT_EQ("0." + std::string(29, '6') + "7", Apply<CDecimal>("2 /= 3"));
    EXPECT_TRUE(CDecimal("0.1") + CDecimal("0.2") == CDecimal("0.3"));
    EXPECT_TRUE(CDecimal("-1.5") < CDecimal("-1.25") && CDecimal("1.05") > CDecimal("1.0499"));
    EXPECT_TRUE(CDecimal("2.50") <= CDecimal("2.5") && !(CDecimal("2.51") <= CDecimal("2.5")));

    CDecimal d("5");
    const CDecimal next = d++;
    EXPECT_EQ("5 6", d.ToString() + " " + next.ToString());
    --d;
    EXPECT_EQ("4", d.ToString());
}

TEST(Decimal, RoundingAndConversions) {
    const std::tuple<const char*, int, const char*> rounded[] = {
        {"1.005", 2, "1.01"}, {"-1.005", 2, "-1.01"}, {"1.5", 2, "1.50"},     {"12", 0, "12."},
        {"1.995", 2, "2.0"},  {"12.5", 0, "13."},     {"-0.001", 2, "-0.00"}, {"3.14159", -1, "3."},
    };
    for (const auto& c : rounded)
        EXPECT_EQ(std::get<2>(c), CDecimal(std::get<0>(c)).ToString(std::get<1>(c))) << std::get<0>(c);

    CDecimal d("12.96");
    d.ChangeFractionalDivider(1);
    EXPECT_EQ("12.10", d.ToString());
    EXPECT_EQ("12 12 2 3 -3 13",
              std::to_string(CDecimal("12.96").ToLongLong()) + " " + std::to_string(CDecimal("12.39").ToLongLong()) +
                  " " + std::to_string(CDecimal("2.5").ToLong()) + " " + std::to_string(CDecimal("2.6").ToLong()) +
                  " " + std::to_string(CDecimal("-2.6").ToLong()) + " " +
                  CDecimal("12.5000001").ToBigInteger().ToString());
    EXPECT_DOUBLE_EQ(-0.015, CDecimal("-1.5E-2").ToDouble());
    EXPECT_EQ("The Decimal value if to large to fit into a LONG",
              Outcome<CQvOverFlowException>([] { return std::to_string(CDecimal("2147483648").ToLong()); }));
    EXPECT_EQ("The Decimal value if to large to fit into a LONGLONG", Outcome<CQvOverFlowException>([] {
                  return std::to_string(CDecimal("-9223372036854775809").ToLongLong());
              }));
    EXPECT_EQ("The Decimal value if to large to fit into a Double",
              Outcome<CQvOverFlowException>([] { return std::to_string(CDecimal("1.8E308").ToDouble()); }));
}

TEST(Decimal, LongTextsGrowInsteadOfFailing) {
    std::string digits;
    for (int i = 0; i < 2000; ++i)
        digits += static_cast<char>('1' + i % 9);
    const std::string text = "-" + digits + "." + digits.substr(0, 25);
    const CDecimal value(text.c_str());
    // Parsing keeps every digit; the text of a value with a fraction is cut at 1,023 characters.
    EXPECT_EQ(text.substr(0, 1023), value.ToString());
    EXPECT_EQ("-" + digits, value.ToString(0).substr(0, digits.size() + 1));
    EXPECT_TRUE(CDecimal(value) - value == CDecimal());
    const CBigInteger big(digits.c_str());
    EXPECT_EQ(digits, (big * big / big).ToString());
    EXPECT_EQ("1000", Text<CDecimal>(("1e" + std::string(40, '0') + "3").c_str()));
}
