#include "document/XmlDocument.h"

#include "binding/XmlSerializationContext.h"
#include "document/ExpatReader.h"
#include "fastinfoset/FastInfosetReader.h"
#include "foundation/QvException.h"
#include "internal/Constants.h"
#include "internal/Hashing.h"
#include "internal/Inflate.h"
#include "internal/Text.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <deque>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define QVXML_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QVXML_ADDRESS_SANITIZER 1
#endif
#endif
#ifdef QVXML_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace QvXmlLib10 {

namespace {

const char XMLNS_NAMESPACE[] = "http://www.w3.org/2000/xmlns/";

const std::string& EmptyString() {
    static const std::string empty;
    return empty;
}

// In front of every element block: the pool that the block came from, or null for the heap.
struct NodeHeader {
    void* pool;
};
constexpr std::size_t NODE_ALIGN = 8;
static_assert(sizeof(NodeHeader) == NODE_ALIGN, "the header keeps the node's alignment");

constexpr std::size_t RoundUp(std::size_t size) { return (size + NODE_ALIGN - 1) & ~(NODE_ALIGN - 1); }
constexpr std::size_t ElementBlockSize(std::size_t size) { return RoundUp(sizeof(NodeHeader) + size); }

bool SameText(const std::string& text, const char* other, std::size_t length) {
    return text.size() == length && (length == 0 || std::memcmp(text.data(), other, length) == 0);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Storage of a document: node pool and name table

// Bump allocator for the nodes of one document, with a free list per block size so that
// destroyed nodes (removed by an element hook, or detached and deleted by the caller) are
// reused. Nodes are destroyed by their owners as usual; the pool only hands out memory.
// When the tree is gone and no node is left alive, the pool starts again at its first
// block, so that the next load into the same document touches the same memory in order.
class CXmlDocument::CNodePool {
public:
    CNodePool() = default;
    CNodePool(const CNodePool&) = delete;
    CNodePool& operator=(const CNodePool&) = delete;
    ~CNodePool() {
        for (const auto& block : m_blocks)
            Unpoison(block.get(), BLOCK_SIZE);
    }

    void* Allocate(std::size_t size) {
        FreeBlock*& head = m_free[size / NODE_ALIGN];
        if (head) {
            FreeBlock* block = head;
            Unpoison(block, size);
            head = block->next;
            ++m_live;
            return block;
        }
        if (size > m_left) NextBlock();
        void* block = m_next;
        m_next += size;
        m_left -= size;
        ++m_live;
        Unpoison(block, size);
        return block;
    }

    void Free(void* block, std::size_t size) noexcept {
        FreeBlock*& head = m_free[size / NODE_ALIGN];
        FreeBlock* freed = static_cast<FreeBlock*>(block);
        freed->next = head;
        head = freed;
        --m_live;
        Poison(block, size);
    }

    void Rewind() noexcept {
        if (m_live != 0) return;
        std::fill(std::begin(m_free), std::end(m_free), nullptr);
        m_used = 0;
        m_next = nullptr;
        m_left = 0;
    }

    // The largest node the pool serves.
    static constexpr std::size_t MAX_NODE = 256;

private:
    struct FreeBlock {
        FreeBlock* next;
    };

    void NextBlock() {
        if (m_used == m_blocks.size()) {
            std::unique_ptr<unsigned char[]> block(new unsigned char[BLOCK_SIZE]);
            m_blocks.push_back(std::move(block));
        }
        m_next = m_blocks[m_used++].get();
        m_left = BLOCK_SIZE;
        Poison(m_next, BLOCK_SIZE);
    }

    // Under AddressSanitizer, memory of the pool that holds no live node is poisoned, so
    // that a node used after its destruction is reported as it would be on the heap.
    static void Poison(void* memory, std::size_t size) noexcept {
#ifdef QVXML_ADDRESS_SANITIZER
        ASAN_POISON_MEMORY_REGION(memory, size);
#else
        (void)memory;
        (void)size;
#endif
    }
    static void Unpoison(void* memory, std::size_t size) noexcept {
#ifdef QVXML_ADDRESS_SANITIZER
        ASAN_UNPOISON_MEMORY_REGION(memory, size);
#else
        (void)memory;
        (void)size;
#endif
    }

    // Below the usual threshold of mapped allocations, so that blocks come from the heap
    // instead of being mapped and faulted in anew.
    static constexpr std::size_t BLOCK_SIZE = 64 * 1024 - 64;
    FreeBlock* m_free[MAX_NODE / NODE_ALIGN + 1] = {};
    std::vector<std::unique_ptr<unsigned char[]>> m_blocks;
    std::size_t m_used = 0;
    unsigned char* m_next = nullptr;
    std::size_t m_left = 0;
    std::size_t m_live = 0;
};

namespace {
constexpr std::size_t ELEMENT_BLOCK = ElementBlockSize(sizeof(CXmlElement));
constexpr std::size_t ATTRIBUTE_BLOCK = RoundUp(sizeof(CXmlAttribute));
static_assert(ELEMENT_BLOCK <= 256 && ATTRIBUTE_BLOCK <= 256, "nodes fit the pool's size classes");
} // namespace

// The names of one document, each pair of local name and namespace URI kept once: an
// open-addressing hash table over names with stable addresses.
class CXmlDocument::CNameTable {
public:
    explicit CNameTable(const CXmlDocument* document) : m_pDocument(document) { m_pEmpty = Intern("", 0, "", 0); }

    const CName* Empty() const { return m_pEmpty; }

    const CName* Intern(const char* namespaceUri, std::size_t namespaceLength, const char* localName,
                        std::size_t localLength) {
        const std::size_t hash =
            Internal::HashBytes(localName, localLength, Internal::HashBytes(namespaceUri, namespaceLength));
        const CName* const* found = m_table.Find(hash, [&](const CName* name) {
            return SameText(name->localName, localName, localLength) &&
                   SameText(name->namespaceUri, namespaceUri, namespaceLength);
        });
        if (found) return *found;
        m_names.emplace_back(localName, localLength, namespaceUri, namespaceLength, m_pDocument);
        const CName* name = &m_names.back();
        m_table.Insert(hash, name);
        return name;
    }

private:
    const CXmlDocument* m_pDocument;
    std::deque<CName> m_names;
    Internal::CProbeTable<const CName*> m_table;
    const CName* m_pEmpty;
};

CXmlDocument::CName::CName(const char* local, size_t localLength, const char* uri, size_t uriLength,
                           const CXmlDocument* owner)
    : localName(local, localLength), namespaceUri(uri, uriLength), document(owner) {
    const bool instance = namespaceUri == Internal::kXsiNamespace || namespaceUri == XMLNS_NAMESPACE;
    isNil = instance && localName == "nil";
    isNamespaceAttribute = instance && (localName == "xmlns" || localName == "type" || localName == "schemaLocation" ||
                                        localName == "noNamespaceSchemaLocation");
}

const CXmlDocument::CName* CXmlDocument::InternName(const char* namespaceUri, size_t namespaceLength,
                                                    const char* localName, size_t localLength) const {
    return m_pNameTable->Intern(namespaceUri, namespaceLength, localName, localLength);
}

inline CXmlElement* CXmlDocument::NewElement(const CName* name) const {
    NodeHeader* header = static_cast<NodeHeader*>(m_pNodePool->Allocate(ELEMENT_BLOCK));
    header->pool = m_pNodePool.get();
    return ::new (header + 1) CXmlElement(this, name);
}

// ---------------------------------------------------------------------------------------------
// CXmlAttribute

CXmlAttribute::CXmlAttribute(const std::string& localName, const std::string& value, const std::string& namespaceUri)
    : CInstanceMonitor("CXmlAttribute"),
      m_pName(new CXmlDocument::CName(localName.data(), localName.size(), namespaceUri.data(), namespaceUri.size(),
                                      nullptr)),
      m_value(value) {}

// ---------------------------------------------------------------------------------------------
// CXmlElement

void* CXmlElement::operator new(std::size_t size) {
    NodeHeader* header = static_cast<NodeHeader*>(::operator new(ElementBlockSize(size)));
    header->pool = nullptr;
    return header + 1;
}

void CXmlElement::operator delete(void* p, std::size_t size) noexcept {
    if (!p) return;
    NodeHeader* header = static_cast<NodeHeader*>(p) - 1;
    if (header->pool)
        static_cast<CXmlDocument::CNodePool*>(header->pool)->Free(header, ElementBlockSize(size));
    else
        ::operator delete(header);
}

CXmlElement::CXmlElement(const CXmlDocument* document)
    : CXmlElement(document,
                  document ? document->m_pNameTable->Empty() : new CXmlDocument::CName("", 0, "", 0, nullptr)) {}

CXmlElement::~CXmlElement() {
    // Destroy the subtree without recursion, so that neither long sibling lists nor
    // deep nesting can exhaust the stack: each child's own children are spliced into
    // the list ahead of its next sibling before the child is destroyed.
    std::unique_ptr<CXmlElement> child = std::move(m_pFirstChild);
    m_pLastChild = nullptr;
    while (child) {
        if (child->m_pFirstChild) {
            child->m_pLastChild->m_pNextSibling = std::move(child->m_pNextSibling);
            child->m_pNextSibling = std::move(child->m_pFirstChild);
            child->m_pLastChild = nullptr;
        }
        std::unique_ptr<CXmlElement> next = std::move(child->m_pNextSibling);
        child.reset();
        child = std::move(next);
    }

    const CXmlDocument* document = m_pName->document;
    if (!document) {
        // Made without a document: the names and the attributes are its own, on the heap.
        delete m_pName;
        return;
    }
    if (!m_attributes.empty()) {
        CXmlDocument::CNodePool& pool = *document->m_pNodePool;
        for (std::unique_ptr<CXmlAttribute>& attribute : m_attributes) {
            CXmlAttribute* node = attribute.release();
            node->CXmlAttribute::~CXmlAttribute();
            pool.Free(node, ATTRIBUTE_BLOCK);
        }
    }
}

void CXmlElement::SetNames(const std::string* localName, const std::string* namespaceUri) {
    const std::string& local = localName ? *localName : m_pName->localName;
    const std::string& uri = namespaceUri ? *namespaceUri : m_pName->namespaceUri;
    if (const CXmlDocument* document = m_pName->document) {
        m_pName = document->InternName(uri.data(), uri.size(), local.data(), local.size());
        return;
    }
    // Names of an element without a document are its own.
    CXmlDocument::CName* own = const_cast<CXmlDocument::CName*>(m_pName);
    if (localName) own->localName = *localName;
    if (namespaceUri) own->namespaceUri = *namespaceUri;
}

void CXmlElement::SetElementName(const std::string& name) { SetNames(&name, nullptr); }

void CXmlElement::SetNamespace(const std::string& namespaceUri) { SetNames(nullptr, &namespaceUri); }

const std::string& CXmlElement::GetAttribute(const std::string& localName, const std::string& namespaceUri) const {
    for (const auto& attribute : m_attributes) {
        if (attribute->m_pName->localName == localName && attribute->m_pName->namespaceUri == namespaceUri)
            return attribute->m_value;
    }
    return EmptyString();
}

void CXmlElement::AppendText(const char* text, int length) {
    if (length <= 0) return;
    const size_t needed = m_text.size() + static_cast<size_t>(length);
    // Text arrives in many small pieces: grow by doubling so the total cost stays linear.
    if (!m_text.empty() && m_text.capacity() < needed) m_text.reserve(std::max(needed, 2 * m_text.capacity()));
    m_text.append(text, static_cast<size_t>(length));
}

void CXmlElement::AppendText(const char* text) {
    if (text) AppendText(text, static_cast<int>(std::strlen(text)));
}

CXmlElement* CXmlElement::CreateNewChildElement() {
    const CXmlDocument* document = m_pName->document;
    CXmlElement* child = document ? document->NewElement(document->m_pNameTable->Empty()) : new CXmlElement(nullptr);
    AppendChild(child);
    return child;
}

CXmlAttribute* CXmlElement::NewAttribute(const CXmlDocument::CName* name, const char* value, size_t valueLength) {
    // The caller has made room in the vector, so that the attribute can't be lost between
    // the pool and its owner.
    CXmlDocument::CNodePool& pool = *m_pName->document->m_pNodePool;
    void* block = pool.Allocate(ATTRIBUTE_BLOCK);
    CXmlAttribute* attribute;
    try {
        attribute = ::new (block) CXmlAttribute(name, value, valueLength);
    } catch (...) {
        pool.Free(block, ATTRIBUTE_BLOCK);
        throw;
    }
    m_attributes.emplace_back(attribute);
    return attribute;
}

void CXmlElement::AddAttribute(const std::string& localName, const std::string& value,
                               const std::string& namespaceUri) {
    const CXmlDocument* document = m_pName->document;
    if (!document) {
        std::unique_ptr<CXmlAttribute> attribute(new CXmlAttribute(localName, value, namespaceUri));
        m_attributes.push_back(std::move(attribute));
        return;
    }
    const CXmlDocument::CName* name =
        document->InternName(namespaceUri.data(), namespaceUri.size(), localName.data(), localName.size());
    if (m_attributes.size() == m_attributes.capacity())
        m_attributes.reserve(std::max<size_t>(4, 2 * m_attributes.size()));
    NewAttribute(name, value.data(), value.size());
}

CXmlElement* CXmlElement::RemoveLastChildElement() {
    if (!m_pFirstChild) return nullptr;
    if (m_pFirstChild.get() == m_pLastChild) {
        m_pLastChild = nullptr;
        return m_pFirstChild.release();
    }
    CXmlElement* beforeLast = m_pFirstChild.get();
    while (beforeLast->m_pNextSibling.get() != m_pLastChild)
        beforeLast = beforeLast->m_pNextSibling.get();
    CXmlElement* last = beforeLast->m_pNextSibling.release();
    m_pLastChild = beforeLast;
    return last;
}

// ---------------------------------------------------------------------------------------------
// CXmlDocument

CXmlDocument::CXmlDocument() : CXmlDocument(nullptr, CXmlSerializationContext::m_defaultContext) {}

CXmlDocument::CXmlDocument(const CXmlSerializationContext& context) : CXmlDocument(nullptr, context) {}

CXmlDocument::CXmlDocument(ElementHook hook) : CXmlDocument(hook, CXmlSerializationContext::m_defaultContext) {}

CXmlDocument::CXmlDocument(ElementHook hook, const CXmlSerializationContext& context)
    : CInstanceMonitor("CXmlDocument"), m_pElementHook(hook), m_pContext(&context), m_pNodePool(new CNodePool),
      m_pNameTable(new CNameTable(this)), m_pInput(nullptr) {
    Init();
}

CXmlDocument::~CXmlDocument() { CXmlDocument::Cleanup(); }

void CXmlDocument::Init() {
    m_pData.reset();
    m_dataLength = 0;
    m_pDocumentElement.reset();
    m_schemaType = m_pContext->GetSchemaType();
}

void CXmlDocument::Cleanup() {
    m_elementStack.clear();
    m_pDocumentElement.reset();
    m_pNodePool->Rewind();
    m_pData.reset();
    m_dataLength = 0;
    m_pInput = nullptr;
    m_namespaceAliases.clear();
}

std::string CXmlDocument::LookupNamespaceFromAlias(const char* alias) const {
    auto found = m_namespaceAliases.find(alias ? alias : "");
    return found == m_namespaceAliases.end() ? std::string() : found->second;
}

CXmlElement* CXmlDocument::AddElement_Int(const CName* name) {
    if (m_pDocumentElement && m_elementStack.empty())
        throw CQvException("The document has no open element to add a child element to");
    CXmlElement* element = NewElement(name);
    if (!m_pDocumentElement)
        m_pDocumentElement.reset(element);
    else
        m_elementStack.back()->AppendChild(element);
    m_elementStack.push_back(element);
    return element;
}

CXmlElement* CXmlDocument::AddDocElement(const char* namespaceUri, const char* localName) {
    const CName* name = InternName(namespaceUri ? namespaceUri : "", namespaceUri ? std::strlen(namespaceUri) : 0,
                                   localName ? localName : "", localName ? std::strlen(localName) : 0);
    // A new root replaces the tree; the open elements of the old one go with it.
    m_elementStack.clear();
    m_pDocumentElement.reset(NewElement(name));
    m_elementStack.push_back(m_pDocumentElement.get());
    return m_pDocumentElement.get();
}

CXmlElement* CXmlDocument::AddChildElement(const char* namespaceUri, const char* localName) {
    if (m_elementStack.empty()) throw CQvException("The document has no open element to add a child element to");
    const CName* name = InternName(namespaceUri ? namespaceUri : "", namespaceUri ? std::strlen(namespaceUri) : 0,
                                   localName ? localName : "", localName ? std::strlen(localName) : 0);
    return AddElement_Int(name);
}

void CXmlDocument::AddElementAttribute(CXmlElement* element, const std::string& localName, const std::string& value,
                                       const std::string& namespaceUri) {
    element->AddAttribute(localName, value, namespaceUri);
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text, unsigned long length) {
    if (length == 0 || text == nullptr || text[0] == '\0') return;
    Internal::ForEachRunWithoutCR(text, length, [element](const char* run, size_t runLength) {
        element->AppendText(run, static_cast<int>(runLength));
    });
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text) {
    AppendTextExcludingCR(element, text, 0xFFFFFFFFUL);
}

void CXmlDocument::EndElement() {
    if (m_elementStack.empty()) return;
    CXmlElement* element = m_elementStack.back();
    m_elementStack.pop_back();
    if (m_pElementHook && m_pElementHook(element) && !m_elementStack.empty()) {
        std::unique_ptr<CXmlElement> removed(m_elementStack.back()->RemoveLastChildElement());
    }
}

// ---------------------------------------------------------------------------------------------
// Loading

void CXmlDocument::ParseInput(const unsigned char* input, uint64_t length, void (CXmlDocument::*parse)()) {
    struct InputScope {
        const unsigned char*& input;
        ~InputScope() { input = nullptr; }
    } scope{m_pInput};
    m_pInput = input;
    m_dataLength = length;
    (this->*parse)();
}

void CXmlDocument::LoadXml(const char* text) {
    Cleanup();
    const size_t length = text ? std::strlen(text) : 0;
    m_dataLength = length;
    if (length == 0) throw CQvException("XML String is empty!");
    ParseInput(reinterpret_cast<const unsigned char*>(text), length, &CXmlDocument::ParseText);
}

void CXmlDocument::LoadXml(const wchar_t* text) {
    Cleanup();
    const size_t length = text ? std::wcslen(text) : 0;
    m_dataLength = length;
    if (length == 0) throw CQvException("XML String is empty!");
    // UTF-16 little-endian behind a byte order mark; characters above U+FFFF are cut to
    // their low 16 bits.
    const uint64_t bytes = 2 * (static_cast<uint64_t>(length) + 1);
    m_pData.reset(new unsigned char[bytes]);
    unsigned char* out = m_pData.get();
    *out++ = 0xFF;
    *out++ = 0xFE;
    for (size_t i = 0; i < length; ++i) {
        const uint32_t unit = static_cast<uint32_t>(text[i]) & 0xFFFFu;
        *out++ = static_cast<unsigned char>(unit & 0xFF);
        *out++ = static_cast<unsigned char>(unit >> 8);
    }
    ParseInput(m_pData.get(), bytes, &CXmlDocument::ParseText);
}

void CXmlDocument::LoadXmlStream(unsigned char* data, unsigned long length) {
    Cleanup();
    m_dataLength = length;
    if (length == 0 || data == nullptr) throw CQvException("XML Stream is empty!");
    ParseInput(data, length, &CXmlDocument::Parse);
}

namespace {

struct FileCloser {
    void operator()(FILE* file) const { std::fclose(file); }
};

// The "[%n]" messages keep their format; the conversion stores the count of characters
// written so far into a local, which shows nothing behind "Error [".
std::string FileErrorMessage(const char* format, const char* path) {
    int written = 0;
    return FormatString(format, path, &written);
}

} // namespace

void CXmlDocument::Load(const char* path) {
    Cleanup();
    const char* shownPath = path ? path : "";
    std::unique_ptr<FILE, FileCloser> file(path ? std::fopen(path, "rt") : nullptr);
    if (!file) throw CQvException(FormatString("Failed to open the file [%s]", shownPath));

    const long size = _filelength(file.get());
    if (size == -1) {
        file.reset();
        throw CQvException(FileErrorMessage("Failed to get the size of the file [%s] Error [%n]", shownPath));
    }
    m_pData.reset(new unsigned char[static_cast<size_t>(size) + (size == 0 ? 1 : 0)]);
    m_dataLength = static_cast<uint64_t>(size);
    const size_t read = std::fread(m_pData.get(), 1, static_cast<size_t>(size), file.get());
    if (read == 0 || read != static_cast<size_t>(size)) {
        file.reset();
        throw CQvException(FileErrorMessage("Failed to read the contents of the file [%s] Error [%n]", shownPath));
    }
    file.reset();
    ParseInput(m_pData.get(), static_cast<uint64_t>(size), &CXmlDocument::Parse);
}

void CXmlDocument::Parse() {
    // A complete gzip or zlib stream is replaced by its content; other bytes stay as they are.
    // The input may be the caller's buffer, so it is never freed here; a file's own copy is
    // released once its content has taken its place.
    std::unique_ptr<unsigned char[]> inflated;
    size_t inflatedLength = 0;
    if (Internal::InflateComplete(m_pInput, static_cast<size_t>(m_dataLength), inflated, inflatedLength)) {
        m_pData = std::move(inflated);
        m_pInput = m_pData.get();
        m_dataLength = inflatedLength;
    }
    // Fast Infoset is recognised by its header; anything else is XML text.
    CFastInfosetReader reader(m_pContext->GetFIContext(), *this);
    if (!reader.Parse()) ParseText();
}

void CXmlDocument::ParseText() {
    CExpatReader reader(*this);
    reader.CreateParser();
    reader.Parse(true);
}

long _filelength(FILE* file) {
    const long position = std::ftell(file);
    if (position == -1) return -1;
    if (std::fseek(file, 0, SEEK_END) != 0) return -1;
    const long size = std::ftell(file);
    if (size == -1) return -1;
    if (std::fseek(file, position, SEEK_SET) != 0) return -1;
    return size;
}

} // namespace QvXmlLib10
