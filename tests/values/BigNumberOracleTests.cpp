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
        const CBigInteger x(a.c_str()), y(b.c_str()), divisor = y.GetAbs();
        Mpz ga(a), gb(b), sum, difference, product, quotient, remainder;
        mpz_add(sum.v, ga.v, gb.v);
        mpz_sub(difference.v, ga.v, gb.v);
        mpz_mul(product.v, ga.v, gb.v);
        EXPECT_EQ(sum.Text() + " " + difference.Text() + " " + product.Text(),
                  (x + y).ToString() + " " + (x - y).ToString() + " " + (x * y).ToString())
            << a << ", " << b;
        if (mpz_sgn(gb.v) == 0) continue;
        mpz_abs(gb.v, gb.v);
        mpz_tdiv_qr(quotient.v, remainder.v, ga.v, gb.v);
        EXPECT_EQ(quotient.Text() + " " + remainder.Text(), (x / divisor).ToString() + " " + (x % divisor).ToString())
            << a << ", " << b;
    }
}

TEST(BigNumberOracle, DecimalArithmeticMatchesScaledIntegers) {
    std::mt19937_64 rng(7);
    for (int i = 0; i < 3000; ++i) {
        // Up to 20 integer and up to 20 fraction digits: the text, and the digits without the point.
        std::string texts[2], scaled[2];
        unsigned long scales[2];
        for (int k = 0; k < 2; ++k) {
            scaled[k] = RandomInteger(rng, 40);
            const size_t digits = scaled[k].size() - (scaled[k][0] == '-');
            scales[k] = rng() % (std::min<size_t>(digits, 20) + 1);
            texts[k] = scaled[k];
            if (scales[k] > 0) texts[k].insert(texts[k].size() - scales[k], ".");
        }
        CDecimal x(texts[0].c_str()), y(texts[1].c_str());
        Mpz a(scaled[0]), b(scaled[1]), sum, difference, product;
        const unsigned long scale = std::max(scales[0], scales[1]);
        mpz_mul(product.v, a.v, b.v);
        mpz_ui_pow_ui(sum.v, 10, scale - scales[0]);
        mpz_mul(a.v, a.v, sum.v);
        mpz_ui_pow_ui(sum.v, 10, scale - scales[1]);
        mpz_mul(b.v, b.v, sum.v);
        mpz_add(sum.v, a.v, b.v);
        mpz_sub(difference.v, a.v, b.v);
        EXPECT_EQ(DecimalText(sum.v, scale) + " " + DecimalText(difference.v, scale) + " " +
                      DecimalText(product.v, scales[0] + scales[1]),
                  (x + y).ToString() + " " + (x - y).ToString() + " " + (x * y).ToString())
            << texts[0] << ", " << texts[1];
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
        std::string text = seeds[(i / 2) % 4];
        if (i % 2) {
            text.clear();
            for (size_t length = rng() % 24; text.size() < length;)
                text += alphabet[rng() % alphabet.size()];
        }
        // Mutations: a byte replaced, inserted or removed.
        for (int edits = static_cast<int>(rng() % 3); edits > 0 && !text.empty(); --edits) {
            const size_t at = rng() % text.size();
            const char c = static_cast<char>(rng() % 256);
            if (rng() % 3 == 0)
                text.erase(at, 1);
            else if (rng() % 2)
                text.insert(at, 1, c ? c : '0');
            else
                text[at] = c ? c : '1';
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
