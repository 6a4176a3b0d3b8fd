#pragma once

#include "../../foundation/QvExport.h"

#include <string>

namespace QvXmlLib10 {
class CXmlAttribute;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlSerializationContext;
class CXmlWriter;
class QvVariant;
} // namespace QvXmlLib10

namespace QvXmlLib10Data {

// The metadata of one attribute of a generated class. The kinds derive from it.
// Read-only once built and shared by every instance of the class, on any thread.
class QVXML_API CAttributeInfo {
public:
    // Null texts count as empty.
    CAttributeInfo(const char* attributeName, const char* namespaceUri, int propertyIndex, bool optional,
                   const char* defaultValue);
    CAttributeInfo(const CAttributeInfo&) = delete;
    CAttributeInfo& operator=(const CAttributeInfo&) = delete;
    virtual ~CAttributeInfo();

    // Writes the attribute of the object.
    virtual void AttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const = 0;
    // True if this entry takes the attribute; it has then stored the value.
    virtual bool AttributeFromXml(const QvXmlLib10::CXmlSerializationContext& context,
                                  QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlAttribute* attribute) = 0;
    // Called once after all attributes of an element were offered.
    virtual void Validate(const QvXmlLib10::CXmlSerializationContext& context, bool found) const = 0;

    // The local name must equal the metadata's exactly; then the namespace must too,
    // unless the context ignores namespaces. A null attribute never matches.
    bool IsThisAttribute(const QvXmlLib10::CXmlSerializationContext& context,
                         const QvXmlLib10::CXmlAttribute* attribute) const;
    void AccessProperty(QvXmlLib10::CXmlGeneratedClass* object, bool read, QvXmlLib10::QvVariant& value) const;
    void ReadProperty(const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::QvVariant& value) const;
    // The object's target namespace.
    static std::string GetTargetNamespace(const QvXmlLib10::CXmlObjectBase* object);
    // Writes an object (an attribute collection) through its ToXml_Int, as no choice member.
    static void ToXml_Int(const QvXmlLib10::CXmlObjectBase* object, QvXmlLib10::CXmlWriter* writer, bool isRoot,
                          const char* namespaceUri, const QvXmlLib10::CXmlSerializationContext& context);
    static bool IsNamespaceValid(const std::string& namespaceUri, const std::string& restriction,
                                 const std::string& targetNamespace);
    static void TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                              const std::string& targetNamespace);

    std::string m_attributeName;
    std::string m_namespaceUri; // empty for an unqualified attribute
    int m_propertyIndex;
    bool m_optional;
    std::string m_defaultValue; // the schema's default as text; empty if none
};

} // namespace QvXmlLib10Data
