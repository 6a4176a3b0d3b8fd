#include "binding/metadata/ElementInfo.h"

#include <cstring>

#include "binding/XmlGeneratedClass.h"
#include "collections/XmlCollection.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "values/QvVariant.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

using namespace QvXmlLib10;

namespace QvXmlLib10Data {

CElementInfo::CElementInfo(const char* elementName, const char* namespaceUri, int propertyIndex)
    : m_elementName(OrEmpty(elementName)), m_namespaceUri(OrEmpty(namespaceUri)), m_propertyIndex(propertyIndex),
      m_itemType(ItemType_Invalid), m_whitespaceRule(CWhitespaceUtils::WhitespaceRule_None), m_nillable(false),
      m_hasPrimitiveInfo(false) {}

CElementInfo::CElementInfo(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable)
    : m_elementName(OrEmpty(elementName)), m_namespaceUri(OrEmpty(namespaceUri)), m_propertyIndex(propertyIndex),
      m_itemType(ItemType_Invalid), m_whitespaceRule(CWhitespaceUtils::WhitespaceRule_None), m_nillable(nillable),
      m_hasPrimitiveInfo(false) {}

CElementInfo::CElementInfo(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                           ItemType itemType, const char* format, CWhitespaceUtils::WhitespaceRule whitespaceRule,
                           const CPrimitiveRestrictions& restrictions)
    : m_elementName(OrEmpty(elementName)), m_namespaceUri(OrEmpty(namespaceUri)), m_propertyIndex(propertyIndex),
      m_restrictions(restrictions), m_itemType(itemType), m_format(OrEmpty(format)), m_whitespaceRule(whitespaceRule),
      m_nillable(nillable), m_hasPrimitiveInfo(true) {}

CElementInfo::~CElementInfo() {}

void CElementInfo::PseudoChildAttributeToXml(const CXmlSerializationContext& /*context*/,
                                             const CXmlGeneratedClass* /*object*/, CXmlWriter* /*writer*/) const {}

bool CElementInfo::IsThisElement(const CXmlSerializationContext& context, const CXmlElement* element) const {
    if (element == nullptr) return false;
    if (element->GetLocalName() != m_elementName) return false;
    if (context.GetIgnoreNamespaces()) return true;
    return element->GetNamespaceURI() == m_namespaceUri;
}

void CElementInfo::AccessProperty(CXmlGeneratedClass* object, bool read, QvVariant& value) const {
    object->AccessProperty(m_propertyIndex, read, value);
}

void CElementInfo::ReadProperty(const CXmlGeneratedClass* object, QvVariant& value) const {
    object->ReadProperty(m_propertyIndex, value);
}

CXmlElement* CElementInfo::FromXml_Int(CXmlObjectBase* object, CXmlElement* element, CXmlElement* firstChild,
                                       const CXmlSerializationContext& context, bool isChoiceMember) const {
    return object->FromXml_Int(element, firstChild, context, isChoiceMember);
}

void CElementInfo::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                       const CXmlSerializationContext& context) const {
    CXmlObjectBase::AttributesToXml_Int(object, writer, context);
}

bool CElementInfo::ElementToXmlCls(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer, bool isChoiceMember) const {
    QvVariant value;
    ReadProperty(object, value);
    // The variant's getters do not check the kind: anything but an object counts as none.
    if (value.GetItemType() != ItemType_XmlObject || value.IsNil()) return false;
    const CSmartPtr<CXmlObjectBase> child = value.GetXmlObject();
    if (!child) return false;
    CXmlObjectBase::ToXml_Int(child, writer, false, m_namespaceUri.c_str(), context, isChoiceMember);
    return true;
}

bool CElementInfo::ElementToXmlCol(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (value.GetItemType() != ItemType_XmlCollection || value.IsNil()) return false;
    const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
    if (!collection || collection->GetCount() <= 0) return false;
    CXmlObjectBase::ToXml_Int(collection->GetBase(), writer, false, m_namespaceUri.c_str(), context, false);
    return true;
}

bool CElementInfo::ElementToXmlPrim(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    // A mandatory member without a value stays out, like an optional one.
    if (!value.IsValid()) return false;
    if (value.IsNil()) {
        writer->WriteStartElement(m_elementName, m_namespaceUri);
        writer->WriteAttributeNil();
        writer->WriteEndElement();
        return true;
    }
    CheckRestriction(value);
    writer->WriteStartElement(m_elementName, m_namespaceUri);
    writer->WriteString(value.ToString(m_format.c_str()), value.GetItemType());
    writer->WriteEndElement();
    return true;
}

bool CElementInfo::ElementToXmlEnum(const CXmlSerializationContext& /*context*/, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer, const char* (*enumToText)(int)) const {
    QvVariant value;
    ReadProperty(object, value);
    if (!value.IsValid()) return false;
    if (value.IsNil()) {
        writer->WriteStartElement(m_elementName, m_namespaceUri);
        writer->WriteAttributeNil();
        writer->WriteEndElement();
        return true;
    }
    const char* const text = enumToText(static_cast<int>(value.GetI4()));
    writer->WriteStartElement(m_elementName, m_namespaceUri);
    writer->WriteString(OrEmpty(text), ItemType_string);
    writer->WriteEndElement();
    return true;
}

void CElementInfo::CheckRestriction(const QvVariant& value) const {
    if (!m_hasPrimitiveInfo) throw CQvException("Cannot CheckRestriction for type: " + value.GetType());
    CXmlObjectHelper::CheckRestriction(m_elementName.c_str(), value, m_itemType, m_restrictions);
}

std::string CElementInfo::GetAnyDefaultNamespace(const char* restriction, const char* enclosingNamespace,
                                                 const char* targetNamespace) {
    restriction = OrEmpty(restriction);
    if (std::strcmp(restriction, "##any") == 0) return OrEmpty(enclosingNamespace);
    if (std::strcmp(restriction, "##other") == 0)
        return *OrEmpty(enclosingNamespace) != '\0' ? std::string() : std::string("DefaultNamespace");
    if (std::strcmp(restriction, "##local") == 0) return std::string();
    if (std::strcmp(restriction, "##targetNamespace") == 0) return OrEmpty(targetNamespace);
    // A list that begins with a keyword counts by its first token.
    const char* const blank = std::strchr(restriction, ' ');
    if (blank != nullptr && std::strlen(restriction) >= 3 && std::strncmp(restriction, "##", 2) == 0) {
        const std::string first(restriction, blank);
        return GetAnyDefaultNamespace(first.c_str(), enclosingNamespace, targetNamespace);
    }
    return std::string();
}

} // namespace QvXmlLib10Data
