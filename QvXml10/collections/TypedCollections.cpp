#include "collections/TypedCollections.h"

#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "values/Conversions.h"

namespace QvXmlLib10 {

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

// How each kind reads, writes and checks its values, by the names CConversions and
// CXmlObjectHelper give them. Only r4, r8 and decimal print with the collection's format.
template <ItemType K> struct CKindOps;

#define QVXML_KIND_OPS(kind, Arg, ...)                                                                                 \
    template <> struct CKindOps<ItemType_##kind> {                                                                     \
        static auto FromString(const std::string& text, Rule rule) {                                                   \
            return CConversions::kind##FromString(text, rule);                                                         \
        }                                                                                                              \
        static std::string ToString(Arg value, [[maybe_unused]] const std::string& format) {                           \
            return CConversions::kind##ToString(value __VA_ARGS__);                                                    \
        }                                                                                                              \
        static void Check(const char* name, Arg value, const CPrimitiveRestrictions& restrictions) {                   \
            CXmlObjectHelper::CheckRestrictionFor##kind(name, value, restrictions);                                    \
        }                                                                                                              \
    };

QVXML_KIND_OPS(i1, char)
QVXML_KIND_OPS(i2, short)
QVXML_KIND_OPS(i4, long)
QVXML_KIND_OPS(i8, long long)
QVXML_KIND_OPS(ui1, unsigned char)
QVXML_KIND_OPS(ui2, unsigned short)
QVXML_KIND_OPS(ui4, unsigned long)
QVXML_KIND_OPS(ui8, unsigned long long)
QVXML_KIND_OPS(r4, float, , format)
QVXML_KIND_OPS(r8, double, , format)
QVXML_KIND_OPS(string, const std::string&)
QVXML_KIND_OPS(boolean, bool)
QVXML_KIND_OPS(decimal, const CDecimal&, , format)
QVXML_KIND_OPS(integer, const CBigInteger&)
QVXML_KIND_OPS(base64Binary, const CBinaryData&)
QVXML_KIND_OPS(hexBinary, const CBinaryData&)
QVXML_KIND_OPS(duration, const CDateTimeSpan&)
QVXML_KIND_OPS(day, unsigned char)
QVXML_KIND_OPS(month, unsigned char)
QVXML_KIND_OPS(year, unsigned short)

#undef QVXML_KIND_OPS

} // namespace

template <typename Kind>
CValueCol<Kind>::CValueCol(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs,
                           const char* pattern, int minLength, int maxLength, const char* minInclusive,
                           const char* maxInclusive, const char* minExclusive, const char* maxExclusive, int length,
                           CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)
    : CXmlTypeCollection(Kind::kItemType, elementName, namespaceUri, minOccurs, maxOccurs, pattern, minLength,
                         maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive, length, whitespaceRule,
                         format) {}

template <typename Kind> CValueCol<Kind>::~CValueCol() = default;

template <typename Kind> int CValueCol<Kind>::GetCount() const { return static_cast<int>(m_col.size()); }

template <typename Kind> void CValueCol<Kind>::Add(Arg value) { AddAt(GetCount(), value); }

template <typename Kind> void CValueCol<Kind>::AddAt(int index, Arg value) {
    // The listeners see the caller's value (or the argument's copy) before any check.
    FireOnCollectionAdd(const_cast<void*>(static_cast<const void*>(&value)));
    if (index < 0 || index > GetCount()) throw CQvInvalidParamException("Index out of range");
    CKindOps<Kind::kItemType>::Check(m_elementName.c_str(), value, m_restrictions);
    m_col.insert(m_col.begin() + index, value);
    FireOnCollectionAddComplete(const_cast<void*>(static_cast<const void*>(&value)));
    FireOnCollectionChange();
}

template <typename Kind> void CValueCol<Kind>::AddFromString(const std::string& text) {
    // An object value is a temporary here; the collection keeps its own copy.
    Add(CKindOps<Kind::kItemType>::FromString(text, m_whitespaceRule));
}

template <typename Kind> typename CValueCol<Kind>::Value CValueCol<Kind>::Item(int index) const {
    if (index < 0 || index >= GetCount())
        throw CQvInvalidParamException(FormatString("Index %d is out of range, use 0 - %d", index, GetCount()));
    return m_col[static_cast<size_t>(index)];
}

template <typename Kind> void CValueCol<Kind>::Remove(int index) {
    FireOnCollectionRemove(index);
    if (index < 0 || index >= GetCount())
        throw CQvInvalidParamException(FormatString("Index %d is out of range, use 0 - %d", index, GetCount()));
    m_col.erase(m_col.begin() + index);
    FireOnCollectionRemoveComplete(0);
    FireOnCollectionChange();
}

template <typename Kind> void CValueCol<Kind>::Clear() {
    while (GetCount() != 0)
        Remove(0);
}

template <typename Kind>
void CValueCol<Kind>::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*namespaceUri*/,
                                const CXmlSerializationContext& context, bool /*isChoiceMember*/) const {
    ValidateCount(context);
    for (const Value& value : m_col) {
        writer->WriteStartElement(m_elementName, m_namespace);
        writer->WriteString(CKindOps<Kind::kItemType>::ToString(value, m_format), Kind::kItemType);
        writer->WriteEndElement();
    }
}

#define QVXML_VALUE_COLLECTION(Name, kind)                                                                             \
    template class CValueCol<CValueKind##kind>;                                                                        \
    Name::Name(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs, const char* pattern,   \
               int minLength, int maxLength, const char* minInclusive, const char* maxInclusive,                       \
               const char* minExclusive, const char* maxExclusive, int length,                                         \
               CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)                                    \
        : CValueCol(elementName, namespaceUri, minOccurs, maxOccurs, pattern, minLength, maxLength, minInclusive,      \
                    maxInclusive, minExclusive, maxExclusive, length, whitespaceRule, format),                         \
          CInstanceMonitor(#Name) {}                                                                                   \
    Name::~Name() = default;

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
