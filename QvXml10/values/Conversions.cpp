#include "values/Conversions.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <strings.h>

#include "foundation/QvException.h"

namespace QvXmlLib10 {

namespace {

// The text after the rule. Rule None refers to the argument itself and copies nothing;
// any other rule leaves its result in `scratch`.
const std::string& AfterRule(const std::string& text, CWhitespaceUtils::WhitespaceRule rule, std::string& scratch) {
    if (rule == CWhitespaceUtils::WhitespaceRule_None) return text;
    scratch = CWhitespaceUtils::ApplyRule(rule, text);
    return scratch;
}

template <typename T> std::string IntegerText(T value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

[[noreturn]] void ThrowTooLarge(const std::string& text, const char* kind) {
    throw CQvInvalidValueException(FormatString("The value [%s] is to large to fit in a %s", text.c_str(), kind));
}

[[noreturn]] void ThrowNotConvertible(const std::string& text, const char* kind) {
    throw CQvInvalidValueException(FormatString("The value [%s] can not be converted to a %s", text.c_str(), kind));
}

// One routine over strtol, strtoul, strtoll and strtoull. The text stops at its
// first NUL; empty text is 0.
template <typename T, T (*Parse)(const char*, char**, int)>
T ParseInteger(const std::string& text, CWhitespaceUtils::WhitespaceRule rule, const char* kind) {
    std::string scratch;
    const std::string& value = AfterRule(text, rule, scratch);
    char* end = nullptr;
    errno = 0;
    const T result = Parse(value.c_str(), &end, 10);
    if (errno == ERANGE) ThrowTooLarge(value, kind);
    if (*end != '\0') ThrowNotConvertible(value, kind);
    return result;
}

double ParseDouble(const std::string& text, CWhitespaceUtils::WhitespaceRule rule, const char* kind) {
    std::string scratch;
    const std::string& value = AfterRule(text, rule, scratch);
    if (value.empty() || value == "NaN" || value == "1.#QNAN" || value == "-NAN")
        return std::numeric_limits<double>::quiet_NaN();
    if (value == "-INF") return -std::numeric_limits<double>::infinity();
    if (value == "INF") return std::numeric_limits<double>::infinity();
    char* end = nullptr;
    const double result = std::strtod(value.c_str(), &end);
    if (*end != '\0') ThrowNotConvertible(value, kind);
    return result;
}

// Narrowing with IEEE rounding, including overflow to infinity, without the
// undefined behaviour of converting an out-of-range double.
float NarrowToFloat(double value) {
    constexpr float kMax = std::numeric_limits<float>::max();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    // Half an ulp above FLT_MAX already rounds (to even) up to infinity.
    constexpr double kOverflowThreshold = 0x1.ffffffp127;
    if (std::isfinite(value) && std::fabs(value) > static_cast<double>(kMax)) {
        const float magnitude = std::fabs(value) >= kOverflowThreshold ? kInfinity : kMax;
        return std::signbit(value) ? -magnitude : magnitude;
    }
    return static_cast<float>(value);
}

template <std::size_t BufferSize>
std::string FloatText(double value, const std::string& format, const char* defaultFormat) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
    char buffer[BufferSize];
    buffer[0] = '\0';
    std::snprintf(buffer, sizeof buffer, format.empty() ? defaultFormat : format.c_str(), value);
    return buffer;
}

} // namespace

std::string CConversions::i1ToString(char value) {
    return IntegerText(static_cast<int>(static_cast<signed char>(value)));
}

std::string CConversions::i2ToString(short value) { return IntegerText(static_cast<int>(value)); }

std::string CConversions::i4ToString(long value) { return IntegerText(value); }

std::string CConversions::i8ToString(long long value) { return IntegerText(value); }

std::string CConversions::ui1ToString(unsigned char value) { return IntegerText(static_cast<unsigned int>(value)); }

std::string CConversions::ui2ToString(unsigned short value) { return IntegerText(static_cast<unsigned int>(value)); }

std::string CConversions::ui4ToString(unsigned long value) { return IntegerText(value); }

std::string CConversions::ui8ToString(unsigned long long value) { return IntegerText(value); }

std::string CConversions::r4ToString(float value, const std::string& format) {
    return FloatText<32>(static_cast<double>(value), format, "%.7g");
}

std::string CConversions::r4ToString(float value) { return r4ToString(value, std::string()); }

std::string CConversions::r8ToString(double value, const std::string& format) {
    return FloatText<48>(value, format, "%.16g");
}

std::string CConversions::r8ToString(double value) { return r8ToString(value, std::string()); }

std::string CConversions::booleanToString(bool value) { return value ? "true" : "false"; }

std::string CConversions::charToString(char value) { return value == '\0' ? std::string() : std::string(1, value); }

std::string CConversions::stringToString(const std::string& value) { return value; }

std::string CConversions::yearToString(unsigned short value) { return IntegerText(static_cast<unsigned int>(value)); }

std::string CConversions::monthToString(unsigned char value) {
    char buffer[10];
    std::snprintf(buffer, sizeof buffer, "--%02u", static_cast<unsigned int>(value));
    return buffer;
}

std::string CConversions::dayToString(unsigned char value) {
    char buffer[10];
    std::snprintf(buffer, sizeof buffer, "---%02u", static_cast<unsigned int>(value));
    return buffer;
}

char CConversions::i1FromString(const std::string& text, WhitespaceRule rule) {
    const long value = i4FromString(text, rule);
    if (value < -128 || value > 127) ThrowTooLarge(text, "i1");
    return static_cast<char>(value);
}

short CConversions::i2FromString(const std::string& text, WhitespaceRule rule) {
    const long value = i4FromString(text, rule);
    if (value < -32768 || value > 32767) ThrowTooLarge(text, "i2");
    return static_cast<short>(value);
}

long CConversions::i4FromString(const std::string& text, WhitespaceRule rule) {
    return ParseInteger<long, std::strtol>(text, rule, "i4");
}

long long CConversions::i8FromString(const std::string& text, WhitespaceRule rule) {
    return ParseInteger<long long, std::strtoll>(text, rule, "i8");
}

unsigned char CConversions::ui1FromString(const std::string& text, WhitespaceRule rule) {
    const unsigned long value = ui4FromString(text, rule);
    if (value >= 256) ThrowTooLarge(text, "ui1");
    return static_cast<unsigned char>(value);
}

unsigned short CConversions::ui2FromString(const std::string& text, WhitespaceRule rule) {
    const unsigned long value = ui4FromString(text, rule);
    if (value >= 65536) ThrowTooLarge(text, "ui2");
    return static_cast<unsigned short>(value);
}

unsigned long CConversions::ui4FromString(const std::string& text, WhitespaceRule rule) {
    return ParseInteger<unsigned long, std::strtoul>(text, rule, "ui4");
}

unsigned long long CConversions::ui8FromString(const std::string& text, WhitespaceRule rule) {
    return ParseInteger<unsigned long long, std::strtoull>(text, rule, "ui8");
}

float CConversions::r4FromString(const std::string& text, WhitespaceRule rule) {
    return NarrowToFloat(ParseDouble(text, rule, "r4"));
}

double CConversions::r8FromString(const std::string& text, WhitespaceRule rule) {
    return ParseDouble(text, rule, "r8");
}

bool CConversions::booleanFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    const char* const value = AfterRule(text, rule, scratch).c_str();
    if (strcasecmp(value, "true") == 0) return true;
    if (strcasecmp(value, "false") == 0) return false;
    if (strcasecmp(value, "1") == 0) return true;
    if (strcasecmp(value, "0") == 0) return false;
    throw CQvInvalidValueException(FormatString(
        "A Boolean Value read from an XML document was invalid [%s]. Valid values are 'true', 'false', '1', or '0'",
        text.c_str()));
}

char CConversions::charFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    const std::string& value = AfterRule(text, rule, scratch);
    if (value.size() != 1)
        throw CQvInvalidValueException(FormatString(
            "The value [%s] can not be a char as it is either empty of greater than 1 char long", value.c_str()));
    return value[0];
}

std::string CConversions::stringFromString(const std::string& text, WhitespaceRule rule) {
    return CWhitespaceUtils::ApplyRule(rule, text);
}

// ---- Kinds built on the rich value types ----------------------------------------

std::string CConversions::integerToString(const CBigInteger& value) { return value.ToString(); }

std::string CConversions::decimalToString(const CDecimal& value, const std::string& format) {
    return format.empty() ? value.ToString() : value.ToString(std::atoi(format.c_str()));
}

std::string CConversions::decimalToString(const CDecimal& value) { return value.ToString(); }

std::string CConversions::dateToString(const CDateTime& value) { return value.ToString("s"); }

std::string CConversions::datetimeToString(const CDateTime& value) { return value.ToString("s"); }

std::string CConversions::timeToString(const CDateTime& value) { return value.ToString("s"); }

std::string CConversions::monthDayToString(const CDateTime& value) { return value.ToString("s"); }

std::string CConversions::yearMonthToString(const CDateTime& value) { return value.ToString("s"); }

std::string CConversions::durationToString(const CDateTimeSpan& value) { return value.ToString(); }

std::string CConversions::base64BinaryToString(const CBinaryData& value) { return value.GetAsBase64(); }

std::string CConversions::hexBinaryToString(const CBinaryData& value) { return value.GetAsHexString(); }

namespace {

// A date value of `type`, then parsed by `parse`, which sets the type from the text.
CDateTime ParseDate(const std::string& text, CWhitespaceUtils::WhitespaceRule rule, CDateTime::DTType type,
                    void (CDateTime::*parse)(const char*)) {
    std::string scratch;
    CDateTime value(type);
    (value.*parse)(AfterRule(text, rule, scratch).c_str());
    return value;
}

} // namespace

CBigInteger CConversions::integerFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    return CBigInteger(AfterRule(text, rule, scratch).c_str());
}

CDecimal CConversions::decimalFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    return CDecimal(AfterRule(text, rule, scratch).c_str());
}

CDateTime CConversions::dateFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_date, &CDateTime::ParseXSDDate);
}

CDateTime CConversions::datetimeFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_dateTime, &CDateTime::ParseXSDDateTime);
}

CDateTime CConversions::timeFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_time, &CDateTime::ParseXSDTime);
}

CDateTime CConversions::yearMonthFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gYearMonth, &CDateTime::ParseXSDDate);
}

CDateTime CConversions::monthDayFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gMonthDay, &CDateTime::ParseXSDDate);
}

CDateTimeSpan CConversions::durationFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    CDateTimeSpan value;
    value.ParseXSDDuration(AfterRule(text, rule, scratch).c_str());
    return value;
}

CBinaryData CConversions::hexBinaryFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    CBinaryData value;
    value.SetAsHexString(AfterRule(text, rule, scratch).c_str());
    return value;
}

CBinaryData CConversions::base64BinaryFromString(const std::string& text, WhitespaceRule rule) {
    std::string scratch;
    CBinaryData value;
    value.SetAsBase64(AfterRule(text, rule, scratch).c_str());
    return value;
}

unsigned short CConversions::yearFromString(const std::string& text, WhitespaceRule rule) {
    return static_cast<unsigned short>(
        ParseDate(text, rule, CDateTime::DTType_gYear, &CDateTime::ParseXSDDate).GetYear());
}

unsigned char CConversions::monthFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gMonth, &CDateTime::ParseXSDDate).GetMonth();
}

unsigned char CConversions::dayFromString(const std::string& text, WhitespaceRule rule) {
    return ParseDate(text, rule, CDateTime::DTType_gDay, &CDateTime::ParseXSDDate).GetDay();
}

} // namespace QvXmlLib10
