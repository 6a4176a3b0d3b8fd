#pragma once

#include "../../foundation/QvExport.h"

#include <string>

#include "ParentElementInfo.h"
#include "../../foundation/QvTypes.h"
#include "../../validation/PrimitiveRestrictions.h"
#include "../../validation/WhitespaceUtils.h"

namespace QvXmlLib10 {
class CXmlElement;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlSerializationContext;
class CXmlWriter;
class QvVariant;
} // namespace QvXmlLib10

namespace QvXmlLib10Data {

// The metadata of one child element of a generated class: its name, the property that
// holds it and, for primitive values, the kind, format, whitespace rule and facets.
// The families of the sequence, all and choice groups derive from it. Read-only once
// built and shared by every instance of the class, on any thread.
class QVXML_API CElementInfo {
public:
    // Without a nillable value.
    CElementInfo(const char* elementName, const char* namespaceUri, int propertyIndex);
    CElementInfo(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable);
    // A primitive value; a null format counts as empty.
    CElementInfo(const char* elementName, const char* namespaceUri, int propertyIndex, bool nillable,
                 QvXmlLib10::ItemType itemType, const char* format,
                 QvXmlLib10::CWhitespaceUtils::WhitespaceRule whitespaceRule,
                 const QvXmlLib10::CPrimitiveRestrictions& restrictions);
    CElementInfo(const CElementInfo&) = delete;
    CElementInfo& operator=(const CElementInfo&) = delete;
    virtual ~CElementInfo();

    // Writes this element of the object; true if anything was written.
    virtual bool ElementToXml(const QvXmlLib10::CXmlSerializationContext& context,
                              const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const = 0;
    // Tries to read this element at *cursor and moves the cursor past what it read.
    // `parent` is the owning class's element, `namespaceUri` its GetNamespace() and
    // `type` its element type. The meaning of the answer belongs to each family.
    virtual bool ElementFromXml(const QvXmlLib10::CXmlSerializationContext& context,
                                QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlElement* parent,
                                QvXmlLib10::CXmlElement** cursor, const char* namespaceUri, XmlElementType type) = 0;
    // Asked by the walk of an all group after its passes; true if the walk may go on.
    virtual bool Validate(const QvXmlLib10::CXmlSerializationContext& context,
                          const QvXmlLib10::CXmlGeneratedClass* object, bool found, bool check) const = 0;
    // Writes the attributes of a pseudo child on the enclosing element. Nothing here.
    virtual void PseudoChildAttributeToXml(const QvXmlLib10::CXmlSerializationContext& context,
                                           const QvXmlLib10::CXmlGeneratedClass* object,
                                           QvXmlLib10::CXmlWriter* writer) const;

    // The local name must equal the metadata's exactly; then the namespace must too,
    // unless the context ignores namespaces. A null element never matches.
    bool IsThisElement(const QvXmlLib10::CXmlSerializationContext& context,
                       const QvXmlLib10::CXmlElement* element) const;

    // Property access on the object by this element's property number.
    void AccessProperty(QvXmlLib10::CXmlGeneratedClass* object, bool read, QvXmlLib10::QvVariant& value) const;
    void ReadProperty(const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::QvVariant& value) const;

    // Reach the protected operations of a child object or collection.
    QvXmlLib10::CXmlElement* FromXml_Int(QvXmlLib10::CXmlObjectBase* object, QvXmlLib10::CXmlElement* element,
                                         QvXmlLib10::CXmlElement* firstChild,
                                         const QvXmlLib10::CXmlSerializationContext& context,
                                         bool isChoiceMember) const;
    void AttributesToXml_Int(const QvXmlLib10::CXmlObjectBase* object, QvXmlLib10::CXmlWriter* writer,
                             const QvXmlLib10::CXmlSerializationContext& context) const;

    // The writing routines that the families share. Each answers whether it wrote.
    // A child object: written under its own element name; nothing for a null object.
    bool ElementToXmlCls(const QvXmlLib10::CXmlSerializationContext& context,
                         const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer,
                         bool isChoiceMember) const;
    // A collection: nothing when it is empty.
    bool ElementToXmlCol(const QvXmlLib10::CXmlSerializationContext& context,
                         const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const;
    // A primitive value, checked against the facets; nothing without a value, the nil
    // attribute alone for nil.
    bool ElementToXmlPrim(const QvXmlLib10::CXmlSerializationContext& context,
                          const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer) const;
    // An enumeration, held as an i4 and written as the text that enumToText gives.
    bool ElementToXmlEnum(const QvXmlLib10::CXmlSerializationContext& context,
                          const QvXmlLib10::CXmlGeneratedClass* object, QvXmlLib10::CXmlWriter* writer,
                          const char* (*enumToText)(int)) const;

    // Runs the facets on a primitive value. Metadata without primitive information
    // throws CQvException.
    void CheckRestriction(const QvXmlLib10::QvVariant& value) const;

    // The namespace of a new untyped element of open content under the restriction:
    // the enclosing namespace for "##any", the target namespace for
    // "##targetNamespace", and so on; a list counts by its first token when it begins
    // with "##".
    static std::string GetAnyDefaultNamespace(const char* restriction, const char* enclosingNamespace,
                                              const char* targetNamespace);

    std::string m_elementName; // "AnyElement" in untyped members means any name
    std::string m_namespaceUri;
    int m_propertyIndex;
    QvXmlLib10::CPrimitiveRestrictions m_restrictions;
    QvXmlLib10::ItemType m_itemType;
    std::string m_format;
    QvXmlLib10::CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
    bool m_nillable;
    bool m_hasPrimitiveInfo;
};

} // namespace QvXmlLib10Data
