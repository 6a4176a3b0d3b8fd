#include "values/Decimal.h"

#include <cstdio>
#include <cstdlib>
#include <algorithm>

#include "foundation/QvException.h"
#include "internal/Constants.h"
#include "validation/WhitespaceUtils.h"

namespace QvXmlLib10 {

namespace {

using Digits = CBigInteger::Digits;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

[[noreturn]] void ThrowInvalidChar(size_t position, const char* text) {
    throw CQvInvalidValueException(
        FormatString("The string representing a Decimal, contained an invalid char at position %d [%s]",
                     static_cast<int>(position), text));
}

// The digits of text[begin, end) in the order they stand, into `digits` least
// significant first, cleaned; no digit gives zero.
void CollectDigits(const char* text, size_t begin, size_t end, size_t count, Digits& digits) {
    digits.resize(count);
    size_t k = count;
    for (size_t i = begin; i < end; ++i)
        if (IsDigit(text[i])) digits[--k] = static_cast<char>(text[i] - '0');
    CBigInteger::Clean(digits);
    if (digits.empty()) digits.push_back(0);
}

} // namespace

const int CDecimal::m_maxDivider;

CDecimal::CDecimal() : m_integer(0), m_fraction(0), m_nFractionalDivider(1) {}

CDecimal::CDecimal(int value) : m_integer(value), m_fraction(0), m_nFractionalDivider(1) {}

CDecimal::CDecimal(double value) : CDecimal() {
    char buffer[1024];
    std::snprintf(buffer, sizeof buffer, "%.13f\n", value);
    Parse(buffer);
}

CDecimal::CDecimal(const char* text) : CDecimal() { Parse(text); }

CDecimal::CDecimal(const CBigInteger& value) : m_integer(value), m_fraction(0), m_nFractionalDivider(1) {}

CDecimal::CDecimal(const CBigInteger& integer, const CBigInteger& fraction, int scale)
    : m_integer(integer), m_fraction(fraction), m_nFractionalDivider(scale) {}

CDecimal::~CDecimal() = default;

void CDecimal::Parse(const char* text) {
    if (!text) text = "";
    // First pass: check every character and find the three phases, so that the digit
    // vectors are allocated once at their final size.
    bool negative = false;
    size_t intCount = 0, fracCount = 0;
    size_t intEnd = 0, fracBegin = 0, fracEnd = 0;
    bool hasFraction = false;
    bool exponentNegative = false, exponentDigits = false;
    long exponent = 0;
    size_t i = 0;
    for (;; ++i) {
        const char c = text[i];
        if (c == '\0' || c == '.' || c == 'e' || c == 'E') break;
        if (IsDigit(c))
            ++intCount;
        else if (c == '-' || c == '+')
            negative = c == '-';
        else if (!CWhitespaceUtils::IsWhiteSpace(c))
            ThrowInvalidChar(i, text);
    }
    intEnd = fracBegin = fracEnd = i;
    if (text[i] == '.') {
        hasFraction = true;
        fracBegin = ++i;
        for (;; ++i) {
            const char c = text[i];
            if (c == '\0' || c == 'e' || c == 'E') break;
            if (IsDigit(c))
                ++fracCount;
            else if (!CWhitespaceUtils::IsWhiteSpace(c))
                ThrowInvalidChar(i, text);
        }
        fracEnd = i;
    }
    if (text[i] == 'e' || text[i] == 'E') {
        // Blanks and signs first, the last sign counting; then digits to the end.
        for (++i; text[i] == '+' || text[i] == '-' || CWhitespaceUtils::IsWhiteSpace(text[i]); ++i)
            if (!CWhitespaceUtils::IsWhiteSpace(text[i])) exponentNegative = text[i] == '-';
        for (; text[i] != '\0'; ++i) {
            if (!IsDigit(text[i])) ThrowInvalidChar(i, text);
            exponentDigits = true;
            exponent = exponent * 10 + (text[i] - '0');
            if (exponent > Internal::kMaxDecimalExponent) ThrowInvalidChar(i, text);
        }
    }

    Digits intDigits, fracDigits;
    CollectDigits(text, 0, intEnd, intCount, intDigits);
    CollectDigits(text, fracBegin, fracEnd, hasFraction ? fracCount : 0, fracDigits);
    CDecimal value(CBigInteger(1, std::move(intDigits)), CBigInteger(1, std::move(fracDigits)),
                   fracCount > 0 ? static_cast<int>(fracCount) : 1);
    if (negative) value.Negate();
    if (exponentDigits) {
        const CDecimal power(CBigInteger::Pow10(static_cast<unsigned int>(exponent)));
        value = exponentNegative ? value / power : value * power;
    }
    value.Rationalise();
    value.CapScale();
    *this = std::move(value);
}

namespace {
// Longest text of a value with a fraction: a buffer of 1,024 bytes with its terminator.
constexpr size_t kMaxFractionTextLength = 1023;
}  // namespace

std::string CDecimal::ToString() const {
    if (m_fraction.IsZero()) return m_integer.ToString();
    const Digits& integer = m_integer.m_digits;
    const Digits& fraction = m_fraction.m_digits;
    const size_t scale = m_nFractionalDivider > 0 ? static_cast<size_t>(m_nFractionalDivider) : 0;
    const size_t pad = scale > fraction.size() ? scale - fraction.size() : 0;
    std::string text;
    text.reserve(integer.size() + pad + fraction.size() + 2);
    if (m_integer.m_nSign == -1) text.push_back('-');
    if (integer.empty()) text.push_back('0');
    for (size_t i = integer.size(); i-- > 0;)
        text.push_back(static_cast<char>('0' + integer[i]));
    text.push_back('.');
    text.append(pad, '0');
    for (size_t i = fraction.size(); i-- > 0;)
        text.push_back(static_cast<char>('0' + fraction[i]));
    // The text of a value with a fraction is printed into 1,024 bytes and cut there;
    // callers rely on that bound.
    if (text.size() > kMaxFractionTextLength) text.resize(kMaxFractionTextLength);
    return text;
}

std::string CDecimal::ToString(int digits) const {
    if (digits < 0) digits = 0;
    // Half a unit in the last place, with the sign of the integer part, added.
    std::string half = m_integer.m_nSign == -1 ? "-0." : "0.";
    half.append(static_cast<size_t>(digits), '0');
    half.push_back('5');
    CDecimal t(half.c_str());
    t += *this;
    std::string fraction = t.m_fraction.GetAbs().ToString();
    if (t.m_nFractionalDivider > 0 && fraction.size() < static_cast<size_t>(t.m_nFractionalDivider))
        fraction.insert(0, static_cast<size_t>(t.m_nFractionalDivider) - fraction.size(), '0');
    fraction.resize(std::min(fraction.size(), static_cast<size_t>(digits)));
    std::string text = t.m_integer.m_nSign == -1 ? "-" : "";
    text += t.m_integer.GetAbs().ToString();
    text += '.';
    text += fraction;
    return text;
}

double CDecimal::ToDouble() const {
    if (m_integer > CBigInteger::MAX_DOUBLE || m_integer < CBigInteger::MIN_DOUBLE)
        throw CQvOverFlowException("The Decimal value if to large to fit into a Double");
    return std::strtod(ToString().c_str(), nullptr);
}

long CDecimal::ToLong() const {
    CDecimal whole(*this);
    whole.ChangeFractionalDivider(0);
    if (whole.m_integer > CBigInteger::MAX_LONG || whole.m_integer < CBigInteger::MIN_LONG)
        throw CQvOverFlowException("The Decimal value if to large to fit into a LONG");
    return std::atoi(whole.ToString().c_str());
}

long long CDecimal::ToLongLong() const {
    CDecimal rounded(*this);
    rounded.ChangeFractionalDivider(1);
    if (rounded.m_integer > CBigInteger::MAX_LONGLONG || rounded.m_integer < CBigInteger::MIN_LONGLONG)
        throw CQvOverFlowException("The Decimal value if to large to fit into a LONGLONG");
    return std::strtoll(rounded.ToString().c_str(), nullptr, 10);
}

CBigInteger CDecimal::ToBigInteger() const {
    CDecimal whole(*this);
    whole.ChangeFractionalDivider(0);
    return whole.m_integer;
}

CDecimal CDecimal::Sum(const CDecimal& other, bool subtract) const {
    CDecimal a(*this), b(other);
    if (subtract) b.Negate();
    const int scale = Normalize(a, b);
    const CBigInteger p = CBigInteger::Pow10(static_cast<unsigned int>(scale));
    const CBigInteger minusP = p.GetNegative();
    CBigInteger f = a.m_fraction + b.m_fraction;
    CBigInteger i = a.m_integer + b.m_integer;
    const CBigInteger one(1);
    while (!(f < p)) {
        f -= p;
        i += one;
    }
    while (!(f > minusP)) {
        f += p;
        i -= one;
    }
    const CBigInteger zero(0);
    if (i > zero && f < zero) {
        f += p;
        i -= one;
    } else if (i < zero && f > zero) {
        f -= p;
        i += one;
    }
    if (i == zero) i.m_nSign = f.m_nSign;
    CDecimal result(i, f, scale);
    result.Rationalise();
    return result;
}

CDecimal CDecimal::operator+(const CDecimal& other) { return Sum(other, false); }

CDecimal CDecimal::operator-(const CDecimal& other) { return Sum(other, true); }

CDecimal CDecimal::operator*(const CDecimal& other) {
    CDecimal a(*this), b(other);
    const int scale = Normalize(a, b);
    const CBigInteger p = CBigInteger::Pow10(static_cast<unsigned int>(scale));
    const CBigInteger p2 = CBigInteger::Pow10(static_cast<unsigned int>(2 * scale));
    const CBigInteger s = (a.m_integer * b.m_integer) * p2 + (a.m_integer * b.m_fraction) * p +
                          (a.m_fraction * b.m_integer) * p + a.m_fraction * b.m_fraction;
    CDecimal result(s / p2, s % p2, 2 * scale);
    result.Rationalise();
    result.CapScale();
    return result;
}

CDecimal CDecimal::operator/(const CDecimal& other) {
    CDecimal a(*this), b(other);
    const int scale = Normalize(a, b);
    const CBigInteger p = CBigInteger::Pow10(static_cast<unsigned int>(scale));
    // Two places beyond the cap, so that the rounding to the cap sees them.
    const CBigInteger m = CBigInteger::Pow10(static_cast<unsigned int>(m_maxDivider + 2));
    const CBigInteger n = (a.m_integer * p + a.m_fraction) * m;
    const CBigInteger d = b.m_integer * p + b.m_fraction;
    const CBigInteger q = n / d;
    CDecimal result(q / m, q % m, m_maxDivider + 2);
    result.Rationalise();
    result.CapScale();
    return result;
}

CDecimal& CDecimal::operator+=(const CDecimal& other) { return *this = Sum(other, false); }
CDecimal& CDecimal::operator-=(const CDecimal& other) { return *this = Sum(other, true); }
CDecimal& CDecimal::operator*=(const CDecimal& other) { return *this = *this * other; }
CDecimal& CDecimal::operator/=(const CDecimal& other) { return *this = *this / other; }
CDecimal& CDecimal::operator++() { return *this = Sum(CDecimal(1), false); }
CDecimal& CDecimal::operator--() { return *this = Sum(CDecimal(1), true); }
CDecimal CDecimal::operator++(int) { return Sum(CDecimal(1), false); }
CDecimal CDecimal::operator--(int) { return Sum(CDecimal(1), true); }

bool CDecimal::operator==(const CDecimal& other) const {
    CDecimal a(*this), b(other);
    Normalize(a, b);
    return a.m_integer == b.m_integer && a.m_fraction == b.m_fraction;
}

bool CDecimal::operator!=(const CDecimal& other) const { return !(*this == other); }

bool CDecimal::operator<(const CDecimal& other) const {
    CDecimal a(*this), b(other);
    Normalize(a, b);
    if (a.m_integer == b.m_integer) return a.m_fraction < b.m_fraction;
    return a.m_integer < b.m_integer;
}

bool CDecimal::operator>(const CDecimal& other) const {
    CDecimal a(*this), b(other);
    Normalize(a, b);
    if (a.m_integer == b.m_integer) return a.m_fraction > b.m_fraction;
    return a.m_integer > b.m_integer;
}

bool CDecimal::operator<=(const CDecimal& other) const {
    CDecimal a(*this), b(other);
    Normalize(a, b);
    if (a.m_integer == b.m_integer) return a.m_fraction <= b.m_fraction;
    return a.m_integer < b.m_integer;
}

bool CDecimal::operator>=(const CDecimal& other) const {
    CDecimal a(*this), b(other);
    Normalize(a, b);
    if (a.m_integer == b.m_integer) return a.m_fraction >= b.m_fraction;
    return a.m_integer > b.m_integer;
}

void CDecimal::Negate() {
    m_integer.Negate();
    m_fraction.Negate();
}

CDecimal CDecimal::GetNegative() const {
    CDecimal copy(*this);
    copy.Negate();
    return copy;
}

void CDecimal::ChangeFractionalDivider(int scale) {
    if (scale < 0) scale = 0;
    if (m_nFractionalDivider <= scale) {
        m_fraction *= CBigInteger::Pow10(static_cast<unsigned int>(scale - m_nFractionalDivider));
        m_nFractionalDivider = scale;
        return;
    }
    const CBigInteger p = CBigInteger::Pow10(static_cast<unsigned int>(m_nFractionalDivider - scale));
    const CBigInteger remainder = m_fraction % p;
    m_fraction = m_fraction / p;
    m_nFractionalDivider = scale;
    // To nearest; exactly half is dropped, so that a tie goes toward zero.
    int carry = 0;
    if (remainder > p / CBigInteger(2))
        carry = 1;
    else if (remainder < p / CBigInteger(-2))
        carry = -1;
    if (carry == 0) return;
    if (scale == 0) {
        m_integer += CBigInteger(carry);
        return;
    }
    // No carry out of the fraction: a fraction rounded up to 10^scale stays so.
    m_fraction += CBigInteger(carry);
    const CBigInteger big = CBigInteger::Pow10(static_cast<unsigned int>(scale));
    const CBigInteger zero(0), one(1);
    if (m_integer > zero && m_fraction < zero) {
        m_fraction += big;
        m_integer -= one;
    } else if (m_integer < zero && m_fraction > zero) {
        m_fraction -= big;
        m_integer += one;
    }
    if (m_integer == zero) m_integer.m_nSign = m_fraction.m_nSign;
}

int CDecimal::Normalize(CDecimal& a, CDecimal& b) {
    if (a.m_nFractionalDivider < b.m_nFractionalDivider)
        a.ChangeFractionalDivider(b.m_nFractionalDivider);
    else if (b.m_nFractionalDivider < a.m_nFractionalDivider)
        b.ChangeFractionalDivider(a.m_nFractionalDivider);
    return a.m_nFractionalDivider;
}

void CDecimal::Rationalise() {
    if (m_nFractionalDivider <= 1) return;
    // The fraction's digits, padded on the left with zeros to the scale, are looked at
    // from position scale - 1 down to position 1; each "0" there drops a low digit.
    Digits& digits = m_fraction.m_digits;
    const size_t scale = static_cast<size_t>(m_nFractionalDivider);
    const size_t length = digits.empty() ? 1 : digits.size();
    const size_t pad = scale > length ? scale - length : 0;
    size_t drop = 0;
    for (size_t i = scale - 1; i >= 1; --i) {
        const char c = i < pad || digits.empty() ? 0 : digits[length - 1 - (i - pad)];
        if (c != 0) break;
        ++drop;
    }
    if (drop == 0) return;
    if (!m_fraction.IsZero()) {
        digits.erase(digits.begin(), digits.begin() + static_cast<std::ptrdiff_t>(std::min(drop, digits.size())));
        if (digits.empty()) digits.push_back(0);
    }
    m_nFractionalDivider -= static_cast<int>(drop);
}

void CDecimal::CapScale() {
    if (m_nFractionalDivider > m_maxDivider) ChangeFractionalDivider(m_maxDivider);
}

} // namespace QvXmlLib10
