#pragma once

#include <string>
#include <vector>

#include "../foundation/QvExport.h"

namespace QvXmlLib10 {

class CDecimal;

// Arbitrary-size integer of the XSD integer kind: a sign and decimal digits, one digit
// a byte, least significant first. A text that is not a plain integer is parsed as a
// CDecimal and rounded (to nearest, a tie toward zero).
//
// Zero may carry the sign -1 ("-0"). Such a value prints "0" and is == to zero, yet
// operator< calls it less than zero: signs decide before magnitudes.
class QVXML_API CBigInteger {
public:
    using Digits = std::vector<char>;

    // Built at library load, before any other static object of the library.
    static const CBigInteger MAX_LONG;     // 2147483647 (32-bit, whatever long is)
    static const CBigInteger MIN_LONG;     // -2147483648
    static const CBigInteger MAX_LONGLONG; // 9223372036854775807
    static const CBigInteger MIN_LONGLONG; // -9223372036854775808
    static const CBigInteger MAX_DOUBLE;   // 1.7E+308
    static const CBigInteger MIN_DOUBLE;   // -1.7E+308

    CBigInteger(int value);
    // Rounded with ceil(v - 0.5), so that a tie goes toward zero: 2.5 gives 2, -2.6
    // gives -3. A NaN or an infinity gives zero.
    CBigInteger(double value);
    // See Parse; null is the empty text.
    CBigInteger(const char* text);
    // The decimal rounded to a whole number.
    CBigInteger(const CDecimal& value);
    CBigInteger(const CBigInteger& other) = default;
    CBigInteger(CBigInteger&& other) noexcept = default;
    CBigInteger& operator=(const CBigInteger& other) = default;
    CBigInteger& operator=(CBigInteger&& other) noexcept = default;
    virtual ~CBigInteger();

    CBigInteger operator+(const CBigInteger& other) const;
    CBigInteger operator-(const CBigInteger& other) const;
    CBigInteger operator*(const CBigInteger& other) const;
    // Throws CQvInvalidValueException "ERROR: Overflow in operator/." for a zero divisor.
    // The quotient is truncated; its sign is -1 when the signs differ.
    CBigInteger operator/(const CBigInteger& other) const;
    // These three refuse a negative divisor (and a zero one) with their own message.
    // The remainder takes the sign of the dividend.
    CBigInteger operator%(const CBigInteger& other) const;
    CBigInteger& operator+=(const CBigInteger& other);
    CBigInteger& operator-=(const CBigInteger& other);
    CBigInteger& operator*=(const CBigInteger& other);
    CBigInteger& operator/=(const CBigInteger& other);
    CBigInteger& operator%=(const CBigInteger& other);
    // Negates this object itself and returns it.
    CBigInteger& operator-();

    bool operator<(const CBigInteger& other) const;
    bool operator>(const CBigInteger& other) const;
    bool operator<=(const CBigInteger& other) const;
    bool operator>=(const CBigInteger& other) const;
    bool operator==(const CBigInteger& other) const;
    bool operator!=(const CBigInteger& other) const;

    // Throws CQvInvalidValueException "ERROR: Value out of bound of int." outside 32 bits.
    operator int() const;

    void Abs();
    // Sign -1 becomes 1, anything else -1.
    void Negate();
    CBigInteger GetAbs() const;
    CBigInteger GetNegative() const;
    // The floor of the root by Newton's iteration. A negative value throws
    // "ERROR: Negative Number in function SquareRoot()."; zero throws the error of
    // operator/ (there is no shortcut for it).
    CBigInteger SquareRoot() const;
    // "-" when the sign is -1 and the value is not zero, then the digits.
    std::string ToString() const;
    // Only "-", "+", blanks, tabs, line ends and digits: blanks are trimmed at both ends,
    // a leading "-" makes the value negative, and the last run of digits is the
    // magnitude ("+12" is 12, "1-2" is 2, "12 34" is 34, "-" is a negative zero). Any
    // other character sends the whole text through CDecimal ("1.5" is 1, "1E3" is 1000),
    // whose failure is thrown as it is.
    void Parse(const char* text);
    static CBigInteger Pow10(unsigned int n);

    // Helpers on raw digit vectors (least significant first). An empty vector counts as zero.
    // -1, 0 or 1 by magnitude; both vectors clean.
    static int Compare(const Digits& a, const Digits& b);
    // The digit count; 1 for an empty vector.
    static int Position(const Digits& digits);
    // Removes high zero digits, keeping at least one digit.
    static void Clean(Digits& digits);
    // Multiplies by 10^n: n zeros go in at the low end. n of 0 or less does nothing.
    static void ShiftLeft(Digits& digits, int n);
    // The last run of digits of the text ("12a34" gives 34); no digit at the end leaves
    // the vector empty.
    static void Build(const std::string& text, Digits& digits);
    static void Build(unsigned int value, Digits& digits);
    static void BuildDWORDLONG(unsigned long long value, Digits& digits);
    // A non-negative double, rounded as the constructor tells; NaN and infinities
    // leave the vector empty.
    static void BuildDouble(double value, Digits& digits);
    static void Pow10(unsigned int n, Digits& digits);
    static void Add(const Digits& a, const Digits& b, Digits& r);
    // a must not be less than b.
    static void Subtract(const Digits& a, const Digits& b, Digits& r);
    static void Multiply(const Digits& a, char digit, Digits& r);
    static void Multiply(const Digits& a, const Digits& b, Digits& r);
    // Quotient and remainder; a zero b throws "ERROR: Overflow in operator/.".
    static void Divide(const Digits& a, const Digits& b, Digits& q, Digits& r);

private:
    friend class CDecimal;

    CBigInteger(int sign, Digits&& digits);
    bool IsZero() const;

    int m_nSign;
    Digits m_digits;
};

} // namespace QvXmlLib10
