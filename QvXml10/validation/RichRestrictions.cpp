// Facet checks of the kinds whose values are binary data, big numbers, dates and
// durations, and of year, month and day.
#include <array>
#include <atomic>
#include <memory>
#include <string>

#include "foundation/BinaryData.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "values/BigInteger.h"
#include "values/Conversions.h"
#include "values/DateTime.h"
#include "values/DateTimeSpan.h"
#include "values/Decimal.h"

namespace QvXmlLib10 {
namespace Internal {

// The four bounds of one set of facets, parsed as one kind. A bound whose text did not
// parse has no value here and is parsed again when a check reaches it, so that its
// failure comes exactly where an unparsed bound would fail.
class CBoundCache {
public:
    ItemType m_kind = ItemType_Invalid;
    std::array<std::string, 4> m_texts;
    std::array<std::shared_ptr<const void>, 4> m_values;
};

struct CBoundAccess {
    static std::shared_ptr<const CBoundCache>& Slot(const CPrimitiveRestrictions& restrictions) {
        return restrictions.m_pParsedBounds;
    }
};

} // namespace Internal

namespace {

using Internal::CBoundCache;

constexpr auto kBoundRule = CWhitespaceUtils::WhitespaceRule_Collapse;

enum Facet { kMinInclusive, kMaxInclusive, kMinExclusive, kMaxExclusive };

const std::string& BoundText(const CPrimitiveRestrictions& restrictions, int facet) {
    switch (facet) {
    case kMinInclusive:
        return restrictions.m_strMinInclusive;
    case kMaxInclusive:
        return restrictions.m_strMaxInclusive;
    case kMinExclusive:
        return restrictions.m_strMinExclusive;
    default:
        return restrictions.m_strMaxExclusive;
    }
}

// The parsed bounds of `restrictions` as `kind`: the kept ones while the kind and texts
// are those they were parsed from, else freshly parsed ones, which are then kept. The
// slot is read and replaced atomically, and what it holds never changes.
template <typename T, typename Parse>
std::shared_ptr<const CBoundCache> ParsedBounds(const CPrimitiveRestrictions& restrictions, ItemType kind,
                                                Parse parse) {
    auto& slot = Internal::CBoundAccess::Slot(restrictions);
    std::shared_ptr<const CBoundCache> cached = std::atomic_load(&slot);
    if (cached && cached->m_kind == kind) {
        bool same = true;
        for (int facet = 0; facet < 4 && same; ++facet)
            same = cached->m_texts[facet] == BoundText(restrictions, facet);
        if (same) return cached;
    }
    auto fresh = std::make_shared<CBoundCache>();
    fresh->m_kind = kind;
    for (int facet = 0; facet < 4; ++facet) {
        const std::string& text = BoundText(restrictions, facet);
        fresh->m_texts[facet] = text;
        if (text.empty()) continue;
        try {
            fresh->m_values[facet] = std::make_shared<const T>(parse(text, kBoundRule));
        } catch (const CQvException&) {
            // Left unparsed: the check that reaches this bound parses it again and fails.
        }
    }
    std::shared_ptr<const CBoundCache> result = std::move(fresh);
    std::atomic_store(&slot, result);
    return result;
}

// Runs `passes(value, bound, facet)` for each facet that is set, in order, and `reject`
// at the first that does not pass.
template <typename T, typename Parse, typename Passes, typename Reject>
void CheckBounds(const CPrimitiveRestrictions& restrictions, ItemType kind, Parse parse, Passes passes, Reject reject) {
    if (restrictions.m_strMinInclusive.empty() && restrictions.m_strMaxInclusive.empty() &&
        restrictions.m_strMinExclusive.empty() && restrictions.m_strMaxExclusive.empty())
        return;
    const std::shared_ptr<const CBoundCache> bounds = ParsedBounds<T>(restrictions, kind, parse);
    for (int facet = 0; facet < 4; ++facet) {
        if (bounds->m_texts[facet].empty()) continue;
        const void* const kept = bounds->m_values[facet].get();
        if (kept != nullptr) {
            if (!passes(*static_cast<const T*>(kept), facet)) reject();
        } else {
            // Throws the parser's failure, as a bound that does not parse must.
            const T bound = parse(bounds->m_texts[facet], kBoundRule);
            if (!passes(bound, facet)) reject();
        }
    }
}

// Totally ordered kinds.
template <typename T, typename Parse, typename Reject>
void CheckOrderedBounds(const T& value, const CPrimitiveRestrictions& restrictions, ItemType kind, Parse parse,
                        Reject reject) {
    CheckBounds<T>(
        restrictions, kind, parse,
        [&value](const T& bound, int facet) {
            switch (facet) {
            case kMinInclusive:
                return value >= bound;
            case kMaxInclusive:
                return value <= bound;
            case kMinExclusive:
                return value > bound;
            default:
                return value < bound;
            }
        },
        reject);
}

// Partially ordered kinds: CompareTo gives 0 equal, 1 less, 2 greater, 3 indeterminate,
// and an indeterminate answer passes every facet.
template <typename T, typename Parse, typename Reject>
void CheckPartialBounds(const T& value, const CPrimitiveRestrictions& restrictions, ItemType kind, Parse parse,
                        Reject reject) {
    CheckBounds<T>(
        restrictions, kind, parse,
        [&value](const T& bound, int facet) {
            const int order = value.CompareTo(bound);
            switch (facet) {
            case kMinInclusive:
                return order != 1;
            case kMaxInclusive:
                return order != 2;
            case kMinExclusive:
                return order == 2 || order == 3;
            default:
                return order == 1 || order == 3;
            }
        },
        reject);
}

[[noreturn]] void RejectText(const char* name, const std::string& value) {
    throw CQvException(FormatString("Invalid Value for %s [%s]", name, value.c_str()));
}

[[noreturn]] void RejectNumber(const char* name, int value) {
    throw CQvException(FormatString("Invalid Value for %s [%d]", name, value));
}

void CheckBinary(const char* name, const CBinaryData& value, const CPrimitiveRestrictions& restrictions) {
    const long long length = static_cast<long long>(value.GetLength());
    if ((restrictions.m_nMinLength >= 0 && length < restrictions.m_nMinLength) ||
        (restrictions.m_nMaxLength >= 0 && length > restrictions.m_nMaxLength) ||
        (restrictions.m_nLength >= 0 && length != restrictions.m_nLength))
        RejectText(name, value.GetAsHexString());
}

void CheckDate(const char* name, const CDateTime& value, const CPrimitiveRestrictions& restrictions, ItemType kind,
               CDateTime (*parse)(const std::string&, CWhitespaceUtils::WhitespaceRule)) {
    CheckPartialBounds(value, restrictions, kind, parse, [&] { RejectText(name, value.ToString()); });
}

} // namespace

void CXmlObjectHelper::CheckRestrictionForhexBinary(const char* name, const CBinaryData& value,
                                                    const CPrimitiveRestrictions& restrictions) {
    CheckBinary(name, value, restrictions);
}

void CXmlObjectHelper::CheckRestrictionForbase64Binary(const char* name, const CBinaryData& value,
                                                       const CPrimitiveRestrictions& restrictions) {
    CheckBinary(name, value, restrictions);
}

void CXmlObjectHelper::CheckRestrictionForduration(const char* name, const CDateTimeSpan& value,
                                                   const CPrimitiveRestrictions& restrictions) {
    CheckPartialBounds(value, restrictions, ItemType_duration, &CConversions::durationFromString,
                       [&] { RejectText(name, value.ToString()); });
}

void CXmlObjectHelper::CheckRestrictionForyearMonth(const char* name, const CDateTime& value,
                                                    const CPrimitiveRestrictions& restrictions) {
    CheckDate(name, value, restrictions, ItemType_yearMonth, &CConversions::yearMonthFromString);
}

void CXmlObjectHelper::CheckRestrictionFormonthYear(const char* name, const CDateTime& value,
                                                    const CPrimitiveRestrictions& restrictions) {
    CheckRestrictionForyearMonth(name, value, restrictions);
}

void CXmlObjectHelper::CheckRestrictionFormonthDay(const char* name, const CDateTime& value,
                                                   const CPrimitiveRestrictions& restrictions) {
    CheckDate(name, value, restrictions, ItemType_monthDay, &CConversions::monthDayFromString);
}

void CXmlObjectHelper::CheckRestrictionFordate(const char* name, const CDateTime& value,
                                               const CPrimitiveRestrictions& restrictions) {
    CheckDate(name, value, restrictions, ItemType_date, &CConversions::dateFromString);
}

void CXmlObjectHelper::CheckRestrictionFordatetime(const char* name, const CDateTime& value,
                                                   const CPrimitiveRestrictions& restrictions) {
    CheckDate(name, value, restrictions, ItemType_datetime, &CConversions::datetimeFromString);
}

void CXmlObjectHelper::CheckRestrictionFortime(const char* name, const CDateTime& value,
                                               const CPrimitiveRestrictions& restrictions) {
    CheckDate(name, value, restrictions, ItemType_time, &CConversions::timeFromString);
}

void CXmlObjectHelper::CheckRestrictionForyear(const char* name, unsigned short value,
                                               const CPrimitiveRestrictions& restrictions) {
    CheckOrderedBounds(value, restrictions, ItemType_year, &CConversions::yearFromString,
                       [&] { RejectNumber(name, value); });
}

void CXmlObjectHelper::CheckRestrictionFormonth(const char* name, unsigned char value,
                                                const CPrimitiveRestrictions& restrictions) {
    CheckOrderedBounds(value, restrictions, ItemType_month, &CConversions::monthFromString,
                       [&] { RejectNumber(name, value); });
}

void CXmlObjectHelper::CheckRestrictionForday(const char* name, unsigned char value,
                                              const CPrimitiveRestrictions& restrictions) {
    CheckOrderedBounds(value, restrictions, ItemType_day, &CConversions::dayFromString,
                       [&] { RejectNumber(name, value); });
}

void CXmlObjectHelper::CheckRestrictionFordecimal(const char* name, const CDecimal& value,
                                                  const CPrimitiveRestrictions& restrictions) {
    CheckOrderedBounds(value, restrictions, ItemType_decimal, &CConversions::decimalFromString,
                       [&] { RejectText(name, value.ToString()); });
}

void CXmlObjectHelper::CheckRestrictionForinteger(const char* name, const CBigInteger& value,
                                                  const CPrimitiveRestrictions& restrictions) {
    CheckOrderedBounds(value, restrictions, ItemType_integer, &CConversions::integerFromString,
                       [&] { RejectText(name, value.ToString()); });
}

} // namespace QvXmlLib10
