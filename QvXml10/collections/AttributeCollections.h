#pragma once

#include "../foundation/QvExport.h"

#include <string>

#include "../binding/SmartPtr.h"
#include "XmlCollection.h"
#include "../foundation/CriticalSection.h"

namespace QvXmlLib10 {

class CElement;

namespace Internal {

// Walks the nodes of a collection and hands out each item as a T. The collection
// must outlive the iterator and not change while it is walked.
template <typename T> class CNodeIterator {
public:
    explicit CNodeIterator(const CXmlCollection::CNode* node) : m_pNode(node) {}

    T* operator*() const { return static_cast<T*>(m_pNode->m_pItem); }
    CNodeIterator& operator++() {
        m_pNode = m_pNode->m_pNext;
        return *this;
    }
    bool operator==(const CNodeIterator& other) const { return m_pNode == other.m_pNode; }
    bool operator!=(const CNodeIterator& other) const { return m_pNode != other.m_pNode; }

private:
    const CXmlCollection::CNode* m_pNode;
};

} // namespace Internal

// One attribute of open content (what a schema's anyAttribute admits): a name, a value
// and a namespace. It is read and written through its collection.
class QVXML_API CAttribute : public CXmlObjectBase, public CInstanceMonitor {
public:
    // Null texts count as empty.
    CAttribute(const char* name, const char* value, const char* namespaceUri);
    ~CAttribute() override;

    CSmartPtr<CAttribute> Clone() const;

    CXmlObjectBase* GetBase() override;
    std::string GetTargetNamespace() const override;
    std::string GetNamespace() const override;

    const std::string& GetName() const { return m_name; }
    void SetName(const char* name);
    const std::string& GetValue() const { return m_value; }
    void SetValue(const char* value);
    void SetNamespace(const char* namespaceUri);

    // Hooks called after a change, with the new value; they do nothing here.
    void FireOnChangeName(const char* name);
    void FireOnChangeNamespace(const char* namespaceUri);

protected:
    // Writes the attribute into the open start tag; the other arguments are not used.
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;
    // Attributes are read by their collection: always throws.
    CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* firstChild, const CXmlSerializationContext& context,
                             bool isChoiceMember) override;

private:
    std::string m_name;
    std::string m_value;
    std::string m_namespace;
};

// The attributes of open content, each in a namespace that the collection's
// restriction ("##any", "##other", "##local", "##targetNamespace" or a list of URIs)
// admits.
class QVXML_API CAttributeCol : public CXmlCollection, public CInstanceMonitor {
public:
    typedef Internal::CNodeIterator<CAttribute> iterator;

    // Without a namespace of its own, the collection takes the first URI of a
    // restriction list as its namespace (not a "##" keyword).
    CAttributeCol(const char* namespaceUri, const char* restriction, const char* targetNamespace);
    ~CAttributeCol() override;

    // In the collection's namespace, which the restriction must admit.
    CSmartPtr<CAttribute> Add(const char* name);
    CSmartPtr<CAttribute> Add(const char* name, const char* value);
    // In the given namespace, which the restriction must admit.
    CSmartPtr<CAttribute> Add(const char* name, const char* value, const char* namespaceUri);
    // Appends without any namespace test.
    CSmartPtr<CAttribute> Add(CAttribute* attribute);
    // Throws CQvInvalidParamException for an index outside the collection.
    CSmartPtr<CAttribute> Item(int index) const;
    iterator begin() const { return iterator(m_pFirst); }
    iterator end() const { return iterator(nullptr); }
    // A new collection with the same restriction and a copy of each attribute.
    CSmartPtr<CAttributeCol> Clone() const;

    std::string GetTargetNamespace() const override;
    std::string GetNamespace() const override;
    const std::string& GetNamespaceRestriction() const { return m_namespaceRestriction; }
    const std::string& GetRestrictionTargetNamespace() const { return m_targetNamespace; }

protected:
    // Writes every attribute, without a count check.
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;
    // Adds every attribute of `element`; an attribute outside the restriction throws
    // CQvInvalidNamespaceException. Returns `first`: no child element is consumed.
    CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* first, const CXmlSerializationContext& context,
                             bool isChoiceMember) override;

private:
    CSmartPtr<CAttribute> Append(const char* name, const char* value, const char* namespaceUri);

    std::string m_namespaceRestriction;
    std::string m_targetNamespace;
};

// The elements of open content (what a schema's any element admits). The occurrence
// bounds given at construction are not kept, so the count check never fails.
class QVXML_API CElementCol : public CXmlCollection, public CInstanceMonitor {
public:
    typedef Internal::CNodeIterator<CElement> iterator;

    // The namespace must pass the restriction. Without a namespace, a "##" keyword as
    // restriction becomes the namespace given to Add(name). The restriction that items
    // are held to is "##any", whatever is passed.
    CElementCol(const char* namespaceUri, const char* restriction, const char* targetNamespace, int minOccurs,
                int maxOccurs);
    ~CElementCol() override;

    // A new element in the collection's namespace; throws CQvInvalidStateException
    // when the collection has none.
    CSmartPtr<CElement> Add(const char* name);
    // A new element in the given namespace, which the restriction must admit.
    CSmartPtr<CElement> Add(const char* name, const char* namespaceUri);
    // Appends an element whose namespace the restriction admits.
    CSmartPtr<CElement> Add(CElement* element);
    // Throws CQvInvalidParamException for an index outside the collection.
    CSmartPtr<CElement> Item(int index) const;
    iterator begin() const { return iterator(m_pFirst); }
    iterator end() const { return iterator(nullptr); }
    // A new collection with the same namespaces and a deep copy of each element.
    CSmartPtr<CElementCol> Clone() const;

    std::string GetTargetNamespace() const override;
    std::string GetNamespace() const override;
    const std::string& GetNamespaceRestriction() const { return m_namespaceRestriction; }
    const std::string& GetCollectionNamespace() const { return m_collectionNamespace; }

    // Reads the siblings from `first` on that have exactly this local name and
    // namespace, one element each; returns the first other sibling, or null.
    virtual CXmlElement* FromXmlLockElementName_Int(const std::string& elementName, const std::string& namespaceUri,
                                                    CXmlElement* parent, CXmlElement* first,
                                                    const CXmlSerializationContext& context);

protected:
    // Checks the count, then writes every element.
    void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri, const CXmlSerializationContext& context,
                   bool isChoiceMember) const override;
    // Reads the siblings from `first` on, one element each, while their namespaces
    // pass; returns the first sibling not read, or null.
    CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* first, const CXmlSerializationContext& context,
                             bool isChoiceMember) override;

private:
    // Reads from `first` on while `accept` admits the sibling, each into a new element
    // held to `restriction`.
    template <typename Accept>
    CXmlElement* ReadElements(CXmlElement* parent, CXmlElement* first, const CXmlSerializationContext& context,
                              const std::string& restriction, Accept accept);

    std::string m_namespaceRestriction;
    std::string m_collectionNamespace;
    std::string m_targetNamespace;
};

} // namespace QvXmlLib10
