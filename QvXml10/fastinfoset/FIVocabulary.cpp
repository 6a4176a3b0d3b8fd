#include "fastinfoset/FIVocabulary.h"

namespace QvXmlLib10 {

namespace {

// The largest index the format can carry; no table grows beyond it.
constexpr uint64_t kMaxTableEntries = 1u << 20;

} // namespace

CFIVocabulary::CFIVocabulary() {
    AddPrefixName(FI_DEFAULT_PREFIX);
    AddNamespaceName(FI_DEFAULT_NAMESPACE);
    m_restrictedAlphabets.emplace_back(RESTRICTED_ALPHABET_VALUES_NUMERIC);
    m_restrictedAlphabets.emplace_back(RESTRICTED_ALPHABET_VALUES_DATE_TIME);
}

CFIVocabulary::~CFIVocabulary() {}

std::string CFIVocabulary::QualifiedNameKey(const std::string& prefix, const std::string& namespaceName,
                                            const std::string& localName) {
    std::string key;
    key.reserve(localName.size() + namespaceName.size() + prefix.size() + 2);
    key += localName;
    key += '\x01';
    key += namespaceName;
    key += '\x01';
    key += prefix;
    return key;
}

void CFIVocabulary::AddElement(std::string prefix, std::string namespaceName, std::string localName) {
    AddQName(std::move(prefix), std::move(namespaceName), std::move(localName), m_elementNamesMap,
             m_elementNames.m_table);
}

void CFIVocabulary::AddAttribute(std::string prefix, std::string namespaceName, std::string localName) {
    AddQName(std::move(prefix), std::move(namespaceName), std::move(localName), m_attributeNamesMap,
             m_attributeNames.m_table);
}

void CFIVocabulary::AddQName(std::string prefix, std::string namespaceName, std::string localName, IndexMap& names,
                             std::vector<CQNameParts>& parts) {
    std::string key = QualifiedNameKey(prefix, namespaceName, localName);
    if (names.find(key) != names.end()) return;
    unsigned long prefixIndex = 0, namespaceIndex = 0, localNameIndex = 0;
    if (!prefix.empty() && !FindPrefixNameIndex(prefix, prefixIndex)) {
        AddPrefixName(prefix);
        prefixIndex = static_cast<unsigned long>(m_prefixNames.m_table.size());
    }
    if (!namespaceName.empty() && !FindNamespaceNameIndex(namespaceName, namespaceIndex)) {
        AddNamespaceName(namespaceName);
        namespaceIndex = static_cast<unsigned long>(m_namespaceNames.m_table.size());
    }
    if (!FindLocalNameIndex(localName, localNameIndex)) {
        AddLocalName(localName);
        localNameIndex = static_cast<unsigned long>(m_localNames.m_table.size());
    }
    AddValueToMap(std::move(key), names);
    AddQNameToVector(prefixIndex, namespaceIndex, localNameIndex, parts);
}

void CFIVocabulary::AddElementValue(std::string value) {
    AddValueToMap(value, m_characterChunksMap);
    AddValueToVector(std::move(value), m_characterChunks.m_table);
}

void CFIVocabulary::AddAttributeValue(std::string value) {
    AddValueToMap(value, m_attributeValuesMap);
    AddValueToVector(std::move(value), m_attributeValues.m_table);
}

void CFIVocabulary::AddLocalName(std::string localName) {
    AddValueToMap(localName, m_localNamesMap);
    AddValueToVector(std::move(localName), m_localNames.m_table);
}

void CFIVocabulary::AddNamespaceName(std::string namespaceName) {
    AddValueToMap(namespaceName, m_namespaceNamesMap);
    AddValueToVector(std::move(namespaceName), m_namespaceNames.m_table);
}

void CFIVocabulary::AddPrefixName(std::string prefix) {
    AddValueToMap(prefix, m_prefixNamesMap);
    AddValueToVector(std::move(prefix), m_prefixNames.m_table);
}

void CFIVocabulary::AddValueToMap(std::string value, IndexMap& table) {
    if (table.size() >= kMaxTableEntries) return;
    const uint64_t index = table.size() + 1;
    table.emplace(std::move(value), index);
}

void CFIVocabulary::AddValueToVector(std::string value, std::vector<std::string>& table) {
    if (table.size() >= kMaxTableEntries) return;
    table.push_back(std::move(value));
}

void CFIVocabulary::AddQNameToVector(unsigned long prefixIndex, unsigned long namespaceIndex,
                                     unsigned long localNameIndex, std::vector<CQNameParts>& parts) {
    if (parts.size() >= kMaxTableEntries) return;
    parts.push_back(CQNameParts{prefixIndex, namespaceIndex, localNameIndex});
}

bool CFIVocabulary::FindIndex(const IndexMap& table, std::string value, unsigned long& index) const {
    const auto found = table.find(value);
    if (found == table.end()) return false;
    index = static_cast<unsigned long>(found->second);
    return true;
}

bool CFIVocabulary::FindLocalNameIndex(std::string localName, unsigned long& index) const {
    return FindIndex(m_localNamesMap, std::move(localName), index);
}

bool CFIVocabulary::FindNamespaceNameIndex(std::string namespaceName, unsigned long& index) const {
    return FindIndex(m_namespaceNamesMap, std::move(namespaceName), index);
}

bool CFIVocabulary::FindPrefixNameIndex(std::string prefix, unsigned long& index) const {
    return FindIndex(m_prefixNamesMap, std::move(prefix), index);
}

} // namespace QvXmlLib10
