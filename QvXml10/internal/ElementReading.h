#pragma once

// The steps of reading and writing one member that the sequence, all and choice
// element metadata share: the nil test, fetching or creating a child, open content.
#include <strings.h>

#include <string>

#include "binding/XmlGeneratedClass.h"
#include "binding/metadata/ElementInfo.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "collections/XmlCollection.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "internal/Constants.h"
#include "internal/Text.h"
#include "validation/XmlObjectHelper.h"
#include "values/QvVariant.h"

namespace QvXmlLib10 {
namespace Internal {

using QvXmlLib10Data::CElementInfo;
using QvXmlLib10Data::XmlElementType;
using QvXmlLib10Data::XmlElementType_Pseudo;
using QvXmlLib10Data::XmlElementType_Element;

// The element name of untyped members that accepts any local name.
inline constexpr const char kAnyElement[] = "AnyElement";

inline bool EqualsNoCase(const std::string& text, const char* word) { return strcasecmp(text.c_str(), word) == 0; }

inline CXmlElement* NextOf(const CXmlElement* element) { return element->GetNextSiblingElement(); }

[[noreturn]] inline void ThrowRequired(const CElementInfo& info) {
    throw CQvValidationException(FormatString("Failed to find a required element [%s]", info.m_elementName.c_str()));
}

[[noreturn]] inline void ThrowNoSubstitution(const CElementInfo& info) {
    throw CQvValidationException(
        FormatString("Failed to find a suitable substitution element for [%s]", info.m_elementName.c_str()));
}

[[noreturn]] inline void ThrowNotImplemented() { throw CQvException("Not implemented, should never be called"); }

// The nil test of an element that holds a value: true when the element has a value,
// false when it is nil. A nil that the metadata does not allow, or that is neither
// true nor false, throws.
inline bool HasValue(const CElementInfo& info, const CXmlElement* element) {
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
inline void ReadPrimitive(const CElementInfo& info, CXmlGeneratedClass* object, CXmlElement** cursor) {
    QvVariant value;
    if (HasValue(info, *cursor))
        value.FromString((*cursor)->GetText(), info.m_itemType, info.m_whitespaceRule);
    else
        value.SetNil();
    info.AccessProperty(object, false, value);
    *cursor = NextOf(*cursor);
}

// The same for an enumeration, held as an i4.
inline void ReadEnumeration(const CElementInfo& info, int (*textToEnum)(const char*), CXmlGeneratedClass* object,
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
inline CSmartPtr<CXmlObjectBase> ObjectIn(const QvVariant& value) {
    return value.GetItemType() == ItemType_XmlObject ? value.GetXmlObject() : CSmartPtr<CXmlObjectBase>();
}

inline CSmartPtr<CXmlCollectionBase> CollectionIn(const QvVariant& value) {
    return value.GetItemType() == ItemType_XmlCollection ? value.GetXmlCollection() : CSmartPtr<CXmlCollectionBase>();
}

// The child object that the parent created for a mandatory member.
inline CSmartPtr<CXmlObjectBase> FetchObject(const CElementInfo& info, CXmlGeneratedClass* object) {
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
inline CSmartPtr<CXmlCollectionBase> FetchCollection(const CElementInfo& info, const CXmlGeneratedClass* object) {
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
inline CSmartPtr<CXmlObjectBase>
CreateObject(const CElementInfo& info, CSmartPtr<CXmlObjectBase> (*createObject)(int, const char*), int classId) {
    CSmartPtr<CXmlObjectBase> child = createObject(classId, info.m_elementName.c_str());
    if (!child) {
        throw CQvInvalidStateException(
            FormatString("The class %d of the element [%s] could not be created", classId, info.m_elementName.c_str()));
    }
    return child;
}

inline void StoreObject(const CElementInfo& info, CXmlGeneratedClass* object, CXmlObjectBase* child) {
    QvVariant value;
    value.SetXmlObject(child);
    info.AccessProperty(object, false, value);
}

// Reads a child with a tag of its own from the element at the cursor, and moves the
// cursor behind that element.
inline void ReadOwnElement(const CElementInfo& info, CXmlObjectBase* child, CXmlElement** cursor,
                           const CXmlSerializationContext& context, bool isChoiceMember) {
    CXmlElement* const element = *cursor;
    info.FromXml_Int(child, element, element->GetFirstElement(), context, isChoiceMember);
    *cursor = NextOf(element);
}

// Whether an untyped member takes the element by its local name.
inline bool TakesName(const CElementInfo& info, const CXmlElement* element) {
    return info.m_elementName == kAnyElement || info.m_elementName == element->GetLocalName();
}

// Reads the element at the cursor into an untyped element when the name fits;
// returns the new cursor, which is the old one when nothing was read.
inline CXmlElement* ReadUntyped(const CElementInfo& info, CXmlObjectBase* element, CXmlElement* parent,
                                CXmlElement* cursor, const CXmlSerializationContext& context) {
    if (!TakesName(info, cursor)) return cursor;
    return info.FromXml_Int(element, parent, cursor, context, false);
}

// Reads an optional untyped element at the (non-null) cursor into a new CElement held
// to the member's restriction. Returns the element when it took something, else null;
// `cursor` is moved past what was read.
inline CSmartPtr<CElement> ReadNewUntyped(const CElementInfo& info, const std::string& restriction,
                                          const std::string& targetNamespace, const char* enclosingNamespace,
                                          CXmlElement* parent, CXmlElement** cursor,
                                          const CXmlSerializationContext& context) {
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
inline void PseudoObjectAttributesToXml(const CElementInfo& info, XmlElementType classElementType,
                                        const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) {
    if (classElementType != XmlElementType_Pseudo) return;
    QvVariant value;
    info.ReadProperty(object, value);
    const CSmartPtr<CXmlObjectBase> child = ObjectIn(value);
    if (child) info.AttributesToXml_Int(child, writer, context);
}

// The same for a collection of pseudo children, which passes over its items.
inline void PseudoCollectionAttributesToXml(const CElementInfo& info, XmlElementType classElementType,
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
inline bool CheckedCollectionToXml(const CElementInfo& info, const CXmlSerializationContext& context,
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
inline CXmlElement* ReadUntypedCollection(const CElementInfo& info, CXmlCollectionBase* collection, CXmlElement* parent,
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

} // namespace Internal
} // namespace QvXmlLib10
