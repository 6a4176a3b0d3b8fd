#include "binding/metadata/AttributeInfo.h"

#include "binding/XmlGeneratedClass.h"
#include "document/XmlDocument.h"
#include "validation/XmlObjectHelper.h"
#include "values/QvVariant.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

using namespace QvXmlLib10;

namespace QvXmlLib10Data {

CAttributeInfo::CAttributeInfo(const char* attributeName, const char* namespaceUri, int propertyIndex, bool optional,
                               const char* defaultValue)
    : m_attributeName(OrEmpty(attributeName)), m_namespaceUri(OrEmpty(namespaceUri)), m_propertyIndex(propertyIndex),
      m_optional(optional), m_defaultValue(OrEmpty(defaultValue)) {}

CAttributeInfo::~CAttributeInfo() {}

bool CAttributeInfo::IsThisAttribute(const CXmlSerializationContext& context, const CXmlAttribute* attribute) const {
    if (attribute == nullptr) return false;
    if (attribute->GetLocalName() != m_attributeName) return false;
    if (context.GetIgnoreNamespaces()) return true;
    return attribute->GetNamespaceURI() == m_namespaceUri;
}

void CAttributeInfo::AccessProperty(CXmlGeneratedClass* object, bool read, QvVariant& value) const {
    object->AccessProperty(m_propertyIndex, read, value);
}

void CAttributeInfo::ReadProperty(const CXmlGeneratedClass* object, QvVariant& value) const {
    object->ReadProperty(m_propertyIndex, value);
}

std::string CAttributeInfo::GetTargetNamespace(const CXmlObjectBase* object) { return object->GetTargetNamespace(); }

void CAttributeInfo::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                               const CXmlSerializationContext& context) {
    CXmlObjectBase::ToXml_Int(object, writer, isRoot, namespaceUri, context, false);
}

bool CAttributeInfo::IsNamespaceValid(const std::string& namespaceUri, const std::string& restriction,
                                      const std::string& targetNamespace) {
    return CXmlObjectHelper::IsNamespaceValid(namespaceUri, restriction, targetNamespace);
}

void CAttributeInfo::TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                                   const std::string& targetNamespace) {
    CXmlObjectHelper::TestNamespace(namespaceUri, restriction, targetNamespace);
}

} // namespace QvXmlLib10Data
