#pragma once

#include "../foundation/CriticalSection.h"
#include "../foundation/QvTypes.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib10 {

class CXmlAttribute;
class CXmlElement;
class CXmlSerializationContext;
namespace Internal {
class CDocumentBuilder;
}

// The document tree of one load: built by a parser through the build operations,
// read by the binding, destroyed with the document.
class CXmlDocument : public CInstanceMonitor {
public:
    // Called for each element when its end tag is read; returning true removes the
    // element from its parent (text input only).
    typedef bool (*ElementHook)(CXmlElement* element);

    CXmlDocument();
    explicit CXmlDocument(const CXmlSerializationContext& context);
    explicit CXmlDocument(ElementHook hook);
    CXmlDocument(ElementHook hook, const CXmlSerializationContext& context);
    ~CXmlDocument() override;

    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    // Destroys the tree and the raw data; keeps schema type, hook and context.
    virtual void Cleanup();

    CXmlElement* GetDocumentElement() const { return m_pDocumentElement.get(); }
    // The last declaration of the prefix anywhere in the document; empty if never declared.
    std::string LookupNamespaceFromAlias(const char* alias) const;

    // Loading. LoadXml goes to the text parser only; Load and LoadXmlStream go
    // through format detection.
    void LoadXml(const char* text);
    void LoadXml(const wchar_t* text);
    void Load(const char* path);
    void LoadXmlStream(unsigned char* data, unsigned long length);

    // Build operations used by the parsers.
    CXmlElement* AddDocElement(const char* namespaceUri, const char* localName);
    CXmlElement* AddChildElement(const char* namespaceUri, const char* localName);
    static void AddElementAttribute(CXmlElement* element, const std::string& localName, const std::string& value,
                                    const std::string& namespaceUri);
    // Appends up to `length` bytes or up to the first NUL, leaving out every carriage return.
    static void AppendTextExcludingCR(CXmlElement* element, const char* text, unsigned long length);
    static void AppendTextExcludingCR(CXmlElement* element, const char* text);
    void EndElement();

protected:
    void Init();
    void Parse();
    void ParseText();

private:
    // The readers build the tree through it.
    friend class Internal::CDocumentBuilder;
    friend class CXmlElement;
    friend class CXmlAttribute;
    class CNodePool;
    class CNameTable;

    // The local name and namespace URI of an element or attribute, with the document
    // the node belongs to. A document keeps one per distinct pair, shared by all its
    // nodes; a node made without a document owns its own (document null).
    struct CName {
        CName(const char* local, size_t localLength, const char* uri, size_t uriLength, const CXmlDocument* owner);

        std::string localName;
        std::string namespaceUri;
        const CXmlDocument* document;
        // Answers of CXmlAttribute::IsNilAttribute and IsNamespaceAttribute for this name.
        bool isNil;
        bool isNamespaceAttribute;
    };

    const CName* InternName(const char* namespaceUri, size_t namespaceLength, const char* localName,
                            size_t localLength) const;
    CXmlElement* NewElement(const CName* name) const;
    CXmlElement* AddElement_Int(const CName* name);
    // Parses `length` bytes at `input` by `parse`, a pointer to Parse or ParseText; the
    // bytes are the caller's and are read only during the call.
    void ParseInput(const unsigned char* input, uint64_t length, void (CXmlDocument::*parse)());

    std::unique_ptr<CXmlElement> m_pDocumentElement;
    std::vector<CXmlElement*> m_elementStack;
    std::map<std::string, std::string> m_namespaceAliases;
    std::unique_ptr<unsigned char[]> m_pData;
    uint64_t m_dataLength;
    SchemaType m_schemaType;
    ElementHook m_pElementHook;
    const CXmlSerializationContext* m_pContext;
    // Storage of the tree: nodes come from a pool that lives as long as the document
    // and is reused from one load to the next; names are kept once per document.
    std::unique_ptr<CNodePool> m_pNodePool;
    std::unique_ptr<CNameTable> m_pNameTable;
    // The bytes that the load in progress parses: m_pData, or the caller's own text or
    // stream, which is parsed where it lies instead of being copied first. Null outside
    // a load.
    const unsigned char* m_pInput;
};

// An attribute of the document tree; immutable after construction.
class CXmlAttribute : public CInstanceMonitor {
public:
    CXmlAttribute(const std::string& localName, const std::string& value, const std::string& namespaceUri);
    // An attribute made without a document owns its names.
    ~CXmlAttribute() override {
        if (!m_pName->document) delete m_pName;
    }

    CXmlAttribute(const CXmlAttribute&) = delete;
    CXmlAttribute& operator=(const CXmlAttribute&) = delete;

    const std::string& GetLocalName() const { return m_pName->localName; }
    const std::string& GetValue() const { return m_value; }
    const std::string& GetNamespaceURI() const { return m_pName->namespaceUri; }

    // xsi:nil (also accepted in the xmlns namespace).
    bool IsNilAttribute() const { return m_pName->isNil; }
    // xmlns, xsi:type, xsi:schemaLocation, xsi:noNamespaceSchemaLocation: skipped by the
    // binding instead of being reported as unknown.
    bool IsNamespaceAttribute() const { return m_pName->isNamespaceAttribute; }

private:
    friend class CXmlElement;

    // An attribute of a document, made in the document's node pool by its element.
    CXmlAttribute(const CXmlDocument::CName* name, const char* value, size_t valueLength)
        : CInstanceMonitor("CXmlAttribute"), m_pName(name), m_value(value, valueLength) {}

    const CXmlDocument::CName* m_pName;
    std::string m_value;
};

// An element of the document tree: its names, attributes, the concatenated character
// data directly inside it, and a singly linked list of children.
class CXmlElement : public CInstanceMonitor {
public:
    explicit CXmlElement(const CXmlDocument* document);
    ~CXmlElement() override;

    CXmlElement(const CXmlElement&) = delete;
    CXmlElement& operator=(const CXmlElement&) = delete;

    CXmlElement* GetFirstElement() const { return m_pFirstChild.get(); }
    CXmlElement* GetNextSiblingElement() const { return m_pNextSibling.get(); }

    const std::string& GetNamespaceURI() const { return m_pName->namespaceUri; }
    const std::string& GetLocalName() const { return m_pName->localName; }
    const std::string& GetText() const { return m_text; }
    const std::vector<std::unique_ptr<CXmlAttribute>>& GetAttributes() const { return m_attributes; }

    // The value of the first attribute matching both names, or a shared empty string.
    const std::string& GetAttribute(const std::string& localName, const std::string& namespaceUri) const;

    void SetElementName(const std::string& name);
    void SetNamespace(const std::string& namespaceUri);

    void AppendText(const char* text, int length);
    void AppendText(const char* text);

    CXmlElement* CreateNewChildElement();
    void AddAttribute(const std::string& localName, const std::string& value, const std::string& namespaceUri);
    // Unlinks the last child; the caller owns it. Null when there is no child. Like every
    // element of a document, it lives no longer than its document.
    CXmlElement* RemoveLastChildElement();

    // Elements of a document come from the document's node pool, others from the heap;
    // a header in front of each block tells the two apart.
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;

private:
    friend class CXmlDocument;
    friend class Internal::CDocumentBuilder;
    friend class CClassfactoryBase;

    // The document the element belongs to (null for one made without a document): the
    // class factory resolves an xsi:type prefix through its alias map.
    const CXmlDocument* GetOwnerDocument() const { return m_pName->document; }

    // An element of a document with its names, made in the document's node pool.
    CXmlElement(const CXmlDocument* /*document*/, const CXmlDocument::CName* name)
        : CInstanceMonitor("CXmlElement"), m_pLastChild(nullptr), m_pName(name) {}

    void SetNames(const std::string* localName, const std::string* namespaceUri);
    void AppendChild(CXmlElement* child) {
        if (m_pLastChild)
            m_pLastChild->m_pNextSibling.reset(child);
        else
            m_pFirstChild.reset(child);
        m_pLastChild = child;
    }
    CXmlAttribute* NewAttribute(const CXmlDocument::CName* name, const char* value, size_t valueLength);

    std::unique_ptr<CXmlElement> m_pNextSibling;
    std::unique_ptr<CXmlElement> m_pFirstChild;
    CXmlElement* m_pLastChild;
    // Attributes of an element of a document live in the document's node pool; the
    // element destroys them itself.
    std::vector<std::unique_ptr<CXmlAttribute>> m_attributes;
    std::string m_text;
    // Local name, namespace URI and document, shared with the document's other nodes.
    const CXmlDocument::CName* m_pName;
};

// The length of an open file, with its position left as it was; -1 on failure.
long _filelength(FILE* file);

} // namespace QvXmlLib10
