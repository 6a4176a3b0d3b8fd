#pragma once

#include <string>

#include "../foundation/QvExport.h"
#include "DateTimeSpan.h"

namespace QvXmlLib10 {

inline constexpr short MIN_YEAR = -9999;
inline constexpr short MAX_YEAR = 9999;

// Days of each month, February at 29; the last entry is never looked up.
inline constexpr int g_monthMax[13] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 30};
// Days before each month in a common year, and the days of the year behind them.
inline constexpr int g_monthDayInYear[13] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

// One class for the eight XSD date and time types. The type says which fields are in
// use; the parsers take the type from the shape of the text, and Validate enforces the
// fields and ranges of the type. A zone is either absent, "Z", or a numeric offset.
class QVXML_API CDateTime {
public:
    enum DTType : int {
        DTType_yearZero = 0,
        DTType_dateTime = 1,
        DTType_date = 2,
        DTType_gYearMonth = 3,
        DTType_gYear = 4,
        DTType_time = 5,
        DTType_gDay = 6,
        DTType_gMonth = 7,
        DTType_gMonthDay = 8
    };

    CDateTime();
    CDateTime(DTType type);
    // The four constructors from fields or a time_t leave an empty value of type 0
    // behind when the fields are invalid, instead of throwing.
    CDateTime(short year, unsigned char month, unsigned char day);
    CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
              unsigned char second);
    CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
              unsigned char second, unsigned short milliSecond, unsigned short microSecond, unsigned short nanoSecond);
    CDateTime(const long& time);
    // Parses a dateTime text; throws CQvInvalidValueException.
    CDateTime(const char* text);
    CDateTime(const CDateTime& other);
    CDateTime& operator=(const CDateTime& other);
    virtual ~CDateTime();

    // From a time_t in UTC, into the dateTime setter, without zone.
    CDateTime& operator=(const long& time);

    // Text. The Parse functions clear, read and validate; the Set functions only read.
    void ParseXSDDateTime(const char* text);
    void ParseXSDDate(const char* text);
    void ParseXSDTime(const char* text);
    void SetXSDDate(const char* text);
    void SetXSDTime(const char* text);
    void SetZone(const char* text);
    // "s" is the XSD form; null, "" and "G" give ""; any other format gives
    // "Unknown Format: " and the format.
    std::string ToString(const char* format) const;
    std::string ToString() const;
    static std::string GetTypeAsString(DTType type);
    std::string GetTypeAsString() const;
    DTType GetType() const { return m_eType; }

    // Whole values, each validated. The general form refuses a value that already has
    // another type, and clears the zone.
    void SetDateTime(DTType type, short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned short milliSecond, unsigned short microSecond,
                     unsigned short nanoSecond);
    void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second, unsigned short milliSecond = 0, unsigned short microSecond = 0,
                     unsigned short nanoSecond = 0);
    // Copies all fields of `source` under type `type`, if the source has the fields the
    // type needs; neither clears nor validates.
    void SetDateTime(const CDateTime& source, DTType type);
    void SetDate(short year, unsigned char month, unsigned char day);
    void SetTime(unsigned char hour, unsigned char minute, unsigned char second, unsigned short milliSecond = 0,
                 unsigned short microSecond = 0, unsigned short nanoSecond = 0);
    void SetFracTime(unsigned short milliSecond, unsigned short microSecond, unsigned short nanoSecond);
    void SetGYear(short year);
    void SetGYearMonth(short year, unsigned char month);
    void SetGMonth(unsigned char month);
    void SetGMonthDay(unsigned char month, unsigned char day);
    void SetGDay(unsigned char day);
    // Whether a value of type `source` holds what type `target` needs.
    bool CheckConversion(DTType source, DTType target) const;

    // Single fields. Each throws CQvInvalidStateException for a type without the field;
    // the setters do not validate.
    short GetYear() const;
    void SetYear(short year);
    unsigned char GetMonth() const;
    void SetMonth(unsigned char month);
    unsigned char GetDay() const;
    void SetDay(unsigned char day);
    unsigned char GetHour() const;
    void SetHour(unsigned char hour);
    unsigned char GetMinute() const;
    void SetMinute(unsigned char minute);
    unsigned char GetSecond() const;
    void SetSecond(unsigned char second);
    unsigned short GetMilliSecond() const;
    void SetMilliSecond(unsigned short milliSecond);
    unsigned short GetMicroSecond() const;
    void SetMicroSecond(unsigned short microSecond);
    unsigned short GetNanoSecond() const;
    void SetNanoSecond(unsigned short nanoSecond);
    double GetRealSecond() const;
    // Day in the year from 1; in January and February of leap years one more.
    int GetDayOfYear() const;
    // 1 for Sunday, in the process's local time zone.
    int GetDayOfWeek() const;

    // Zone.
    bool IsUTC() const { return m_bIsUTC; }
    bool HasTimeZone() const { return m_bHasTimeZone; }
    short GetZoneHour() const;
    unsigned char GetZoneMinute() const;
    void SetUTC();
    void SetTimeZone(short hour, unsigned char minute);
    // A copy moved to offset +00:00; a value without numeric offset is returned as it is.
    CDateTime GetNormalized() const;

    // Arithmetic over all fields, without validation and without clamping the day.
    void AddDateTimeSpan(const CDateTimeSpan& span);
    CDateTime& operator+=(const CDateTimeSpan& span);
    CDateTime& operator-=(const CDateTimeSpan& span);
    CDateTime operator+(const CDateTimeSpan& span) const;
    CDateTime operator-(const CDateTimeSpan& span) const;
    // Always an empty span: the difference is not computed.
    CDateTimeSpan operator-(const CDateTime& other) const;

    // 0 equal, 1 less, 2 greater, 3 indeterminate, across zones.
    int CompareTo(const CDateTime& other) const;
    bool operator==(const CDateTime& other) const;
    bool operator!=(const CDateTime& other) const;
    bool operator<(const CDateTime& other) const;
    bool operator>(const CDateTime& other) const;
    bool operator<=(const CDateTime& other) const;
    bool operator>=(const CDateTime& other) const;

    // System time.
    static CDateTime GetCurrentTime();
    // The fields (normalised) read as UTC; dateTime and date only.
    long GetTime() const;

    void Clear();
    // Throws CQvInvalidValueException for the first field out of place or out of range.
    void Validate() const;

protected:
    DTType m_eType;
    short m_nYear;
    unsigned char m_nMonth;
    unsigned char m_nDay;
    unsigned char m_nHour;
    unsigned char m_nMinute;
    unsigned char m_nSecond;
    unsigned short m_nMilliSecond;
    unsigned short m_nMicroSecond;
    unsigned short m_nNanoSecond;
    bool m_bIsUTC;
    bool m_bHasTimeZone;
    short m_nZoneHour;
    unsigned char m_nZoneMinute;

private:
    void SetFromTime(const long& time);
    void ReadDate(const char* text, size_t length);
    void ReadTime(const char* text, size_t length);
    void ReadZone(const char* text, size_t length);
    size_t WriteText(char* out) const;
};

QVXML_API bool IsLeapYear(int year);
// floor(a / b) computed in single precision, as an int.
QVXML_API int GetQuotient(long long a, int b);
// a - GetQuotient(a, b) * b.
QVXML_API long long GetModulo(long long a, int b);
// Field by field, ignoring zones: 0 equal, 1 less, 2 greater, 3 indeterminate.
QVXML_API int Compare(const CDateTime& a, const CDateTime& b);
// The fraction of a second with its point ("" for none): 500, 0, 0 gives ".5".
QVXML_API std::string ToFracString(unsigned short milliSecond, unsigned short microSecond, unsigned short nanoSecond);

} // namespace QvXmlLib10
