// CBigInteger and CDecimal arithmetic against GMP on seeded random operands, and random
// or mutated texts through both parsers.

#include <gtest/gtest.h>

#include <QvXml10/values/BigInteger.h>
#include <QvXml10/values/Decimal.h>
#include <QvXml10/foundation/QvException.h>

#include <algorithm>
#include <random>
#include <string>

#if QVXML_HAVE_GMP
#include <gmp.h>
#endif

using namespace QvXmlLib10;

namespace {

// Random digits, maybe with leading zeros, maybe negative.
std::string RandomInteger(std::mt19937_64& rng, int maxDigits) {
    std::string text = rng() % 2 ? "-" : "";
    const int count = 1 + static_cast<int>(rng() % static_cast<unsigned>(maxDigits));
    for (int i = 0; i < count; ++i)
        text += static_cast<char>('0' + rng() % 10);
    return text;
}

} // namespace

#if QVXML_HAVE_GMP

namespace {

// A GMP integer that frees itself.
struct Mpz {
    mpz_t v;
    Mpz() { mpz_init(v); }
    explicit Mpz(const std::string& text) { mpz_init_set_str(v, text.c_str(), 10); }
    ~Mpz() { mpz_clear(v); }
    Mpz(const Mpz&) = delete;
    Mpz& operator=(const Mpz&) = delete;
    std::string Text() const {
        std::string text(mpz_sizeinbase(v, 10) + 2, '\0');
        mpz_get_str(&text[0], 10, v);
        return text.c_str();
    }
};

// The text CDecimal prints for value / 10^scale, kept to 30 fraction digits as
// multiplication keeps them: to nearest, a tie toward zero, no carry out of the fraction.
std::string DecimalText(const mpz_t value, unsigned long scale) {
    Mpz magnitude, unit, whole, fraction;
    mpz_abs(magnitude.v, value);
    while (scale > 0 && mpz_divisible_ui_p(magnitude.v, 10)) {
        mpz_divexact_ui(magnitude.v, magnitude.v, 10);
        --scale;
    }
    mpz_ui_pow_ui(unit.v, 10, scale);
    mpz_tdiv_qr(whole.v, fraction.v, magnitude.v, unit.v);
    unsigned long digits = scale;
    if (scale > 30) {
        Mpz step, rest;
        mpz_ui_pow_ui(step.v, 10, scale - 30);
        mpz_tdiv_qr(fraction.v, rest.v, fraction.v, step.v);
        mpz_mul_2exp(rest.v, rest.v, 1);
        if (mpz_cmp(rest.v, step.v) > 0) mpz_add_ui(fraction.v, fraction.v, 1);
        digits = 30;
    }
    const bool negative = mpz_sgn(value) < 0;
    if (mpz_sgn(fraction.v) == 0) return negative && mpz_sgn(whole.v) != 0 ? "-" + whole.Text() : whole.Text();
    std::string fractionText = fraction.Text();
    if (fractionText.size() < digits) fractionText.insert(0, digits - fractionText.size(), '0');
    return (negative ? "-" : "") + whole.Text() + "." + fractionText;
}

} // namespace

TEST(BigNumberOracle, IntegerArithmeticMatchesGmp) {
    std::mt19937_64 rng(20261123);
    for (int i = 0; i < 3000; ++i) {
        const std::string a = RandomInteger(rng, 60), b = RandomInteger(rng, i % 3 ? 60 : 8);
        const CBigInteger x(a.c_str()), y(b.c_str());
        Mpz ga(a), gb(b), sum, difference, product, quotient, remainder, positive;
        mpz_add(sum.v, ga.v, gb.v);
        mpz_sub(difference.v, ga.v, gb.v);
        mpz_mul(product.v, ga.v, gb.v);
        EXPECT_EQ(sum.Text(), (x + y).ToString()) << a << " + " << b;
        EXPECT_EQ(difference.Text(), (x - y).ToString()) << a << " - " << b;
        EXPECT_EQ(product.Text(), (x * y).ToString()) << a << " * " << b;
        mpz_abs(positive.v, gb.v);
        if (mpz_sgn(positive.v) == 0) continue;
        const CBigInteger divisor = y.GetAbs();
        mpz_tdiv_qr(quotient.v, remainder.v, ga.v, positive.v);
        EXPECT_EQ(quotient.Text(), (x / divisor).ToString()) << a << " / " << b;
        EXPECT_EQ(remainder.Text(), (x % divisor).ToString()) << a << " % " << b;
        CBigInteger assigned(x);
        assigned /= divisor;
        EXPECT_EQ(quotient.Text(), assigned.ToString()) << a << " /= " << b;
    }
}

TEST(BigNumberOracle, DecimalArithmeticMatchesScaledIntegers) {
    std::mt19937_64 rng(7);
    for (int i = 0; i < 3000; ++i) {
        // Operands with up to 20 integer and up to 20 fraction digits.
        std::string texts[2], scaled[2];
        unsigned long scales[2];
        for (int k = 0; k < 2; ++k) {
            const std::string whole = RandomInteger(rng, 20);
            std::string fraction = RandomInteger(rng, 21);
            if (fraction[0] == '-') fraction.erase(0, 1);
            if (rng() % 5 == 0) fraction.clear();
            texts[k] = fraction.empty() ? whole : whole + "." + fraction;
            scaled[k] = whole + fraction;
            scales[k] = fraction.size();
        }
        CDecimal x(texts[0].c_str()), y(texts[1].c_str());
        Mpz a(scaled[0]), b(scaled[1]), sum, difference, product, ua, ub;
        const unsigned long scale = std::max(scales[0], scales[1]);
        mpz_ui_pow_ui(ua.v, 10, scale - scales[0]);
        mpz_ui_pow_ui(ub.v, 10, scale - scales[1]);
        mpz_mul(ua.v, ua.v, a.v);
        mpz_mul(ub.v, ub.v, b.v);
        mpz_add(sum.v, ua.v, ub.v);
        mpz_sub(difference.v, ua.v, ub.v);
        mpz_mul(product.v, a.v, b.v);
        EXPECT_EQ(DecimalText(sum.v, scale), (x + y).ToString()) << texts[0] << " + " << texts[1];
        EXPECT_EQ(DecimalText(difference.v, scale), (x - y).ToString()) << texts[0] << " - " << texts[1];
        EXPECT_EQ(DecimalText(product.v, scales[0] + scales[1]), (x * y).ToString()) << texts[0] << " * " << texts[1];
    }
}

#else

TEST(BigNumberOracle, SkippedWithoutGmp) { GTEST_SKIP() << "GMP was not found when this program was configured"; }

#endif

TEST(BigNumberFuzz, BadTextGivesAValueOrTheInvalidValueException) {
    std::mt19937_64 rng(4242);
    const std::string alphabet = "0123456789+-.eE \t\nx5";
    const std::string seeds[] = {"-12.5e3", "  +0.000123E-7 ", "98765432109876543210.0123456789", "1-2 3.4e+-5"};
    int failures = 0;
    for (int i = 0; i < 4000; ++i) {
        std::string text;
        if (i % 2) {
            const int length = static_cast<int>(rng() % 24);
            for (int k = 0; k < length; ++k)
                text += alphabet[rng() % alphabet.size()];
        } else {
            text = seeds[rng() % 4];
            for (int edits = 1 + static_cast<int>(rng() % 3); edits > 0; --edits) {
                const size_t at = rng() % (text.size() + 1);
                const char c = static_cast<char>(rng() % 128 + (rng() % 8 == 0 ? 128 : 0));
                switch (rng() % 3) {
                case 0:
                    text.insert(at, 1, c);
                    break;
                case 1:
                    if (at < text.size()) text.erase(at, 1);
                    break;
                default:
                    if (at < text.size()) text[at] = c;
                }
            }
        }
        if (i % 500 == 0) text += std::string(600, '7') + "." + std::string(600, '3');
        try {
            (void)CDecimal(text.c_str()).ToString(3);
        } catch (const CQvInvalidValueException&) {
            ++failures;
        }
        try {
            (void)CBigInteger(text.c_str()).ToString();
        } catch (const CQvInvalidValueException&) {
        }
    }
    EXPECT_GT(failures, 100);
    EXPECT_LT(failures, 3900);
}
