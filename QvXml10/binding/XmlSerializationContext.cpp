#include "binding/XmlSerializationContext.h"

#include "collections/AttributeCollections.h"
#include "foundation/QvException.h"

namespace QvXmlLib10 {

CXmlSerializationContext CXmlSerializationContext::m_defaultContext;

CXmlSerializationContext::CXmlSerializationContext()
    : m_writeTypeAttribute(true), m_ignoreInvalidCollectionCounts(false), m_ignoreMissingChoice(false),
      m_ignoreMissingMandatoryElements(false), m_ignoreUnknownElements(false), m_ignoreUnknownAttributes(false),
      m_ignoreNamespaces(false), m_schemaType(SchemaType_Default), m_noOptionalAttributeDefaultOutput(false),
      m_stripCDATA(true) {}

CXmlSerializationContext::CXmlSerializationContext(const CXmlSerializationContext& other)
    : m_defaultNamespaceUri(other.m_defaultNamespaceUri), m_writeTypeAttribute(other.m_writeTypeAttribute),
      m_namespaceAliasMap(other.m_namespaceAliasMap), m_additionalRootAttributes(other.m_additionalRootAttributes),
      m_processingInstructions(other.m_processingInstructions), m_inLineSchema(other.m_inLineSchema),
      m_ignoreInvalidCollectionCounts(other.m_ignoreInvalidCollectionCounts),
      m_ignoreMissingChoice(other.m_ignoreMissingChoice),
      m_ignoreMissingMandatoryElements(other.m_ignoreMissingMandatoryElements),
      m_ignoreUnknownElements(other.m_ignoreUnknownElements),
      m_ignoreUnknownAttributes(other.m_ignoreUnknownAttributes), m_ignoreNamespaces(other.m_ignoreNamespaces),
      m_schemaType(other.m_schemaType), m_noOptionalAttributeDefaultOutput(other.m_noOptionalAttributeDefaultOutput),
      m_fiContext(other.m_fiContext), m_stripCDATA(other.m_stripCDATA) {}

CXmlSerializationContext::~CXmlSerializationContext() {}

CSmartPtr<CAttributeCol> CXmlSerializationContext::GetAdditionalRootAttributes() const {
    if (!m_additionalRootAttributes) m_additionalRootAttributes = new CAttributeCol("", "##any", "");
    return m_additionalRootAttributes;
}

void CXmlSerializationContext::SetIgnoreUnknownElements(bool value) {
    if (value && m_ignoreMissingMandatoryElements) {
        throw CQvInvalidStateException(
            "The parser can only ignore additional elements, or ignore the fact that some required ones are "
            "missing, you can not ignore both\nSet IgnoreMissingMandatoryElements to false before setting "
            "IgnoreUnknownElements to true");
    }
    m_ignoreUnknownElements = value;
}

void CXmlSerializationContext::SetIgnoreMissingMandatoryElements(bool value) {
    if (value && m_ignoreUnknownElements) {
        throw CQvInvalidStateException(
            "The parser can only ignore additional elements, or ignore the fact that some required ones are "
            "missing, you can not ignore both\nSet IgnoreUnknownElements to false before setting "
            "IgnoreMissingMandatoryElements to true");
    }
    m_ignoreMissingMandatoryElements = value;
}

} // namespace QvXmlLib10
