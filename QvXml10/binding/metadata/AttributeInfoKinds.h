#pragma once

#include "../../foundation/QvExport.h"

#include <string>

#include "AttributeInfo.h"
#include "../../foundation/QvTypes.h"
#include "../../validation/PrimitiveRestrictions.h"
#include "../../validation/WhitespaceUtils.h"
#include "../../values/QvVariant.h"

namespace QvXmlLib10Data {

// An attribute holding a value of a primitive type. It matches by local name and
// namespace exactly, also when the context ignores namespaces.
class QVXML_API CAttributeInfoPrimitive : public CAttributeInfo {
public:
    // Null format and default value count as empty.
    CAttributeInfoPrimitive(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                            QvXmlLib10::ItemType itemType, const char* format,
                            QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                            const QvXmlLib10::CPrimitiveRestrictions& restrictions, const char* defaultValue);
    ~CAttributeInfoPrimitive() override;

    // Checks the facets; leaves out an optional attribute without a value, and one
    // equal (as text) to its default when the context asks for that.
    void AttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                        const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const override;
    bool AttributeFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                          QvXmlLib10::CXmlAttribute* attribute) override;
    // A required attribute that was not found throws CQvValidationException.
    void Validate(const QvXmlLib10::CXmlSerializationContext& context, bool found) const override;

    // Throws CQvException for a value outside the facets.
    void CheckRestriction(QvXmlLib10::QvVariant value) const;

    QvXmlLib10::CPrimitiveRestrictions m_restrictions;
    QvXmlLib10::ItemType m_itemType;
    std::string m_format;
    QvXmlLib10::CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
};

// An attribute holding an enumeration, stored as an int and converted by the
// generated functions. It matches by name, and by namespace unless the context
// ignores namespaces.
class QVXML_API CAttributeInfoEnum : public CAttributeInfo {
public:
    CAttributeInfoEnum(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                       const char* (*enumToText)(int), int (*textToEnum)(const char*), const char* defaultValue);
    ~CAttributeInfoEnum() override;

    void AttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                        const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const override;
    bool AttributeFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                          QvXmlLib10::CXmlAttribute* attribute) override;
    void Validate(const QvXmlLib10::CXmlSerializationContext& context, bool found) const override;

    int (*m_textToEnum)(const char*);
    const char* (*m_enumToText)(int);
};

// The wildcard (anyAttribute): collects every attribute of an admitted namespace into
// the object's CAttributeCol. It belongs at the end of the table.
class QVXML_API CAttributeInfoAny : public CAttributeInfo {
public:
    CAttributeInfoAny(const char* name, const char* namespaceUri, int propertyIndex, bool optional,
                      const char* namespaceRestriction, const char* targetNamespace, const char* defaultValue);
    ~CAttributeInfoAny() override;

    // Writes the attributes of the collection.
    void AttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                        const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const override;
    // Throws CQvException when the property holds no CAttributeCol.
    bool AttributeFromXml(const QvXmlLib10::CXmlSerializationContext& context, QvXmlLib10::CXmlGeneratedClass* object,
                          QvXmlLib10::CXmlAttribute* attribute) override;
    // Nothing is required of a wildcard.
    void Validate(const QvXmlLib10::CXmlSerializationContext& context, bool found) const override;

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

} // namespace QvXmlLib10Data
