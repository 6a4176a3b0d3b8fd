#include "validation/XmlObjectHelper.h"

#include <algorithm>
#include <cstring>

#include <utility>

#include "foundation/BinaryData.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "validation/RegEx.h"
#include "values/Conversions.h"
#include "values/BigInteger.h"
#include "values/DateTime.h"
#include "values/DateTimeSpan.h"
#include "values/Decimal.h"
#include "values/QvVariant.h"

namespace QvXmlLib10 {

namespace {

constexpr auto kBoundRule = CWhitespaceUtils::WhitespaceRule_Collapse;

// Each facet that is set is tested as the condition the value must meet, so that a
// NaN, for which every comparison is false, fails them all. `parse` turns a bound into
// the value's type; `reject` throws the failure.
template <typename T, typename Parse, typename Reject>
void CheckOrdered(T value, const CPrimitiveRestrictions& restrictions, Parse parse, Reject reject) {
    if (!restrictions.m_strMinInclusive.empty() && !(value >= parse(restrictions.m_strMinInclusive))) reject();
    if (!restrictions.m_strMaxInclusive.empty() && !(value <= parse(restrictions.m_strMaxInclusive))) reject();
    if (!restrictions.m_strMinExclusive.empty() && !(value > parse(restrictions.m_strMinExclusive))) reject();
    if (!restrictions.m_strMaxExclusive.empty() && !(value < parse(restrictions.m_strMaxExclusive))) reject();
}

[[noreturn]] void RejectText(const char* name, const std::string& value) {
    throw CQvException(FormatString("Invalid Value for %s [%s]", name, value.c_str()));
}

[[noreturn]] void RejectInteger(const char* name, int value) {
    throw CQvException(FormatString("Invalid Value for %s [%d]", name, value));
}

[[noreturn]] void RejectFloat(const char* name, double value) {
    throw CQvException(FormatString("Invalid Value for %s [%f]", name, value));
}

} // namespace

// A rich value the variant holds as `type` is checked in place; anything else (another
// kind, nil) is read through the getter, as the getter would give it.
template <typename T, typename Check>
void CXmlObjectHelper::CheckHeld(const QvVariant& value, ItemType type, T (QvVariant::*get)() const, Check check) {
    const void* const held = value.HeldValue(type);
    if (held != nullptr)
        check(*static_cast<const T*>(held));
    else
        check((value.*get)());
}

void CXmlObjectHelper::CheckRestriction(const char* name, const QvVariant& value, ItemType type,
                                        const CPrimitiveRestrictions& restrictions) {
    switch (type) {
    case ItemType_i1:
        CheckRestrictionFori1(name, value.GetI1(), restrictions);
        break;
    case ItemType_i2:
        CheckRestrictionFori2(name, value.GetI2(), restrictions);
        break;
    case ItemType_i4:
        CheckRestrictionFori4(name, value.GetI4(), restrictions);
        break;
    case ItemType_i8:
        CheckRestrictionFori8(name, value.GetI8(), restrictions);
        break;
    case ItemType_ui1:
        CheckRestrictionForui1(name, value.GetUI1(), restrictions);
        break;
    case ItemType_ui2:
        CheckRestrictionForui2(name, value.GetUI2(), restrictions);
        break;
    case ItemType_ui4:
        CheckRestrictionForui4(name, value.GetUI4(), restrictions);
        break;
    case ItemType_ui8:
        CheckRestrictionForui8(name, value.GetUI8(), restrictions);
        break;
    case ItemType_r4:
        CheckRestrictionForr4(name, value.GetR4(), restrictions);
        break;
    case ItemType_r8:
        CheckRestrictionForr8(name, value.GetR8(), restrictions);
        break;
    case ItemType_string:
        CheckRestrictionForstring(name, value.GetString(), restrictions);
        break;
    case ItemType_boolean:
        CheckRestrictionForboolean(name, value.GetBoolean(), restrictions);
        break;
    case ItemType_hexBinary:
        CheckHeld<CBinaryData>(value, type, &QvVariant::GetHexBinary, [&](const CBinaryData& held) {
            CheckRestrictionForhexBinary(name, held, restrictions);
        });
        break;
    case ItemType_base64Binary:
        CheckHeld<CBinaryData>(value, type, &QvVariant::GetBase64Binary, [&](const CBinaryData& held) {
            CheckRestrictionForbase64Binary(name, held, restrictions);
        });
        break;
    case ItemType_duration:
        CheckHeld<CDateTimeSpan>(value, type, &QvVariant::GetDuration, [&](const CDateTimeSpan& held) {
            CheckRestrictionForduration(name, held, restrictions);
        });
        break;
    case ItemType_yearMonth:
        CheckHeld<CDateTime>(value, type, &QvVariant::GetYearMonth,
                             [&](const CDateTime& held) { CheckRestrictionForyearMonth(name, held, restrictions); });
        break;
    case ItemType_monthDay:
        CheckHeld<CDateTime>(value, type, &QvVariant::GetMonthDay,
                             [&](const CDateTime& held) { CheckRestrictionFormonthDay(name, held, restrictions); });
        break;
    case ItemType_year:
        CheckRestrictionForyear(name, value.GetYear(), restrictions);
        break;
    case ItemType_month:
        CheckRestrictionFormonth(name, value.GetMonth(), restrictions);
        break;
    case ItemType_day:
        CheckRestrictionForday(name, value.GetDay(), restrictions);
        break;
    case ItemType_date:
        CheckHeld<CDateTime>(value, type, &QvVariant::GetDate,
                             [&](const CDateTime& held) { CheckRestrictionFordate(name, held, restrictions); });
        break;
    case ItemType_datetime:
        CheckHeld<CDateTime>(value, type, &QvVariant::GetDateTime,
                             [&](const CDateTime& held) { CheckRestrictionFordatetime(name, held, restrictions); });
        break;
    case ItemType_time:
        CheckHeld<CDateTime>(value, type, &QvVariant::GetTime,
                             [&](const CDateTime& held) { CheckRestrictionFortime(name, held, restrictions); });
        break;
    case ItemType_decimal:
        CheckHeld<CDecimal>(value, type, &QvVariant::GetDecimal,
                            [&](const CDecimal& held) { CheckRestrictionFordecimal(name, held, restrictions); });
        break;
    case ItemType_integer:
        CheckHeld<CBigInteger>(value, type, &QvVariant::GetInteger,
                               [&](const CBigInteger& held) { CheckRestrictionForinteger(name, held, restrictions); });
        break;
    default:
        // GetType throws first for a variant of no primitive kind.
        throw CQvInvalidValueException("unknown type [" + value.GetType() + "]");
    }
}

void CXmlObjectHelper::CheckRestrictionFori1(const char* name, char value, const CPrimitiveRestrictions& restrictions) {
    const signed char number = static_cast<signed char>(value);
    CheckOrdered(
        number, restrictions,
        [](const std::string& bound) {
            return static_cast<signed char>(CConversions::i1FromString(bound, kBoundRule));
        },
        [&] { RejectInteger(name, number); });
}

void CXmlObjectHelper::CheckRestrictionFori2(const char* name, short value,
                                             const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::i2FromString(bound, kBoundRule); },
        [&] { RejectInteger(name, value); });
}

void CXmlObjectHelper::CheckRestrictionFori4(const char* name, long value, const CPrimitiveRestrictions& restrictions) {
    // i4 is a long: it is shown whole, not cut to an int.
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::i4FromString(bound, kBoundRule); },
        [&] { throw CQvException(FormatString("Invalid Value for %s [%ld]", name, value)); });
}

void CXmlObjectHelper::CheckRestrictionFori8(const char* name, long long value,
                                             const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::i8FromString(bound, kBoundRule); },
        [&] { RejectText(name, CConversions::i8ToString(value)); });
}

void CXmlObjectHelper::CheckRestrictionForui1(const char* name, unsigned char value,
                                              const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::ui1FromString(bound, kBoundRule); },
        [&] { RejectInteger(name, value); });
}

void CXmlObjectHelper::CheckRestrictionForui2(const char* name, unsigned short value,
                                              const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::ui2FromString(bound, kBoundRule); },
        [&] { RejectInteger(name, value); });
}

void CXmlObjectHelper::CheckRestrictionForui4(const char* name, unsigned long value,
                                              const CPrimitiveRestrictions& restrictions) {
    // ui4 is an unsigned long: it is shown whole, not cut to an int.
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::ui4FromString(bound, kBoundRule); },
        [&] { throw CQvException(FormatString("Invalid Value for %s [%lu]", name, value)); });
}

void CXmlObjectHelper::CheckRestrictionForui8(const char* name, unsigned long long value,
                                              const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::ui8FromString(bound, kBoundRule); },
        [&] { RejectText(name, CConversions::ui8ToString(value)); });
}

void CXmlObjectHelper::CheckRestrictionForr4(const char* name, float value,
                                             const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::r4FromString(bound, kBoundRule); },
        [&] { RejectFloat(name, value); });
}

void CXmlObjectHelper::CheckRestrictionForr8(const char* name, double value,
                                             const CPrimitiveRestrictions& restrictions) {
    CheckOrdered(
        value, restrictions, [](const std::string& bound) { return CConversions::r8FromString(bound, kBoundRule); },
        [&] { RejectFloat(name, value); });
}

void CXmlObjectHelper::CheckRestrictionForstring(const char* name, std::string value,
                                                 const CPrimitiveRestrictions& restrictions) {
    const long long length = static_cast<long long>(value.size());
    if (restrictions.m_nMinLength >= 0 && length < restrictions.m_nMinLength) RejectText(name, value);
    if (restrictions.m_nMaxLength >= 0 && length > restrictions.m_nMaxLength) RejectText(name, value);
    if (restrictions.m_nLength >= 0 && length != restrictions.m_nLength) RejectText(name, value);

    if (restrictions.m_strPattern.empty()) return;
    // Patterns are matched in UTF-8; a pattern of plain ASCII without NUL is its own
    // UTF-8 and is used as it stands, with no copy per check. Otherwise the text ends at
    // its first NUL, as the conversion ends it.
    const std::string& text = restrictions.m_strPattern;
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c != '\0' && (c & 0x80) == 0; });
    std::string converted;
    if (!plain) {
        const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(text.c_str());
        if (utf8.GetData() != nullptr)
            converted.assign(reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength());
        converted.resize(std::strlen(converted.c_str()));
    }
    const std::string& pattern = plain ? text : converted;
    bool matches = false;
    try {
        matches = Internal::TestRegExReusing(pattern, value, restrictions.m_pCompiledPattern);
    } catch (const CQvException& e) {
        throw CQvException(
            FormatString("%s\nInvalid Value for %s [%s]", e.GetFullMessage().c_str(), name, value.c_str()));
    }
    if (!matches) RejectText(name, value);
}

void CXmlObjectHelper::CheckRestrictionForboolean(const char*, bool, const CPrimitiveRestrictions&) {}

} // namespace QvXmlLib10
