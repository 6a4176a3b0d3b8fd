#include "binding/metadata/AttributeInfoKinds.h"

#include "binding/XmlGeneratedClass.h"
#include "collections/AttributeCollections.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

using namespace QvXmlLib10;

namespace QvXmlLib10Data {

namespace {

void ThrowIfMissing(bool optional, bool found, const std::string& name) {
    if (!optional && !found)
        throw CQvValidationException(FormatString("Failed to find the required Attribute [%s]", name.c_str()));
}

// Whether an optional attribute's text equals its default and is to be left out.
bool IsOmittedDefault(const CXmlSerializationContext& context, bool optional, const std::string& defaultValue,
                      const std::string& text) {
    return optional && !defaultValue.empty() && context.GetNoOptionalAttributeDefaultOutput() && text == defaultValue;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// CAttributeInfoPrimitive

CAttributeInfoPrimitive::CAttributeInfoPrimitive(const char* name, const char* namespaceUri, int propertyIndex,
                                                 bool optional, ItemType itemType, const char* format,
                                                 CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                                 const CPrimitiveRestrictions& restrictions, const char* defaultValue)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, defaultValue), m_restrictions(restrictions),
      m_itemType(itemType), m_format(OrEmpty(format)), m_whitespaceRule(whitespaceRule) {}

CAttributeInfoPrimitive::~CAttributeInfoPrimitive() {}

bool CAttributeInfoPrimitive::AttributeFromXml(const CXmlSerializationContext& /*context*/, CXmlGeneratedClass* object,
                                               CXmlAttribute* attribute) {
    // Compared exactly, not through IsThisAttribute: ignoring namespaces does not apply here.
    if (attribute == nullptr || attribute->GetLocalName() != m_attributeName ||
        attribute->GetNamespaceURI() != m_namespaceUri)
        return false;
    QvVariant value;
    value.FromString(attribute->GetValue(), m_itemType, m_whitespaceRule);
    AccessProperty(object, false, value);
    return true;
}

void CAttributeInfoPrimitive::Validate(const CXmlSerializationContext& /*context*/, bool found) const {
    ThrowIfMissing(m_optional, found, m_attributeName);
}

void CAttributeInfoPrimitive::AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (m_optional && !value.IsValid()) return;
    const std::string text = value.ToString(m_format.c_str());
    if (IsOmittedDefault(context, m_optional, m_defaultValue, text)) return;
    CheckRestriction(value);
    writer->WriteAttributeString(m_attributeName, m_namespaceUri, text, value.GetItemType());
}

void CAttributeInfoPrimitive::CheckRestriction(QvVariant value) const {
    CXmlObjectHelper::CheckRestriction(m_attributeName.c_str(), value, m_itemType, m_restrictions);
}

// ---------------------------------------------------------------------------------------------
// CAttributeInfoEnum

CAttributeInfoEnum::CAttributeInfoEnum(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                                       const char* (*enumToText)(int), int (*textToEnum)(const char*),
                                       const char* defaultValue)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, defaultValue), m_textToEnum(textToEnum),
      m_enumToText(enumToText) {}

CAttributeInfoEnum::~CAttributeInfoEnum() {}

bool CAttributeInfoEnum::AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                                          CXmlAttribute* attribute) {
    if (!IsThisAttribute(context, attribute)) return false;
    QvVariant value;
    value.SetI4(m_textToEnum(attribute->GetValue().c_str()));
    AccessProperty(object, false, value);
    return true;
}

void CAttributeInfoEnum::Validate(const CXmlSerializationContext& /*context*/, bool found) const {
    ThrowIfMissing(m_optional, found, m_attributeName);
}

void CAttributeInfoEnum::AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    if (m_optional && !value.IsValid()) return;
    const char* const enumText = m_enumToText(static_cast<int>(value.GetI4()));
    const std::string text = OrEmpty(enumText);
    if (IsOmittedDefault(context, m_optional, m_defaultValue, text)) return;
    writer->WriteAttributeString(m_attributeName, m_namespaceUri, text, ItemType_string);
}

// ---------------------------------------------------------------------------------------------
// CAttributeInfoAny

CAttributeInfoAny::CAttributeInfoAny(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                                     const char* namespaceRestriction, const char* targetNamespace,
                                     const char* defaultValue)
    : CAttributeInfo(name, namespaceUri, propertyIndex, optional, defaultValue),
      m_namespaceRestriction(OrEmpty(namespaceRestriction)), m_targetNamespace(OrEmpty(targetNamespace)) {}

CAttributeInfoAny::~CAttributeInfoAny() {}

bool CAttributeInfoAny::AttributeFromXml(const CXmlSerializationContext& /*context*/, CXmlGeneratedClass* object,
                                         CXmlAttribute* attribute) {
    if (attribute == nullptr ||
        !IsNamespaceValid(attribute->GetNamespaceURI(), m_namespaceRestriction, m_targetNamespace))
        return false;
    QvVariant value;
    AccessProperty(object, true, value);
    CSmartPtr<CXmlCollectionBase> collection;
    if (value.GetItemType() == ItemType_XmlCollection && !value.IsNil()) collection = value.GetXmlCollection();
    CAttributeCol* const attributes = dynamic_cast<CAttributeCol*>(collection.Get());
    if (attributes == nullptr)
        throw CQvException("Serialization Data Error : The collection should be a CAttributeCol, it was not!");
    attributes->Add(attribute->GetLocalName().c_str(), attribute->GetValue().c_str(),
                    attribute->GetNamespaceURI().c_str());
    return true;
}

void CAttributeInfoAny::Validate(const CXmlSerializationContext& /*context*/, bool /*found*/) const {}

void CAttributeInfoAny::AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                                       CXmlWriter* writer) const {
    QvVariant value;
    ReadProperty(object, value);
    const std::string targetNamespace = GetTargetNamespace(object);
    // A property without a collection has nothing to write.
    if (value.GetItemType() != ItemType_XmlCollection || value.IsNil()) return;
    const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
    if (collection) ToXml_Int(collection.Get(), writer, false, targetNamespace.c_str(), context);
}

} // namespace QvXmlLib10Data
