#include "values/DateTimeSpan.h"

#include <charconv>
#include <cstdint>
#include <cstring>

#include "foundation/QvException.h"
#include "values/DateTime.h"

namespace QvXmlLib10 {

namespace {

[[noreturn]] void ThrowExpected(const char* text) {
    throw CQvInvalidValueException(
        FormatString("Invalid XSD Duration [%s] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]", text));
}

// Counts other than years keep 32 signed bits, widened back to the field.
unsigned long long Cut32(unsigned long long value) {
    return static_cast<unsigned long long>(static_cast<long long>(static_cast<int32_t>(value)));
}

template <typename T> char* PutNumber(char* out, T value, char designator) {
    out = std::to_chars(out, out + 24, value).ptr;
    *out++ = designator;
    return out;
}

} // namespace

CDateTimeSpan::CDateTimeSpan() { Clear(); }

CDateTimeSpan::CDateTimeSpan(unsigned long hours, unsigned long long minutes, unsigned long long seconds) {
    SetDateTimeSpan(hours, minutes, seconds);
}

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                             unsigned long long minutes, unsigned long long seconds) {
    SetDateTimeSpan(years, months, days, hours, minutes, seconds);
}

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                             unsigned long long minutes, unsigned long long seconds, unsigned short milliSeconds,
                             unsigned short microSeconds, unsigned short nanoSeconds) {
    SetDateTimeSpan(years, months, days, hours, minutes, seconds, milliSeconds, microSeconds, nanoSeconds);
}

CDateTimeSpan::CDateTimeSpan(const CDateTimeSpan& other) = default;
CDateTimeSpan& CDateTimeSpan::operator=(const CDateTimeSpan& other) = default;
CDateTimeSpan::~CDateTimeSpan() = default;

void CDateTimeSpan::SetDateTimeSpan(unsigned long hours, unsigned long long minutes, unsigned long long seconds) {
    SetDateTimeSpan(0, 0, 0, hours, minutes, seconds, 0, 0, 0);
}

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                                    unsigned long long minutes, unsigned long long seconds) {
    SetDateTimeSpan(years, months, days, hours, minutes, seconds, 0, 0, 0);
}

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                                    unsigned long long minutes, unsigned long long seconds, unsigned short milliSeconds,
                                    unsigned short microSeconds, unsigned short nanoSeconds) {
    Clear();
    m_nYears = years;
    m_nMonths = months;
    m_nDays = days;
    m_nHours = hours;
    m_nMinutes = minutes;
    m_nSeconds = seconds;
    m_nMilliSeconds = milliSeconds;
    m_nMicroSeconds = microSeconds;
    m_nNanoSeconds = nanoSeconds;
}

CDateTimeSpan CDateTimeSpan::GetAsNegative() const {
    CDateTimeSpan result(*this);
    result.m_bNegative = true;
    return result;
}

void CDateTimeSpan::Clear() {
    m_nYears = 0;
    m_nMonths = m_nDays = m_nHours = 0;
    m_nMinutes = m_nSeconds = 0;
    m_nMilliSeconds = m_nMicroSeconds = m_nNanoSeconds = 0;
    m_bNegative = false;
}

void CDateTimeSpan::ParseXSDDuration(const char* text) {
    Clear();
    if (text == nullptr) throw CQvInvalidValueException("Invalid XSD Duration (Null String)");
    if (text[0] == '\0') throw CQvInvalidValueException("Invalid XSD Duration (Empty String)");
    const char* p = text;
    if (*p == '-') {
        m_bNegative = true;
        ++p;
    }
    if (*p != 'P' || p[1] == '\0') ThrowExpected(text);
    ++p;

    // How far the text has come: 0 start, 1 years, 2 months, 3 days, 4 "T", 5 hours,
    // 6 minutes, 7 seconds, 8 seconds with a fraction.
    int state = 0;
    while (*p != '\0') {
        unsigned long long value = 0;
        for (; *p >= '0' && *p <= '9'; ++p)
            value = value * 10 + static_cast<unsigned>(*p - '0');
        const char designator = *p++;
        if (designator == 'Y') {
            m_nYears = static_cast<unsigned short>(value);
            state = 1;
        } else if (designator == 'M' && state <= 1) {
            m_nMonths = static_cast<unsigned long>(Cut32(value));
            state = 2;
        } else if (designator == 'M' && (state == 4 || state == 5)) {
            m_nMinutes = Cut32(value);
            state = 6;
        } else if (designator == 'D' && state <= 2) {
            m_nDays = static_cast<unsigned long>(Cut32(value));
            state = 3;
        } else if (designator == 'T' && state <= 3) {
            state = 4;
        } else if (designator == 'H' && state == 4) {
            m_nHours = static_cast<unsigned long>(Cut32(value));
            state = 5;
        } else if (designator == 'S' && state >= 4 && state <= 6) {
            m_nSeconds = Cut32(value);
            state = 7;
        } else if (designator == '.' && state >= 4 && state <= 6) {
            m_nSeconds = Cut32(value);
            state = 8;
            if (*p == '\0') return; // "PT1." is complete
            // Three digits of milliseconds and three of microseconds by place; each
            // of the next three replaces the nanoseconds.
            static const unsigned short kPlace[3] = {100, 10, 1};
            int count = 0;
            for (; *p >= '0' && *p <= '9'; ++p, ++count) {
                if (count == 9)
                    throw CQvInvalidValueException(
                        FormatString("Invalid XSD Duration [%s] Fraction part too long", text));
                const unsigned short digit = static_cast<unsigned short>(*p - '0');
                if (count < 3)
                    m_nMilliSeconds = static_cast<unsigned short>(m_nMilliSeconds + digit * kPlace[count]);
                else if (count < 6)
                    m_nMicroSeconds = static_cast<unsigned short>(m_nMicroSeconds + digit * kPlace[count - 3]);
                else
                    m_nNanoSeconds = digit;
            }
            if (*p != 'S') ThrowExpected(text);
            ++p;
        } else {
            // Includes the end of the text where a designator belongs.
            ThrowExpected(text);
        }
    }
    if (state == 4) ThrowExpected(text);
}

std::string CDateTimeSpan::ToString() const {
    char buffer[160];
    char* p = buffer;
    if (m_bNegative) *p++ = '-';
    *p++ = 'P';
    if (m_nYears != 0) p = PutNumber(p, static_cast<unsigned>(m_nYears), 'Y');
    if (m_nMonths != 0) p = PutNumber(p, m_nMonths, 'M');
    if (m_nDays != 0) p = PutNumber(p, m_nDays, 'D');
    const bool noFraction = m_nMilliSeconds == 0 && m_nMicroSeconds == 0 && m_nNanoSeconds == 0;
    if (m_nHours != 0 || m_nMinutes != 0 || m_nSeconds != 0 || !noFraction) {
        *p++ = 'T';
        if (m_nHours != 0) p = PutNumber(p, m_nHours, 'H');
        if (m_nMinutes != 0) p = PutNumber(p, m_nMinutes, 'M');
        if (m_nSeconds != 0 || !noFraction) {
            p = std::to_chars(p, p + 24, m_nSeconds).ptr;
            const std::string fraction = ToFracString(m_nMilliSeconds, m_nMicroSeconds, m_nNanoSeconds);
            std::memcpy(p, fraction.data(), fraction.size());
            p += fraction.size();
            *p++ = 'S';
        }
    }
    return std::string(buffer, p);
}

int CDateTimeSpan::CompareTo(const CDateTimeSpan& other) const {
    // The four reference instants at which XSD compares durations.
    static const short kReference[4][3] = {{1696, 9, 1}, {1697, 2, 1}, {1903, 3, 1}, {1903, 7, 1}};
    int first = 3;
    try {
        for (int i = 0; i < 4; ++i) {
            CDateTime start;
            start.SetDate(kReference[i][0], static_cast<unsigned char>(kReference[i][1]),
                          static_cast<unsigned char>(kReference[i][2]));
            start.SetUTC();
            const int result = (start + *this).CompareTo(start + other);
            if (result == 3) return 3;
            if (i == 0)
                first = result;
            else if (result != first)
                return 3;
        }
    } catch (const CQvInvalidValueException&) {
        return 3;
    }
    return first;
}

bool CDateTimeSpan::operator==(const CDateTimeSpan& other) const { return CompareTo(other) == 0; }
bool CDateTimeSpan::operator!=(const CDateTimeSpan& other) const { return CompareTo(other) != 0; }
bool CDateTimeSpan::operator<(const CDateTimeSpan& other) const { return CompareTo(other) == 1; }
bool CDateTimeSpan::operator>(const CDateTimeSpan& other) const { return CompareTo(other) == 2; }

} // namespace QvXmlLib10
