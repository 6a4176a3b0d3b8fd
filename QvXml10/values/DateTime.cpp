#include "values/DateTime.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <type_traits>

#include "foundation/QvException.h"
#include "foundation/Utilities.h"

namespace QvXmlLib10 {

namespace {

using DTType = CDateTime::DTType;

// Which types use a field, one bit per type.
constexpr unsigned kYearTypes = 1u << 1 | 1u << 2 | 1u << 3 | 1u << 4;
constexpr unsigned kMonthTypes = 1u << 1 | 1u << 2 | 1u << 3 | 1u << 7 | 1u << 8;
constexpr unsigned kDayTypes = 1u << 1 | 1u << 2 | 1u << 6 | 1u << 8;
constexpr unsigned kTimeTypes = 1u << 1 | 1u << 5;
constexpr unsigned kDateTypes = 1u << 1 | 1u << 2;

bool Uses(unsigned types, DTType type) { return type >= 0 && type <= 8 && ((types >> type) & 1u) != 0; }

const char* const kTypeNames[] = {"yearZero", "dateTime", "date",   "gYearMonth", "gYear",
                                  "time",     "gDay",     "gMonth", "gMonthDay"};

const char* TypeName(DTType type) { return type >= 0 && type <= 8 ? kTypeNames[type] : ""; }

[[noreturn]] void ThrowState(const char* operation, DTType type) {
    throw CQvInvalidStateException(FormatString("Failed to %s. Invalid Date Type: %s.", operation, TypeName(type)));
}

// Two or four digits at `text`, or -1.
int Digits(const char* text, int count) {
    int value = 0;
    for (int i = 0; i < count; ++i) {
        const unsigned digit = static_cast<unsigned char>(text[i]) - '0';
        if (digit > 9) return -1;
        value = value * 10 + static_cast<int>(digit);
    }
    return value;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Writes `value` in at least `width` digits and returns the end.
char* PutPadded(char* out, unsigned value, int width) {
    char digits[12];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (int i = count; i < width; ++i)
        *out++ = '0';
    while (count > 0)
        *out++ = digits[--count];
    return out;
}

// The fraction with its point, or nothing when all three groups are zero.
char* PutFraction(char* out, unsigned short milli, unsigned short micro, unsigned short nano) {
    const unsigned short groups[3] = {milli, micro, nano};
    int last = 2;
    while (last >= 0 && groups[last] == 0)
        --last;
    if (last < 0) return out;
    *out++ = '.';
    for (int i = 0; i <= last; ++i)
        out = PutPadded(out, groups[i], 3);
    // Trailing zeros of the last group go; that group is not zero, so a digit stays.
    while (out[-1] == '0')
        --out;
    return out;
}

// Two's complement wrap of 64-bit sums, so that unchecked field arithmetic stays defined.
long long Wrapped(unsigned long long value) { return static_cast<long long>(value); }

unsigned long long Signed(unsigned long long magnitude, bool negative) {
    return negative ? 0ULL - magnitude : magnitude;
}

int MonthLength(int month, short year) {
    if (month == 2) return IsLeapYear(year) ? 29 : 28;
    return month >= 1 && month <= 12 ? g_monthMax[month - 1] : 31;
}

// Days of all 65536 values of a 16-bit year: the walk over days returns to the same
// month and year after that many days, since the year field wraps.
constexpr long long RingDays() {
    long long days = 0;
    for (int year = SHRT_MIN; year <= SHRT_MAX; ++year)
        days += (year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)) ? 366 : 365;
    return days;
}
constexpr long long kRingDays = RingDays();
// Days of 400 Gregorian years.
constexpr long long kCycleDays = 146097;

} // namespace

bool IsLeapYear(int year) {
    if (year % 4 != 0) return false;
    if (year % 100 != 0) return true;
    return year % 400 == 0;
}

int GetQuotient(long long a, int b) {
    const float quotient = std::floor(static_cast<float>(a) / static_cast<float>(b));
    // Cut to int; values beyond int (and the NaN of 0 / 0) saturate instead of being undefined.
    if (std::isnan(quotient)) return 0;
    if (quotient >= 2147483648.0f) return INT_MAX;
    if (quotient < -2147483648.0f) return INT_MIN;
    return static_cast<int>(quotient);
}

long long GetModulo(long long a, int b) {
    const long long product = static_cast<long long>(GetQuotient(a, b)) * b;
    return Wrapped(static_cast<unsigned long long>(a) - static_cast<unsigned long long>(product));
}

std::string ToFracString(unsigned short milliSecond, unsigned short microSecond, unsigned short nanoSecond) {
    char buffer[32];
    return std::string(buffer, PutFraction(buffer, milliSecond, microSecond, nanoSecond));
}

// ---------------------------------------------------------------------------------------
// Construction

CDateTime::CDateTime() { Clear(); }

CDateTime::CDateTime(DTType type) {
    Clear();
    m_eType = type;
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day) {
    Clear();
    try {
        SetDate(year, month, day);
    } catch (const CQvInvalidValueException&) {
        Clear();
    }
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second) {
    Clear();
    try {
        SetDateTime(year, month, day, hour, minute, second);
    } catch (const CQvInvalidValueException&) {
        Clear();
    }
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second, unsigned short milliSecond, unsigned short microSecond,
                     unsigned short nanoSecond) {
    Clear();
    try {
        SetDateTime(year, month, day, hour, minute, second, milliSecond, microSecond, nanoSecond);
    } catch (const CQvInvalidValueException&) {
        Clear();
    }
}

CDateTime::CDateTime(const long& time) {
    Clear();
    try {
        SetFromTime(time);
    } catch (const CQvInvalidValueException&) {
        Clear();
    }
}

CDateTime::CDateTime(const char* text) {
    Clear();
    ParseXSDDateTime(text);
}

CDateTime::CDateTime(const CDateTime& other) = default;
CDateTime& CDateTime::operator=(const CDateTime& other) = default;
CDateTime::~CDateTime() = default;

CDateTime& CDateTime::operator=(const long& time) {
    SetFromTime(time);
    return *this;
}

void CDateTime::SetFromTime(const long& time) {
    const std::time_t value = static_cast<std::time_t>(time);
    std::tm fields{};
    int year = 0; // refused by the setter when the time is beyond the calendar
    if (gmtime_r(&value, &fields) != nullptr && fields.tm_year + 1900 >= MIN_YEAR && fields.tm_year + 1900 <= MAX_YEAR)
        year = fields.tm_year + 1900;
    SetDateTime(static_cast<short>(year), static_cast<unsigned char>(fields.tm_mon + 1),
                static_cast<unsigned char>(fields.tm_mday), static_cast<unsigned char>(fields.tm_hour),
                static_cast<unsigned char>(fields.tm_min), static_cast<unsigned char>(fields.tm_sec));
}

void CDateTime::Clear() {
    m_eType = DTType_yearZero;
    m_nYear = 0;
    m_nMonth = m_nDay = m_nHour = m_nMinute = m_nSecond = 0;
    m_nMilliSecond = m_nMicroSecond = m_nNanoSecond = 0;
    m_bIsUTC = m_bHasTimeZone = false;
    m_nZoneHour = 0;
    m_nZoneMinute = 0;
}

// ---------------------------------------------------------------------------------------
// Text in

void CDateTime::ParseXSDDateTime(const char* text) {
    if (text == nullptr) throw CQvInvalidValueException("Invalid DateTime (Null String)");
    const char* t = std::strchr(text, 'T');
    if (t == nullptr) throw CQvInvalidValueException(FormatString("Invalid XSD DateTime [%s]", text));
    Clear();
    ReadDate(text, static_cast<size_t>(t - text));
    if (m_eType != DTType_date)
        throw CQvInvalidValueException(
            FormatString("Invalid XSD DateTime [%s] expected CCYY-MM-DDThh:mm:ss[.ff]", text));
    ReadTime(t + 1, std::strlen(t + 1));
    m_eType = DTType_dateTime;
    Validate();
}

void CDateTime::ParseXSDDate(const char* text) {
    Clear();
    SetXSDDate(text);
    Validate();
}

void CDateTime::ParseXSDTime(const char* text) {
    Clear();
    SetXSDTime(text);
    Validate();
}

void CDateTime::SetXSDDate(const char* text) {
    if (text == nullptr) throw CQvInvalidValueException("Invalid Date (Null String)");
    ReadDate(text, std::strlen(text));
}

void CDateTime::SetXSDTime(const char* text) {
    if (text == nullptr) throw CQvInvalidValueException("Invalid Time (Null String)");
    ReadTime(text, std::strlen(text));
}

void CDateTime::SetZone(const char* text) {
    if (text != nullptr) ReadZone(text, std::strlen(text));
}

// The date forms: [-]YYYY, [-]YYYY-MM, [-]YYYY-MM-DD, --MM, ---DD, --MM--, --MM-DD, each
// with an optional zone. `text` need not end at `length`.
void CDateTime::ReadDate(const char* text, size_t length) {
    if (length == 0) throw CQvInvalidValueException("Invalid Date (Empty String)");
    if (std::memchr(text, 'T', length) != nullptr) throw CQvInvalidValueException("Invalid Date ('T' not allowed)");
    const bool hasColon = std::memchr(text, ':', length) != nullptr;
    const bool zulu = text[length - 1] == 'Z';
    long n = static_cast<long>(length);
    if (zulu) {
        if (hasColon) throw CQvInvalidValueException("Invalid Date (Bad Zone value)");
        n -= 1;
    } else if (hasColon) {
        n -= 6;
    }

    // A month or day is -1 when its digits are not there.
    DTType type = DTType_yearZero;
    int year = 0, month = 0, day = 0;
    bool readYear = false, separators = true;
    if (length >= 2 && text[0] == '-' && text[1] == '-') {
        switch (n) {
        case 4: // --MM
        case 6: // --MM--, the two characters behind the month are not examined
            month = Digits(text + 2, 2);
            type = DTType_gMonth;
            break;
        case 5: // ---DD
            separators = text[2] == '-';
            day = Digits(text + 3, 2);
            type = DTType_gDay;
            break;
        case 7: // --MM-DD
            month = Digits(text + 2, 2);
            separators = text[4] == '-';
            day = Digits(text + 5, 2);
            type = DTType_gMonthDay;
            break;
        default:
            break;
        }
    } else {
        const bool negative = text[0] == '-';
        const char* p = negative ? text + 1 : text;
        const long rest = negative ? n - 1 : n;
        if (rest == 4 || rest == 7 || rest == 10) {
            readYear = true;
            const int digits = Digits(p, 4);
            separators = digits >= 0;
            year = negative ? -digits : digits;
            type = rest == 4 ? DTType_gYear : rest == 7 ? DTType_gYearMonth : DTType_date;
        }
        if (rest >= 7) {
            separators = separators && p[4] == '-';
            month = Digits(p + 5, 2);
        }
        if (rest == 10) {
            separators = separators && p[7] == '-';
            day = Digits(p + 8, 2);
        }
    }
    if (type == DTType_yearZero || !separators || month < 0 || day < 0)
        throw CQvInvalidValueException(
            FormatString("Invalid XSD Date [%s] expected CCYY-MM-DD[Z|[+|-]hh:mm]", std::string(text, length).c_str()));

    m_eType = type;
    if (readYear) m_nYear = static_cast<short>(year);
    if (Uses(kMonthTypes, type)) m_nMonth = static_cast<unsigned char>(month);
    if (Uses(kDayTypes, type)) m_nDay = static_cast<unsigned char>(day);
    if (zulu || hasColon) ReadZone(text + n, length - static_cast<size_t>(n));
}

// hh:mm:ss, an optional fraction of up to nine digits, then anything that ReadZone takes.
void CDateTime::ReadTime(const char* text, size_t length) {
    if (length == 0) throw CQvInvalidValueException("Invalid XSD Time (Empty String)");
    const int hour = length >= 8 && text[2] == ':' ? Digits(text, 2) : -1;
    const int minute = length >= 8 && text[5] == ':' ? Digits(text + 3, 2) : -1;
    const int second = length >= 8 ? Digits(text + 6, 2) : -1;
    if (hour < 0 || minute < 0 || second < 0 || hour > 23 || minute > 59 || second > 59)
        throw CQvInvalidValueException(
            FormatString("Invalid XSD Time [%s] expected hh:mm:ss[.ff]", std::string(text, length).c_str()));
    m_nHour = static_cast<unsigned char>(hour);
    m_nMinute = static_cast<unsigned char>(minute);
    m_nSecond = static_cast<unsigned char>(second);

    size_t position = 8;
    if (position < length && text[position] == '.') {
        ++position;
        static const unsigned short kPlace[3] = {100, 10, 1};
        int count = 0;
        for (; position < length && IsDigit(text[position]); ++position, ++count) {
            if (count == 9)
                throw CQvInvalidValueException(
                    FormatString("Invalid XSD Time [%s] Fraction part too long", std::string(text, length).c_str()));
            const unsigned short add = static_cast<unsigned short>((text[position] - '0') * kPlace[count % 3]);
            unsigned short& group = count < 3 ? m_nMilliSecond : count < 6 ? m_nMicroSecond : m_nNanoSecond;
            group = static_cast<unsigned short>(group + add);
        }
    }
    ReadZone(text + position, length - position);
    m_eType = DTType_time;
}

// "Z...", "+hh:mm" or "-hh:mm"; any other text, the empty one included, is passed over.
void CDateTime::ReadZone(const char* text, size_t length) {
    if (length == 0) return;
    if (text[0] == 'Z') {
        SetUTC();
        return;
    }
    if (text[0] != '+' && text[0] != '-') return;
    const int hour = length == 6 && text[3] == ':' ? Digits(text + 1, 2) : -1;
    const int minute = length == 6 ? Digits(text + 4, 2) : -1;
    if (hour < 0 || minute < 0)
        throw CQvInvalidValueException(FormatString("Invalid XSD Time Zone [%s]", std::string(text, length).c_str()));
    const int unsignedHour = hour == 24 ? 0 : hour;
    SetTimeZone(static_cast<short>(text[0] == '-' ? -unsignedHour : unsignedHour), static_cast<unsigned char>(minute));
}

// ---------------------------------------------------------------------------------------
// Text out

std::string CDateTime::GetTypeAsString(DTType type) { return TypeName(type); }

std::string CDateTime::GetTypeAsString() const { return TypeName(m_eType); }

std::string CDateTime::ToString() const { return ToString("s"); }

std::string CDateTime::ToString(const char* format) const {
    const bool empty = m_nYear == 0 && m_nMonth == 0 && m_nDay == 0 && m_nHour == 0 && m_nMinute == 0 &&
                       m_nSecond == 0 && m_nMilliSecond == 0 && m_nMicroSecond == 0 && m_nNanoSecond == 0;
    if (m_eType == DTType_yearZero || (empty && m_eType != DTType_time)) throw CQvInvalidValueException("Date Not Set");
    if (format == nullptr || format[0] == '\0' || std::strcmp(format, "G") == 0) return std::string();
    if (std::strcmp(format, "s") != 0) return std::string("Unknown Format: ") + format;
    char buffer[96];
    return std::string(buffer, WriteText(buffer));
}

// The "s" form into `out` (at most about 60 characters for any field values); returns the length.
size_t CDateTime::WriteText(char* out) const {
    char* p = out;
    auto year = [&] {
        if (m_nYear < 0) *p++ = '-';
        p = PutPadded(p, static_cast<unsigned>(std::abs(static_cast<int>(m_nYear))), 4);
    };
    auto time = [&] {
        p = PutPadded(p, m_nHour, 2);
        *p++ = ':';
        p = PutPadded(p, m_nMinute, 2);
        *p++ = ':';
        p = PutPadded(p, m_nSecond, 2);
        p = PutFraction(p, m_nMilliSecond, m_nMicroSecond, m_nNanoSecond);
    };
    switch (m_eType) {
    case DTType_date:
    case DTType_dateTime:
        year();
        *p++ = '-';
        p = PutPadded(p, m_nMonth, 2);
        *p++ = '-';
        p = PutPadded(p, m_nDay, 2);
        if (m_eType == DTType_dateTime) {
            *p++ = 'T';
            time();
        }
        break;
    case DTType_gDay:
        std::memcpy(p, "---", 3);
        p = PutPadded(p + 3, m_nDay, 2);
        break;
    case DTType_gMonth:
    case DTType_gMonthDay:
        std::memcpy(p, "--", 2);
        p = PutPadded(p + 2, m_nMonth, 2);
        if (m_eType == DTType_gMonthDay) {
            *p++ = '-';
            p = PutPadded(p, m_nDay, 2);
        }
        break;
    case DTType_time:
        time();
        break;
    case DTType_gYear:
    case DTType_gYearMonth:
        year();
        if (m_eType == DTType_gYearMonth) {
            *p++ = '-';
            p = PutPadded(p, m_nMonth, 2);
        }
        break;
    default:
        break;
    }
    if (m_bIsUTC && !m_bHasTimeZone) {
        *p++ = 'Z';
    } else if (m_bIsUTC) {
        *p++ = m_nZoneHour < 0 ? '-' : '+';
        p = PutPadded(p, static_cast<unsigned>(std::abs(static_cast<int>(m_nZoneHour))), 2);
        *p++ = ':';
        p = PutPadded(p, m_nZoneMinute, 2);
    }
    return static_cast<size_t>(p - out);
}

// ---------------------------------------------------------------------------------------
// Whole values

void CDateTime::SetDateTime(DTType type, short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second, unsigned short milliSecond,
                            unsigned short microSecond, unsigned short nanoSecond) {
    if (m_eType != DTType_yearZero && m_eType != type)
        throw CQvInvalidStateException(FormatString("Failed to copy CDateTime. Invalid Date Type: %s, expected: %s.",
                                                    TypeName(type), TypeName(m_eType)));
    Clear();
    m_eType = type;
    m_nYear = year;
    m_nMonth = month;
    m_nDay = day;
    m_nHour = hour;
    m_nMinute = minute;
    m_nSecond = second;
    m_nMilliSecond = milliSecond;
    m_nMicroSecond = microSecond;
    m_nNanoSecond = nanoSecond;
    Validate();
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second, unsigned short milliSecond,
                            unsigned short microSecond, unsigned short nanoSecond) {
    SetDateTime(DTType_dateTime, year, month, day, hour, minute, second, milliSecond, microSecond, nanoSecond);
}

void CDateTime::SetDate(short year, unsigned char month, unsigned char day) {
    SetDateTime(DTType_date, year, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second, unsigned short milliSecond,
                        unsigned short microSecond, unsigned short nanoSecond) {
    SetDateTime(DTType_time, 0, 0, 0, hour, minute, second, milliSecond, microSecond, nanoSecond);
}

void CDateTime::SetFracTime(unsigned short milliSecond, unsigned short microSecond, unsigned short nanoSecond) {
    SetDateTime(DTType_time, 0, 0, 0, 0, 0, 0, milliSecond, microSecond, nanoSecond);
}

void CDateTime::SetGYear(short year) { SetDateTime(DTType_gYear, year, 0, 0, 0, 0, 0, 0, 0, 0); }

void CDateTime::SetGYearMonth(short year, unsigned char month) {
    SetDateTime(DTType_gYearMonth, year, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonth(unsigned char month) { SetDateTime(DTType_gMonth, 0, month, 0, 0, 0, 0, 0, 0, 0); }

void CDateTime::SetGMonthDay(unsigned char month, unsigned char day) {
    SetDateTime(DTType_gMonthDay, 0, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGDay(unsigned char day) { SetDateTime(DTType_gDay, 0, 0, day, 0, 0, 0, 0, 0, 0); }

bool CDateTime::CheckConversion(DTType source, DTType target) const {
    if (source == target || target == DTType_yearZero) return true;
    switch (source) {
    case DTType_yearZero:
    case DTType_gYear:
    case DTType_time:
    case DTType_gDay:
    case DTType_gMonth:
        return false;
    case DTType_dateTime:
        return true;
    case DTType_date:
        return target == DTType_gYearMonth || target == DTType_gYear || target == DTType_gDay ||
               target == DTType_gMonth || target == DTType_gMonthDay;
    case DTType_gYearMonth:
        return target == DTType_gMonth || target == DTType_gYear;
    case DTType_gMonthDay:
        return target == DTType_gDay || target == DTType_gMonth;
    default:
        throw CQvInvalidValueException(FormatString("Unknown date type %d.", static_cast<int>(source)));
    }
}

void CDateTime::SetDateTime(const CDateTime& source, DTType type) {
    if (!CheckConversion(source.m_eType, type))
        throw CQvInvalidValueException(
            FormatString("Attempting to set a CDateTime of type %s using an XmlDateTime of type %s. The source "
                         "CDateTime does not contian enough data to allow the conversion.",
                         TypeName(type), TypeName(source.m_eType)));
    *this = source;
    m_eType = type;
}

void CDateTime::Validate() const {
    const char* type = TypeName(m_eType);
    if (m_eType == DTType_yearZero) throw CQvInvalidValueException("Invalid Year Zero");

    if (Uses(kMonthTypes, m_eType)) {
        if (m_nMonth < 1 || m_nMonth > 12)
            throw CQvInvalidValueException(FormatString("Invalid Month [%d] (1 <= month <= 12)", m_nMonth));
    } else if (m_nMonth != 0) {
        throw CQvInvalidValueException(FormatString("Invalid Month [%d] for type %s", m_nMonth, type));
    }

    if (Uses(kYearTypes, m_eType)) {
        if (m_nYear == 0 || m_nYear < MIN_YEAR || m_nYear > MAX_YEAR)
            throw CQvInvalidValueException(
                FormatString("Invalid Year [%d] (%d <= year <= %d && year != 0)", m_nYear, MAX_YEAR, MIN_YEAR));
    } else if (m_nYear != 0) {
        throw CQvInvalidValueException(FormatString("Invalid Year [%d] for type %s", m_nYear, type));
    }

    if (m_eType == DTType_dateTime || m_eType == DTType_date) {
        if (m_nDay < 1 || m_nDay > g_monthMax[m_nMonth - 1] || (m_nMonth == 2 && m_nDay == 29 && !IsLeapYear(m_nYear)))
            throw CQvInvalidValueException(FormatString("Invalid Day [%d] (1 <= day <= days in month", m_nDay));
    } else if (m_eType == DTType_gMonthDay) {
        if (m_nDay < 1 || m_nDay > g_monthMax[m_nMonth - 1])
            throw CQvInvalidValueException(FormatString("Invalid Day [%d] (1 <= day <= days in month)", m_nDay));
    } else if (m_eType == DTType_gDay) {
        if (m_nDay < 1 || m_nDay > 31)
            throw CQvInvalidValueException(FormatString("Invalid Day [%d] (1 <= day <= 31)", m_nDay));
    } else if (m_nDay != 0) {
        throw CQvInvalidValueException(FormatString("Invalid Day [%d] for type %s", m_nDay, type));
    }

    struct TimeField {
        int value;
        int limit;
        const char* range;
        const char* other;
    };
    const TimeField fields[] = {
        {m_nHour, 24, "Invalid Hour [%d] (0 <= hour <= 23)", "Invalid Hour [%d] for type %s"},
        {m_nMinute, 60, "Invalid Minute [%d] (0 <= minute <= 59)", "Invalid Minute [%d] for type %s"},
        {m_nSecond, 60, "Invalid Second [%d] (0 <= second <= 59)", "Invalid Second [%d] for type %s"},
        {m_nMilliSecond, 1000, "Invalid Milli-Second [%d] (0 <= milli <= 999)",
         "Invalid Milli-Second [%d] for type %s"},
        {m_nMicroSecond, 1000, "Invalid Micro-Second [%d] (0 <= micro <= 999)",
         "Invalid Micro-Second [%d] for type %s"},
        {m_nNanoSecond, 1000, "Invalid Nano-Second [%d] (0 <= nano <= 999)", "Invalid Nano-Second [%d] for type %s"},
    };
    const bool hasTime = Uses(kTimeTypes, m_eType);
    for (const TimeField& field : fields) {
        if (hasTime && field.value >= field.limit)
            throw CQvInvalidValueException(FormatString(field.range, field.value));
        if (!hasTime && field.value != 0) throw CQvInvalidValueException(FormatString(field.other, field.value, type));
    }
}

// ---------------------------------------------------------------------------------------
// Single fields

short CDateTime::GetYear() const {
    if (!Uses(kYearTypes, m_eType)) ThrowState("GetYear", m_eType);
    return m_nYear;
}

void CDateTime::SetYear(short year) {
    if (!Uses(kYearTypes, m_eType)) ThrowState("GetYear", m_eType);
    m_nYear = year;
}

unsigned char CDateTime::GetMonth() const {
    if (!Uses(kMonthTypes, m_eType)) ThrowState("GetMonth", m_eType);
    return m_nMonth;
}

void CDateTime::SetMonth(unsigned char month) {
    if (!Uses(kMonthTypes, m_eType)) ThrowState("GetMonth", m_eType);
    m_nMonth = month;
}

unsigned char CDateTime::GetDay() const {
    if (!Uses(kDayTypes, m_eType)) ThrowState("GetDay", m_eType);
    return m_nDay;
}

void CDateTime::SetDay(unsigned char day) {
    if (!Uses(kDayTypes, m_eType)) ThrowState("GetDay", m_eType);
    m_nDay = day;
}

unsigned char CDateTime::GetHour() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetHour", m_eType);
    return m_nHour;
}

void CDateTime::SetHour(unsigned char hour) {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetHour", m_eType);
    m_nHour = hour;
}

unsigned char CDateTime::GetMinute() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetMinute", m_eType);
    return m_nMinute;
}

void CDateTime::SetMinute(unsigned char minute) {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetMinute", m_eType);
    m_nMinute = minute;
}

unsigned char CDateTime::GetSecond() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetSecond", m_eType);
    return m_nSecond;
}

void CDateTime::SetSecond(unsigned char second) {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetSecond", m_eType);
    m_nSecond = second;
}

unsigned short CDateTime::GetMilliSecond() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetMilliSecond", m_eType);
    return m_nMilliSecond;
}

void CDateTime::SetMilliSecond(unsigned short milliSecond) {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetMilliSecond", m_eType);
    m_nMilliSecond = milliSecond;
}

unsigned short CDateTime::GetMicroSecond() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetMicroSecond", m_eType);
    return m_nMicroSecond;
}

void CDateTime::SetMicroSecond(unsigned short microSecond) {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetMicroSecond", m_eType);
    m_nMicroSecond = microSecond;
}

unsigned short CDateTime::GetNanoSecond() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetNanoSecond", m_eType);
    return m_nNanoSecond;
}

void CDateTime::SetNanoSecond(unsigned short nanoSecond) {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetNanoSecond", m_eType);
    m_nNanoSecond = nanoSecond;
}

double CDateTime::GetRealSecond() const {
    if (!Uses(kTimeTypes, m_eType)) ThrowState("GetRealSecond", m_eType);
    return m_nSecond + m_nMilliSecond / 1000.0 + m_nMicroSecond / 1e6 + m_nNanoSecond / 1e9;
}

int CDateTime::GetDayOfYear() const {
    if (!Uses(kDateTypes, m_eType)) ThrowState("GetDayOfYear", m_eType);
    // A month set by hand beyond the table has no day count.
    if (m_nMonth < 1 || m_nMonth > 13)
        throw CQvInvalidValueException(FormatString("Invalid Month [%d] (1 <= month <= 12)", m_nMonth));
    // The leap day counts in January and February, not in the months behind it.
    return m_nDay + g_monthDayInYear[m_nMonth - 1] + (IsLeapYear(m_nYear) && m_nMonth <= 2 ? 1 : 0);
}

int CDateTime::GetDayOfWeek() const {
    if (!Uses(kDateTypes, m_eType)) ThrowState("GetDayOfWeek", m_eType);
    const std::time_t time = static_cast<std::time_t>(GetTime());
    std::tm local{};
    if (localtime_r(&time, &local) == nullptr) return 0;
    return local.tm_wday + 1;
}

// ---------------------------------------------------------------------------------------
// Zone

short CDateTime::GetZoneHour() const {
    if (!m_bIsUTC) throw CQvInvalidStateException("TimeZone is not been used");
    return m_nZoneHour;
}

unsigned char CDateTime::GetZoneMinute() const {
    if (!m_bIsUTC) throw CQvInvalidStateException("TimeZone is not been used");
    return m_nZoneMinute;
}

void CDateTime::SetUTC() {
    m_bIsUTC = true;
    m_bHasTimeZone = false;
    m_nZoneHour = 0;
    m_nZoneMinute = 0;
}

void CDateTime::SetTimeZone(short hour, unsigned char minute) {
    if (hour < -23 || hour > 23 || minute > 59)
        throw CQvInvalidValueException(FormatString("Invalid TimeZone [%d:%d]", hour, minute));
    m_bIsUTC = true;
    m_bHasTimeZone = true;
    m_nZoneHour = hour;
    m_nZoneMinute = minute;
}

CDateTime CDateTime::GetNormalized() const {
    CDateTime copy(*this);
    if (!m_bHasTimeZone) return copy;
    try {
        const CDateTimeSpan offset(static_cast<unsigned long>(std::abs(static_cast<int>(m_nZoneHour))), m_nZoneMinute,
                                   0);
        if (m_nZoneHour < 0)
            copy += offset;
        else
            copy -= offset;
        copy.SetTimeZone(0, 0);
    } catch (const CQvInvalidValueException&) {
    }
    return copy;
}

// ---------------------------------------------------------------------------------------
// Arithmetic

void CDateTime::AddDateTimeSpan(const CDateTimeSpan& span) {
    const bool negative = span.IsNegative();

    long long t = Wrapped(m_nMonth + Signed(span.GetMonths(), negative) - 1);
    m_nMonth = static_cast<unsigned char>(GetModulo(t, 12) + 1);
    short year = static_cast<short>(static_cast<long long>(m_nYear) + GetQuotient(t, 12) +
                                    static_cast<long long>(Signed(span.GetYears(), negative)));

    // Each field takes its amount and the carry of the field below it.
    long long carry = 0;
    auto step = [&](auto& field, unsigned long long amount, int base) {
        const long long value = Wrapped(field + Signed(amount, negative) + static_cast<unsigned long long>(carry));
        field = static_cast<std::remove_reference_t<decltype(field)>>(GetModulo(value, base));
        carry = GetQuotient(value, base);
    };
    step(m_nNanoSecond, span.GetNanoSeconds(), 1000);
    step(m_nMicroSecond, span.GetMicroSeconds(), 1000);
    step(m_nMilliSecond, span.GetMilliSeconds(), 1000);
    step(m_nSecond, span.GetSeconds(), 60);
    step(m_nMinute, span.GetMinutes(), 60);
    step(m_nHour, span.GetHours(), 24);

    long long d = Wrapped(Signed(span.GetDays(), negative) + static_cast<unsigned long long>(carry));
    if (d == 0) {
        m_nYear = year;
        return;
    }
    // Walk month by month. Where the walk stands on the first day of a month (forward) or
    // on the last (backward), whole rounds of the 16-bit year ring and whole 400-year
    // cycles are skipped: each brings the walk back to the same month and day.
    int month = m_nMonth;
    int day = m_nDay;
    while (d != 0) {
        if (d < 1) {
            if (month >= 1 && month <= 12 && day == MonthLength(month, year)) {
                d %= kRingDays;
                while (d <= -kCycleDays && year >= SHRT_MIN + 400) {
                    d += kCycleDays;
                    year = static_cast<short>(year - 400);
                }
                if (d == 0) break;
            }
            if (d < 1 - day) { // day - 1 < -d, without negating d
                d += day;
                --month;
                if (month < 1 || month > 12) {
                    month = 12;
                    year = static_cast<short>(year - 1);
                }
                day = MonthLength(month, year);
            } else {
                day += static_cast<int>(d);
                d = 0;
            }
        } else {
            if (month >= 1 && month <= 12 && day == 1) {
                d %= kRingDays;
                while (d >= kCycleDays && year <= SHRT_MAX - 400) {
                    d -= kCycleDays;
                    year = static_cast<short>(year + 400);
                }
                if (d == 0) break;
            }
            const int length = MonthLength(month, year);
            if (d > length - day) { // day + d > length, without overflow
                d -= length - day + 1;
                day = 1;
                if (++month > 12) {
                    month = 1;
                    year = static_cast<short>(year + 1);
                }
            } else {
                day += static_cast<int>(d);
                d = 0;
            }
        }
    }
    m_nYear = year;
    m_nMonth = static_cast<unsigned char>(month);
    m_nDay = static_cast<unsigned char>(day);
}

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span) {
    AddDateTimeSpan(span);
    return *this;
}

CDateTime& CDateTime::operator-=(const CDateTimeSpan& span) {
    AddDateTimeSpan(span.GetAsNegative());
    return *this;
}

CDateTime CDateTime::operator+(const CDateTimeSpan& span) const {
    CDateTime result(*this);
    result.AddDateTimeSpan(span);
    return result;
}

CDateTime CDateTime::operator-(const CDateTimeSpan& span) const {
    CDateTime result(*this);
    result.AddDateTimeSpan(span.GetAsNegative());
    return result;
}

CDateTimeSpan CDateTime::operator-(const CDateTime&) const { return CDateTimeSpan(); }

// ---------------------------------------------------------------------------------------
// Order

namespace {

// 1 if a < b, 2 if a > b, 0 if equal, 3 if only one side has the field (-1) or the
// signs differ.
template <typename T> int Order(T a, T b) {
    if (a * b < 0) return 3;
    return a < b ? 1 : a > b ? 2 : 0;
}

} // namespace

int Compare(const CDateTime& a, const CDateTime& b) {
    const DTType ta = a.GetType();
    const DTType tb = b.GetType();
    int result = Order<int>(Uses(kYearTypes, ta) ? a.GetYear() : -1, Uses(kYearTypes, tb) ? b.GetYear() : -1);
    if (result != 0) return result;
    // Both month values come from a: months never decide.
    result = Order<int>(Uses(kMonthTypes, ta) ? a.GetMonth() : -1, Uses(kMonthTypes, tb) ? a.GetMonth() : -1);
    if (result != 0) return result;
    result = Order<int>(Uses(kDayTypes, ta) ? a.GetDay() : -1, Uses(kDayTypes, tb) ? b.GetDay() : -1);
    if (result != 0) return result;
    result = Order<int>(Uses(kTimeTypes, ta) ? a.GetHour() : -1, Uses(kTimeTypes, tb) ? b.GetHour() : -1);
    if (result != 0) return result;
    result = Order<int>(Uses(kTimeTypes, ta) ? a.GetMinute() : -1, Uses(kTimeTypes, tb) ? b.GetMinute() : -1);
    if (result != 0) return result;
    return Order<double>(Uses(kTimeTypes, ta) ? a.GetRealSecond() : -1.0,
                         Uses(kTimeTypes, tb) ? b.GetRealSecond() : -1.0);
}

int CDateTime::CompareTo(const CDateTime& other) const {
    CDateTime x = m_bHasTimeZone ? GetNormalized() : *this;
    CDateTime y = other.m_bHasTimeZone ? other.GetNormalized() : other;
    if (x.m_bIsUTC == y.m_bIsUTC) return Compare(x, y);
    // One side has no zone: it may lie anywhere within the zones' range of the other.
    // The second move starts from the first one.
    CDateTime& moved = x.m_bIsUTC ? y : x;
    const int before = x.m_bIsUTC ? 1 : 2;
    const int after = x.m_bIsUTC ? 2 : 1;
    try {
        moved.SetTimeZone(14, 0);
        moved = moved.GetNormalized();
        if (Compare(x, y) == before) return before;
        moved.SetTimeZone(-14, 0);
        moved = moved.GetNormalized();
        if (Compare(x, y) == after) return after;
    } catch (const CQvInvalidValueException&) {
    }
    return 3;
}

bool CDateTime::operator==(const CDateTime& other) const { return CompareTo(other) == 0; }
bool CDateTime::operator!=(const CDateTime& other) const { return CompareTo(other) != 0; }
bool CDateTime::operator<(const CDateTime& other) const { return CompareTo(other) == 1; }
bool CDateTime::operator>(const CDateTime& other) const { return CompareTo(other) == 2; }
bool CDateTime::operator<=(const CDateTime& other) const {
    const int result = CompareTo(other);
    return result == 0 || result == 1;
}
bool CDateTime::operator>=(const CDateTime& other) const {
    const int result = CompareTo(other);
    return result == 2 || result == 0;
}

// ---------------------------------------------------------------------------------------
// System time

CDateTime CDateTime::GetCurrentTime() { return CDateTime(static_cast<long>(std::time(nullptr))); }

long CDateTime::GetTime() const {
    if (!Uses(kDateTypes, m_eType))
        throw CQvInvalidValueException(FormatString(
            "Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: %s.", TypeName(m_eType)));
    const CDateTime normal = GetNormalized();
    std::tm fields{};
    fields.tm_year = normal.m_nYear - 1900;
    fields.tm_mon = normal.m_nMonth - 1;
    fields.tm_mday = normal.m_nDay;
    if (m_eType == DTType_dateTime) {
        fields.tm_hour = normal.m_nHour;
        fields.tm_min = normal.m_nMinute;
        fields.tm_sec = normal.m_nSecond;
    }
    // mktime reads the fields as local time; the offset between the local and the UTC
    // reading of the same instant turns that into the fields read as UTC.
    const std::time_t time = std::mktime(&fields);
    std::tm local{};
    std::tm utc{};
    if (localtime_r(&time, &local) == nullptr || gmtime_r(&time, &utc) == nullptr) return static_cast<long>(time);
    return static_cast<long>(time + static_cast<std::time_t>(std::difftime(std::mktime(&local), std::mktime(&utc))));
}

} // namespace QvXmlLib10
