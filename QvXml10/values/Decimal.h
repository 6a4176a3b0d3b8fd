#pragma once

#include <string>

#include "../foundation/QvExport.h"
#include "BigInteger.h"

namespace QvXmlLib10 {

// Exact decimal of the XSD decimal kind: an integer part plus a fraction, itself an
// integer over 10^scale. Both parts carry the sign of the value (1.05 is 1, 5, scale 2;
// -0.5 is -0, -5, scale 1). Parsing, multiplying and dividing keep at most
// m_maxDivider fraction digits, rounding to nearest with a tie toward zero.
//
// Rounding up does not carry out of the fraction: 12.96 brought to scale 1 holds 12,
// 10 and prints "12.10". Long-standing behaviour, kept for compatibility.
class QVXML_API CDecimal {
public:
    // The largest scale of a parsed, multiplied or divided value.
    static const int m_maxDivider = 30;

    CDecimal();
    CDecimal(int value);
    // The value printed with "%.13f", then parsed: at most 13 fraction digits. A NaN
    // or an infinity fails as bad text.
    CDecimal(double value);
    // See Parse; null is the empty text.
    CDecimal(const char* text);
    CDecimal(const CBigInteger& value);
    // The three parts as they are, unchecked; the scale must not be negative.
    CDecimal(const CBigInteger& integer, const CBigInteger& fraction, int scale);
    CDecimal(const CDecimal& other) = default;
    CDecimal(CDecimal&& other) noexcept = default;
    CDecimal& operator=(const CDecimal& other) = default;
    CDecimal& operator=(CDecimal&& other) noexcept = default;
    virtual ~CDecimal();

    // Digits, one ".", "e" or "E" and an exponent. "+" and "-" anywhere before the
    // point set the sign, the last one winning ("1-2" is -12); blanks, tabs and line
    // ends are skipped except at the end of an exponent. Empty text is zero.
    // Bad text throws CQvInvalidValueException "The string representing a Decimal,
    // contained an invalid char at position %d [%s]" (position from 0) and leaves the
    // value as it was. An exponent above one million fails at the digit that passes it.
    void Parse(const char* text);
    // Exact text: the integer alone when the fraction is zero, otherwise the fraction
    // padded with zeros to the scale.
    std::string ToString() const;
    // Rounded half away from zero to `digits` fraction digits (a negative count is 0).
    // The point is always there ("12." for 0 digits); a value that rounds to fewer
    // fraction digits prints fewer (1.995 gives "2.0" for 2 digits).
    std::string ToString(int digits) const;

    // CQvOverFlowException "The Decimal value if to large to fit into a Double" beyond
    // +-1.7E+308.
    double ToDouble() const;
    // Rounded to a whole number; CQvOverFlowException "The Decimal value if to large to
    // fit into a LONG" outside 32 bits, whatever long is.
    long ToLong() const;
    // The integer part after rounding to one fraction digit (12.96 gives 12);
    // CQvOverFlowException "The Decimal value if to large to fit into a LONGLONG".
    long long ToLongLong() const;
    CBigInteger ToBigInteger() const;

    // These leave this object as it was; the scale of a sum is not capped.
    CDecimal operator+(const CDecimal& other);
    CDecimal operator-(const CDecimal& other);
    CDecimal operator*(const CDecimal& other);
    // Exact to 32 places, then rounded to 30. Throws "ERROR: Overflow in operator/."
    // for a zero divisor.
    CDecimal operator/(const CDecimal& other);
    CDecimal& operator+=(const CDecimal& other);
    CDecimal& operator-=(const CDecimal& other);
    CDecimal& operator*=(const CDecimal& other);
    CDecimal& operator/=(const CDecimal& other);
    CDecimal& operator++();
    CDecimal& operator--();
    // Return the value one more or one less and leave this object unchanged.
    CDecimal operator++(int);
    CDecimal operator--(int);

    bool operator==(const CDecimal& other) const;
    bool operator!=(const CDecimal& other) const;
    bool operator<(const CDecimal& other) const;
    bool operator>(const CDecimal& other) const;
    bool operator<=(const CDecimal& other) const;
    bool operator>=(const CDecimal& other) const;

    // Flips the sign of both parts.
    void Negate();
    CDecimal GetNegative() const;
    // Raises the scale exactly, or lowers it with rounding (a tie toward zero). A
    // negative scale is taken as 0.
    void ChangeFractionalDivider(int scale);
    // Brings both to the larger scale and returns it.
    static int Normalize(CDecimal& a, CDecimal& b);
    // Drops trailing zeros of the fraction; the scale stays at least 1.
    void Rationalise();

private:
    friend class CBigInteger;

    // this + other, where other's sign is counted flipped when `subtract` is set.
    CDecimal Sum(const CDecimal& other, bool subtract) const;
    void CapScale();

    CBigInteger m_integer;
    CBigInteger m_fraction;
    int m_nFractionalDivider;
};

} // namespace QvXmlLib10
