#include "collections/Element.h"

#include <cstring>

#include "document/XmlDocument.h"
#include "document/XmlTextWriter.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "validation/XmlObjectHelper.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

namespace {

bool IsNamespaceKeyword(const char* namespaceUri) {
    return std::strcmp(namespaceUri, "##any") == 0 || std::strcmp(namespaceUri, "##other") == 0 ||
           std::strcmp(namespaceUri, "##local") == 0 || std::strcmp(namespaceUri, "##targetNamespace") == 0;
}

// The namespace of the two-argument constructor, refused when it is a keyword.
const char* CheckedNamespace(const char* namespaceUri) {
    if (namespaceUri == nullptr) return "";
    if (IsNamespaceKeyword(namespaceUri))
        throw CQvInvalidNamespaceException(FormatString("Invalid Namespace [%s]", namespaceUri));
    return namespaceUri;
}

// Loads a document by `load` and reads its document element into `target`.
template <typename Load>
CXmlElement* ReadDocumentElement(CXmlObjectBase* target, const CXmlSerializationContext& context, Load load) {
    CXmlDocument document(context);
    load(document);
    CXmlElement* const root = document.GetDocumentElement();
    return CXmlObjectBase::FromXml_Int(target, root, root, context);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Construction

CElement::CElement(const char* name, const char* namespaceUri, const char* restriction, const char* targetNamespace)
    : CInstanceMonitor("CElement") {
    Init(name, namespaceUri, restriction, targetNamespace);
}

CElement::CElement(const char* name, const char* namespaceUri) : CInstanceMonitor("CElement") {
    const char* const checked = CheckedNamespace(namespaceUri);
    Init(name, checked, checked, "");
}

CElement::CElement(const char* name) : CInstanceMonitor("CElement") { Init(name, "", "##any", ""); }

CElement::CElement(CXmlObjectBase* source, const char* defaultNamespace) : CInstanceMonitor("CElement") {
    Init("", "", "##any", "");
    if (defaultNamespace != nullptr) m_defaultNamespace = defaultNamespace;
    Throw_IfPropertyIsNull(source, "source");

    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(m_defaultNamespace.c_str());
    CBinaryData bytes = source->ToXmlStream(false, false, XmlEncoding_UTF8, EOLType_LF, context, CompressionType_None);
    CXmlDocument document(context);
    document.LoadXmlStream(bytes.GetData(), bytes.GetLength());
    CopyXmlElement(document.GetDocumentElement());
}

CElement::~CElement() {}

void CElement::Init(const char* name, const char* namespaceUri, const char* restriction, const char* targetNamespace) {
    if (name == nullptr) throw CQvInvalidNamespaceException("Element Name must have a value");
    if (restriction == nullptr) throw CQvInvalidNamespaceException("Namespace Restriction must have a value");
    if (targetNamespace == nullptr) throw CQvInvalidNamespaceException("Target Namespace must have a value");
    namespaceUri = OrEmpty(namespaceUri);
    CXmlObjectHelper::TestNamespace(namespaceUri, restriction, targetNamespace);

    StoreName(name);
    m_namespace = namespaceUri;
    m_namespaceRestriction = restriction;
    m_targetNamespace = targetNamespace;
    // Whatever the element's own restriction, its children are open.
    m_pAttributes = new CAttributeCol(namespaceUri, "##any", targetNamespace);
    m_pElements = new CElementCol(namespaceUri, "##any", targetNamespace, 0, -1);
}

void CElement::StoreName(const std::string& name) {
    m_elementName = name;
    // The base's name answers the same, for code that sees only a CXmlObjectBase.
    CXmlObjectBase::m_elementName = name;
}

CSmartPtr<CElement> CElement::Clone() const {
    CSmartPtr<CElement> copy(new CElement(m_elementName.c_str(), m_namespace.c_str(), m_namespaceRestriction.c_str(),
                                          m_targetNamespace.c_str()));
    copy->m_pAttributes = m_pAttributes->Clone();
    copy->m_pElements = m_pElements->Clone();
    copy->m_text = m_text;
    return copy;
}

// ---------------------------------------------------------------------------------------------
// Namespace test and copying

void CElement::SetNamespaceRestrictions(const char* restriction, const char* targetNamespace) {
    const std::string restrictionText = OrEmpty(restriction);
    const std::string target = OrEmpty(targetNamespace);
    try {
        CXmlObjectHelper::TestNamespace(m_namespace, restrictionText, target);
    } catch (const CQvException& e) {
        // The one failure of the library thrown by pointer; the catcher owns it.
        throw new CQvInvalidNamespaceException(
            FormatString("The namespace %s in the class %s is invalid against restriction %s", m_elementName.c_str(),
                         m_namespace.c_str(), restrictionText.c_str()),
            e);
    }
    for (const CAttribute* attribute : *m_pAttributes)
        CXmlObjectHelper::TestNamespace(attribute->GetNamespace(), restrictionText, target);
    for (CElement* element : *m_pElements)
        element->SetNamespaceRestrictions(restrictionText.c_str(), target.c_str());
}

void CElement::CopyXmlElement(CXmlElement* element) {
    if (element == nullptr) throw CQvInvalidParamException("The Property [element] is mandatory, it may node be NULL");
    StoreName(element->GetLocalName());
    m_namespace = element->GetNamespaceURI();
    m_text = element->GetText();
    m_pAttributes->Clear();
    m_pElements->Clear();
    for (const auto& attribute : element->GetAttributes()) {
        m_pAttributes->Add(attribute->GetLocalName().c_str(), attribute->GetValue().c_str(),
                           attribute->GetNamespaceURI().c_str());
        // A document read without namespace processing shows the declaration as an attribute.
        if (attribute->GetLocalName() == "xmlns") m_defaultNamespace = attribute->GetValue();
    }
    for (CXmlElement* child = element->GetFirstElement(); child != nullptr; child = child->GetNextSiblingElement()) {
        CSmartPtr<CElement> copy(new CElement(child->GetLocalName().c_str()));
        copy->CopyXmlElement(child);
        m_pElements->Add(copy);
    }
}

// ---------------------------------------------------------------------------------------------
// Reading

void CElement::FromXml(const char* xml) { FromXml(xml, CXmlSerializationContext::m_defaultContext); }

void CElement::FromXml(const char* text, const CXmlSerializationContext& context) {
    CheckVersion();
    ReadDocumentElement(this, context, [text](CXmlDocument& document) { document.LoadXml(text); });
}

void CElement::FromXml(const wchar_t* text, const CXmlSerializationContext& context) {
    CheckVersion();
    ReadDocumentElement(this, context, [text](CXmlDocument& document) { document.LoadXml(text); });
}

void CElement::FromXmlFile(const char* path, const CXmlSerializationContext& context) {
    CheckVersion();
    ReadDocumentElement(this, context, [path](CXmlDocument& document) { document.Load(path); });
}

void CElement::FromXmlStream(unsigned char* data, unsigned long length, const CXmlSerializationContext& context) {
    CheckVersion();
    ReadDocumentElement(this, context,
                        [data, length](CXmlDocument& document) { document.LoadXmlStream(data, length); });
}

void CElement::FromXmlStream(const CBinaryData& data, const CXmlSerializationContext& context) {
    FromXmlStream(data.GetData(), data.GetLength(), context);
}

CXmlElement* CElement::FromXmlElement(const CXmlElement* element, const CXmlSerializationContext& context) {
    CheckVersion();
    CXmlElement* const mutableElement = const_cast<CXmlElement*>(element);
    return FromXml_Int(mutableElement, mutableElement, context, false);
}

CXmlElement* CElement::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* element,
                                   const CXmlSerializationContext& context, bool /*isChoiceMember*/) {
    if (element == nullptr) return nullptr;
    if (!CXmlObjectHelper::IsNamespaceValid(element->GetNamespaceURI(), m_namespaceRestriction, m_targetNamespace))
        return element;

    // A second read replaces what the first one found.
    m_pAttributes->Clear();
    m_pElements->Clear();
    CXmlObjectBase::FromXml_Int(m_pAttributes.Get(), element, element->GetFirstElement(), context);
    if (CXmlObjectBase::FromXml_Int(m_pElements.Get(), element, element->GetFirstElement(), context) != nullptr) {
        throw CQvValidationException(FormatString("Invalid Element [%s] found in element [%s]",
                                                  element->GetLocalName().c_str(), m_elementName.c_str()));
    }
    m_text = element->GetText();
    StoreName(element->GetLocalName());
    m_namespace = element->GetNamespaceURI();
    return element->GetNextSiblingElement();
}

// ---------------------------------------------------------------------------------------------
// Writing

void CElement::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* namespaceUri,
                         const CXmlSerializationContext& context, bool isChoiceMember) const {
    if (!m_defaultNamespace.empty()) {
        WriteWithDefaultNamespace(writer, context, isChoiceMember);
        return;
    }
    writer->WriteStartElement(m_elementName, m_namespace);
    CXmlObjectBase::ToXml_Int(m_pAttributes.Get(), writer, false, namespaceUri, context, false);
    CXmlObjectBase::ToXml_Int(m_pElements.Get(), writer, false, namespaceUri, context, isChoiceMember);
    writer->WriteString(m_text, ItemType_string);
    writer->WriteEndElement();
}

void CElement::WriteWithDefaultNamespace(CXmlWriter* writer, const CXmlSerializationContext& /*context*/,
                                         bool isChoiceMember) const {
    CXmlTextWriter* const outer = dynamic_cast<CXmlTextWriter*>(writer);
    if (outer == nullptr)
        throw CQvException("An element with a default namespace of its own can only be written as XML text");

    // The element is rendered on its own, so that it can declare its default namespace;
    // its attributes are not written on this route.
    CTextStream stream(XmlEncoding_None);
    CXmlTextWriter local(stream);
    local.SetEOLType(outer->GetEOLType());
    local.SetFormat(outer->GetFormat());
    local.SetDefaultNamespace(m_defaultNamespace);
    local.WriteStartElement(m_elementName, m_namespace);
    CXmlSerializationContext localContext;
    localContext.SetDefaultNamespaceURI(m_defaultNamespace.c_str());
    CXmlObjectBase::ToXml_Int(m_pElements.Get(), &local, false, m_namespace.c_str(), localContext, isChoiceMember);
    local.WriteString(m_text, ItemType_string);
    local.WriteEndElement();

    outer->CloseParentElm();
    outer->WriteRawElement(std::string(stream.GetText(), static_cast<size_t>(stream.GetLength())));
}

// ---------------------------------------------------------------------------------------------
// Accessors

CXmlObjectBase* CElement::GetBase() { return this; }

std::string CElement::GetTargetNamespace() const { return m_namespace; }

std::string CElement::GetNamespace() const { return m_namespace; }

void CElement::SetName(const char* name) {
    if (name == nullptr) throw CQvInvalidNamespaceException("Element Name must have a value");
    StoreName(name);
    FireOnChangeName(name);
}

void CElement::SetNamespace(const char* namespaceUri) {
    namespaceUri = OrEmpty(namespaceUri);
    CXmlObjectHelper::TestNamespace(namespaceUri, m_namespaceRestriction, m_targetNamespace);
    m_namespace = namespaceUri;
    FireOnChangeNamespace(namespaceUri);
}

void CElement::SetText(const char* text) {
    m_text = OrEmpty(text);
    FireOnChangeText(m_text.c_str());
}

void CElement::SetNamespaceRestriction(const char* restriction) {
    if (restriction == nullptr) throw CQvInvalidNamespaceException("Namespace Restriction must have a value");
    CXmlObjectHelper::TestNamespace(m_namespace, restriction, m_targetNamespace);
    m_namespaceRestriction = restriction;
}

void CElement::SetRestrictionTargetNamespace(const char* targetNamespace) {
    if (targetNamespace == nullptr) throw CQvInvalidNamespaceException("Target Namespace must have a value");
    CXmlObjectHelper::TestNamespace(m_namespace, m_namespaceRestriction, targetNamespace);
    m_targetNamespace = targetNamespace;
}

void CElement::SetAttributes(CAttributeCol* attributes) {
    Throw_IfPropertyIsNull(attributes, "Attributes");
    m_pAttributes = attributes;
}

void CElement::SetElements(CElementCol* elements) {
    Throw_IfPropertyIsNull(elements, "Elements");
    m_pElements = elements;
}

void CElement::SetDefaultNamespace(const char* defaultNamespace) { m_defaultNamespace = OrEmpty(defaultNamespace); }

void CElement::FireOnChangeName(const char* /*name*/) {}

void CElement::FireOnChangeNamespace(const char* /*namespaceUri*/) {}

void CElement::FireOnChangeText(const char* /*text*/) {}

} // namespace QvXmlLib10
