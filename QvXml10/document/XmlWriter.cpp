#include "document/XmlWriter.h"

#include "foundation/QvException.h"
#include "internal/Limits.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

// ---------------------------------------------------------------------------
// CXmlWriterContext

CXmlWriter::CXmlWriterContext::CXmlWriterContext(const std::string& localName, const std::string& namespaceUri,
                                                 std::unique_ptr<CXmlWriterContext>&& pParent)
    : CInstanceMonitor("CXmlWriterContext"), m_childCount(0), m_startTagOpen(true), m_depth(0),
      m_namespaceUri(namespaceUri), m_localName(localName), m_pParent(), m_hasAttributes(false), m_defaultNamespace(),
      m_pNamespaceMap(nullptr), m_inheritsScope(true), m_ownsNamespaceMap(false), m_pScope(this), m_pSpareMap(),
      m_pNamePrefix(nullptr), m_namePrefixKnown(false) {
    if (!pParent) {
        // Without a parent there is no scope to share: start an empty one.
        m_pNamespaceMap = new NamespaceMap();
        m_inheritsScope = false;
        m_ownsNamespaceMap = true;
        return;
    }
    // Nothing below throws, so the parent is taken only when the context stands.
    m_depth = pParent->m_depth + 1;
    m_pNamespaceMap = pParent->m_pNamespaceMap;
    m_pScope = pParent->m_pScope;
    m_pParent = std::move(pParent);
}

CXmlWriter::CXmlWriterContext::CXmlWriterContext(const std::string& localName, const std::string& namespaceUri,
                                                 const std::string& defaultNamespace, const NamespaceMap* pNamespaceMap,
                                                 std::unique_ptr<CXmlWriterContext>&& pParent)
    : CInstanceMonitor("CXmlWriterContext"), m_childCount(0), m_startTagOpen(true), m_depth(0),
      m_namespaceUri(namespaceUri), m_localName(localName), m_pParent(), m_hasAttributes(false),
      m_defaultNamespace(defaultNamespace), m_pNamespaceMap(nullptr), m_inheritsScope(false), m_ownsNamespaceMap(true),
      m_pScope(this), m_pSpareMap(), m_pNamePrefix(nullptr), m_namePrefixKnown(false) {
    m_pNamespaceMap = pNamespaceMap != nullptr ? new NamespaceMap(*pNamespaceMap) : new NamespaceMap();
    m_pParent = std::move(pParent);
}

CXmlWriter::CXmlWriterContext::~CXmlWriterContext() {
    if (m_ownsNamespaceMap) delete m_pNamespaceMap;
    // Unlink the ancestors one by one, so that a deep chain is not destroyed by recursion.
    std::unique_ptr<CXmlWriterContext> ancestor = std::move(m_pParent);
    while (ancestor) {
        std::unique_ptr<CXmlWriterContext> next = std::move(ancestor->m_pParent);
        ancestor = std::move(next);
    }
}

inline void CXmlWriter::CXmlWriterContext::Reuse(const std::string& localName, const std::string& namespaceUri,
                                                 std::unique_ptr<CXmlWriterContext>&& pParent) {
    // The names first: they are all that can throw, and the parent is still the caller's then.
    // A sibling often has the same names as the element this context last stood for.
    if (m_namespaceUri != namespaceUri) m_namespaceUri = namespaceUri;
    if (m_localName != localName) m_localName = localName;
    if (m_ownsNamespaceMap) m_pSpareMap.reset(m_pNamespaceMap);
    m_pNamePrefix = nullptr;
    m_namePrefixKnown = false;
    m_childCount = 0;
    m_startTagOpen = true;
    m_hasAttributes = false;
    m_defaultNamespace.clear();
    m_inheritsScope = true;
    m_ownsNamespaceMap = false;
    m_depth = pParent->m_depth + 1;
    m_pNamespaceMap = pParent->m_pNamespaceMap;
    m_pScope = pParent->m_pScope;
    m_pParent = std::move(pParent);
}

namespace {

// Makes target equal to source, keeping the nodes and strings of the keys they share,
// so that a map that differs in a few entries is brought up to date without
// allocating. An entry of target under keepKey stays as it is.
void Synchronize(CXmlWriter::NamespaceMap& target, const CXmlWriter::NamespaceMap& source, const std::string* keepKey) {
    auto t = target.begin();
    const auto dropOrKeep = [&] {
        if (keepKey != nullptr && t->first == *keepKey)
            ++t;
        else
            t = target.erase(t);
    };
    for (const auto& entry : source) {
        int order = 1;
        while (t != target.end() && (order = t->first.compare(entry.first)) < 0)
            dropOrKeep();
        if (t != target.end() && order == 0) {
            if (t->second != entry.second) t->second = entry.second;
            ++t;
        } else {
            target.emplace_hint(t, entry.first, entry.second);
        }
    }
    while (t != target.end())
        dropOrKeep();
}

} // namespace

void CXmlWriter::CXmlWriterContext::OwnScope(bool copyDefaultNamespace, const std::string* pendingUri) {
    std::unique_ptr<NamespaceMap> map = std::move(m_pSpareMap);
    if (map)
        Synchronize(*map, *m_pNamespaceMap, pendingUri);
    else
        map = std::make_unique<NamespaceMap>(*m_pNamespaceMap);
    if (copyDefaultNamespace) m_defaultNamespace = m_pScope->m_defaultNamespace;
    m_pNamespaceMap = map.release();
    m_ownsNamespaceMap = true;
    m_inheritsScope = false;
    m_pScope = this;
}

void CXmlWriter::CXmlWriterContext::SetDefaultNamespace(const std::string& namespaceUri) {
    if (m_inheritsScope) OwnScope(false, nullptr);
    m_defaultNamespace = namespaceUri;
    m_namePrefixKnown = false;
}

const std::string& CXmlWriter::CXmlWriterContext::SetAlias(const std::string& namespaceUri, const std::string& alias) {
    if (m_inheritsScope) OwnScope(true, &namespaceUri);
    std::string& value = (*m_pNamespaceMap)[namespaceUri];
    value = alias;
    if (m_namePrefixKnown && namespaceUri == m_namespaceUri) m_namePrefixKnown = false;
    return value;
}

void CXmlWriter::CXmlWriterContext::SetNamespaceMapValue(const std::string& namespaceUri, const std::string& alias) {
    SetAlias(namespaceUri, alias);
}

const std::string& CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const std::string& namespaceUri) {
    return (*m_pNamespaceMap)[namespaceUri];
}

const std::string& CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const char* namespaceUri) {
    return (*m_pNamespaceMap)[OrEmpty(namespaceUri)];
}

// ---------------------------------------------------------------------------
// CXmlWriter

CXmlWriter::CXmlWriter(const char* label)
    : CInstanceMonitor(label), m_defaultNamespace(), m_pContext(), m_namespaceMap(), m_pSpareContexts() {
    // Not the virtual call: a derived writer is not yet constructed here.
    CXmlWriter::AddNamespace("xml", XML_NAMESPACE);
}

CXmlWriter::~CXmlWriter() = default;

void CXmlWriter::Open() {}

void CXmlWriter::Close() {
    if (m_pContext) throw CQvException("An Element has not been closed.");
}

void CXmlWriter::SetDefaultNamespace(const std::string& namespaceUri) {
    if (m_pContext)
        m_pContext->SetDefaultNamespace(namespaceUri);
    else
        m_defaultNamespace = namespaceUri;
}

void CXmlWriter::AddNamespace(const std::string& alias, const std::string& namespaceUri) {
    if (m_pContext)
        m_pContext->SetNamespaceMapValue(namespaceUri, alias);
    else
        m_namespaceMap[namespaceUri] = alias;
}

void CXmlWriter::PushContext(const std::string& localName, const std::string& namespaceUri) {
    // Objects write themselves recursively, one level of calls per element: a tree built
    // by hand nests no deeper than a loaded document may.
    if (m_pContext && m_pContext->m_depth + 1 >= Internal::kMaxNestingDepth) Internal::ThrowWritingTooDeep();
    if (!m_pContext) {
        m_pContext.reset(new CXmlWriterContext(localName, namespaceUri, m_defaultNamespace, &m_namespaceMap, nullptr));
    } else if (m_pSpareContexts) {
        std::unique_ptr<CXmlWriterContext> context = std::move(m_pSpareContexts);
        m_pSpareContexts = std::move(context->m_pParent);
        try {
            context->Reuse(localName, namespaceUri, std::move(m_pContext));
        } catch (...) {
            // Only the names can fail, before the parent is taken; keep the spare.
            context->m_pParent = std::move(m_pSpareContexts);
            m_pSpareContexts = std::move(context);
            throw;
        }
        m_pContext = std::move(context);
    } else {
        m_pContext.reset(new CXmlWriterContext(localName, namespaceUri, std::move(m_pContext)));
    }
}

std::string CXmlWriter::NsIntToString(int n) {
    const char prefix[2] = {static_cast<char>('A' + n / 26), static_cast<char>('A' + n % 26)};
    return std::string(prefix, 2);
}

std::string CXmlWriter::GetUniquePrefix(const NamespaceMap& namespaces) {
    for (int n = 0;; ++n) {
        std::string prefix = NsIntToString(n);
        bool taken = false;
        for (const auto& entry : namespaces) {
            if (entry.second == prefix) {
                taken = true;
                break;
            }
        }
        if (!taken) return prefix;
    }
}

} // namespace QvXmlLib10
