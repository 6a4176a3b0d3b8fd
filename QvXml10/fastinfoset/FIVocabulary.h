#pragma once

#include "../foundation/QvExport.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace QvXmlLib10 {

// What a new vocabulary holds: the xml prefix and namespace at index 1, and the two
// restricted alphabets (numeric, date and time), each ending in a blank.
inline constexpr const char FI_DEFAULT_PREFIX[] = "xml";
inline constexpr const char FI_DEFAULT_NAMESPACE[] = "http://www.w3.org/XML/1998/namespace";
inline constexpr const char RESTRICTED_ALPHABET_VALUES_NUMERIC[] = "0123456789-+.e ";
inline constexpr const char RESTRICTED_ALPHABET_VALUES_DATE_TIME[] = "0123456789-:TZ ";

// The Fast Infoset tables. Every table exists twice: a map from string to index for
// a writer and an array of strings for a reader. Indices are one-based; 0 means
// absent. No table grows beyond 2^20 entries, and an addition beyond that is dropped
// without a report.
class QVXML_API CFIVocabulary {
public:
    // Map from a string (or a qualified-name key) to its index.
    using IndexMap = std::map<std::string, uint64_t>;

    // One qualified name as indices into the prefix, namespace and local name tables.
    struct CQNameParts {
        uint64_t m_prefixIndex;    // 0: no prefix
        uint64_t m_namespaceIndex; // 0: no namespace
        uint64_t m_localNameIndex;
    };

    // Strings by index: entry 0 is index 1.
    class QVXML_API CFIStringTable {
    public:
        using const_iterator = std::vector<std::string>::const_iterator;
        virtual ~CFIStringTable() = default;
        const_iterator begin() const { return m_table.begin(); }
        const_iterator end() const { return m_table.end(); }

        std::vector<std::string> m_table;
    };

    // Qualified names by index: entry 0 is index 1.
    class QVXML_API CFIQNameTable {
    public:
        using const_iterator = std::vector<CQNameParts>::const_iterator;
        virtual ~CFIQNameTable() = default;
        const_iterator begin() const { return m_table.begin(); }
        const_iterator end() const { return m_table.end(); }

        std::vector<CQNameParts> m_table;
    };

    // The xml prefix and namespace at index 1, and the numeric and the date and time
    // restricted alphabets.
    CFIVocabulary();
    CFIVocabulary(const CFIVocabulary& other) = default;
    CFIVocabulary& operator=(const CFIVocabulary& other) = default;
    virtual ~CFIVocabulary();

    void AddElement(std::string prefix, std::string namespaceName, std::string localName);
    void AddAttribute(std::string prefix, std::string namespaceName, std::string localName);
    // Adds the name, and its parts that are not known yet, unless the key is in `names`.
    void AddQName(std::string prefix, std::string namespaceName, std::string localName, IndexMap& names,
                  std::vector<CQNameParts>& parts);
    // These add to the map and to the array without looking for an equal entry first.
    void AddElementValue(std::string value);
    void AddAttributeValue(std::string value);
    void AddLocalName(std::string localName);
    void AddNamespaceName(std::string namespaceName);
    void AddPrefixName(std::string prefix);

    // A new key gets the map's size plus one; a known key keeps its index.
    void AddValueToMap(std::string value, IndexMap& table);
    void AddValueToVector(std::string value, std::vector<std::string>& table);
    void AddQNameToVector(unsigned long prefixIndex, unsigned long namespaceIndex, unsigned long localNameIndex,
                          std::vector<CQNameParts>& parts);

    // True with the index stored if the value is a key; otherwise index stays as it was.
    bool FindIndex(const IndexMap& table, std::string value, unsigned long& index) const;
    bool FindLocalNameIndex(std::string localName, unsigned long& index) const;
    bool FindNamespaceNameIndex(std::string namespaceName, unsigned long& index) const;
    bool FindPrefixNameIndex(std::string prefix, unsigned long& index) const;

    const CFIQNameTable& GetAttributeNamesTable() const { return m_attributeNames; }
    const CFIStringTable& GetAttributeValuesTable() const { return m_attributeValues; }
    const CFIQNameTable& GetElementNamesTable() const { return m_elementNames; }
    const CFIStringTable& GetCharacterChunksTable() const { return m_characterChunks; }
    const CFIStringTable& GetLocalNamesTable() const { return m_localNames; }
    const CFIStringTable& GetNamespaceNamesTable() const { return m_namespaceNames; }
    const CFIStringTable& GetPrefixNamesTable() const { return m_prefixNames; }

    // The key of a qualified name: local name, 0x01, namespace, 0x01, prefix.
    static std::string QualifiedNameKey(const std::string& prefix, const std::string& namespaceName,
                                        const std::string& localName);

    std::vector<std::string> m_restrictedAlphabets;
    IndexMap m_attributeNamesMap;
    IndexMap m_attributeValuesMap;
    IndexMap m_elementNamesMap;
    IndexMap m_characterChunksMap;
    IndexMap m_localNamesMap;
    IndexMap m_namespaceNamesMap;
    IndexMap m_prefixNamesMap;
    CFIQNameTable m_attributeNames;
    CFIStringTable m_attributeValues;
    CFIQNameTable m_elementNames;
    CFIStringTable m_characterChunks;
    CFIStringTable m_localNames;
    CFIStringTable m_namespaceNames;
    CFIStringTable m_prefixNames;
};

} // namespace QvXmlLib10
