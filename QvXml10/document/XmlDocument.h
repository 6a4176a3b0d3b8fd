#pragma once

#include "foundation/CriticalSection.h"
#include "foundation/QvTypes.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib10 {

class CXmlDocument;
class CXmlSerializationContext;
class CExpatReader;

// An attribute of the document tree; immutable after construction.
class CXmlAttribute : public CInstanceMonitor {
public:
    CXmlAttribute(const std::string& localName, const std::string& value, const std::string& namespaceUri);
    ~CXmlAttribute() override;

    const std::string& GetLocalName() const { return *m_localName; }
    const std::string& GetValue() const { return m_value; }
    const std::string& GetNamespaceURI() const { return *m_namespaceUri; }

    // xsi:nil (also accepted in the xmlns namespace).
    bool IsNilAttribute() const;
    // xmlns, xsi:type, xsi:schemaLocation, xsi:noNamespaceSchemaLocation: skipped by the
    // binding instead of being reported as unknown.
    bool IsNamespaceAttribute() const;

    // Attributes of a document live in the document's node pool; others on the heap.
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;

private:
    friend class CXmlElement;
    struct COwnedNames;

    static void* operator new(std::size_t size, const CXmlDocument* pool);
    static void operator delete(void* p, const CXmlDocument* pool) noexcept;

    // An attribute of a document: its names are the document's shared copies.
    CXmlAttribute(const std::string* localName, const char* value, size_t valueLength,
                  const std::string* namespaceUri);

    // Names point into the document's name table, or into m_pOwnedNames for an
    // attribute made without a document.
    const std::string* m_localName;
    std::string m_value;
    const std::string* m_namespaceUri;
    std::unique_ptr<COwnedNames> m_pOwnedNames;
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

    const std::string& GetNamespaceURI() const { return *m_namespaceUri; }
    const std::string& GetLocalName() const { return *m_localName; }
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

    // Elements of a document live in the document's node pool; others on the heap.
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;

private:
    friend class CXmlDocument;
    friend class CExpatReader;
    struct COwnedNames;

    static void* operator new(std::size_t size, const CXmlDocument* pool);
    static void operator delete(void* p, const CXmlDocument* pool) noexcept;

    void AddAttribute(const char* localName, size_t localLength, const char* value, size_t valueLength,
                      const char* namespaceUri, size_t namespaceLength);
    const std::string* Name(const std::string& text, bool isNamespace);

    const CXmlDocument* m_pDocument;
    std::unique_ptr<CXmlElement> m_pNextSibling;
    std::unique_ptr<CXmlElement> m_pFirstChild;
    CXmlElement* m_pLastChild;
    std::vector<std::unique_ptr<CXmlAttribute>> m_attributes;
    std::string m_text;
    // Names point into the document's name table (a document repeats few names), or
    // into m_pOwnedNames for an element made without a document.
    const std::string* m_localName;
    const std::string* m_namespaceUri;
    std::unique_ptr<COwnedNames> m_pOwnedNames;
};

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
    friend class CExpatReader;
    friend class CXmlElement;
    friend class CXmlAttribute;
    class CNodePool;
    class CNameTable;
    static void* AllocateNode(std::size_t size, const CXmlDocument* document);
    static void FreeNode(void* node, std::size_t size) noexcept;
    // The document's single copy of a name or namespace URI.
    const std::string* InternName(const char* text, size_t length) const;

    CXmlElement* AddElement_Int(const char* namespaceUri, size_t namespaceLength, const char* localName,
                                size_t localLength);
    void TakeData(const unsigned char* data, uint64_t length);

    std::unique_ptr<CXmlElement> m_pDocumentElement;
    std::vector<CXmlElement*> m_elementStack;
    std::map<std::string, std::string> m_namespaceAliases;
    std::unique_ptr<unsigned char[]> m_pData;
    uint64_t m_dataLength;
    SchemaType m_schemaType;
    ElementHook m_pElementHook;
    const CXmlSerializationContext* m_pContext;
    // Storage of the elements and attributes of the tree: one block per many nodes
    // instead of one heap block per node. Both live as long as the document.
    std::unique_ptr<CNodePool> m_pNodePool;
    std::unique_ptr<CNameTable> m_pNameTable;
};

// The length of an open file, with its position left as it was; -1 on failure.
long _filelength(FILE* file);

} // namespace QvXmlLib10
