// Edge cases of CBigInteger and CDecimal, including the kept quirks (negative zero,
// ties toward zero, the fraction that rounds up to 10^scale, postfix ++).

#include <gtest/gtest.h>

#include <QvXml10/values/BigInteger.h>
#include <QvXml10/values/Decimal.h>
#include <QvXml10/foundation/QvException.h>

#include <functional>
#include <limits>
#include <string>

using namespace QvXmlLib10;

namespace {

// Used during static initialisation of this program, before main.
const std::string g_boundsAtStaticInit = CBigInteger::MIN_LONGLONG.ToString() + " " +
                                         std::to_string(CDecimal("9.5").ToLong()) + " " +
                                         (CBigInteger("1.7E+308") == CBigInteger::MAX_DOUBLE ? "same" : "differ");

// The whole message chain of what `f` throws, or "no exception".
template <typename E = CQvInvalidValueException> std::string Failure(const std::function<void()>& f) {
    try {
        f();
    } catch (const E& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

std::string Big(const char* text) { return CBigInteger(text).ToString(); }
std::string Dec(const char* text) { return CDecimal(text).ToString(); }

} // namespace

TEST(BigInteger, ConstantsAreBuiltBeforeStaticUse) {
    EXPECT_EQ("-9223372036854775808 9 same", g_boundsAtStaticInit);
    EXPECT_EQ("2147483647 -2147483648 9223372036854775807", CBigInteger::MAX_LONG.ToString() + " " +
                                                                CBigInteger::MIN_LONG.ToString() + " " +
                                                                CBigInteger::MAX_LONGLONG.ToString());
    EXPECT_EQ("17" + std::string(307, '0'), CBigInteger::MAX_DOUBLE.ToString());
    EXPECT_EQ("-17" + std::string(307, '0'), CBigInteger::MIN_DOUBLE.ToString());
}

TEST(BigInteger, ParsesAndPrints) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "0"},       {"   ", "0"},   {"-0", "0"},    {"  -12  ", "-12"}, {"+12", "12"}, {"1-2", "2"},
        {"12 34", "34"}, {"12\t", "0"},  {"\t-5", "5"},  {"-", "0"},         {"1.9", "2"},  {"1.5", "1"},
        {"-1.5", "-1"},  {"-1.6", "-2"}, {"1E2", "100"}, {"000120", "120"},  {"-00", "0"},  {nullptr, "0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.second, Big(c.first)) << (c.first ? c.first : "null");
    EXPECT_EQ("The string representing a Decimal, contained an invalid char at position 1 [1x]",
              Failure([] { CBigInteger("1x"); }));
    EXPECT_EQ("2 -3 0 3", CBigInteger(2.5).ToString() + " " + CBigInteger(-2.6).ToString() + " " +
                              CBigInteger(std::numeric_limits<double>::quiet_NaN()).ToString() + " " +
                              CBigInteger(2.6).ToString());
    EXPECT_EQ("-2147483648", CBigInteger(-2147483647 - 1).ToString());
}

TEST(BigInteger, NegativeZeroIsEqualButLess) {
    const CBigInteger minusZero("-0"), zero(0);
    EXPECT_TRUE(minusZero == zero);
    EXPECT_TRUE(minusZero < zero);
    EXPECT_FALSE(zero <= minusZero);
    EXPECT_EQ("0", (CBigInteger(-3) * zero).ToString());
    EXPECT_TRUE(CBigInteger(-3) * zero < zero);
}

TEST(BigInteger, Arithmetic) {
    using Op = std::function<CBigInteger(CBigInteger, CBigInteger)>;
    const Op div = [](CBigInteger a, CBigInteger b) { return a / b; };
    const Op mod = [](CBigInteger a, CBigInteger b) { return a % b; };
    const Op divAssign = [](CBigInteger a, CBigInteger b) { return a /= b; };
    const Op modAssign = [](CBigInteger a, CBigInteger b) { return a %= b; };
    const Op sub = [](CBigInteger a, CBigInteger b) { return a - b; };
    const Op add = [](CBigInteger a, CBigInteger b) { return a += b; };
    const struct {
        Op op;
        int a, b;
        const char* expected;
    } cases[] = {
        {div, 7, -2, "-3"},
        {div, -7, 2, "-3"},
        {mod, 7, 2, "1"},
        {mod, -7, 2, "-1"},
        {divAssign, -7, 2, "-3"},
        {modAssign, -7, 3, "-1"},
        {sub, 5, 5, "0"},
        {sub, -5, -8, "3"},
        {add, -5, 8, "3"},
        {div, 7, 0, "ERROR: Overflow in operator/."},
        {mod, 7, -2, "ERROR: Overflow in operator%."},
        {divAssign, 7, -2, "ERROR: Overflow in operator /=."},
        {modAssign, 7, -2, "ERROR: Overflow in operator%=."},
        {mod, 7, 0, "ERROR: Overflow in operator%."},
    };
    for (const auto& c : cases) {
        std::string result;
        const std::string failure = Failure([&] { result = c.op(CBigInteger(c.a), CBigInteger(c.b)).ToString(); });
        EXPECT_EQ(c.expected, failure == "no exception" ? result : failure) << c.a << " " << c.b;
    }
}

TEST(BigInteger, SquareRootIntAndInPlaceOperations) {
    for (const auto& c : {std::pair<int, int>{1, 1}, {15, 3}, {16, 4}, {10000, 100}, {99, 9}})
        EXPECT_EQ(c.second, static_cast<int>(CBigInteger(c.first).SquareRoot())) << c.first;
    EXPECT_EQ("ERROR: Overflow in operator/.", Failure([] { CBigInteger(0).SquareRoot(); }));
    EXPECT_EQ("ERROR: Negative Number in function SquareRoot().", Failure([] { CBigInteger(-4).SquareRoot(); }));
    EXPECT_EQ(2147483647, static_cast<int>(CBigInteger("2147483647")));
    EXPECT_EQ(-2147483647 - 1, static_cast<int>(CBigInteger("-2147483648")));
    EXPECT_EQ("ERROR: Value out of bound of int.", Failure([] { (void)static_cast<int>(CBigInteger("2147483648")); }));

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
        {"", "0"},
        {"1.50", "1.5"},
        {"1.0", "1"},
        {"-0.05", "-0.05"},
        {"+1.5E2", "150"},
        {"1.5E-2", "0.015"},
        {"1E", "1"},
        {"1e+-3", "0.001"},
        {"1-2", "-12"},
        {" 1 2 . 5 \n", "12.5"},
        {"-1.5e-1", "-0.15"},
        {"0.1234567890123456789012345678905", "0.123456789012345678901234567890"},
        {"0.1234567890123456789012345678906", "0.123456789012345678901234567891"},
        {"0.9999999999999999999999999999999", "0.1000000000000000000000000000000"},
        {"5e-31", "0"},
        {"6e-31", "0.000000000000000000000000000001"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.second, Dec(c.first)) << c.first;
    EXPECT_EQ("1.5 0.1", CDecimal(1.5).ToString() + " " + CDecimal(0.1).ToString());
}

TEST(Decimal, BadTextFailsAndKeepsTheValue) {
    const std::pair<const char*, const char*> cases[] = {
        {"1.2x", "The string representing a Decimal, contained an invalid char at position 3 [1.2x]"},
        {"x", "The string representing a Decimal, contained an invalid char at position 0 [x]"},
        {"1E5 ", "The string representing a Decimal, contained an invalid char at position 3 [1E5 ]"},
        {"1.2.3", "The string representing a Decimal, contained an invalid char at position 3 [1.2.3]"},
        {"1.-2", "The string representing a Decimal, contained an invalid char at position 2 [1.-2]"},
        {"1e1000001", "The string representing a Decimal, contained an invalid char at position 8 [1e1000001]"},
    };
    for (const auto& c : cases) {
        CDecimal value("7.25");
        EXPECT_EQ(c.second, Failure([&] { value.Parse(c.first); }));
        EXPECT_EQ("7.25", value.ToString());
    }
    EXPECT_EQ("The string representing a Decimal, contained an invalid char at position 0 [nan\n]",
              Failure([] { CDecimal(std::numeric_limits<double>::quiet_NaN()); }));
}

TEST(Decimal, Arithmetic) {
    using Op = std::function<CDecimal(CDecimal, CDecimal)>;
    const Op add = [](CDecimal a, CDecimal b) { return a + b; };
    const Op sub = [](CDecimal a, CDecimal b) { return a -= b; };
    const Op mul = [](CDecimal a, CDecimal b) { return a * b; };
    const Op div = [](CDecimal a, CDecimal b) { return a / b; };
    const struct {
        Op op;
        const char *a, *b, *expected;
    } cases[] = {
        {add, "0.1", "0.2", "0.3"},
        {add, "1.5", "-1.5", "0"},
        {add, "-0.75", "0.5", "-0.25"},
        {add, "1.99", "0.01", "2"},
        {sub, "1", "1.25", "-0.25"},
        {mul, "-1.25", "3.5", "-4.375"},
        {mul, "0.000000000000001", "0.0000000000000015", "0.000000000000000000000000000001"},
        {div, "1", "3", "0.333333333333333333333333333333"},
        {div, "2", "3", "0.666666666666666666666666666667"},
        {div, "-7.5", "2.5", "-3"},
        {div, "1", "0", "ERROR: Overflow in operator/."},
    };
    for (const auto& c : cases) {
        std::string result;
        const std::string failure = Failure([&] { result = c.op(CDecimal(c.a), CDecimal(c.b)).ToString(); });
        EXPECT_EQ(c.expected, failure == "no exception" ? result : failure) << c.a << " " << c.b;
    }
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
    EXPECT_EQ(12, CDecimal("12.96").ToLongLong());
    EXPECT_EQ(12, CDecimal("12.39").ToLongLong());
    EXPECT_EQ(2, CDecimal("2.5").ToLong());
    EXPECT_EQ(3, CDecimal("2.6").ToLong());
    EXPECT_EQ(-3, CDecimal("-2.6").ToLong());
    EXPECT_EQ("13", CDecimal("12.5000001").ToBigInteger().ToString());
    EXPECT_DOUBLE_EQ(-0.015, CDecimal("-1.5E-2").ToDouble());
    EXPECT_EQ("The Decimal value if to large to fit into a LONG",
              Failure<CQvOverFlowException>([] { CDecimal("2147483648").ToLong(); }));
    EXPECT_EQ("The Decimal value if to large to fit into a LONGLONG",
              Failure<CQvOverFlowException>([] { CDecimal("-9223372036854775809").ToLongLong(); }));
    EXPECT_EQ("The Decimal value if to large to fit into a Double",
              Failure<CQvOverFlowException>([] { CDecimal("1.8E308").ToDouble(); }));
}

TEST(Decimal, LongTextsGrowInsteadOfFailing) {
    std::string digits;
    for (int i = 0; i < 2000; ++i)
        digits += static_cast<char>('1' + i % 9);
    const std::string text = "-" + digits + "." + digits.substr(0, 25);
    const CDecimal value(text.c_str());
    EXPECT_EQ(text, value.ToString());
    EXPECT_EQ("-" + digits, CBigInteger(digits.c_str()).GetNegative().ToString());
    EXPECT_TRUE(CDecimal(value) - value == CDecimal());
    EXPECT_EQ(digits,
              (CBigInteger(digits.c_str()) * CBigInteger(digits.c_str()) / CBigInteger(digits.c_str())).ToString());
    const std::string exponent = "1e" + std::string(40, '0') + "3";
    EXPECT_EQ("1000", Dec(exponent.c_str()));
}
