#pragma once

#include "../foundation/QvExport.h"

#include <string>

#include "../foundation/BinaryData.h"
#include "../foundation/QvExport.h"
#include "../validation/WhitespaceUtils.h"
#include "BigInteger.h"
#include "DateTime.h"
#include "DateTimeSpan.h"
#include "Decimal.h"

namespace QvXmlLib10 {

// Text forms of the primitive kinds, in both directions. Every xFromString applies
// its whitespace rule first and parses only what the rule leaves; a failure throws
// CQvInvalidValueException. i4 and ui4 are the platform's long and unsigned long.
class QVXML_API CConversions {
public:
    using WhitespaceRule = CWhitespaceUtils::WhitespaceRule;

    // Values to text.
    static std::string i1ToString(char value);
    static std::string i2ToString(short value);
    static std::string i4ToString(long value);
    static std::string i8ToString(long long value);
    static std::string ui1ToString(unsigned char value);
    static std::string ui2ToString(unsigned short value);
    static std::string ui4ToString(unsigned long value);
    static std::string ui8ToString(unsigned long long value);
    // "NaN", "-INF", "INF", or the value printed with `format` (a printf format taking
    // one double) or with "%.7g" / "%.16g" when the format is empty. Output beyond
    // 31 / 47 bytes is cut.
    static std::string r4ToString(float value, const std::string& format);
    static std::string r4ToString(float value);
    static std::string r8ToString(double value, const std::string& format);
    static std::string r8ToString(double value);
    static std::string booleanToString(bool value);
    // The byte 0 gives the empty string.
    static std::string charToString(char value);
    static std::string stringToString(const std::string& value);
    // No padding and no sign: year 5 is "5".
    static std::string yearToString(unsigned short value);
    // "--MM"
    static std::string monthToString(unsigned char value);
    // "---DD"
    static std::string dayToString(unsigned char value);

    // Text to values. Empty text gives 0 for the integers and NaN for the floats.
    static char i1FromString(const std::string& text, WhitespaceRule rule);
    static short i2FromString(const std::string& text, WhitespaceRule rule);
    static long i4FromString(const std::string& text, WhitespaceRule rule);
    static long long i8FromString(const std::string& text, WhitespaceRule rule);
    static unsigned char ui1FromString(const std::string& text, WhitespaceRule rule);
    static unsigned short ui2FromString(const std::string& text, WhitespaceRule rule);
    // A leading "-" is taken as strtoul takes it: "-1" is the largest value.
    static unsigned long ui4FromString(const std::string& text, WhitespaceRule rule);
    static unsigned long long ui8FromString(const std::string& text, WhitespaceRule rule);
    // Out-of-range values become infinities (r4) or what strtod returns (r8).
    static float r4FromString(const std::string& text, WhitespaceRule rule);
    static double r8FromString(const std::string& text, WhitespaceRule rule);
    // "true", "false", "1" or "0", ignoring case.
    static bool booleanFromString(const std::string& text, WhitespaceRule rule);
    // Exactly one byte.
    static char charFromString(const std::string& text, WhitespaceRule rule);
    static std::string stringFromString(const std::string& text, WhitespaceRule rule);

    // The kinds built on the big-number, date, duration and binary types.
    static std::string integerToString(const CBigInteger& value);
    // An empty format prints every digit; otherwise atoi(format) fraction digits.
    static std::string decimalToString(const CDecimal& value, const std::string& format);
    static std::string decimalToString(const CDecimal& value);
    // All five print the value by its own date type, whatever the function's name.
    static std::string dateToString(const CDateTime& value);
    static std::string datetimeToString(const CDateTime& value);
    static std::string timeToString(const CDateTime& value);
    static std::string monthDayToString(const CDateTime& value);
    static std::string yearMonthToString(const CDateTime& value);
    static std::string durationToString(const CDateTimeSpan& value);
    static std::string base64BinaryToString(const CBinaryData& value);
    static std::string hexBinaryToString(const CBinaryData& value);

    static CBigInteger integerFromString(const std::string& text, WhitespaceRule rule);
    static CDecimal decimalFromString(const std::string& text, WhitespaceRule rule);
    // The date parsers take their date type from the shape of the text: dateFromString
    // of "2000-05" gives a gYearMonth value.
    static CDateTime dateFromString(const std::string& text, WhitespaceRule rule);
    static CDateTime datetimeFromString(const std::string& text, WhitespaceRule rule);
    static CDateTime timeFromString(const std::string& text, WhitespaceRule rule);
    static CDateTime yearMonthFromString(const std::string& text, WhitespaceRule rule);
    static CDateTime monthDayFromString(const std::string& text, WhitespaceRule rule);
    static CDateTimeSpan durationFromString(const std::string& text, WhitespaceRule rule);
    static CBinaryData hexBinaryFromString(const std::string& text, WhitespaceRule rule);
    static CBinaryData base64BinaryFromString(const std::string& text, WhitespaceRule rule);
    // Parsed as dates; only the getter of the field checks the date type. A negative
    // year is cut to 16 bits.
    static unsigned short yearFromString(const std::string& text, WhitespaceRule rule);
    static unsigned char monthFromString(const std::string& text, WhitespaceRule rule);
    static unsigned char dayFromString(const std::string& text, WhitespaceRule rule);
};

} // namespace QvXmlLib10
