#include "internal/ItemKinds.h"

#include "foundation/BinaryData.h"
#include "values/BigInteger.h"
#include "values/Conversions.h"
#include "values/DateTime.h"
#include "values/DateTimeSpan.h"
#include "values/Decimal.h"

namespace QvXmlLib10 {
namespace Internal {

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

template <typename T> void* Clone(const void* value) { return new T(*static_cast<const T*>(value)); }

template <typename T> void Destroy(void* value) { delete static_cast<T*>(value); }

// One heap kind: its value type, the conversion to text (taking the format or not) and
// the conversion from text.
template <typename T, std::string (*ToText)(const T&), T (*FromText)(const std::string&, Rule)> struct Heap {
    static std::string ToString(const void* value, const std::string&) { return ToText(*static_cast<const T*>(value)); }
    static void* FromString(const std::string& text, Rule rule) { return new T(FromText(text, rule)); }
    static constexpr CItemKind Entry(const char* name) {
        return CItemKind{name, &Clone<T>, &Destroy<T>, &ToString, &FromString};
    }
};

std::string StringText(const std::string& value) { return value; }

// The decimal is the only heap kind that takes the format (as a count of digits).
std::string DecimalText(const void* value, const std::string& format) {
    return CConversions::decimalToString(*static_cast<const CDecimal*>(value), format);
}

constexpr CItemKind Scalar(const char* name) { return CItemKind{name, nullptr, nullptr, nullptr, nullptr}; }

using HexKind = Heap<CBinaryData, &CConversions::hexBinaryToString, &CConversions::hexBinaryFromString>;
using Base64Kind = Heap<CBinaryData, &CConversions::base64BinaryToString, &CConversions::base64BinaryFromString>;
using DurationKind = Heap<CDateTimeSpan, &CConversions::durationToString, &CConversions::durationFromString>;
using YearMonthKind = Heap<CDateTime, &CConversions::yearMonthToString, &CConversions::yearMonthFromString>;
using MonthDayKind = Heap<CDateTime, &CConversions::monthDayToString, &CConversions::monthDayFromString>;
using DateKind = Heap<CDateTime, &CConversions::dateToString, &CConversions::dateFromString>;
using DateTimeKind = Heap<CDateTime, &CConversions::datetimeToString, &CConversions::datetimeFromString>;
using TimeKind = Heap<CDateTime, &CConversions::timeToString, &CConversions::timeFromString>;
using StringKind = Heap<std::string, &StringText, &CConversions::stringFromString>;
using DecimalKind = Heap<CDecimal, &CConversions::decimalToString, &CConversions::decimalFromString>;
using IntegerKind = Heap<CBigInteger, &CConversions::integerToString, &CConversions::integerFromString>;

constexpr CItemKind DecimalEntry() {
    return CItemKind{"decimal", &Clone<CDecimal>, &Destroy<CDecimal>, &DecimalText, &DecimalKind::FromString};
}

// Indexed by ItemType.
constexpr CItemKind kItemKinds[] = {
    Scalar(nullptr),                   // 0 Invalid
    HexKind::Entry("hexBinary"),       // 1
    Base64Kind::Entry("base64Binary"), // 2
    Scalar("i1"),                      // 3
    Scalar("i2"),                      // 4
    Scalar("i4"),                      // 5
    Scalar("i8"),                      // 6
    Scalar("ui1"),                     // 7
    Scalar("ui2"),                     // 8
    Scalar("ui4"),                     // 9
    Scalar("ui8"),                     // 10
    Scalar("r4"),                      // 11
    Scalar("r8"),                      // 12
    DurationKind::Entry("duration"),   // 13
    YearMonthKind::Entry("yearMonth"), // 14
    MonthDayKind::Entry("monthDay"),   // 15
    Scalar("year"),                    // 16
    Scalar("month"),                   // 17
    Scalar("day"),                     // 18
    DateKind::Entry("date"),           // 19
    DateTimeKind::Entry("datetime"),   // 20
    TimeKind::Entry("time"),           // 21
    Scalar("char"),                    // 22
    StringKind::Entry("string"),       // 23
    Scalar("boolean"),                 // 24
    DecimalEntry(),                    // 25
    IntegerKind::Entry("integer"),     // 26
    Scalar(nullptr),                   // 27 XmlObject
    Scalar(nullptr),                   // 28 XmlCollection
};

constexpr CItemKind kNoKind = Scalar(nullptr);

} // namespace

const CItemKind& GetItemKind(ItemType type) {
    const auto index = static_cast<unsigned>(type);
    return index < sizeof kItemKinds / sizeof kItemKinds[0] ? kItemKinds[index] : kNoKind;
}

} // namespace Internal
} // namespace QvXmlLib10
