// The element metadata of the members of a sequence.

#include "binding/metadata/SequenceElementInfo.h"
#include "internal/ElementReading.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10::Internal;

namespace QvXmlLib10Data {

bool CElementInfoSeq::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                               bool /*found*/, bool /*check*/) const {
    ThrowNotImplemented();
}

bool CElementInfoSeqCol::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                      CXmlWriter* writer) const {
    return CheckedCollectionToXml(*this, context, object, writer);
}

bool CElementInfoSeqCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                        CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                        XmlElementType type) {
    const CSmartPtr<CXmlCollectionBase> collection = FetchCollection(*this, object);
    *cursor = FromXml_Int(collection, parent, *cursor, context, false);
    if (type != XmlElementType_Element) return collection->IsValidCount(context);
    collection->ValidateCount(context);
    return true;
}

namespace {

// Finds a mandatory member at or behind the cursor. Unknown elements ahead of it are
// passed over only when the context ignores them. In a class with a tag of its own a
// missing member throws, unless the context ignores missing mandatory elements, which
// leaves the cursor where it is and answers false; in a pseudo element it answers false.
bool SeekMandatory(const CElementInfo& info, const CXmlSerializationContext& context, CXmlElement** cursor,
                   XmlElementType type) {
    while (!info.IsThisElement(context, *cursor)) {
        if (type == XmlElementType_Element && context.GetIgnoreMissingMandatoryElements()) return false;
        if (!context.GetIgnoreUnknownElements() || *cursor == nullptr) {
            if (type != XmlElementType_Element) return false;
            ThrowRequired(info);
        }
        *cursor = NextOf(*cursor);
    }
    return true;
}

} // namespace

CElementInfoSeqPrimMnd::CElementInfoSeqPrimMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, ItemType itemType, const char* format,
                                               CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                               const CPrimitiveRestrictions& restrictions)
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex, nillable, itemType, format, whitespaceRule,
                      restrictions) {}

bool CElementInfoSeqPrimMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
}

bool CElementInfoSeqPrimMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType type) {
    if (!SeekMandatory(*this, context, cursor, type)) return type == XmlElementType_Element;
    ReadPrimitive(*this, object, cursor);
    return true;
}

CElementInfoSeqPrimOpt::CElementInfoSeqPrimOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, ItemType itemType, const char* format,
                                               CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                               const CPrimitiveRestrictions& restrictions)
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex, nillable, itemType, format, whitespaceRule,
                      restrictions) {}

bool CElementInfoSeqPrimOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
}

bool CElementInfoSeqPrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType /*type*/) {
    if (IsThisElement(context, *cursor)) ReadPrimitive(*this, object, cursor);
    return true;
}

CElementInfoSeqPrimCol::CElementInfoSeqPrimCol(const char* elementName, const char* namespaceUri, int propertyIndex)
    : CElementInfoSeqCol(elementName, namespaceUri, propertyIndex) {}

CElementInfoSeqEnumMnd::CElementInfoSeqEnumMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, const char* (*enumToText)(int),
                                               int (*textToEnum)(const char*))
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex, nillable), m_textToEnum(textToEnum),
      m_enumToText(enumToText) {}

bool CElementInfoSeqEnumMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlEnum(context, object, writer, m_enumToText);
}

bool CElementInfoSeqEnumMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType type) {
    if (type == XmlElementType_Element) {
        if (!SeekMandatory(*this, context, cursor, type)) return true;
    } else if (!IsThisElement(context, *cursor)) {
        // A pseudo element does not pass over unknown elements to find it.
        return false;
    }
    ReadEnumeration(*this, m_textToEnum, object, cursor);
    return true;
}

CElementInfoSeqEnumOpt::CElementInfoSeqEnumOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                               bool nillable, const char* (*enumToText)(int),
                                               int (*textToEnum)(const char*))
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex, nillable), m_enumToText(enumToText),
      m_textToEnum(textToEnum) {}

bool CElementInfoSeqEnumOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                          CXmlWriter* writer) const {
    return ElementToXmlEnum(context, object, writer, m_enumToText);
}

bool CElementInfoSeqEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                            CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                            XmlElementType /*type*/) {
    if (IsThisElement(context, *cursor)) ReadEnumeration(*this, m_textToEnum, object, cursor);
    return true;
}

CElementInfoSeqEnumCol::CElementInfoSeqEnumCol(const char* elementName, const char* namespaceUri, int propertyIndex)
    : CElementInfoSeqCol(elementName, namespaceUri, propertyIndex) {}

CElementInfoSeqClsMnd::CElementInfoSeqClsMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                             XmlElementType classElementType,
                                             CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*), int classId,
                                             bool pseudoMandatory)
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_pseudoMandatory(pseudoMandatory), m_createObject(createObject), m_classId(classId) {}

bool CElementInfoSeqClsMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoSeqClsMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                           XmlElementType type) {
    if (m_classElementType == XmlElementType_Element) {
        if (type == XmlElementType_Element) {
            if (!SeekMandatory(*this, context, cursor, type)) return true;
        } else if (!IsThisElement(context, *cursor)) {
            return false;
        }
        ReadOwnElement(*this, FetchObject(*this, object), cursor, context, false);
        return true;
    }

    // A pseudo child reads from the parent's element at the cursor; an unmoved cursor
    // means that it found nothing of its own.
    if (m_pseudoMandatory) {
        if (*cursor == nullptr) {
            if (type != XmlElementType_Element) return false;
            ThrowRequired(*this);
        }
        CXmlElement* const next = FromXml_Int(FetchObject(*this, object), parent, *cursor, context, false);
        const bool moved = next != *cursor;
        if (!moved && type == XmlElementType_Element) ThrowRequired(*this);
        *cursor = next;
        return moved;
    }
    CXmlElement* const next = FromXml_Int(FetchObject(*this, object), parent, *cursor, context, false);
    // With unknown elements ignored, the walk then passes over the element.
    if (*cursor != nullptr && next == *cursor && context.GetIgnoreUnknownElements() && type == XmlElementType_Element)
        return false;
    *cursor = next;
    return true;
}

void CElementInfoSeqClsMnd::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoSeqClsOpt::CElementInfoSeqClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                             XmlElementType classElementType,
                                             CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*), int classId)
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createObject(createObject), m_classId(classId) {}

bool CElementInfoSeqClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoSeqClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                           CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                           XmlElementType /*type*/) {
    if (m_classElementType == XmlElementType_Element) {
        if (!IsThisElement(context, *cursor)) return true;
        const CSmartPtr<CXmlObjectBase> child = CreateObject(*this, m_createObject, m_classId);
        ReadOwnElement(*this, child, cursor, context, false);
        StoreObject(*this, object, child);
        return true;
    }

    // The object of a pseudo child is kept only when its group is there.
    if (*cursor == nullptr) return true;
    const CSmartPtr<CXmlObjectBase> child = CreateObject(*this, m_createObject, m_classId);
    CXmlElement* const next = FromXml_Int(child, parent, *cursor, context, false);
    if (next == *cursor) return true;
    StoreObject(*this, object, child);
    *cursor = next;
    return true;
}

void CElementInfoSeqClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoSeqClsCol::CElementInfoSeqClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                                             XmlElementType classElementType)
    : CElementInfoSeqCol(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType) {}

void CElementInfoSeqClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoCollectionAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoSeqAbsClsMnd::CElementInfoSeqAbsClsMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType,
                                                   CSmartPtr<CXmlObjectBase> (*createFromElement)(CXmlElement*))
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createFromElement(createFromElement) {}

bool CElementInfoSeqAbsClsMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoSeqAbsClsMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* /*parent*/, CXmlElement** cursor,
                                              const char* /*namespaceUri*/, XmlElementType type) {
    // Neither unknown nor missing elements are passed over here, whatever the context says.
    CSmartPtr<CXmlObjectBase> child;
    if (IsThisElement(context, *cursor)) child = m_createFromElement(*cursor);
    if (!child) {
        if (type != XmlElementType_Element) return false;
        ThrowNoSubstitution(*this);
    }
    ReadOwnElement(*this, child, cursor, context, false);
    StoreObject(*this, object, child);
    return true;
}

void CElementInfoSeqAbsClsMnd::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoSeqAbsClsOpt::CElementInfoSeqAbsClsOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType,
                                                   CSmartPtr<CXmlObjectBase> (*createFromElement)(CXmlElement*))
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType),
      m_createFromElement(createFromElement) {}

bool CElementInfoSeqAbsClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                            CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoSeqAbsClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                              CXmlElement* /*parent*/, CXmlElement** cursor,
                                              const char* /*namespaceUri*/, XmlElementType /*type*/) {
    if (!IsThisElement(context, *cursor)) return true;
    const CSmartPtr<CXmlObjectBase> child = m_createFromElement(*cursor);
    if (!child) return true;
    ReadOwnElement(*this, child, cursor, context, false);
    StoreObject(*this, object, child);
    return true;
}

void CElementInfoSeqAbsClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoObjectAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoSeqAbsClsCol::CElementInfoSeqAbsClsCol(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                   XmlElementType classElementType)
    : CElementInfoSeqCol(elementName, namespaceUri, propertyIndex), m_classElementType(classElementType) {}

void CElementInfoSeqAbsClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    PseudoCollectionAttributesToXml(*this, m_classElementType, context, object, writer);
}

CElementInfoSeqUntpdMnd::CElementInfoSeqUntpdMnd(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                 const char* namespaceRestriction, const char* targetNamespace)
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex), m_namespaceRestriction(OrEmpty(namespaceRestriction)),
      m_targetNamespace(OrEmpty(targetNamespace)) {}

bool CElementInfoSeqUntpdMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                           CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoSeqUntpdMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                             XmlElementType type) {
    if (*cursor == nullptr) ThrowRequired(*this);
    CXmlElement* const next = ReadUntyped(*this, FetchObject(*this, object), parent, *cursor, context);
    if (next == *cursor) {
        if (type != XmlElementType_Element) return false;
        throw CQvValidationException(
            FormatString("Failed to find the required element from namespace [%s]", m_namespaceUri.c_str()));
    }
    *cursor = next;
    return true;
}

CElementInfoSeqUntpdOpt::CElementInfoSeqUntpdOpt(const char* elementName, const char* namespaceUri, int propertyIndex,
                                                 const char* namespaceRestriction, const char* targetNamespace)
    : CElementInfoSeq(elementName, namespaceUri, propertyIndex), m_namespaceRestriction(OrEmpty(namespaceRestriction)),
      m_targetNamespace(OrEmpty(targetNamespace)) {}

bool CElementInfoSeqUntpdOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                           CXmlWriter* writer) const {
    return ElementToXmlCls(context, object, writer, false);
}

bool CElementInfoSeqUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** cursor, const char* namespaceUri,
                                             XmlElementType /*type*/) {
    if (*cursor == nullptr) return true;
    const CSmartPtr<CElement> element =
        ReadNewUntyped(*this, m_namespaceRestriction, m_targetNamespace, namespaceUri, parent, cursor, context);
    if (element) StoreObject(*this, object, element);
    return true;
}

CElementInfoSeqUntpdCol::CElementInfoSeqUntpdCol(const char* elementName, const char* namespaceUri, int propertyIndex)
    : CElementInfoSeqCol(elementName, namespaceUri, propertyIndex) {}

bool CElementInfoSeqUntpdCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                             CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                             XmlElementType type) {
    const CSmartPtr<CXmlCollectionBase> collection = FetchCollection(*this, object);
    *cursor = ReadUntypedCollection(*this, collection, parent, *cursor, context);
    if (type != XmlElementType_Element) return collection->IsValidCount(context);
    collection->ValidateCount(context);
    return true;
}

} // namespace QvXmlLib10Data
