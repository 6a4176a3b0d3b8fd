#include "support/TestMetadata.h"

#include <strings.h>

#include "collections/XmlCollection.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "values/QvVariant.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace QvXmlTest {

namespace {

const char* const kXsi = "http://www.w3.org/2001/XMLSchema-instance";

bool Is(const std::string& text, const char* word) { return strcasecmp(text.c_str(), word) == 0; }

[[noreturn]] void ThrowRequired(const std::string& name) {
    throw CQvValidationException(FormatString("Failed to find a required element [%s]", name.c_str()));
}

[[noreturn]] void ThrowNotImplemented() { throw CQvException("Not implemented, should never be called"); }

bool MandatoryValidate(const std::string& name, bool found, bool check) {
    if (found || !check) return found;
    throw CQvValidationException(FormatString("Failed to find the mandatory element [%s]", name.c_str()));
}

CXmlElement* NextOf(CXmlElement* element) { return element != nullptr ? element->GetNextSiblingElement() : nullptr; }

} // namespace

// ---------------------------------------------------------------------------------------------

CTestPrimElement::CTestPrimElement(Group group, Occurs occurs, const char* name, const char* namespaceUri,
                                   int propertyIndex, bool nillable, ItemType itemType,
                                   const CPrimitiveRestrictions& restrictions, const char* format)
    : CElementInfo(name, namespaceUri, propertyIndex, nillable, itemType, format,
                   CWhitespaceUtils::WhitespaceRule_Collapse, restrictions),
      m_group(group), m_occurs(occurs) {}

bool CTestPrimElement::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer) const {
    return ElementToXmlPrim(context, object, writer);
}

bool CTestPrimElement::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                      CXmlElement* /*parent*/, CXmlElement** cursor, const char* /*namespaceUri*/,
                                      XmlElementType type) {
    if (m_group != Group::Sequence) {
        if (!IsThisElement(context, *cursor)) return false;
    } else if (m_occurs == Occurs::Optional) {
        if (!IsThisElement(context, *cursor)) return true;
    } else {
        while (!IsThisElement(context, *cursor)) {
            if (type == XmlElementType_Element && context.GetIgnoreMissingMandatoryElements()) return true;
            if (!context.GetIgnoreUnknownElements() || *cursor == nullptr) {
                if (type != XmlElementType_Element) return false;
                ThrowRequired(m_elementName);
            }
            *cursor = (*cursor)->GetNextSiblingElement();
        }
    }
    ReadValue(object, cursor);
    return true;
}

void CTestPrimElement::ReadValue(CXmlGeneratedClass* object, CXmlElement** cursor) {
    QvVariant value;
    const std::string& nil = (*cursor)->GetAttribute("nil", kXsi);
    if (nil.empty() || Is(nil, "false") || Is(nil, "0")) {
        value.FromString((*cursor)->GetText(), m_itemType, m_whitespaceRule);
    } else if (!m_nillable) {
        throw CQvValidationException(
            FormatString("Invalid use of 'nil' attibute in non-nillable element [%s]", m_elementName.c_str()));
    } else if (!Is(nil, "true") && !Is(nil, "1")) {
        throw CQvValidationException(FormatString("Unexpected Value [%s] for 'nil' Attribute found.", nil.c_str()));
    } else {
        value.SetNil();
    }
    AccessProperty(object, false, value);
    *cursor = (*cursor)->GetNextSiblingElement();
}

bool CTestPrimElement::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                                bool found, bool check) const {
    if (m_group != Group::All) ThrowNotImplemented();
    if (m_occurs == Occurs::Optional) return true;
    return MandatoryValidate(m_elementName, found, check);
}

// ---------------------------------------------------------------------------------------------

CTestClsElement::CTestClsElement(Group group, Occurs occurs, const char* name, const char* namespaceUri,
                                 int propertyIndex, XmlElementType classElementType, CreateObjectFn create, int classId,
                                 bool pseudoMandatory)
    : CElementInfo(name, namespaceUri, propertyIndex), m_group(group), m_occurs(occurs),
      m_classElementType(classElementType), m_createObject(create), m_classId(classId),
      m_pseudoMandatory(pseudoMandatory) {}

CSmartPtr<CXmlObjectBase> CTestClsElement::Fetch(CXmlGeneratedClass* object) const {
    QvVariant value;
    AccessProperty(object, true, value);
    return value.GetXmlObject();
}

void CTestClsElement::Store(CXmlGeneratedClass* object, CXmlObjectBase* child) const {
    QvVariant value;
    value.SetXmlObject(child);
    AccessProperty(object, false, value);
}

bool CTestClsElement::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const {
    // Only an optional member of a choice writes its child as a choice member.
    return ElementToXmlCls(context, object, writer, m_group == Group::Choice);
}

bool CTestClsElement::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                     CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                     XmlElementType type) {
    switch (m_group) {
    case Group::Sequence:
        return ReadSequence(context, object, parent, cursor, type);
    case Group::Choice:
        return ReadChoice(context, object, parent, cursor);
    case Group::All:
        return ReadAll(context, object, parent, cursor);
    }
    return false;
}

bool CTestClsElement::ReadSequence(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                   CXmlElement* parent, CXmlElement** cursor, XmlElementType type) {
    if (m_classElementType == XmlElementType_Element) {
        if (m_occurs == Occurs::Optional) {
            if (!IsThisElement(context, *cursor)) return true;
            CSmartPtr<CXmlObjectBase> child = m_createObject(m_classId, m_elementName.c_str());
            FromXml_Int(child, *cursor, (*cursor)->GetFirstElement(), context, false);
            *cursor = (*cursor)->GetNextSiblingElement();
            Store(object, child);
            return true;
        }
        while (!IsThisElement(context, *cursor)) {
            if (type != XmlElementType_Element) return false;
            if (context.GetIgnoreMissingMandatoryElements()) return true;
            if (!context.GetIgnoreUnknownElements() || *cursor == nullptr) ThrowRequired(m_elementName);
            *cursor = (*cursor)->GetNextSiblingElement();
        }
        FromXml_Int(Fetch(object), *cursor, (*cursor)->GetFirstElement(), context, false);
        *cursor = (*cursor)->GetNextSiblingElement();
        return true;
    }

    // A pseudo child reads from the parent's element at the cursor.
    if (m_occurs == Occurs::Optional) {
        if (*cursor == nullptr) return true;
        CSmartPtr<CXmlObjectBase> child = m_createObject(m_classId, m_elementName.c_str());
        CXmlElement* const next = FromXml_Int(child, parent, *cursor, context, false);
        if (next != *cursor) {
            Store(object, child);
            *cursor = next;
        }
        return true;
    }
    if (m_pseudoMandatory) {
        if (*cursor == nullptr) {
            if (type != XmlElementType_Element) return false;
            ThrowRequired(m_elementName);
        }
        CXmlElement* const next = FromXml_Int(Fetch(object), parent, *cursor, context, false);
        const bool moved = next != *cursor;
        if (!moved && type == XmlElementType_Element) ThrowRequired(m_elementName);
        *cursor = next;
        return moved;
    }
    CXmlElement* const next = FromXml_Int(Fetch(object), parent, *cursor, context, false);
    if (*cursor != nullptr && next == *cursor && context.GetIgnoreUnknownElements() && type == XmlElementType_Element)
        return false;
    *cursor = next;
    return true;
}

bool CTestClsElement::ReadChoice(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                 CXmlElement* parent, CXmlElement** cursor) {
    if (m_classElementType == XmlElementType_Element) {
        if (!IsThisElement(context, *cursor)) return false;
        CSmartPtr<CXmlObjectBase> child = m_createObject(m_classId, m_elementName.c_str());
        // Stored before it is read, so that the choice is recorded first.
        Store(object, child);
        FromXml_Int(child, *cursor, (*cursor)->GetFirstElement(), context, true);
        *cursor = (*cursor)->GetNextSiblingElement();
        return true;
    }
    if (*cursor == nullptr) return false;
    CSmartPtr<CXmlObjectBase> child = m_createObject(m_classId, m_elementName.c_str());
    Store(object, child);
    CXmlElement* const next = FromXml_Int(child, parent, *cursor, context, false);
    if (next != *cursor) {
        *cursor = next;
        return true;
    }
    Store(object, nullptr);
    return false;
}

bool CTestClsElement::ReadAll(const CXmlSerializationContext& context, CXmlGeneratedClass* object, CXmlElement* parent,
                              CXmlElement** cursor) {
    if (m_classElementType != XmlElementType_Element) {
        CXmlElement* const next = FromXml_Int(Fetch(object), parent, *cursor, context, false);
        const bool moved = next != *cursor;
        *cursor = next;
        return moved;
    }
    if (!IsThisElement(context, *cursor)) return false;
    if (m_occurs == Occurs::Optional) {
        CSmartPtr<CXmlObjectBase> child = m_createObject(m_classId, m_elementName.c_str());
        FromXml_Int(child, *cursor, (*cursor)->GetFirstElement(), context, false);
        Store(object, child);
    } else {
        FromXml_Int(Fetch(object), *cursor, (*cursor)->GetFirstElement(), context, false);
    }
    *cursor = NextOf(*cursor);
    return true;
}

bool CTestClsElement::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                               bool found, bool check) const {
    if (m_group != Group::All) ThrowNotImplemented();
    if (m_occurs == Occurs::Optional) return true;
    if (found || !check) return found;
    if (m_classElementType != XmlElementType_Pseudo && !m_pseudoMandatory) return true;
    return MandatoryValidate(m_elementName, found, check);
}

void CTestClsElement::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                const CXmlGeneratedClass* object, CXmlWriter* writer) const {
    if (m_classElementType != XmlElementType_Pseudo) return;
    QvVariant value;
    ReadProperty(object, value);
    const CSmartPtr<CXmlObjectBase> child = value.GetXmlObject();
    if (child) AttributesToXml_Int(child, writer, context);
}

// ---------------------------------------------------------------------------------------------

CTestColElement::CTestColElement(const char* name, const char* namespaceUri, int propertyIndex)
    : CElementInfo(name, namespaceUri, propertyIndex) {}

bool CTestColElement::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const {
    if (!context.GetIgnoreInvalidCollectionCounts()) {
        QvVariant value;
        ReadProperty(object, value);
        value.GetXmlCollection()->ValidateCount(context);
    }
    return ElementToXmlCol(context, object, writer);
}

bool CTestColElement::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                     CXmlElement* parent, CXmlElement** cursor, const char* /*namespaceUri*/,
                                     XmlElementType type) {
    QvVariant value;
    AccessProperty(object, true, value);
    const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
    *cursor = FromXml_Int(collection, parent, *cursor, context, false);
    if (type != XmlElementType_Element) return collection->IsValidCount(context);
    collection->ValidateCount(context);
    return true;
}

bool CTestColElement::Validate(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* /*object*/,
                               bool /*found*/, bool /*check*/) const {
    ThrowNotImplemented();
}

// ---------------------------------------------------------------------------------------------

CTestAttribute::CTestAttribute(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                               ItemType itemType)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, nullptr), m_itemType(itemType) {}

void CTestAttribute::AttributeToXml(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (m_optional && !value.IsValid()) return;
    writer->WriteAttributeString(m_attributeName, m_namespaceUri, value.ToString(), value.GetItemType());
}

bool CTestAttribute::AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                      CXmlAttribute* attribute) {
    if (!IsThisAttribute(context, attribute)) return false;
    QvVariant value;
    value.FromString(attribute->GetValue(), m_itemType, CWhitespaceUtils::WhitespaceRule_Collapse);
    AccessProperty(object, false, value);
    return true;
}

void CTestAttribute::Validate(const CXmlSerializationContext& /*context*/, bool found) const {
    if (!m_optional && !found)
        throw CQvValidationException(
            FormatString("Failed to find the required Attribute [%s]", m_attributeName.c_str()));
}

} // namespace QvXmlTest
