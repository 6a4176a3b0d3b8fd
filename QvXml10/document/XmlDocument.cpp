#include "document/XmlDocument.h"

#include "binding/XmlSerializationContext.h"
#include "document/ExpatReader.h"
#include "foundation/QvException.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <deque>

namespace QvXmlLib10 {

namespace {

const char XSI_NAMESPACE[] = "http://www.w3.org/2001/XMLSchema-instance";
const char XMLNS_NAMESPACE[] = "http://www.w3.org/2000/xmlns/";

bool IsInstanceNamespace(const std::string& uri) { return uri == XSI_NAMESPACE || uri == XMLNS_NAMESPACE; }

const std::string& EmptyName() {
    static const std::string empty;
    return empty;
}

// Every node block starts with this header, which tells its delete where it came from.
struct NodeHeader {
    void* pool; // the document's CNodePool, or null for a node on the heap
};
constexpr std::size_t NODE_ALIGN = 8;
static_assert(sizeof(NodeHeader) == NODE_ALIGN, "the header keeps the node's alignment");

std::size_t BlockSize(std::size_t size) {
    return (sizeof(NodeHeader) + size + NODE_ALIGN - 1) & ~(NODE_ALIGN - 1);
}

} // namespace

// Bump allocator for the nodes of one document, with a free list per block size so that
// destroyed nodes (removed by an element hook, or freed by Cleanup before the next load)
// are reused. Nodes are destroyed by their owners as usual; the pool only hands out the
// memory and releases all of it with the document.
class CXmlDocument::CNodePool {
public:
    void* Allocate(std::size_t size) {
        const std::size_t needed = BlockSize(size);
        for (FreeList& list : m_freeLists) {
            if (list.size == needed && list.head) {
                FreeBlock* block = list.head;
                list.head = block->next;
                return Stamp(block);
            }
        }
        if (needed > m_left) {
            const std::size_t blockSize = std::max(needed, BLOCK_SIZE);
            m_blocks.emplace_back(new unsigned char[blockSize]);
            m_next = m_blocks.back().get();
            m_left = blockSize;
        }
        void* block = m_next;
        m_next += needed;
        m_left -= needed;
        return Stamp(block);
    }

    void Free(NodeHeader* header, std::size_t size) {
        const std::size_t blockSize = BlockSize(size);
        FreeBlock* block = reinterpret_cast<FreeBlock*>(header);
        for (FreeList& list : m_freeLists) {
            if (list.size == blockSize) {
                block->next = list.head;
                list.head = block;
                return;
            }
        }
        block->next = nullptr;
        m_freeLists.push_back({blockSize, block});
    }

private:
    struct FreeBlock {
        FreeBlock* next;
    };
    struct FreeList {
        std::size_t size;
        FreeBlock* head;
    };

    void* Stamp(void* block) {
        NodeHeader* header = static_cast<NodeHeader*>(block);
        header->pool = this;
        return header + 1;
    }

    // Below the usual threshold of mapped allocations, so that blocks are reused from
    // the heap instead of being mapped and faulted in anew on every load.
    static constexpr std::size_t BLOCK_SIZE = 64 * 1024 - 64;
    std::vector<std::unique_ptr<unsigned char[]>> m_blocks;
    std::vector<FreeList> m_freeLists;
    unsigned char* m_next = nullptr;
    std::size_t m_left = 0;
};

// The names and namespace URIs of one document, each kept once: an open-addressing hash
// table over strings with stable addresses.
class CXmlDocument::CNameTable {
public:
    CNameTable() : m_slots(64, nullptr) {}

    const std::string* Intern(const char* text, std::size_t length) {
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t i = Hash(text, length) & mask;; i = (i + 1) & mask) {
            const std::string* slot = m_slots[i];
            if (!slot) {
                m_names.emplace_back(text, length);
                m_slots[i] = &m_names.back();
                if (2 * m_names.size() > m_slots.size()) Grow();
                return &m_names.back();
            }
            if (slot->size() == length && std::memcmp(slot->data(), text, length) == 0) return slot;
        }
    }

private:
    // Eight bytes per step: names and URIs are short, and this runs for every name read.
    static std::size_t Hash(const char* text, std::size_t length) {
        std::uint64_t hash = 0x9E3779B97F4A7C15ull ^ length;
        std::size_t i = 0;
        for (; i + 8 <= length; i += 8) {
            std::uint64_t word;
            std::memcpy(&word, text + i, 8);
            hash = (hash ^ word) * 0xFF51AFD7ED558CCDull;
            hash ^= hash >> 32;
        }
        if (i < length) {
            std::uint64_t word = 0;
            std::memcpy(&word, text + i, length - i);
            hash = (hash ^ word) * 0xC4CEB9FE1A85EC53ull;
            hash ^= hash >> 32;
        }
        return static_cast<std::size_t>(hash);
    }

    void Grow() {
        std::vector<const std::string*> slots(m_slots.size() * 2, nullptr);
        const std::size_t mask = slots.size() - 1;
        for (const std::string& name : m_names) {
            std::size_t i = Hash(name.data(), name.size()) & mask;
            while (slots[i]) i = (i + 1) & mask;
            slots[i] = &name;
        }
        m_slots.swap(slots);
    }

    std::deque<std::string> m_names;
    std::vector<const std::string*> m_slots;
};

void* CXmlDocument::AllocateNode(std::size_t size, const CXmlDocument* document) {
    if (!document) {
        NodeHeader* header = static_cast<NodeHeader*>(::operator new(BlockSize(size)));
        header->pool = nullptr;
        return header + 1;
    }
    // The pool is storage, not state of the tree: a const document still hands out nodes.
    CXmlDocument* owner = const_cast<CXmlDocument*>(document);
    if (!owner->m_pNodePool) owner->m_pNodePool.reset(new CNodePool);
    return owner->m_pNodePool->Allocate(size);
}

void CXmlDocument::FreeNode(void* node, std::size_t size) noexcept {
    if (!node) return;
    NodeHeader* header = static_cast<NodeHeader*>(node) - 1;
    if (header->pool)
        static_cast<CNodePool*>(header->pool)->Free(header, size);
    else
        ::operator delete(header);
}

const std::string* CXmlDocument::InternName(const char* text, size_t length) const {
    if (length == 0) return &EmptyName();
    // Like the pool, the table is storage: interning does not change the tree.
    CXmlDocument* owner = const_cast<CXmlDocument*>(this);
    if (!owner->m_pNameTable) owner->m_pNameTable.reset(new CNameTable);
    return owner->m_pNameTable->Intern(text, length);
}

// ---------------------------------------------------------------------------------------------
// CXmlAttribute

struct CXmlAttribute::COwnedNames {
    std::string localName;
    std::string namespaceUri;
};

void* CXmlAttribute::operator new(std::size_t size) { return CXmlDocument::AllocateNode(size, nullptr); }
void* CXmlAttribute::operator new(std::size_t size, const CXmlDocument* pool) {
    return CXmlDocument::AllocateNode(size, pool);
}
void CXmlAttribute::operator delete(void* p, std::size_t size) noexcept { CXmlDocument::FreeNode(p, size); }
void CXmlAttribute::operator delete(void* p, const CXmlDocument*) noexcept {
    CXmlDocument::FreeNode(p, sizeof(CXmlAttribute));
}

CXmlAttribute::CXmlAttribute(const std::string& localName, const std::string& value, const std::string& namespaceUri)
    : CInstanceMonitor("CXmlAttribute"), m_value(value), m_pOwnedNames(new COwnedNames{localName, namespaceUri}) {
    m_localName = &m_pOwnedNames->localName;
    m_namespaceUri = &m_pOwnedNames->namespaceUri;
}

CXmlAttribute::CXmlAttribute(const std::string* localName, const char* value, size_t valueLength,
                             const std::string* namespaceUri)
    : CInstanceMonitor("CXmlAttribute"), m_localName(localName), m_value(value, valueLength),
      m_namespaceUri(namespaceUri) {}

CXmlAttribute::~CXmlAttribute() {}

bool CXmlAttribute::IsNilAttribute() const { return IsInstanceNamespace(*m_namespaceUri) && *m_localName == "nil"; }

bool CXmlAttribute::IsNamespaceAttribute() const {
    const std::string& name = *m_localName;
    return IsInstanceNamespace(*m_namespaceUri) &&
           (name == "xmlns" || name == "type" || name == "schemaLocation" || name == "noNamespaceSchemaLocation");
}

// ---------------------------------------------------------------------------------------------
// CXmlElement

struct CXmlElement::COwnedNames {
    std::string localName;
    std::string namespaceUri;
};

void* CXmlElement::operator new(std::size_t size) { return CXmlDocument::AllocateNode(size, nullptr); }
void* CXmlElement::operator new(std::size_t size, const CXmlDocument* pool) {
    return CXmlDocument::AllocateNode(size, pool);
}
void CXmlElement::operator delete(void* p, std::size_t size) noexcept { CXmlDocument::FreeNode(p, size); }
void CXmlElement::operator delete(void* p, const CXmlDocument*) noexcept {
    CXmlDocument::FreeNode(p, sizeof(CXmlElement));
}

CXmlElement::CXmlElement(const CXmlDocument* document)
    : CInstanceMonitor("CXmlElement"), m_pDocument(document), m_pLastChild(nullptr), m_localName(&EmptyName()),
      m_namespaceUri(&EmptyName()) {}

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
}

const std::string* CXmlElement::Name(const std::string& text, bool isNamespace) {
    if (m_pDocument) return m_pDocument->InternName(text.data(), text.size());
    if (!m_pOwnedNames) m_pOwnedNames.reset(new COwnedNames);
    std::string& owned = isNamespace ? m_pOwnedNames->namespaceUri : m_pOwnedNames->localName;
    owned = text;
    return &owned;
}

void CXmlElement::SetElementName(const std::string& name) { m_localName = Name(name, false); }

void CXmlElement::SetNamespace(const std::string& namespaceUri) { m_namespaceUri = Name(namespaceUri, true); }

const std::string& CXmlElement::GetAttribute(const std::string& localName, const std::string& namespaceUri) const {
    for (const auto& attribute : m_attributes) {
        if (*attribute->m_localName == localName && *attribute->m_namespaceUri == namespaceUri)
            return attribute->m_value;
    }
    return EmptyName();
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
    std::unique_ptr<CXmlElement> child(new (m_pDocument) CXmlElement(m_pDocument));
    CXmlElement* raw = child.get();
    if (m_pLastChild)
        m_pLastChild->m_pNextSibling = std::move(child);
    else
        m_pFirstChild = std::move(child);
    m_pLastChild = raw;
    return raw;
}

void CXmlElement::AddAttribute(const std::string& localName, const std::string& value,
                               const std::string& namespaceUri) {
    if (!m_pDocument) {
        m_attributes.emplace_back(new CXmlAttribute(localName, value, namespaceUri));
        return;
    }
    AddAttribute(localName.data(), localName.size(), value.data(), value.size(), namespaceUri.data(),
                 namespaceUri.size());
}

void CXmlElement::AddAttribute(const char* localName, size_t localLength, const char* value, size_t valueLength,
                               const char* namespaceUri, size_t namespaceLength) {
    if (!m_pDocument) {
        AddAttribute(std::string(localName, localLength), std::string(value, valueLength),
                     std::string(namespaceUri, namespaceLength));
        return;
    }
    m_attributes.emplace_back(new (m_pDocument) CXmlAttribute(m_pDocument->InternName(localName, localLength), value,
                                                              valueLength,
                                                              m_pDocument->InternName(namespaceUri, namespaceLength)));
}

CXmlElement* CXmlElement::RemoveLastChildElement() {
    if (!m_pFirstChild) return nullptr;
    if (m_pFirstChild.get() == m_pLastChild) {
        m_pLastChild = nullptr;
        return m_pFirstChild.release();
    }
    CXmlElement* beforeLast = m_pFirstChild.get();
    while (beforeLast->m_pNextSibling.get() != m_pLastChild) beforeLast = beforeLast->m_pNextSibling.get();
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
    : CInstanceMonitor("CXmlDocument"), m_pElementHook(hook), m_pContext(&context) {
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
    m_pData.reset();
    m_dataLength = 0;
    m_namespaceAliases.clear();
}

std::string CXmlDocument::LookupNamespaceFromAlias(const char* alias) const {
    auto found = m_namespaceAliases.find(alias ? alias : "");
    return found == m_namespaceAliases.end() ? std::string() : found->second;
}

CXmlElement* CXmlDocument::AddElement_Int(const char* namespaceUri, size_t namespaceLength, const char* localName,
                                          size_t localLength) {
    CXmlElement* element;
    if (!m_pDocumentElement) {
        m_pDocumentElement.reset(new (this) CXmlElement(this));
        element = m_pDocumentElement.get();
    } else {
        if (m_elementStack.empty()) throw CQvException("The document has no open element to add a child element to");
        element = m_elementStack.back()->CreateNewChildElement();
    }
    element->m_namespaceUri = InternName(namespaceUri, namespaceLength);
    element->m_localName = InternName(localName, localLength);
    m_elementStack.push_back(element);
    return element;
}

CXmlElement* CXmlDocument::AddDocElement(const char* namespaceUri, const char* localName) {
    m_pDocumentElement.reset(new (this) CXmlElement(this));
    CXmlElement* element = m_pDocumentElement.get();
    element->m_namespaceUri = namespaceUri ? InternName(namespaceUri, std::strlen(namespaceUri)) : &EmptyName();
    element->m_localName = localName ? InternName(localName, std::strlen(localName)) : &EmptyName();
    m_elementStack.push_back(element);
    return element;
}

CXmlElement* CXmlDocument::AddChildElement(const char* namespaceUri, const char* localName) {
    if (m_elementStack.empty()) throw CQvException("The document has no open element to add a child element to");
    CXmlElement* element = m_elementStack.back()->CreateNewChildElement();
    element->m_namespaceUri = namespaceUri ? InternName(namespaceUri, std::strlen(namespaceUri)) : &EmptyName();
    element->m_localName = localName ? InternName(localName, std::strlen(localName)) : &EmptyName();
    m_elementStack.push_back(element);
    return element;
}

void CXmlDocument::AddElementAttribute(CXmlElement* element, const std::string& localName, const std::string& value,
                                       const std::string& namespaceUri) {
    element->AddAttribute(localName, value, namespaceUri);
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text, unsigned long length) {
    if (length == 0 || text == nullptr || text[0] == '\0') return;
    // The text ends at `length` or at the first NUL; each run between carriage returns
    // is appended whole.
    const char* p = text;
    const char* end = text + strnlen(text, length);
    while (p != end) {
        const char* cr = static_cast<const char*>(std::memchr(p, '\r', static_cast<size_t>(end - p)));
        const char* runEnd = cr ? cr : end;
        if (runEnd != p) element->AppendText(p, static_cast<int>(runEnd - p));
        p = cr ? cr + 1 : end;
    }
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

void CXmlDocument::TakeData(const unsigned char* data, uint64_t length) {
    m_pData.reset(new unsigned char[length]);
    std::memcpy(m_pData.get(), data, length);
    m_dataLength = length;
}

void CXmlDocument::LoadXml(const char* text) {
    Cleanup();
    const size_t length = text ? std::strlen(text) : 0;
    m_dataLength = length;
    if (length == 0) throw CQvException("XML String is empty!");
    TakeData(reinterpret_cast<const unsigned char*>(text), length);
    ParseText();
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
    m_dataLength = bytes;
    ParseText();
}

void CXmlDocument::LoadXmlStream(unsigned char* data, unsigned long length) {
    Cleanup();
    m_dataLength = length;
    if (length == 0 || data == nullptr) throw CQvException("XML Stream is empty!");
    TakeData(data, length);
    Parse();
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
    Parse();
}

void CXmlDocument::Parse() { ParseText(); }

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
