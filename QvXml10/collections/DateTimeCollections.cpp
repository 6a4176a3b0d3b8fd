#include "collections/DateTimeCollections.h"

#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "values/Conversions.h"

namespace QvXmlLib10 {

CdatetimeBaseCol::CdatetimeBaseCol(ItemType itemType, const char* elementName, const char* namespaceUri, int minOccurs,
                                   int maxOccurs, const char* pattern, int minLength, int maxLength,
                                   const char* minInclusive, const char* maxInclusive, const char* minExclusive,
                                   const char* maxExclusive, int length,
                                   CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)
    : CXmlTypeCollection(itemType, elementName, namespaceUri, minOccurs, maxOccurs, pattern, minLength, maxLength,
                         minInclusive, maxInclusive, minExclusive, maxExclusive, length, whitespaceRule, format) {}

CdatetimeBaseCol::~CdatetimeBaseCol() = default;

int CdatetimeBaseCol::GetCount() const { return static_cast<int>(m_col.size()); }

void CdatetimeBaseCol::Clear() {
    while (GetCount() != 0)
        Remove(0);
}

void CdatetimeBaseCol::Remove(int index) {
    FireOnCollectionRemove(index);
    if (index < 0 || index >= GetCount())
        throw CQvInvalidParamException(FormatString("Index %d is out of range, use 0 - %d", index, GetCount()));
    m_col.erase(m_col.begin() + index);
    FireOnCollectionRemoveComplete(0);
    FireOnCollectionChange();
}

void CdatetimeBaseCol::Add(const CDateTime& value) { AddAt(GetCount(), value); }

CDateTime CdatetimeBaseCol::Item(int index) const {
    if (index < 0 || index >= GetCount())
        throw CQvInvalidParamException(FormatString("Index %d is out of range, use 0 - %d", index, GetCount()));
    return m_col[static_cast<size_t>(index)];
}

void CdatetimeBaseCol::BaseAddAt(int index, const CDateTime& value) {
    void* const item = const_cast<void*>(static_cast<const void*>(&value));
    FireOnCollectionAdd(item);
    if (index < 0 || index > GetCount()) throw CQvInvalidParamException("Index out of range");
    m_col.insert(m_col.begin() + index, value);
    FireOnCollectionAddComplete(item);
    FireOnCollectionChange();
}

void CdatetimeBaseCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*namespaceUri*/,
                                 const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    ValidateCount(context);
    for (const CDateTime& value : m_col) {
        writer->WriteStartElement(m_elementName, m_namespace);
        // Written as a dateTime for all five kinds.
        writer->WriteString(ItemToString(value), ItemType_datetime);
        writer->WriteEndElement();
    }
}

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

// The date type each member takes, its refusal, and its conversions and check by the
// names CConversions and CXmlObjectHelper give them.
template <ItemType K> struct CDateKindOps;

#define QVXML_DATE_KIND_OPS(kind, dateType, typeName)                                                                  \
    template <> struct CDateKindOps<ItemType_##kind> {                                                                 \
        static constexpr CDateTime::DTType kDateType = CDateTime::dateType;                                            \
        static constexpr const char* kRefusal = "Dates added to this collection must be of type " typeName;            \
        static CDateTime FromString(const std::string& text, Rule rule) {                                              \
            return CConversions::kind##FromString(text, rule);                                                         \
        }                                                                                                              \
        static std::string ToString(const CDateTime& value) { return CConversions::kind##ToString(value); }            \
        static void Check(const char* name, const CDateTime& value, const CPrimitiveRestrictions& restrictions) {      \
            CXmlObjectHelper::CheckRestrictionFor##kind(name, value, restrictions);                                    \
        }                                                                                                              \
    };

QVXML_DATE_KIND_OPS(date, DTType_date, "dt_date")
QVXML_DATE_KIND_OPS(datetime, DTType_dateTime, "dt_dateTime")
QVXML_DATE_KIND_OPS(time, DTType_time, "dt_time")
QVXML_DATE_KIND_OPS(monthDay, DTType_gMonthDay, "dt_gMonthDay")
QVXML_DATE_KIND_OPS(yearMonth, DTType_gYearMonth, "dt_gYearMonth")

#undef QVXML_DATE_KIND_OPS

} // namespace

template <ItemType K>
CDateValueCol<K>::CDateValueCol(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs,
                                const char* pattern, int minLength, int maxLength, const char* minInclusive,
                                const char* maxInclusive, const char* minExclusive, const char* maxExclusive,
                                int length, CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)
    : CdatetimeBaseCol(K, elementName, namespaceUri, minOccurs, maxOccurs, pattern, minLength, maxLength, minInclusive,
                       maxInclusive, minExclusive, maxExclusive, length, whitespaceRule, format) {}

template <ItemType K> CDateValueCol<K>::~CDateValueCol() = default;

template <ItemType K> void CDateValueCol<K>::AddFromString(const std::string& text) {
    Add(CDateKindOps<K>::FromString(text, m_whitespaceRule));
}

template <ItemType K> void CDateValueCol<K>::AddAt(int index, const CDateTime& value) {
    if (value.GetType() != CDateKindOps<K>::kDateType) throw CQvInvalidParamException(CDateKindOps<K>::kRefusal);
    CDateKindOps<K>::Check(m_elementName.c_str(), value, m_restrictions);
    BaseAddAt(index, value);
}

template <ItemType K> std::string CDateValueCol<K>::ItemToString(const CDateTime& value) const {
    return CDateKindOps<K>::ToString(value);
}

#define QVXML_DATE_COLLECTION(Name, kind)                                                                              \
    template class CDateValueCol<ItemType_##kind>;                                                                     \
    Name::Name(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs, const char* pattern,   \
               int minLength, int maxLength, const char* minInclusive, const char* maxInclusive,                       \
               const char* minExclusive, const char* maxExclusive, int length,                                         \
               CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)                                    \
        : CDateValueCol(elementName, namespaceUri, minOccurs, maxOccurs, pattern, minLength, maxLength, minInclusive,  \
                        maxInclusive, minExclusive, maxExclusive, length, whitespaceRule, format),                     \
          CInstanceMonitor(#Name) {}                                                                                   \
    Name::~Name() = default;

QVXML_DATE_COLLECTION(CdateCol, date)
QVXML_DATE_COLLECTION(CdatetimeCol, datetime)
QVXML_DATE_COLLECTION(CtimeCol, time)
QVXML_DATE_COLLECTION(CmonthDayCol, monthDay)
QVXML_DATE_COLLECTION(CyearMonthCol, yearMonth)

#undef QVXML_DATE_COLLECTION

} // namespace QvXmlLib10
