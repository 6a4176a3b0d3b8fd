#pragma once

#include "../foundation/QvExport.h"

#include <string>

#include "../binding/SmartPtr.h"
#include "../binding/XmlObjectBase.h"
#include "AttributeCollections.h"
#include "../foundation/CriticalSection.h"

namespace QvXmlLib10 {

// An element of open content (what a schema's any element admits): name, namespace,
// text, and its attributes and child elements as untyped objects. The element's
// namespace must pass the namespace restriction it was created under; its children
// are open to any namespace.
//
// An element can also be built from any bound object, by way of XML text, and
// CXmlObjectBase::FromXmlElement reads a bound object back from one.
class QVXML_API CElement : public CXmlObjectBase, public CInstanceMonitor {
public:
    // Throws CQvInvalidNamespaceException for a null name, restriction or target
    // namespace, and for a namespace the restriction refuses. A null namespace counts
    // as empty.
    CElement(const char* name, const char* namespaceUri, const char* restriction, const char* targetNamespace);
    // The namespace is its own restriction; a "##" keyword is refused as namespace.
    CElement(const char* name, const char* namespaceUri);
    // No namespace, open to any.
    explicit CElement(const char* name);
    // The XML text of `source`, read back as an element. A default namespace (may be
    // null) makes the element carry it as its own on output; attributes then are not
    // written.
    CElement(CXmlObjectBase* source, const char* defaultNamespace);
    CElement(const CElement&) = delete;
    CElement& operator=(const CElement&) = delete;
    ~CElement() override;

    // Checks and stores the four texts and creates empty attribute and element
    // collections.
    void Init(const char* name, const char* namespaceUri, const char* restriction, const char* targetNamespace);
    // A deep copy; the default namespace is not copied.
    CSmartPtr<CElement> Clone() const;
    // Tests this element, its attributes and all its descendants against a restriction;
    // stores nothing. A refused namespace of the element itself is thrown as a pointer
    // to a new CQvInvalidNamespaceException, which the catcher owns and deletes; refused
    // attributes throw by value.
    void SetNamespaceRestrictions(const char* restriction, const char* targetNamespace);
    // Copies a tree element with its attributes and descendants, without namespace tests.
    void CopyXmlElement(CXmlElement* element);

    // Reads the document element of the text into this element, with the default context.
    void FromXml(const char* xml);
    // The reading entry points read the document element itself into this element.
    void FromXmlFile(const char* path,
                     const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) override;
    void FromXml(const char* text, const CXmlSerializationContext& context) override;
    void FromXml(const wchar_t* text,
                 const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) override;
    void FromXmlStream(unsigned char* data, unsigned long length,
                       const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) override;
    void FromXmlStream(const CBinaryData& data,
                       const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) override;
    CXmlElement*
    FromXmlElement(const CXmlElement* element,
                   const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) override;
    using CXmlObjectBase::FromXmlElement;

    CXmlObjectBase* GetBase() override;
    // Both answer the element's namespace.
    std::string GetTargetNamespace() const override;
    std::string GetNamespace() const override;

    const std::string& GetName() const { return m_elementName; }
    // Throws CQvInvalidNamespaceException for a null name.
    void SetName(const char* name);
    // Throws CQvInvalidNamespaceException for a namespace the restriction refuses.
    void SetNamespace(const char* namespaceUri);
    const std::string& GetText() const { return m_text; }
    void SetText(const char* text);
    const std::string& GetNamespaceRestriction() const { return m_namespaceRestriction; }
    // Throw CQvInvalidNamespaceException for a null text and when the element's own
    // namespace does not pass the new restriction.
    void SetNamespaceRestriction(const char* restriction);
    const std::string& GetRestrictionTargetNamespace() const { return m_targetNamespace; }
    void SetRestrictionTargetNamespace(const char* targetNamespace);
    CSmartPtr<CAttributeCol> GetAttributes() const { return m_pAttributes; }
    // Throws CQvInvalidParamException for null: the collections are always present.
    void SetAttributes(CAttributeCol* attributes);
    CSmartPtr<CElementCol> GetElements() const { return m_pElements; }
    void SetElements(CElementCol* elements);
    const std::string& GetDefaultNamespace() const { return m_defaultNamespace; }
    void SetDefaultNamespace(const char* defaultNamespace);

    // Hooks called after a change, with the new value; they do nothing here.
    void FireOnChangeName(const char* name);
    void FireOnChangeNamespace(const char* namespaceUri);
    void FireOnChangeText(const char* text);

protected:
    // Writes the element. With a default namespace it is rendered on its own, with that
    // default namespace and without its attributes, and put into the (text) writer raw.
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;
    // Reads `element` itself (not its children from a cursor) and returns its next
    // sibling; an element outside the restriction is returned unread.
    CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* element, const CXmlSerializationContext& context,
                             bool isChoiceMember) override;

private:
    void StoreName(const std::string& name);
    void WriteWithDefaultNamespace(CXmlWriter* writer, const CXmlSerializationContext& context,
                                   bool isChoiceMember) const;

    std::string m_elementName;
    std::string m_text;
    std::string m_namespace;
    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
    CSmartPtr<CAttributeCol> m_pAttributes;
    CSmartPtr<CElementCol> m_pElements;
    std::string m_defaultNamespace;
};

} // namespace QvXmlLib10
