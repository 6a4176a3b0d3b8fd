// The element metadata of the members of a choice.

#include "binding/metadata/ChoiceElementInfo.h"
#include "internal/ElementReading.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10::Internal;

namespace QvXmlLib10Data {

namespace {

// A collection member of a choice after its collection has read from the cursor to
// `next`: chosen when it took something and, in a pseudo element, its count is valid
// (the items read stay in the collection either way). In a class with a tag of its
// own the count is checked instead.
bool ChooseCollection(const CXmlSerializationContext& context, CXmlCollectionBase* collection, CXmlElement* next,
                      CXmlElement** cursor, XmlElementType type) {
    if (next == *cursor) return false;
    if (type != XmlElementType_Element) {
        if (!collection->IsValidCount(context)) return false;
        *cursor = next;
        return true;
    }
    *cursor = next;
    collection->ValidateCount(context);
    return true;
}

} // namespace

bool CElementInfoChoice::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                  bool /*found*/, bool /*check*/) const {
    ThrowNotImplemented();
}

bool CElementInfoChoiceCol::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    // No count check on writing in a choice.
    return ElementToXmlCol(context, object, writer);
}

bool CElementInfoChoiceCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                           XmlElementType type) {
    const CSmartPtr<CXmlCollectionBase> collection = FetchCollection(*this, object);
    CXmlElement* const next = FromXml_Int(collection, parent, *cursor, context, false);
    return ChooseCollection(context, collection, next, cursor, type);
}

CElementInfoChoicePrimOpt::CElementInfoChoicePrimOpt(const char* elementName, const char* namespaceUri,
                                                     int propertyIndex, bool nillable, ItemType itemType,
                                                     const char* format,
                                                     CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                                     const CPrimitiveRestrictions& restrictions)
    : CElementInfoChoice(elementName, namespaceUri, propertyIndex, nillable, itemType, format, whitespaceRule,
                         restrictions) {}

bool CElementInfoChoicePrimOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
}

bool CElementInfoChoicePrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                               CXmlElement* /*parent*/, CXmlElement** cursor,
                                               const char* /*namespaceUri*/, XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    ReadPrimitive(*this, object, cursor);
    return true;
}

CElementInfoChoiceEnumOpt::CElementInfoChoiceEnumOpt(const char* elementName, const char* namespaceUri,
                                                     int propertyIndex, bool nillable, const char* (*enumToText)(int),
                                                     int (*textToEnum)(const char*))
    : CElementInfoChoice(elementName, namespaceUri, propertyIndex, nillable), m_enumToText(enumToText),
      m_textToEnum(textToEnum) {}

bool CElementInfoChoiceEnumOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
    return ElementToXmlEnum(context, object, writer, m_enumToText);
}

bool CElementInfoChoiceEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                               CXmlElement* /*parent*/, CXmlElement** cursor,
                                               const char* /*namespaceUri*/, XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    ReadEnumeration(*this, m_textToEnum, object, cursor);
    return true;
}

CElementInfoChoiceClsOpt::CElementInfoChoiceClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType,
                                                   CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*),
                                                   int classId)
    : CElementInfoChoice(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createObject(createObject), m_classId(classId) {}

bool CElementInfoChoiceClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, true);
}

bool CElementInfoChoiceClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                              XmlElementType /*type*/) {
    if (m_classElementType == XmlElementType_Element) {
        if (!IsThisElement(context, *cursor)) return false;
        const CSmartPtr<CXmlObjectBase> child = CreateObject(*this, m_createObject, m_classId);
        StoreObject(*this, object, child);
        ReadOwnElement(*this, child, cursor, context, true);
        return true;
    }

    if (*cursor == nullptr) return false;
    const CSmartPtr<CXmlObjectBase> child = CreateObject(*this, m_createObject, m_classId);
    StoreObject(*this, object, child);
    CXmlElement* const next = FromXml_Int(child, parent, *cursor, context, false);
    if (next != *cursor) {
        *cursor = next;
        return true;
    }
    // The group is not here: the property is null again.
    StoreObject(*this, object, nullptr);
    return false;
}

void CElementInfoChoiceClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoChoiceAbsClsOpt::CElementInfoChoiceAbsClsOpt(const char* elementName, const char* namespaceUri,
                                                         int propertyIndex, XmlElementType classElementType,
                                                         CSmartPtr<CXmlObjectBase> (*createFromElement)(CXmlElement*))
    : CElementInfoChoice(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createFromElement(createFromElement) {}

bool CElementInfoChoiceAbsClsOpt::ElementToXml(const CXmlSerializationContext& context,
                                               const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoChoiceAbsClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                                 CXmlElement* /*parent*/, CXmlElement** cursor,
                                                 const char* /*namespaceUri*/, XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    const CSmartPtr<CXmlObjectBase> child = m_createFromElement(*cursor);
    StoreObject(*this, object, child);
    if (!child) return false;
    ReadOwnElement(*this, child, cursor, context, false);
    return true;
}

void CElementInfoChoiceAbsClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                            const CXmlGeneratedClass* object,
                                                            CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoChoiceUntpdOpt::CElementInfoChoiceUntpdOpt(const char* elementName, const char* namespaceUri,
                                                       int propertyIndex, const char* namespaceRestriction,
                                                       const char* targetNamespace)
    : CElementInfoChoice(elementName, namespaceUri, propertyIndex),
      m_namespaceRestriction(OrEmpty(namespaceRestriction)), m_targetNamespace(OrEmpty(targetNamespace)) {}

bool CElementInfoChoiceUntpdOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                              CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoChoiceUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                                CXmlElement* parent, CXmlElement** cursor, const char* namespaceUri,
                                                XmlElementType /*type*/) {
    if (*cursor == nullptr) return false;
    const CSmartPtr<CElement> element =
        ReadNewUntyped(*this, m_namespaceRestriction, m_targetNamespace, namespaceUri, parent, cursor, context);
    // Stored either way: a null object when nothing was taken.
    StoreObject(*this, object, element);
    return bool(element);
}

CElementInfoChoicePrimCol::CElementInfoChoicePrimCol(const char* elementName, const char* namespaceUri,
                                                     int propertyIndex)
    : CElementInfoChoiceCol(elementName, namespaceUri, propertyIndex) {}

CElementInfoChoiceEnumCol::CElementInfoChoiceEnumCol(const char* elementName, const char* namespaceUri,
                                                     int propertyIndex)
    : CElementInfoChoiceCol(elementName, namespaceUri, propertyIndex) {}

CElementInfoChoiceClsCol::CElementInfoChoiceClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType)
    : CElementInfoChoiceCol(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType) {}

void CElementInfoChoiceClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoCollectionAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoChoiceAbsClsCol::CElementInfoChoiceAbsClsCol(const char* elementName, const char* namespaceUri,
                                                         int propertyIndex, XmlElementType classElementType)
    : CElementInfoChoiceCol(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType) {}

void CElementInfoChoiceAbsClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                            const CXmlGeneratedClass* object,
                                                            CXmlWriter* writer) const {
    PseudoCollectionAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoChoiceUntpdCol::CElementInfoChoiceUntpdCol(const char* elementName, const char* namespaceUri,
                                                       int propertyIndex)
    : CElementInfoChoiceCol(elementName, namespaceUri, propertyIndex) {}

bool CElementInfoChoiceUntpdCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                                CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                                XmlElementType type) {
    // Under a fixed name the namespace comes from the element at the cursor, so there
    // has to be one.
    if (*cursor == nullptr && m_elementName != kAnyElement) return false;
    const CSmartPtr<CXmlCollectionBase> collection = FetchCollection(*this, object);
    CXmlElement* const next = ReadUntypedCollection(*this, collection, parent, *cursor, context);
    return ChooseCollection(context, collection, next, cursor, type);
}

} // namespace QvXmlLib10Data
