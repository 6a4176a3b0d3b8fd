// The element metadata of the members of an all group.

#include "binding/metadata/AllElementInfo.h"
#include "internal/ElementReading.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10::Internal;

namespace QvXmlLib10Data {

namespace {

// The mandatory form of Validate. In a pseudo element (`check` false) a missing member
// makes the group not match instead of failing.
bool ValidateMandatory(const CElementInfo& info, bool found, bool check) {
    if (found || !check) return found;
    throw CQvValidationException(FormatString("Failed to find the mandatory element [%s]", info.m_elementName.c_str()));
}

// Where reading an abstract member of an all group sends its users.
const char* const kContact = "the maintainers of libQvXml10";

} // namespace

bool CElementInfoAllCol::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                      CXmlWriter* writer) const {
    return CheckedCollectionToXml(*this, context, object, writer);
}

bool CElementInfoAllCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                        CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                        XmlElementType /*type*/) {
    const CSmartPtr<CXmlCollectionBase> collection = FetchCollection(*this, object);
    *cursor = FromXml_Int(collection, parent, *cursor, context, false);
    return false;
}

CElementInfoAllPrimMnd::CElementInfoAllPrimMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, ItemType itemType, const char* format,
                                               CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                               const CPrimitiveRestrictions& restrictions)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex, nillable, itemType, format, whitespaceRule,
                      restrictions) {}

bool CElementInfoAllPrimMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
}

bool CElementInfoAllPrimMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    ReadPrimitive(*this, object, cursor);
    return true;
}

bool CElementInfoAllPrimMnd::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                      bool found, bool check) const {
    return ValidateMandatory(*this, found, check);
}

CElementInfoAllPrimOpt::CElementInfoAllPrimOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, ItemType itemType, const char* format,
                                               CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                               const CPrimitiveRestrictions& restrictions)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex, nillable, itemType, format, whitespaceRule,
                      restrictions) {}

bool CElementInfoAllPrimOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
}

bool CElementInfoAllPrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    ReadPrimitive(*this, object, cursor);
    return true;
}

bool CElementInfoAllPrimOpt::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                      bool /*found*/, bool /*check*/) const {
    return true;
}

CElementInfoAllPrimCol::CElementInfoAllPrimCol(const char* elementName, const char* namespaceUri, int propertyIndex)
    : CElementInfoAllCol(elementName, namespaceUri, propertyIndex) {}

CElementInfoAllEnumMnd::CElementInfoAllEnumMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, const char* (*enumToText)(int),
                                               int (*textToEnum)(const char*))
    : CElementInfoAll(elementName, namespaceUri, propertyIndex, nillable), m_enumToText(enumToText),
      m_textToEnum(textToEnum) {}

bool CElementInfoAllEnumMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlEnum(context, object, writer, m_enumToText);
}

bool CElementInfoAllEnumMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    ReadEnumeration(*this, m_textToEnum, object, cursor);
    return true;
}

bool CElementInfoAllEnumMnd::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                      bool found, bool check) const {
    return ValidateMandatory(*this, found, check);
}

CElementInfoAllEnumOpt::CElementInfoAllEnumOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, const char* (*enumToText)(int),
                                               int (*textToEnum)(const char*))
    : CElementInfoAll(elementName, namespaceUri, propertyIndex, nillable), m_enumToText(enumToText),
      m_textToEnum(textToEnum) {}

bool CElementInfoAllEnumOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlEnum(context, object, writer, m_enumToText);
}

bool CElementInfoAllEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return false;
    ReadEnumeration(*this, m_textToEnum, object, cursor);
    return true;
}

bool CElementInfoAllEnumOpt::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                      bool /*found*/, bool /*check*/) const {
    return true;
}

CElementInfoAllClsMnd::CElementInfoAllClsMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                             XmlElementType classElementType,
                                             CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*), int classId,
                                             bool pseudoMandatory)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createObject(createObject), m_classId(classId), m_pseudoMandatory(pseudoMandatory) {}

bool CElementInfoAllClsMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoAllClsMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                           XmlElementType /*type*/) {
    if (m_classElementType == XmlElementType_Element) {
        if (!IsThisElement(context, *cursor)) return false;
        ReadOwnElement(*this, FetchObject(*this, object), cursor, context, false);
        return true;
    }
    CXmlElement* const next = FromXml_Int(FetchObject(*this, object), parent, *cursor, context, false);
    const bool moved = next != *cursor;
    *cursor = next;
    return moved;
}

bool CElementInfoAllClsMnd::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                     bool found, bool check) const {
    if (found || !check) return found;
    // A child with a tag of its own is only missed when the generator said so.
    if (m_classElementType != XmlElementType_Pseudo && !m_pseudoMandatory) return true;
    return ValidateMandatory(*this, found, check);
}

void CElementInfoAllClsMnd::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoAllClsOpt::CElementInfoAllClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                             XmlElementType classElementType,
                                             CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*), int classId)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createObject(createObject), m_classId(classId) {}

bool CElementInfoAllClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoAllClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                           XmlElementType /*type*/) {
    if (m_classElementType == XmlElementType_Element) {
        if (!IsThisElement(context, *cursor)) return false;
        const CSmartPtr<CXmlObjectBase> child = CreateObject(*this, m_createObject, m_classId);
        ReadOwnElement(*this, child, cursor, context, false);
        StoreObject(*this, object, child);
        return true;
    }
    if (*cursor == nullptr) return false;
    const CSmartPtr<CXmlObjectBase> child = CreateObject(*this, m_createObject, m_classId);
    CXmlElement* const next = FromXml_Int(child, parent, *cursor, context, false);
    const bool moved = next != *cursor;
    if (moved) StoreObject(*this, object, child);
    *cursor = next;
    return moved;
}

bool CElementInfoAllClsOpt::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                     bool /*found*/, bool /*check*/) const {
    return true;
}

void CElementInfoAllClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoAllClsCol::CElementInfoAllClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                                             XmlElementType classElementType)
    : CElementInfoAllCol(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType) {}

void CElementInfoAllClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoCollectionAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoAllAbsClsMnd::CElementInfoAllAbsClsMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType,
                                                   CSmartPtr<CXmlObjectBase> (*createFromElement)(CXmlElement*),
                                                   int reserved)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createFromElement(createFromElement), m_reserved(reserved) {}

bool CElementInfoAllAbsClsMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoAllAbsClsMnd::ElementFromXml(const CXmlSerializationContext& /*context*/,
                                              CXmlGeneratedClass* /*object*/, CXmlElement* /*parent*/,
                                              CXmlElement** /*cursor*/, const char* /*namespaceUri*/,
                                              XmlElementType /*type*/) {
    throw CQvException(std::string("CElementInfoAllAbsClsMnd::ElementFromXml, has not been implemented fully, "
                                   "contact ") +
                       kContact);
}

bool CElementInfoAllAbsClsMnd::Validate(const CXmlSerializationContext& /*context*/,
                                        const CXmlGeneratedClass* /*object*/, bool found, bool check) const {
    return ValidateMandatory(*this, found, check);
}

void CElementInfoAllAbsClsMnd::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoAllAbsClsOpt::CElementInfoAllAbsClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType,
                                                   CSmartPtr<CXmlObjectBase> (*createFromElement)(CXmlElement*))
    : CElementInfoAll(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createFromElement(createFromElement) {}

bool CElementInfoAllAbsClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoAllAbsClsOpt::ElementFromXml(const CXmlSerializationContext& /*context*/,
                                              CXmlGeneratedClass* /*object*/, CXmlElement* /*parent*/,
                                              CXmlElement** /*cursor*/, const char* /*namespaceUri*/,
                                              XmlElementType /*type*/) {
    throw CQvException(std::string("CElementInfoAllAbsClsOpt::ElementFromXml, has not been implemented fully, "
                                   "contact ") +
                       kContact);
}

bool CElementInfoAllAbsClsOpt::Validate(const CXmlSerializationContext& /*context*/,
                                        const CXmlGeneratedClass* /*object*/, bool /*found*/, bool /*check*/) const {
    return true;
}

void CElementInfoAllAbsClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoAllAbsClsCol::CElementInfoAllAbsClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType)
    : CElementInfoAllCol(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType) {}

void CElementInfoAllAbsClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoCollectionAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoAllUntpdMnd::CElementInfoAllUntpdMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                 const char* namespaceRestriction, const char* targetNamespace)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex), m_namespaceRestriction(OrEmpty(namespaceRestriction)),
      m_targetNamespace(OrEmpty(targetNamespace)) {}

bool CElementInfoAllUntpdMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                           CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoAllUntpdMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                             XmlElementType /*type*/) {
    if (*cursor == nullptr) return false;
    CXmlElement* const next = ReadUntyped(*this, FetchObject(*this, object), parent, *cursor, context);
    if (next == *cursor) return false;
    *cursor = next;
    return true;
}

bool CElementInfoAllUntpdMnd::Validate(const CXmlSerializationContext& /*context*/,
                                       const CXmlGeneratedClass* /*object*/, bool found, bool check) const {
    return ValidateMandatory(*this, found, check);
}

CElementInfoAllUntpdOpt::CElementInfoAllUntpdOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                 const char* namespaceRestriction, const char* targetNamespace)
    : CElementInfoAll(elementName, namespaceUri, propertyIndex), m_namespaceRestriction(OrEmpty(namespaceRestriction)),
      m_targetNamespace(OrEmpty(targetNamespace)) {}

bool CElementInfoAllUntpdOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                           CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoAllUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** cursor, const char* namespaceUri,
                                             XmlElementType /*type*/) {
    if (*cursor == nullptr) return false;
    const CSmartPtr<CElement> element =
        ReadNewUntyped(*this, m_namespaceRestriction, m_targetNamespace, namespaceUri, parent, cursor, context);
    if (!element) return false;
    StoreObject(*this, object, element);
    return true;
}

bool CElementInfoAllUntpdOpt::Validate(const CXmlSerializationContext& /*context*/,
                                       const CXmlGeneratedClass* /*object*/, bool /*found*/, bool /*check*/) const {
    return true;
}

CElementInfoAllUntpdCol::CElementInfoAllUntpdCol(const char* elementName, const char* namespaceUri, int propertyIndex)
    : CElementInfoAllCol(elementName, namespaceUri, propertyIndex) {}

} // namespace QvXmlLib10Data
