#include "values/BigInteger.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "foundation/QvException.h"
#include "values/Decimal.h"

namespace QvXmlLib10 {

namespace {

using Digits = CBigInteger::Digits;

[[noreturn]] void Fail(const char* message) { throw CQvInvalidValueException(message); }

// An empty vector stands for zero.
bool DigitsAreZero(const Digits& d) { return d.empty() || (d.size() == 1 && d[0] == 0); }

// 10^k for some k: one high digit 1 over zeros only.
bool IsPowerOfTen(const Digits& d) {
    if (d.empty() || d.back() != 1) return false;
    return std::all_of(d.begin(), d.end() - 1, [](char c) { return c == 0; });
}

// r -= b in place, with r not less than b.
void SubtractInPlace(Digits& r, const Digits& b) {
    int borrow = 0;
    size_t i = 0;
    for (; i < b.size() || (borrow && i < r.size()); ++i) {
        int d = r[i] - borrow - (i < b.size() ? b[i] : 0);
        borrow = d < 0;
        r[i] = static_cast<char>(d + (borrow ? 10 : 0));
    }
    CBigInteger::Clean(r);
}

} // namespace

// The constants parse through CDecimal, which needs no static object of its own. They
// are built ahead of the library's other static objects, so that those may use them.
#if defined(__GNUC__)
#define QVXML_EARLY_INIT __attribute__((init_priority(200)))
#else
#define QVXML_EARLY_INIT
#endif
const CBigInteger CBigInteger::MAX_LONG QVXML_EARLY_INIT(CDecimal("2147483647"));
const CBigInteger CBigInteger::MIN_LONG QVXML_EARLY_INIT(CDecimal("-2147483648"));
const CBigInteger CBigInteger::MAX_LONGLONG QVXML_EARLY_INIT(CDecimal("9223372036854775807"));
const CBigInteger CBigInteger::MIN_LONGLONG QVXML_EARLY_INIT(CDecimal("-9223372036854775808"));
const CBigInteger CBigInteger::MAX_DOUBLE QVXML_EARLY_INIT(CDecimal("1.7E+308"));
const CBigInteger CBigInteger::MIN_DOUBLE QVXML_EARLY_INIT(CDecimal("-1.7E+308"));
#undef QVXML_EARLY_INIT

CBigInteger::CBigInteger(int value) : m_nSign(value < 0 ? -1 : 1) {
    const unsigned int magnitude = value < 0 ? 0u - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
    Build(magnitude, m_digits);
}

CBigInteger::CBigInteger(double value) : m_nSign(value < 0 ? -1 : 1) {
    BuildDouble(std::fabs(value), m_digits);
    if (m_digits.empty()) m_digits.push_back(0);
}

CBigInteger::CBigInteger(const char* text) : m_nSign(1), m_digits(1, 0) { Parse(text); }

CBigInteger::CBigInteger(const CDecimal& value) {
    CDecimal whole(value);
    whole.ChangeFractionalDivider(0);
    m_nSign = whole.m_integer.m_nSign;
    m_digits = std::move(whole.m_integer.m_digits);
}

CBigInteger::CBigInteger(int sign, Digits&& digits) : m_nSign(sign), m_digits(std::move(digits)) {}

CBigInteger::~CBigInteger() = default;

bool CBigInteger::IsZero() const { return DigitsAreZero(m_digits); }

void CBigInteger::Parse(const char* text) {
    if (!text) text = "";
    const char* end = text;
    bool plain = true;
    for (; *end; ++end) {
        const char c = *end;
        if (!(c >= '0' && c <= '9') && c != '-' && c != '+' && c != ' ' && c != '\n' && c != '\r' && c != '\t')
            plain = false;
    }
    if (!plain) {
        *this = CBigInteger(CDecimal(text));
        return;
    }
    // Blanks only are trimmed; the last run of digits is the magnitude.
    const char* begin = text;
    while (begin < end && *begin == ' ')
        ++begin;
    while (end > begin && end[-1] == ' ')
        --end;
    int sign = 1;
    if (begin < end && *begin == '-') {
        sign = -1;
        ++begin;
    }
    Digits digits;
    const char* p = end;
    while (p > begin && p[-1] >= '0' && p[-1] <= '9')
        --p;
    digits.reserve(static_cast<size_t>(end - p));
    for (const char* q = end; q > p;)
        digits.push_back(static_cast<char>(*--q - '0'));
    Clean(digits);
    if (digits.empty()) digits.push_back(0);
    m_nSign = sign;
    m_digits = std::move(digits);
}

std::string CBigInteger::ToString() const {
    if (IsZero()) return "0";
    std::string text;
    text.reserve(m_digits.size() + 1);
    if (m_nSign == -1) text.push_back('-');
    for (size_t i = m_digits.size(); i-- > 0;)
        text.push_back(static_cast<char>('0' + m_digits[i]));
    return text;
}

CBigInteger CBigInteger::Pow10(unsigned int n) {
    Digits digits;
    Pow10(n, digits);
    return CBigInteger(1, std::move(digits));
}

CBigInteger CBigInteger::operator+(const CBigInteger& other) const {
    CBigInteger result(*this);
    result += other;
    return result;
}

CBigInteger CBigInteger::operator-(const CBigInteger& other) const {
    CBigInteger result(*this);
    result -= other;
    return result;
}

// this += (sign * |other|): equal signs add magnitudes under this sign; otherwise the
// larger magnitude wins, and equal magnitudes give a plain zero.
static void AddMagnitudes(int& sign, Digits& digits, int otherSign, const Digits& other) {
    Digits result;
    if (sign == otherSign) {
        CBigInteger::Add(digits, other, result);
    } else {
        const int order = CBigInteger::Compare(digits, other);
        if (order == 0) {
            sign = 1;
            result.assign(1, 0);
        } else if (order > 0) {
            CBigInteger::Subtract(digits, other, result);
        } else {
            CBigInteger::Subtract(other, digits, result);
            sign = otherSign;
        }
    }
    digits = std::move(result);
}

CBigInteger& CBigInteger::operator+=(const CBigInteger& other) {
    AddMagnitudes(m_nSign, m_digits, other.m_nSign, other.m_digits);
    return *this;
}

CBigInteger& CBigInteger::operator-=(const CBigInteger& other) {
    AddMagnitudes(m_nSign, m_digits, other.m_nSign == -1 ? 1 : -1, other.m_digits);
    return *this;
}

CBigInteger CBigInteger::operator*(const CBigInteger& other) const {
    Digits product;
    Multiply(m_digits, other.m_digits, product);
    return CBigInteger(m_nSign * other.m_nSign, std::move(product));
}

CBigInteger& CBigInteger::operator*=(const CBigInteger& other) {
    Digits product;
    Multiply(m_digits, other.m_digits, product);
    m_nSign *= other.m_nSign;
    m_digits = std::move(product);
    return *this;
}

CBigInteger CBigInteger::operator/(const CBigInteger& other) const {
    if (other == CBigInteger(0)) Fail("ERROR: Overflow in operator/.");
    if (IsZero()) return *this;
    Digits q, r;
    Divide(m_digits, other.m_digits, q, r);
    return CBigInteger(m_nSign == other.m_nSign ? 1 : -1, std::move(q));
}

// The assigning division and both remainders refuse a negative divisor. A zero divisor
// is refused with the same message, since the division could not end.
CBigInteger& CBigInteger::operator/=(const CBigInteger& other) {
    if (other < CBigInteger(0) || other.IsZero()) Fail("ERROR: Overflow in operator /=.");
    if (IsZero()) return *this;
    Digits q, r;
    Divide(m_digits, other.m_digits, q, r);
    m_nSign = m_nSign == other.m_nSign ? 1 : -1;
    m_digits = std::move(q);
    return *this;
}

CBigInteger CBigInteger::operator%(const CBigInteger& other) const {
    if (other < CBigInteger(0) || other.IsZero()) Fail("ERROR: Overflow in operator%.");
    if (IsZero()) return *this;
    Digits q, r;
    Divide(m_digits, other.m_digits, q, r);
    return CBigInteger(m_nSign, std::move(r));
}

CBigInteger& CBigInteger::operator%=(const CBigInteger& other) {
    if (other < CBigInteger(0) || other.IsZero()) Fail("ERROR: Overflow in operator%=.");
    if (IsZero()) return *this;
    Digits q, r;
    Divide(m_digits, other.m_digits, q, r);
    m_digits = std::move(r);
    return *this;
}

CBigInteger& CBigInteger::operator-() {
    Negate();
    return *this;
}

bool CBigInteger::operator<(const CBigInteger& other) const {
    if (m_nSign == -1 && other.m_nSign != -1) return true;
    if (m_nSign == -1) return Compare(other.m_digits, m_digits) == -1;
    if (other.m_nSign == -1) return false;
    return Compare(m_digits, other.m_digits) == -1;
}

bool CBigInteger::operator>(const CBigInteger& other) const { return other < *this; }
bool CBigInteger::operator<=(const CBigInteger& other) const { return !(*this > other); }
bool CBigInteger::operator>=(const CBigInteger& other) const { return !(*this < other); }

bool CBigInteger::operator==(const CBigInteger& other) const {
    if (m_digits != other.m_digits) return false;
    if (m_digits.size() == 1 && m_digits[0] == 0) return true;
    return m_nSign == other.m_nSign;
}

bool CBigInteger::operator!=(const CBigInteger& other) const { return !(*this == other); }

CBigInteger::operator int() const {
    if (*this < CBigInteger(-2147483647 - 1) || *this > CBigInteger(2147483647))
        Fail("ERROR: Value out of bound of int.");
    int64_t value = 0;
    for (size_t i = m_digits.size(); i-- > 0;)
        value = value * 10 + m_digits[i];
    return static_cast<int>(m_nSign == -1 ? -value : value);
}

void CBigInteger::Abs() { m_nSign = 1; }

void CBigInteger::Negate() { m_nSign = m_nSign == -1 ? 1 : -1; }

CBigInteger CBigInteger::GetAbs() const {
    CBigInteger copy(*this);
    copy.Abs();
    return copy;
}

CBigInteger CBigInteger::GetNegative() const {
    CBigInteger copy(*this);
    copy.Negate();
    return copy;
}

CBigInteger CBigInteger::SquareRoot() const {
    const CBigInteger zero(0);
    if (*this < zero) Fail("ERROR: Negative Number in function SquareRoot().");
    const CBigInteger ten(10), hundred(100), two(2);
    // A start above the root: 10 times 10 for every two digits.
    CBigInteger x(ten);
    CBigInteger t(*this);
    for (;;) {
        t /= hundred;
        if (!(t > zero)) break;
        x *= ten;
    }
    CBigInteger y(x);
    do {
        y = x;
        x = (x + *this / x) / two;
    } while (x < y);
    return y;
}

// ---- digit vectors ----

int CBigInteger::Compare(const Digits& a, const Digits& b) {
    const size_t la = std::max<size_t>(a.size(), 1), lb = std::max<size_t>(b.size(), 1);
    if (la != lb) return la < lb ? -1 : 1;
    for (size_t i = la; i-- > 0;) {
        const char da = i < a.size() ? a[i] : 0, db = i < b.size() ? b[i] : 0;
        if (da != db) return da < db ? -1 : 1;
    }
    return 0;
}

int CBigInteger::Position(const Digits& digits) { return digits.empty() ? 1 : static_cast<int>(digits.size()); }

void CBigInteger::Clean(Digits& digits) {
    size_t size = digits.size();
    while (size > 1 && digits[size - 1] == 0)
        --size;
    digits.resize(size);
}

void CBigInteger::ShiftLeft(Digits& digits, int n) {
    if (n > 0) digits.insert(digits.begin(), static_cast<size_t>(n), 0);
}

void CBigInteger::Build(const std::string& text, Digits& digits) {
    digits.clear();
    for (size_t i = text.size(); i-- > 0 && text[i] >= '0' && text[i] <= '9';)
        digits.push_back(static_cast<char>(text[i] - '0'));
    Clean(digits);
}

void CBigInteger::Build(unsigned int value, Digits& digits) { BuildDWORDLONG(value, digits); }

void CBigInteger::BuildDWORDLONG(unsigned long long value, Digits& digits) {
    digits.clear();
    do {
        digits.push_back(static_cast<char>(value % 10));
        value /= 10;
    } while (value != 0);
}

void CBigInteger::BuildDouble(double value, Digits& digits) {
    digits.clear();
    if (!std::isfinite(value)) return;
    // ceil(v - 0.5): a tie goes toward zero. Large values keep the digits that this
    // double arithmetic gives.
    double x = std::ceil(value - 0.5);
    if (x == 0) {
        digits.push_back(0);
        return;
    }
    while (x > 0) {
        digits.push_back(static_cast<char>(std::fmod(x, 10)));
        double whole;
        std::modf(x / 10, &whole);
        x = whole;
    }
}

void CBigInteger::Pow10(unsigned int n, Digits& digits) {
    digits.assign(static_cast<size_t>(n) + 1, 0);
    digits[n] = 1;
}

void CBigInteger::Add(const Digits& a, const Digits& b, Digits& r) {
    const Digits& longer = a.size() >= b.size() ? a : b;
    const Digits& shorter = a.size() >= b.size() ? b : a;
    Digits sum;
    sum.reserve(longer.size() + 1);
    int carry = 0;
    for (size_t i = 0; i < longer.size(); ++i) {
        const int d = longer[i] + (i < shorter.size() ? shorter[i] : 0) + carry;
        carry = d >= 10;
        sum.push_back(static_cast<char>(carry ? d - 10 : d));
    }
    if (carry) sum.push_back(1);
    if (sum.empty()) sum.push_back(0);
    r = std::move(sum);
}

void CBigInteger::Subtract(const Digits& a, const Digits& b, Digits& r) {
    Digits difference(a);
    if (difference.empty()) difference.push_back(0);
    SubtractInPlace(difference, b);
    r = std::move(difference);
}

void CBigInteger::Multiply(const Digits& a, char digit, Digits& r) {
    if (digit == 0 || DigitsAreZero(a)) {
        r.assign(1, 0);
        return;
    }
    Digits product;
    product.reserve(a.size() + 1);
    int carry = 0;
    for (const char d : a) {
        const int v = d * digit + carry;
        product.push_back(static_cast<char>(v % 10));
        carry = v / 10;
    }
    if (carry) product.push_back(static_cast<char>(carry));
    r = std::move(product);
}

void CBigInteger::Multiply(const Digits& a, const Digits& b, Digits& r) {
    if (DigitsAreZero(a) || DigitsAreZero(b)) {
        r.assign(1, 0);
        return;
    }
    // Column sums first, carries once at the end; rows of zero digits cost nothing,
    // so that a power of ten is a shift.
    std::vector<uint64_t> columns(a.size() + b.size(), 0);
    for (size_t j = 0; j < b.size(); ++j) {
        const uint64_t d = static_cast<uint64_t>(b[j]);
        if (d == 0) continue;
        for (size_t i = 0; i < a.size(); ++i)
            columns[i + j] += d * static_cast<uint64_t>(a[i]);
    }
    Digits product(columns.size());
    uint64_t carry = 0;
    for (size_t i = 0; i < columns.size(); ++i) {
        const uint64_t v = columns[i] + carry;
        product[i] = static_cast<char>(v % 10);
        carry = v / 10;
    }
    while (carry) {
        product.push_back(static_cast<char>(carry % 10));
        carry /= 10;
    }
    Clean(product);
    r = std::move(product);
}

void CBigInteger::Divide(const Digits& a, const Digits& b, Digits& q, Digits& r) {
    if (DigitsAreZero(b)) Fail("ERROR: Overflow in operator/.");
    if (Compare(a, b) < 0) {
        r = a.empty() ? Digits(1, 0) : a;
        q.assign(1, 0);
        return;
    }
    if (IsPowerOfTen(b)) {
        const size_t k = b.size() - 1;
        Digits quotient(a.begin() + static_cast<std::ptrdiff_t>(k), a.end());
        Digits remainder(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(k));
        if (remainder.empty()) remainder.push_back(0);
        Clean(remainder);
        q = std::move(quotient);
        r = std::move(remainder);
        return;
    }
    // Long division, one quotient digit per digit of a, from the top.
    Digits quotient(a.size(), 0);
    Digits remainder;
    remainder.reserve(b.size() + 1);
    for (size_t i = a.size(); i-- > 0;) {
        remainder.insert(remainder.begin(), a[i]);
        Clean(remainder);
        char count = 0;
        while (Compare(remainder, b) >= 0) {
            SubtractInPlace(remainder, b);
            ++count;
        }
        quotient[i] = count;
    }
    Clean(quotient);
    q = std::move(quotient);
    r = std::move(remainder);
}

} // namespace QvXmlLib10
