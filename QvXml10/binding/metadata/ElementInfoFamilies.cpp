// The element metadata of the sequence, all and choice groups. The three families
// share the steps of reading one element (the nil test, fetching or creating a child,
// open content), so they are implemented together here.

#include <strings.h>

#include "binding/XmlGeneratedClass.h"
#include "binding/metadata/AllElementInfo.h"
#include "binding/metadata/ChoiceElementInfo.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "collections/XmlCollection.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "values/QvVariant.h"
#include "internal/Constants.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

using namespace QvXmlLib10;

namespace QvXmlLib10Data {

namespace {

// The element name of untyped members that accepts any local name.
const char* const kAnyElement = "AnyElement";

bool EqualsNoCase(const std::string& text, const char* word) { return strcasecmp(text.c_str(), word) == 0; }

CXmlElement* NextOf(const CXmlElement* element) { return element->GetNextSiblingElement(); }

[[noreturn]] void ThrowRequired(const CElementInfo& info) {
    throw CQvValidationException(FormatString("Failed to find a required element [%s]", info.m_elementName.c_str()));
}

[[noreturn]] void ThrowNoSubstitution(const CElementInfo& info) {
    throw CQvValidationException(
        FormatString("Failed to find a suitable substitution element for [%s]", info.m_elementName.c_str()));
}

[[noreturn]] void ThrowNotImplemented() { throw CQvException("Not implemented, should never be called"); }

// The nil test of an element that holds a value: true when the element has a value,
// false when it is nil. A nil that the metadata does not allow, or that is neither
// true nor false, throws.
bool HasValue(const CElementInfo& info, const CXmlElement* element) {
    static const std::string nilName("nil");
    static const std::string xsiNamespace(QvXmlLib10::Internal::kXsiNamespace);
    const std::string& nil = element->GetAttribute(nilName, xsiNamespace);
    if (nil.empty() || EqualsNoCase(nil, "false") || EqualsNoCase(nil, "0")) return true;
    if (!info.m_nillable) {
        throw CQvValidationException(
            FormatString("Invalid use of 'nil' attibute in non-nillable element [%s]", info.m_elementName.c_str()));
    }
    if (!EqualsNoCase(nil, "true") && !EqualsNoCase(nil, "1"))
        throw CQvValidationException(FormatString("Unexpected Value [%s] for 'nil' Attribute found.", nil.c_str()));
    return false;
}

// Reads the primitive value of the element at the cursor (or nil), stores it and moves
// the cursor on.
void ReadPrimitive(const CElementInfo& info, CXmlGeneratedClass* object, CXmlElement** cursor) {
    QvVariant value;
    if (HasValue(info, *cursor))
        value.FromString((*cursor)->GetText(), info.m_itemType, info.m_whitespaceRule);
    else
        value.SetNil();
    info.AccessProperty(object, false, value);
    *cursor = NextOf(*cursor);
}

// The same for an enumeration, held as an i4.
void ReadEnumeration(const CElementInfo& info, int (*textToEnum)(const char*), CXmlGeneratedClass* object,
                     CXmlElement** cursor) {
    QvVariant value;
    if (HasValue(info, *cursor))
        value.SetI4(textToEnum((*cursor)->GetText().c_str()));
    else
        value.SetNil();
    info.AccessProperty(object, false, value);
    *cursor = NextOf(*cursor);
}

// The object or collection a property holds; null for a property of another kind,
// whose value word is no pointer.
CSmartPtr<CXmlObjectBase> ObjectIn(const QvVariant& value) {
    return value.GetItemType() == ItemType_XmlObject ? value.GetXmlObject() : CSmartPtr<CXmlObjectBase>();
}

CSmartPtr<CXmlCollectionBase> CollectionIn(const QvVariant& value) {
    return value.GetItemType() == ItemType_XmlCollection ? value.GetXmlCollection() : CSmartPtr<CXmlCollectionBase>();
}

// The child object that the parent created for a mandatory member.
CSmartPtr<CXmlObjectBase> FetchObject(const CElementInfo& info, CXmlGeneratedClass* object) {
    QvVariant value;
    info.AccessProperty(object, true, value);
    CSmartPtr<CXmlObjectBase> child = ObjectIn(value);
    if (!child) {
        throw CQvInvalidStateException(
            FormatString("The property of the element [%s] holds no object", info.m_elementName.c_str()));
    }
    return child;
}

// The collection that the parent created for a repeating member.
CSmartPtr<CXmlCollectionBase> FetchCollection(const CElementInfo& info, const CXmlGeneratedClass* object) {
    QvVariant value;
    info.ReadProperty(object, value);
    CSmartPtr<CXmlCollectionBase> collection = CollectionIn(value);
    if (!collection) {
        throw CQvInvalidStateException(
            FormatString("The property of the element [%s] holds no collection", info.m_elementName.c_str()));
    }
    return collection;
}

// A new object of the member's class, from the generated creation function.
CSmartPtr<CXmlObjectBase> CreateObject(const CElementInfo& info,
                                       CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*), int classId) {
    CSmartPtr<CXmlObjectBase> child = createObject(classId, info.m_elementName.c_str());
    if (!child) {
        throw CQvInvalidStateException(
            FormatString("The class %d of the element [%s] could not be created", classId, info.m_elementName.c_str()));
    }
    return child;
}

void StoreObject(const CElementInfo& info, CXmlGeneratedClass* object, CXmlObjectBase* child) {
    QvVariant value;
    value.SetXmlObject(child);
    info.AccessProperty(object, false, value);
}

// Reads a child with a tag of its own from the element at the cursor, and moves the
// cursor behind that element.
void ReadOwnElement(const CElementInfo& info, CXmlObjectBase* child, CXmlElement** cursor,
                    const CXmlSerializationContext& context, bool isChoiceMember) {
    CXmlElement* const element = *cursor;
    info.FromXml_Int(child, element, element->GetFirstElement(), context, isChoiceMember);
    *cursor = NextOf(element);
}

// Whether an untyped member takes the element by its local name.
bool TakesName(const CElementInfo& info, const CXmlElement* element) {
    return info.m_elementName == kAnyElement || info.m_elementName == element->GetLocalName();
}

// Reads the element at the cursor into an untyped element when the name fits;
// returns the new cursor, which is the old one when nothing was read.
CXmlElement* ReadUntyped(const CElementInfo& info, CXmlObjectBase* element, CXmlElement* parent, CXmlElement* cursor,
                         const CXmlSerializationContext& context) {
    if (!TakesName(info, cursor)) return cursor;
    return info.FromXml_Int(element, parent, cursor, context, false);
}

// Reads an optional untyped element at the (non-null) cursor into a new CElement held
// to the member's restriction. Returns the element when it took something, else null;
// `cursor` is moved past what was read.
CSmartPtr<CElement> ReadNewUntyped(const CElementInfo& info, const std::string& restriction,
                                   const std::string& targetNamespace, const char* enclosingNamespace,
                                   CXmlElement* parent, CXmlElement** cursor, const CXmlSerializationContext& context) {
    const std::string namespaceUri =
        CElementInfo::GetAnyDefaultNamespace(restriction.c_str(), enclosingNamespace, targetNamespace.c_str());
    if (!TakesName(info, *cursor)) {
        // Nothing to read: the only effect of building the element, the test of its
        // namespace, is had without building it.
        CXmlObjectHelper::TestNamespace(namespaceUri, restriction, targetNamespace);
        return CSmartPtr<CElement>();
    }
    CSmartPtr<CElement> element(
        new CElement(info.m_elementName.c_str(), namespaceUri.c_str(), restriction.c_str(), targetNamespace.c_str()));
    CXmlElement* const next = info.FromXml_Int(element, parent, *cursor, context, false);
    if (next == *cursor) return CSmartPtr<CElement>();
    *cursor = next;
    return element;
}

// The attributes of a pseudo child object, written on the enclosing element.
void PseudoObjectAttributesToXml(const CElementInfo& info, XmlElementType classElementType,
                                 const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                 CXmlWriter* writer) {
    if (classElementType != XmlElementType_Pseudo) return;
    QvVariant value;
    info.ReadProperty(object, value);
    const CSmartPtr<CXmlObjectBase> child = ObjectIn(value);
    if (child) info.AttributesToXml_Int(child, writer, context);
}

// The same for a collection of pseudo children, which passes over its items.
void PseudoCollectionAttributesToXml(const CElementInfo& info, XmlElementType classElementType,
                                     const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                     CXmlWriter* writer) {
    if (classElementType != XmlElementType_Pseudo) return;
    QvVariant value;
    info.ReadProperty(object, value);
    const CSmartPtr<CXmlCollectionBase> collection = CollectionIn(value);
    if (collection) info.AttributesToXml_Int(collection, writer, context);
}

// A collection member on writing: the count is checked unless the context ignores
// counts, then the items are written. A property without a collection writes nothing.
bool CheckedCollectionToXml(const CElementInfo& info, const CXmlSerializationContext& context,
                            const CXmlGeneratedClass* object, CXmlWriter* writer) {
    if (!context.GetIgnoreInvalidCollectionCounts()) {
        QvVariant value;
        info.ReadProperty(object, value);
        const CSmartPtr<CXmlCollectionBase> collection = CollectionIn(value);
        if (collection) collection->ValidateCount(context);
    }
    return info.ElementToXmlCol(context, object, writer);
}

// Reads an untyped collection from the cursor. Under a fixed name the collection is a
// CElementCol that takes only that name, in the namespace of the element at the cursor.
CXmlElement* ReadUntypedCollection(const CElementInfo& info, CXmlCollectionBase* collection, CXmlElement* parent,
                                   CXmlElement* cursor, const CXmlSerializationContext& context) {
    if (info.m_elementName == kAnyElement) return info.FromXml_Int(collection, parent, cursor, context, false);
    CElementCol* const elements = dynamic_cast<CElementCol*>(collection);
    if (elements == nullptr) {
        throw CQvInvalidStateException(
            FormatString("The property of the element [%s] holds no CElementCol", info.m_elementName.c_str()));
    }
    static const std::string noNamespace;
    return elements->FromXmlLockElementName_Int(
        info.m_elementName, cursor != nullptr ? cursor->GetNamespaceURI() : noNamespace, parent, cursor, context);
}

} // namespace

// =============================================================================================
// Sequence

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

// =============================================================================================
// All

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

// =============================================================================================
// Choice

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
