#include "collections/XmlCollection.h"

#include <algorithm>
#include <memory>

#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "validation/XmlObjectHelper.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

// ---------------------------------------------------------------------------------------------
// CXmlCollectionBase

CXmlCollectionBase::CXmlCollectionBase() : m_minOccurs(0), m_maxOccurs(-1) {}

CXmlCollectionBase::CXmlCollectionBase(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs)
    : m_namespace(OrEmpty(namespaceUri)), m_minOccurs(minOccurs), m_maxOccurs(maxOccurs) {
    SetElementName(elementName);
}

CXmlCollectionBase::~CXmlCollectionBase() {}

CXmlObjectBase* CXmlCollectionBase::GetBase() { return this; }

std::string CXmlCollectionBase::GetTargetNamespace() const {
    throw CQvException(
        "CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection (program logic error)");
}

std::string CXmlCollectionBase::GetNamespace() const { return m_namespace; }

bool CXmlCollectionBase::IsValidCount(const CXmlSerializationContext& context) const {
    if (context.GetIgnoreInvalidCollectionCounts()) return true;
    const int count = GetCount();
    if (m_maxOccurs != -1 && count > m_maxOccurs) return false;
    return count >= m_minOccurs;
}

void CXmlCollectionBase::ValidateCount(const CXmlSerializationContext& context) const {
    if (context.GetIgnoreInvalidCollectionCounts()) return;
    const int count = GetCount();
    if (m_maxOccurs != -1 && count > m_maxOccurs) {
        throw CQvValidationException(
            FormatString("The Maximum number of [%s] elements allowed in this collection is %d", m_elementName.c_str(),
                         static_cast<int>(m_maxOccurs)));
    }
    if (count < m_minOccurs) {
        throw CQvValidationException(
            FormatString("The Minimum number of [%s] elements allowed in this collection is %d", m_elementName.c_str(),
                         static_cast<int>(m_minOccurs)));
    }
}

void CXmlCollectionBase::AddEventListener(IEventSink* listener) {
    if (listener != nullptr) m_listeners.push_back(listener);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* listener) {
    m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener), m_listeners.end());
}

// The loops index the vector afresh on each turn, so that a listener may remove itself
// (or others) while it is called.
void CXmlCollectionBase::FireOnCollectionChange() {
    for (size_t i = 0; i < m_listeners.size(); ++i)
        FireOnCollectionChangeEvent(m_listeners[i], this);
}

void CXmlCollectionBase::FireOnCollectionAdd(void* item) {
    for (size_t i = 0; i < m_listeners.size(); ++i)
        FireOnCollectionAddEvent(m_listeners[i], this, item);
}

void CXmlCollectionBase::FireOnCollectionAddComplete(void* item) {
    for (size_t i = 0; i < m_listeners.size(); ++i)
        FireOnCollectionAddCompleteEvent(m_listeners[i], this, item);
}

void CXmlCollectionBase::FireOnCollectionRemove(int index) {
    for (size_t i = 0; i < m_listeners.size(); ++i)
        FireOnCollectionRemoveEvent(m_listeners[i], this, index);
}

void CXmlCollectionBase::FireOnCollectionRemoveComplete(int index) {
    for (size_t i = 0; i < m_listeners.size(); ++i)
        FireOnCollectionRemoveCompleteEvent(m_listeners[i], this, index);
}

// ---------------------------------------------------------------------------------------------
// CXmlCollection

CXmlCollection::CXmlCollection() : m_pFirst(nullptr), m_pLast(nullptr), m_count(0) {}

CXmlCollection::CXmlCollection(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs)
    : CXmlCollectionBase(elementName, namespaceUri, minOccurs, maxOccurs), m_pFirst(nullptr), m_pLast(nullptr),
      m_count(0) {}

CXmlCollection::~CXmlCollection() {
    // A listener that throws cannot stop the items from being released.
    try {
        Clear();
    } catch (...) {
        while (m_pFirst != nullptr) {
            CNode* const node = m_pFirst;
            m_pFirst = node->m_pNext;
            node->m_pItem->Release();
            delete node;
        }
    }
}

int CXmlCollection::GetCount() const { return m_count; }

void CXmlCollection::Clear() {
    while (m_count > 0)
        Remove(0);
}

void CXmlCollection::Remove(int index) { RemoveNode(GetNodeAtIndex(index)); }

void CXmlCollection::CheckItem(const CXmlObjectBase* item) {
    if (item == nullptr) throw CQvInvalidParamException("A NULL item can not be added to the collection");
}

void CXmlCollection::LinkBefore(CNode* before, CXmlObjectBase* item) {
    CNode* const node = new CNode{item, before, before != nullptr ? before->m_pPrev : m_pLast};
    if (node->m_pPrev != nullptr)
        node->m_pPrev->m_pNext = node;
    else
        m_pFirst = node;
    if (before != nullptr)
        before->m_pPrev = node;
    else
        m_pLast = node;
    item->AddRef();
    ++m_count;
}

void CXmlCollection::AppendItem(CXmlObjectBase* item) {
    CheckItem(item);
    FireOnCollectionAdd(item);
    LinkBefore(nullptr, item);
    FireOnCollectionAddComplete(item);
    FireOnCollectionChange();
}

void CXmlCollection::PrependItem(CXmlObjectBase* item) {
    CheckItem(item);
    FireOnCollectionAdd(item);
    LinkBefore(m_pFirst, item);
    FireOnCollectionAddComplete(item);
    FireOnCollectionChange();
}

void CXmlCollection::AddItemAt(int index, CXmlObjectBase* item) {
    CheckItem(item);
    if (index < 0 || index > m_count) throw CQvInvalidParamException("Index out of range");
    FireOnCollectionAdd(item);
    LinkBefore(index == m_count ? nullptr : GetNodeAtIndex(index), item);
    FireOnCollectionAddComplete(item);
    FireOnCollectionChange();
}

void CXmlCollection::AddBeforeItem(const CXmlObjectBase* existing, CXmlObjectBase* item) {
    CheckItem(item);
    FireOnCollectionAdd(item);
    // Nothing in front of means the end.
    LinkBefore(existing != nullptr ? GetNodeForItem(existing) : nullptr, item);
    FireOnCollectionAddComplete(item);
    FireOnCollectionChange();
}

void CXmlCollection::AddAfterItem(const CXmlObjectBase* existing, CXmlObjectBase* item) {
    CheckItem(item);
    FireOnCollectionAdd(item);
    // Nothing behind means the start.
    LinkBefore(existing != nullptr ? GetNodeForItem(existing)->m_pNext : m_pFirst, item);
    FireOnCollectionAddComplete(item);
    FireOnCollectionChange();
}

void CXmlCollection::AttributesToXml_Int(CXmlWriter* writer, const CXmlSerializationContext& context) const {
    for (const CNode* node = m_pFirst; node != nullptr; node = node->m_pNext)
        CXmlObjectBase::AttributesToXml_Int(node->m_pItem->GetBase(), writer, context);
}

CXmlCollection::CNode* CXmlCollection::GetNodeAtIndex(int index) const {
    if (index < 0 || index >= m_count)
        throw CQvInvalidParamException(
            FormatString("Index %d is out of range, use 0 - %d", index, static_cast<int>(m_count)));
    CNode* node = m_pFirst;
    for (int i = 0; i < index; ++i)
        node = node->m_pNext;
    return node;
}

CXmlCollection::CNode* CXmlCollection::GetNodeForItem(const CXmlObjectBase* item) const {
    const CXmlObjectBase* const base = item->GetBase();
    for (CNode* node = m_pFirst; node != nullptr; node = node->m_pNext) {
        if (node->m_pItem->GetBase() == base) return node;
    }
    throw CQvInvalidParamException("The object was not found in the collection");
}

void CXmlCollection::RemoveNode(CNode* node) {
    FireOnCollectionRemove(-1);
    if (node->m_pPrev != nullptr)
        node->m_pPrev->m_pNext = node->m_pNext;
    else
        m_pFirst = node->m_pNext;
    if (node->m_pNext != nullptr)
        node->m_pNext->m_pPrev = node->m_pPrev;
    else
        m_pLast = node->m_pPrev;
    node->m_pItem->Release();
    delete node;
    --m_count;
    FireOnCollectionRemoveComplete(-1);
    FireOnCollectionChange();
}

// ---------------------------------------------------------------------------------------------
// CXmlTypeCollection

CXmlTypeCollection::CXmlTypeCollection(ItemType itemType, const char* elementName, const char* namespaceUri,
                                       int minOccurs, int maxOccurs, const char* pattern, int minLength, int maxLength,
                                       const char* minInclusive, const char* maxInclusive, const char* minExclusive,
                                       const char* maxExclusive, int length,
                                       CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)
    : CXmlCollectionBase(elementName, namespaceUri, minOccurs, maxOccurs),
      m_restrictions(pattern, minLength, maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive, length),
      m_itemType(itemType), m_format(OrEmpty(format)), m_whitespaceRule(whitespaceRule) {}

CXmlTypeCollection::~CXmlTypeCollection() {}

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* first,
                                             const CXmlSerializationContext& context, bool /*isChoiceMember*/) {
    for (CXmlElement* element = first; element != nullptr; element = element->GetNextSiblingElement()) {
        if (!CXmlObjectHelper::DoesElementNameMatch(context, element, m_elementName, m_namespace)) return element;
        AddFromString(element->GetText());
    }
    return nullptr;
}

} // namespace QvXmlLib10
