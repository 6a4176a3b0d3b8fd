#pragma once

#include <string>

#include "../foundation/QvExport.h"

namespace QvXmlLib10 {

// An XSD duration: unnormalised counts of years, months, days, hours, minutes and
// seconds with a fraction, and one sign for the whole span. PT90M stays 90 minutes.
// The order between spans is the partial order of XSD, decided by adding both spans
// to four reference dates (see CompareTo).
class QVXML_API CDateTimeSpan {
public:
    CDateTimeSpan();
    CDateTimeSpan(unsigned long hours, unsigned long long minutes, unsigned long long seconds);
    CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                  unsigned long long minutes, unsigned long long seconds);
    CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                  unsigned long long minutes, unsigned long long seconds, unsigned short milliSeconds,
                  unsigned short microSeconds, unsigned short nanoSeconds);
    CDateTimeSpan(const CDateTimeSpan& other);
    CDateTimeSpan& operator=(const CDateTimeSpan& other);
    virtual ~CDateTimeSpan();

    // Each clears the span first, the sign included.
    void SetDateTimeSpan(unsigned long hours, unsigned long long minutes, unsigned long long seconds);
    void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                         unsigned long long minutes, unsigned long long seconds);
    void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                         unsigned long long minutes, unsigned long long seconds, unsigned short milliSeconds,
                         unsigned short microSeconds, unsigned short nanoSeconds);

    // Plain field access; nothing checks a range.
    unsigned short GetYears() const { return m_nYears; }
    void SetYears(unsigned short value) { m_nYears = value; }
    unsigned long GetMonths() const { return m_nMonths; }
    void SetMonths(unsigned long value) { m_nMonths = value; }
    unsigned long GetDays() const { return m_nDays; }
    void SetDays(unsigned long value) { m_nDays = value; }
    unsigned long GetHours() const { return m_nHours; }
    void SetHours(unsigned long value) { m_nHours = value; }
    unsigned long long GetMinutes() const { return m_nMinutes; }
    void SetMinutes(unsigned long long value) { m_nMinutes = value; }
    unsigned long long GetSeconds() const { return m_nSeconds; }
    void SetSeconds(unsigned long long value) { m_nSeconds = value; }
    unsigned short GetMilliSeconds() const { return m_nMilliSeconds; }
    void SetMilliSeconds(unsigned short value) { m_nMilliSeconds = value; }
    unsigned short GetMicroSeconds() const { return m_nMicroSeconds; }
    void SetMicroSeconds(unsigned short value) { m_nMicroSeconds = value; }
    unsigned short GetNanoSeconds() const { return m_nNanoSeconds; }
    void SetNanoSeconds(unsigned short value) { m_nNanoSeconds = value; }

    bool IsNegative() const { return m_bNegative; }
    void Negate() { m_bNegative = !m_bNegative; }
    // A copy with the sign set, whatever it was: a negative span stays negative.
    CDateTimeSpan GetAsNegative() const;
    void Clear();

    // Replaces the value by the text [-]P[nY][nM][nD][T[nH][nM][n[.fff]S]]. On failure
    // (CQvInvalidValueException) the fields read so far stay.
    void ParseXSDDuration(const char* text);
    // "P" or "-P", then the non-zero fields; a zero span is "P".
    std::string ToString() const;

    // 0 equal, 1 less, 2 greater, 3 indeterminate.
    int CompareTo(const CDateTimeSpan& other) const;
    bool operator==(const CDateTimeSpan& other) const;
    bool operator!=(const CDateTimeSpan& other) const;
    bool operator<(const CDateTimeSpan& other) const;
    bool operator>(const CDateTimeSpan& other) const;

protected:
    unsigned short m_nYears;
    unsigned long m_nMonths;
    unsigned long m_nDays;
    unsigned long m_nHours;
    unsigned long long m_nMinutes;
    unsigned long long m_nSeconds;
    unsigned short m_nMilliSeconds;
    unsigned short m_nMicroSeconds;
    unsigned short m_nNanoSeconds;
    bool m_bNegative;
};

} // namespace QvXmlLib10
