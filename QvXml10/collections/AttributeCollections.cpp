#include "collections/AttributeCollections.h"

#include "collections/Element.h"
#include "document/XmlDocument.h"
#include "document/XmlWriter.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

// ---------------------------------------------------------------------------------------------
// CAttribute

CAttribute::CAttribute(const char* name, const char* value, const char* namespaceUri)
    : CInstanceMonitor("CAttribute"), m_name(OrEmpty(name)), m_value(OrEmpty(value)),
      m_namespace(OrEmpty(namespaceUri)) {}

CAttribute::~CAttribute() {}

CSmartPtr<CAttribute> CAttribute::Clone() const {
    return CSmartPtr<CAttribute>(new CAttribute(m_name.c_str(), m_value.c_str(), m_namespace.c_str()));
}

CXmlObjectBase* CAttribute::GetBase() { return this; }

std::string CAttribute::GetTargetNamespace() const { return m_namespace; }

std::string CAttribute::GetNamespace() const { return m_namespace; }

void CAttribute::SetName(const char* name) {
    m_name = OrEmpty(name);
    FireOnChangeName(m_name.c_str());
}

void CAttribute::SetValue(const char* value) { m_value = OrEmpty(value); }

void CAttribute::SetNamespace(const char* namespaceUri) {
    m_namespace = OrEmpty(namespaceUri);
    FireOnChangeNamespace(m_namespace.c_str());
}

void CAttribute::FireOnChangeName(const char* /*name*/) {}

void CAttribute::FireOnChangeNamespace(const char* /*namespaceUri*/) {}

void CAttribute::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*namespaceUri*/,
                           const CXmlSerializationContext& /*context*/, bool /*isChoiceMember*/) const {
    writer->WriteAttributeString(m_name, m_namespace, m_value, ItemType_string);
}

CXmlElement* CAttribute::FromXml_Int(CXmlElement* /*element*/, CXmlElement* /*firstChild*/,
                                     const CXmlSerializationContext& /*context*/, bool /*isChoiceMember*/) {
    throw CQvException("This should be done by the collection");
}

// ---------------------------------------------------------------------------------------------
// CAttributeCol

CAttributeCol::CAttributeCol(const char* namespaceUri, const char* restriction, const char* targetNamespace)
    : CInstanceMonitor("CAttributeCol"), m_namespaceRestriction(OrEmpty(restriction)),
      m_targetNamespace(OrEmpty(targetNamespace)) {
    namespaceUri = OrEmpty(namespaceUri);
    // A restriction can be a list of URIs: without a namespace of its own, the
    // collection takes the first of them, unless it is a keyword.
    const std::string::size_type blank = m_namespaceRestriction.find(' ');
    const std::string token = m_namespaceRestriction.substr(0, blank);
    if (*namespaceUri == '\0' && token.size() >= 2 && token[0] != '#' && token[1] != '#')
        m_namespace = token;
    else
        m_namespace = namespaceUri;
}

CAttributeCol::~CAttributeCol() {}

CSmartPtr<CAttribute> CAttributeCol::Append(const char* name, const char* value, const char* namespaceUri) {
    // Held by the pointer until the collection holds it, so that a failed add frees it.
    CSmartPtr<CAttribute> attribute(new CAttribute(name, value, namespaceUri));
    AppendItem(attribute.Get());
    return attribute;
}

CSmartPtr<CAttribute> CAttributeCol::Add(const char* name) { return Add(name, ""); }

CSmartPtr<CAttribute> CAttributeCol::Add(const char* name, const char* value) {
    CXmlObjectHelper::TestNamespace(m_namespace, m_namespaceRestriction, m_targetNamespace);
    return Append(name, value, m_namespace.c_str());
}

CSmartPtr<CAttribute> CAttributeCol::Add(const char* name, const char* value, const char* namespaceUri) {
    namespaceUri = OrEmpty(namespaceUri);
    CXmlObjectHelper::TestNamespace(namespaceUri, m_namespaceRestriction, m_targetNamespace);
    return Append(name, value, namespaceUri);
}

CSmartPtr<CAttribute> CAttributeCol::Add(CAttribute* attribute) {
    CSmartPtr<CAttribute> held(attribute);
    AppendItem(attribute);
    return held;
}

CSmartPtr<CAttribute> CAttributeCol::Item(int index) const {
    return CSmartPtr<CAttribute>(static_cast<CAttribute*>(GetNodeAtIndex(index)->m_pItem));
}

CSmartPtr<CAttributeCol> CAttributeCol::Clone() const {
    CSmartPtr<CAttributeCol> copy(
        new CAttributeCol(m_namespace.c_str(), m_namespaceRestriction.c_str(), m_targetNamespace.c_str()));
    for (const CAttribute* attribute : *this)
        copy->Add(attribute->Clone());
    return copy;
}

std::string CAttributeCol::GetTargetNamespace() const { return m_namespace; }

std::string CAttributeCol::GetNamespace() const { return m_namespace; }

void CAttributeCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* namespaceUri,
                              const CXmlSerializationContext& context, bool isChoiceMember) const {
    for (const CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
        CXmlObjectBase::ToXml_Int(node->m_pItem->GetBase(), writer, false, namespaceUri, context, isChoiceMember);
}

CXmlElement* CAttributeCol::FromXml_Int(CXmlElement* element, CXmlElement* first,
                                        const CXmlSerializationContext& /*context*/, bool /*isChoiceMember*/) {
    if (element == nullptr) return first;
    for (const auto& attribute : element->GetAttributes()) {
        if (!CXmlObjectHelper::IsNamespaceValid(attribute->GetNamespaceURI(), m_namespaceRestriction,
                                                m_targetNamespace)) {
            throw CQvInvalidNamespaceException(
                FormatString("Invalid Attribute [%s]. The attributes namespace is Inappropriate.",
                             attribute->GetLocalName().c_str()));
        }
        // The namespace has just passed the test that Add would make again.
        Append(attribute->GetLocalName().c_str(), attribute->GetValue().c_str(), attribute->GetNamespaceURI().c_str());
    }
    return first;
}

// ---------------------------------------------------------------------------------------------
// CElementCol

CElementCol::CElementCol(const char* namespaceUri, const char* restriction, const char* targetNamespace,
                         int /*minOccurs*/, int /*maxOccurs*/)
    : CInstanceMonitor("CElementCol"), m_namespaceRestriction("##any"), m_targetNamespace(OrEmpty(targetNamespace)) {
    // The bounds are not kept: the collection accepts any count.
    namespaceUri = OrEmpty(namespaceUri);
    restriction = OrEmpty(restriction);
    CXmlObjectHelper::TestNamespace(namespaceUri, restriction, m_targetNamespace);
    // Without a namespace, a keyword restriction stands in as the namespace of Add(name).
    if (*namespaceUri == '\0' && restriction[0] == '#' && restriction[1] == '#')
        m_collectionNamespace = restriction;
    else
        m_collectionNamespace = namespaceUri;
}

CElementCol::~CElementCol() {}

CSmartPtr<CElement> CElementCol::Add(const char* name) {
    if (m_collectionNamespace.empty())
        throw CQvInvalidStateException("A Namespace has not been set for this Collection");
    CSmartPtr<CElement> element(
        new CElement(name, m_collectionNamespace.c_str(), m_namespaceRestriction.c_str(), m_targetNamespace.c_str()));
    AppendItem(element.Get());
    return element;
}

CSmartPtr<CElement> CElementCol::Add(const char* name, const char* namespaceUri) {
    namespaceUri = OrEmpty(namespaceUri);
    CXmlObjectHelper::TestNamespace(namespaceUri, m_namespaceRestriction, m_targetNamespace);
    CSmartPtr<CElement> element(
        new CElement(name, namespaceUri, m_namespaceRestriction.c_str(), m_targetNamespace.c_str()));
    AppendItem(element.Get());
    return element;
}

CSmartPtr<CElement> CElementCol::Add(CElement* element) {
    CSmartPtr<CElement> held(element);
    // A null element is refused by the collection frame.
    if (element != nullptr)
        CXmlObjectHelper::TestNamespace(element->GetNamespace(), m_namespaceRestriction, m_targetNamespace);
    AppendItem(element);
    return held;
}

CSmartPtr<CElement> CElementCol::Item(int index) const {
    return CSmartPtr<CElement>(static_cast<CElement*>(GetNodeAtIndex(index)->m_pItem));
}

CSmartPtr<CElementCol> CElementCol::Clone() const {
    CSmartPtr<CElementCol> copy(new CElementCol(m_collectionNamespace.c_str(), m_namespaceRestriction.c_str(),
                                                m_targetNamespace.c_str(), m_minOccurs, m_maxOccurs));
    // The constructor would turn an empty namespace into "##any": keep this one's.
    copy->m_collectionNamespace = m_collectionNamespace;
    for (const CElement* element : *this)
        copy->AppendItem(element->Clone().Get());
    return copy;
}

std::string CElementCol::GetTargetNamespace() const { return m_targetNamespace; }

std::string CElementCol::GetNamespace() const { return m_targetNamespace; }

void CElementCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* namespaceUri,
                            const CXmlSerializationContext& context, bool isChoiceMember) const {
    ValidateCount(context);
    for (const CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
        CXmlObjectBase::ToXml_Int(node->m_pItem->GetBase(), writer, false, namespaceUri, context, isChoiceMember);
}

template <typename Accept>
CXmlElement* CElementCol::ReadElements(CXmlElement* parent, CXmlElement* first, const CXmlSerializationContext& context,
                                       const std::string& restriction, Accept accept) {
    CXmlElement* current = first;
    while (current != nullptr && accept(current)) {
        CSmartPtr<CElement> element(new CElement(current->GetLocalName().c_str(), current->GetNamespaceURI().c_str(),
                                                 restriction.c_str(), m_targetNamespace.c_str()));
        CXmlElement* const next = CXmlObjectBase::FromXml_Int(element.Get(), parent, current, context);
        if (next == current) break;
        // The element's namespace passed the restriction when it was read.
        AppendItem(element.Get());
        current = next;
    }
    return current;
}

CXmlElement* CElementCol::FromXml_Int(CXmlElement* parent, CXmlElement* first, const CXmlSerializationContext& context,
                                      bool /*isChoiceMember*/) {
    return ReadElements(parent, first, context, m_namespaceRestriction, [this](const CXmlElement* element) {
        return CXmlObjectHelper::IsNamespaceValid(element->GetNamespaceURI(), m_namespaceRestriction,
                                                  m_targetNamespace);
    });
}

CXmlElement* CElementCol::FromXmlLockElementName_Int(const std::string& elementName, const std::string& namespaceUri,
                                                     CXmlElement* parent, CXmlElement* first,
                                                     const CXmlSerializationContext& context) {
    const std::string anyNamespace("##any");
    return ReadElements(parent, first, context, anyNamespace,
                        [&elementName, &namespaceUri](const CXmlElement* element) {
                            return element->GetLocalName() == elementName && element->GetNamespaceURI() == namespaceUri;
                        });
}

} // namespace QvXmlLib10
