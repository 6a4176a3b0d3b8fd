#pragma once

#include <deque>
#include <string>

#include "../foundation/BinaryData.h"
#include "../foundation/CriticalSection.h"
#include "../foundation/QvExport.h"
#include "../foundation/QvTypes.h"
#include "../values/BigInteger.h"
#include "../values/DateTimeSpan.h"
#include "../values/Decimal.h"
#include "XmlCollection.h"

namespace QvXmlLib10 {

// The value type, the argument type of Add, AddAt and Item, and the ItemType of one
// collection of primitive values.
template <typename V, typename A, ItemType K> struct CValueKind {
    using Value = V;
    using Arg = A;
    static constexpr ItemType kItemType = K;
};

// The one body of the collections of primitive values. Each value is read with the
// kind's <kind>FromString, checked with CheckRestrictionFor<kind> and written with
// <kind>ToString. Every add and remove tells the listeners, also when it then fails.
template <typename Kind> class CValueCol : public CXmlTypeCollection {
public:
    using Value = typename Kind::Value;
    using Arg = typename Kind::Arg;

    CValueCol(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs, const char* pattern,
              int minLength, int maxLength, const char* minInclusive, const char* maxInclusive,
              const char* minExclusive, const char* maxExclusive, int length,
              CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
    ~CValueCol() override;

    int GetCount() const override;
    void Add(Arg value);
    // The add event comes first, with the address of the value; then an index outside
    // 0 to the count throws "Index out of range", and a value that fails its facets
    // throws and is not stored; then the value is inserted, with add complete and change.
    void AddAt(int index, Arg value);
    void AddFromString(const std::string& text) override;
    // Throws CQvInvalidParamException outside 0 to the count minus 1.
    Value Item(int index) const;
    // The remove event with the index comes first; the remove complete event always
    // tells index 0.
    void Remove(int index) override;
    // The virtual Remove(0) while values are left: one event sequence per value.
    void Clear() override;

protected:
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;

    // In element order. Removing the first value is constant time, so Clear is linear.
    std::deque<Value> m_col;
};

using CValueKindi1 = CValueKind<char, char, ItemType_i1>;
using CValueKindi2 = CValueKind<short, short, ItemType_i2>;
using CValueKindi4 = CValueKind<long, long, ItemType_i4>;
using CValueKindi8 = CValueKind<long long, long long, ItemType_i8>;
using CValueKindui1 = CValueKind<unsigned char, unsigned char, ItemType_ui1>;
using CValueKindui2 = CValueKind<unsigned short, unsigned short, ItemType_ui2>;
using CValueKindui4 = CValueKind<unsigned long, unsigned long, ItemType_ui4>;
using CValueKindui8 = CValueKind<unsigned long long, unsigned long long, ItemType_ui8>;
using CValueKindr4 = CValueKind<float, float, ItemType_r4>;
using CValueKindr8 = CValueKind<double, double, ItemType_r8>;
using CValueKindstring = CValueKind<std::string, std::string, ItemType_string>;
using CValueKindboolean = CValueKind<bool, bool, ItemType_boolean>;
using CValueKinddecimal = CValueKind<CDecimal, const CDecimal&, ItemType_decimal>;
using CValueKindinteger = CValueKind<CBigInteger, const CBigInteger&, ItemType_integer>;
using CValueKindbase64Binary = CValueKind<CBinaryData, const CBinaryData&, ItemType_base64Binary>;
using CValueKindhexBinary = CValueKind<CBinaryData, const CBinaryData&, ItemType_hexBinary>;
using CValueKindduration = CValueKind<CDateTimeSpan, const CDateTimeSpan&, ItemType_duration>;
using CValueKindday = CValueKind<unsigned char, unsigned char, ItemType_day>;
using CValueKindmonth = CValueKind<unsigned char, unsigned char, ItemType_month>;
using CValueKindyear = CValueKind<unsigned short, unsigned short, ItemType_year>;

// The named collections: the body above over one kind, labelled with the class's name.
#define QVXML_VALUE_COLLECTION(Name, kind)                                                                             \
    extern template class QVXML_API CValueCol<CValueKind##kind>;                                                       \
    class QVXML_API Name : public CValueCol<CValueKind##kind>, public CInstanceMonitor {                               \
    public:                                                                                                            \
        Name(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs, const char* pattern,     \
             int minLength, int maxLength, const char* minInclusive, const char* maxInclusive,                         \
             const char* minExclusive, const char* maxExclusive, int length,                                           \
             CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);                                     \
        ~Name() override;                                                                                              \
    };

QVXML_VALUE_COLLECTION(Ci1Col, i1)
QVXML_VALUE_COLLECTION(Ci2Col, i2)
QVXML_VALUE_COLLECTION(Ci4Col, i4)
QVXML_VALUE_COLLECTION(Ci8Col, i8)
QVXML_VALUE_COLLECTION(Cui1Col, ui1)
QVXML_VALUE_COLLECTION(Cui2Col, ui2)
QVXML_VALUE_COLLECTION(Cui4Col, ui4)
QVXML_VALUE_COLLECTION(Cui8Col, ui8)
QVXML_VALUE_COLLECTION(Cr4Col, r4)
QVXML_VALUE_COLLECTION(Cr8Col, r8)
QVXML_VALUE_COLLECTION(CstringCol, string)
QVXML_VALUE_COLLECTION(CbooleanCol, boolean)
QVXML_VALUE_COLLECTION(CdecimalCol, decimal)
QVXML_VALUE_COLLECTION(CintegerCol, integer)
QVXML_VALUE_COLLECTION(Cbase64BinaryCol, base64Binary)
QVXML_VALUE_COLLECTION(ChexBinaryCol, hexBinary)
QVXML_VALUE_COLLECTION(CdurationCol, duration)
QVXML_VALUE_COLLECTION(CdayCol, day)
QVXML_VALUE_COLLECTION(CmonthCol, month)
QVXML_VALUE_COLLECTION(CyearCol, year)

#undef QVXML_VALUE_COLLECTION

} // namespace QvXmlLib10
