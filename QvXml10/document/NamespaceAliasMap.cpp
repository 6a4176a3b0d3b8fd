#include "document/NamespaceAliasMap.h"

#include "foundation/QvException.h"
#include "internal/Text.h"

#include <iterator>

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

namespace {

// A null argument stands for the empty text.

} // namespace

CNamespaceAliasMap::CNamespaceAliasMap() = default;

CNamespaceAliasMap::CNamespaceAliasMap(const CNamespaceAliasMap& other) = default;

CNamespaceAliasMap& CNamespaceAliasMap::operator=(const CNamespaceAliasMap& other) = default;

CNamespaceAliasMap::~CNamespaceAliasMap() = default;

void CNamespaceAliasMap::Add(const char* alias, const char* namespaceUri) {
    m_namespaces[OrEmpty(namespaceUri)] = OrEmpty(alias);
}

void CNamespaceAliasMap::RemoveNamespace(const char* namespaceUri) { m_namespaces.erase(OrEmpty(namespaceUri)); }

int CNamespaceAliasMap::GetNamespaceCount() const { return static_cast<int>(m_namespaces.size()); }

std::string CNamespaceAliasMap::GetNamespaceAt(int index) const {
    if (index < 0) index = 0;
    if (static_cast<size_t>(index) >= m_namespaces.size()) return std::string();
    auto it = m_namespaces.begin();
    std::advance(it, index);
    return it->first;
}

bool CNamespaceAliasMap::DoesNamespaceExist(const char* namespaceUri) const {
    return m_namespaces.find(OrEmpty(namespaceUri)) != m_namespaces.end();
}

bool CNamespaceAliasMap::DoesAliasExist(const char* alias) const {
    const char* wanted = OrEmpty(alias);
    for (const auto& entry : m_namespaces) {
        if (entry.second == wanted) return true;
    }
    return false;
}

std::string CNamespaceAliasMap::GetAliasFromNamespace(const char* namespaceUri) const {
    return m_namespaces[OrEmpty(namespaceUri)];
}

std::string CNamespaceAliasMap::GetNamespaceFromAlias(const char* alias) const {
    const char* wanted = OrEmpty(alias);
    for (const auto& entry : m_namespaces) {
        if (entry.second == wanted) return entry.first;
    }
    throw CQvException(FormatString("Namespace alias [%s] not found", wanted));
}

} // namespace QvXmlLib10
