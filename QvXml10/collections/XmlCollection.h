#pragma once

#include "../foundation/QvExport.h"

#include <cstdint>
#include <string>
#include <vector>

#include "../binding/XmlObjectBase.h"
#include "../foundation/QvTypes.h"
#include "../validation/PrimitiveRestrictions.h"
#include "../validation/WhitespaceUtils.h"

namespace QvXmlLib10 {

// Frame of all collections: the items' element name (the object's own element name)
// and namespace, the occurrence bounds and the change listeners. A collection is a
// bound object itself and stands wherever an object can.
class QVXML_API CXmlCollectionBase : public CXmlObjectBase {
public:
    // No name or namespace, bounds 0 and unbounded.
    CXmlCollectionBase();
    // A maxOccurs of -1 means unbounded.
    CXmlCollectionBase(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs);
    ~CXmlCollectionBase() override;

    CXmlObjectBase* GetBase() override;
    // A collection has no target namespace of its own: always throws.
    std::string GetTargetNamespace() const override;
    std::string GetNamespace() const override;

    virtual int GetCount() const = 0;
    virtual void Clear() = 0;
    virtual void Remove(int index) = 0;
    // Throws CQvValidationException when the count is outside the bounds, the upper
    // bound tested first; passes whenever the context ignores collection counts.
    virtual void ValidateCount(const CXmlSerializationContext& context) const;
    virtual bool IsValidCount(const CXmlSerializationContext& context) const;
    // The lower bound; a choice with a collection member of bound 0 may stay empty.
    int GetMinOccurs() const { return m_minOccurs; }

    // Listeners are not owned. One added twice is called twice.
    void AddEventListener(IEventSink* listener);
    // Removes every occurrence.
    void RemoveEventListener(IEventSink* listener);

    // Tell every listener, in order of addition.
    void FireOnCollectionChange();
    void FireOnCollectionAdd(void* item);
    void FireOnCollectionAddComplete(void* item);
    void FireOnCollectionRemove(int index);
    void FireOnCollectionRemoveComplete(int index);

protected:
    std::string m_namespace;
    std::vector<IEventSink*> m_listeners;
    int32_t m_minOccurs;
    int32_t m_maxOccurs;
};

// A collection of bound objects in a doubly linked list. Each item holds one
// reference, so an item can live in several collections at once.
class QVXML_API CXmlCollection : public CXmlCollectionBase {
public:
    struct CNode {
        CXmlObjectBase* m_pItem; // one counted reference
        CNode* m_pNext;
        CNode* m_pPrev;
    };

    CXmlCollection();
    CXmlCollection(const char* elementName, const char* namespaceUri, int minOccurs, int maxOccurs);
    CXmlCollection(const CXmlCollection&) = delete;
    CXmlCollection& operator=(const CXmlCollection&) = delete;
    // Clears the collection, with events to the listeners still registered.
    ~CXmlCollection() override;

    int GetCount() const override;
    // Removes the items one by one from the front, each with its own events.
    void Clear() override;
    // Throws CQvInvalidParamException for an index outside 0 to the count minus 1.
    void Remove(int index) override;

    // Every add raises the add event, links the item in with a reference of its own,
    // then raises add complete and change. A null item is refused with
    // CQvInvalidParamException before any event.
    void AppendItem(CXmlObjectBase* item);
    void PrependItem(CXmlObjectBase* item);
    // Before the item now at `index`; the count as index appends. Any other index
    // throws before any event.
    void AddItemAt(int index, CXmlObjectBase* item);
    // Before `existing`, or at the end for a null `existing`.
    void AddBeforeItem(const CXmlObjectBase* existing, CXmlObjectBase* item);
    // Behind `existing`, or at the start for a null `existing`.
    void AddAfterItem(const CXmlObjectBase* existing, CXmlObjectBase* item);

protected:
    // Writes the attributes of every item, in list order.
    void AttributesToXml_Int(CXmlWriter* writer, const CXmlSerializationContext& context) const override;

    CNode* GetNodeAtIndex(int index) const;
    // The node whose item has the same base object; throws CQvInvalidParamException
    // when there is none.
    CNode* GetNodeForItem(const CXmlObjectBase* item) const;
    // Unlinks the node, releases its item and frees it, with the remove events.
    void RemoveNode(CNode* node);

    CNode* m_pFirst;
    CNode* m_pLast;
    int32_t m_count;

private:
    // Links a node for `item` in front of `before` (at the end when null).
    void LinkBefore(CNode* before, CXmlObjectBase* item);
    static void CheckItem(const CXmlObjectBase* item);
};

// Frame of the collections of primitive values: the facets, the kind, the output
// format and the whitespace rule of the values. The derived classes hold the values.
class QVXML_API CXmlTypeCollection : public CXmlCollectionBase {
public:
    // The restriction values come in the order of CPrimitiveRestrictions' fields; a
    // null format counts as empty.
    CXmlTypeCollection(ItemType itemType, const char* elementName, const char* namespaceUri, int minOccurs,
                       int maxOccurs, const char* pattern, int minLength, int maxLength, const char* minInclusive,
                       const char* maxInclusive, const char* minExclusive, const char* maxExclusive, int length,
                       CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
    ~CXmlTypeCollection() override;

    // Adds one value read from the text of an element.
    virtual void AddFromString(const std::string& text) = 0;

protected:
    // Takes the values of the siblings from `first` on that have the collection's
    // element name (and namespace, unless ignored), and returns the first other one.
    CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* first, const CXmlSerializationContext& context,
                             bool isChoiceMember) override;

    CPrimitiveRestrictions m_restrictions;
    ItemType m_itemType;
    std::string m_format;
    CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
};

} // namespace QvXmlLib10
