#pragma once

#include <deque>
#include <string>

#include "../foundation/CriticalSection.h"
#include "../foundation/QvExport.h"
#include "../foundation/QvTypes.h"
#include "../values/DateTime.h"
#include "XmlCollection.h"

namespace QvXmlLib10 {

// Frame of the collections of date and time values: the values in element order and
// their events. Every value is written as a dateTime item, whatever its kind.
class QVXML_API CdatetimeBaseCol : public CXmlTypeCollection {
public:
    CdatetimeBaseCol(ItemType itemType, const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs,
                     const char* pattern, int minLength, int maxLength, const char* minInclusive,
                     const char* maxInclusive, const char* minExclusive, const char* maxExclusive, int length,
                     CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
    ~CdatetimeBaseCol() override;

    int GetCount() const override;
    // The virtual Remove(0) while values are left: one event sequence per value.
    void Clear() override;
    // The remove event with the index first; the remove complete event always tells 0.
    void Remove(int index) override;

    // The virtual AddAt with the count as index.
    virtual void Add(const CDateTime& value);
    // Checks the value's date type and facets, then BaseAddAt.
    virtual void AddAt(int index, const CDateTime& value) = 0;
    // A copy; throws CQvInvalidParamException outside 0 to the count minus 1.
    virtual CDateTime Item(int index) const;
    virtual std::string ItemToString(const CDateTime& value) const = 0;

    // Add event, then "Index out of range" outside 0 to the count, then the insert with
    // add complete and change.
    void BaseAddAt(int index, const CDateTime& value);

protected:
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;

    // In element order. Removing the first value is constant time, so Clear is linear.
    std::deque<CDateTime> m_col;
};

// The one body of the five members, over the kind: a value of another date type is
// refused before any event.
template <ItemType K> class CDateValueCol : public CdatetimeBaseCol {
public:
    CDateValueCol(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs, const char* pattern,
                  int minLength, int maxLength, const char* minInclusive, const char* maxInclusive,
                  const char* minExclusive, const char* maxExclusive, int length,
                  CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
    ~CDateValueCol() override;

    void AddFromString(const std::string& text) override;
    void AddAt(int index, const CDateTime& value) override;
    std::string ItemToString(const CDateTime& value) const override;
};

#define QVXML_DATE_COLLECTION(Name, kind)                                                                              \
    extern template class QVXML_API CDateValueCol<ItemType_##kind>;                                                    \
    class QVXML_API Name : public CDateValueCol<ItemType_##kind>, public CInstanceMonitor {                            \
    public:                                                                                                            \
        Name(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs, const char* pattern,     \
             int minLength, int maxLength, const char* minInclusive, const char* maxInclusive,                         \
             const char* minExclusive, const char* maxExclusive, int length,                                           \
             CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);                                     \
        ~Name() override;                                                                                              \
    };

QVXML_DATE_COLLECTION(CdateCol, date)
QVXML_DATE_COLLECTION(CdatetimeCol, datetime)
QVXML_DATE_COLLECTION(CtimeCol, time)
QVXML_DATE_COLLECTION(CmonthDayCol, monthDay)
QVXML_DATE_COLLECTION(CyearMonthCol, yearMonth)

#undef QVXML_DATE_COLLECTION

} // namespace QvXmlLib10
