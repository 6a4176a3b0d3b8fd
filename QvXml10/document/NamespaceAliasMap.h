#pragma once

#include "../foundation/QvExport.h"

#include <map>
#include <string>

namespace QvXmlLib10 {

// The prefixes that output should use, by namespace URI. Entries are kept in byte
// order of the URI; that order is the one of GetNamespaceAt and of the declarations
// on the root element.
class QVXML_API CNamespaceAliasMap {
public:
    CNamespaceAliasMap();
    CNamespaceAliasMap(const CNamespaceAliasMap& other);
    CNamespaceAliasMap& operator=(const CNamespaceAliasMap& other);
    virtual ~CNamespaceAliasMap();

    // Sets the alias of a namespace, replacing the one it had.
    void Add(const char* alias, const char* namespaceUri);
    // Silent when the namespace has no entry.
    void RemoveNamespace(const char* namespaceUri);

    int GetNamespaceCount() const;
    // The URI at that position in key order; a negative index gives the first one.
    // An index at or past the count gives the empty string.
    std::string GetNamespaceAt(int index) const;
    bool DoesNamespaceExist(const char* namespaceUri) const;
    bool DoesAliasExist(const char* alias) const;
    // The alias of a namespace. An unknown namespace is entered with an empty alias
    // (the map grows, although the call is const) and the empty string is returned.
    std::string GetAliasFromNamespace(const char* namespaceUri) const;
    // The first namespace in key order with that alias; throws CQvException if none.
    std::string GetNamespaceFromAlias(const char* alias) const;

private:
    // URI to alias. Mutable because GetAliasFromNamespace enters unknown URIs.
    mutable std::map<std::string, std::string> m_namespaces;
};

} // namespace QvXmlLib10
