#include "fastinfoset/FastInfosetWriter.h"

#include "fastinfoset/FastInfosetBinaryData.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "internal/Constants.h"
#include "internal/FixedWidthEncoding.h"
#include "internal/Hashing.h"

#include <algorithm>
#include <cstring>

namespace QvXmlLib10 {

namespace {

constexpr unsigned char kTerminator = 0xF0;
constexpr unsigned char kDoubleTerminator = 0xFF;

// Equal strings, compared inline: names and namespaces are short.
bool Same(const std::string& a, const std::string& b) {
    return a.size() == b.size() && Internal::SameBytes(a.data(), b.data(), a.size());
}

} // namespace

class CFastInfosetWriter::CIndexTable {
public:
    void Seed(CFIVocabulary::IndexMap&& map) {
        for (const auto& entry : map) {
            const std::string& key = entry.first;
            const size_t hash = Internal::HashBytes(key.data(), key.size());
            if (!Find(key.data(), key.size(), hash)) Insert(key.data(), key.size(), hash, uint32_t(entry.second));
        }
        map.clear();
    }

    const uint32_t* Find(const char* key, size_t length, size_t hash) const {
        return m_table.Find(hash, [&](uint32_t index) {
            const char* const stored = m_keys.data() + m_keyOffsets[index];
            uint32_t storedLength;
            std::memcpy(&storedLength, stored, sizeof storedLength);
            return storedLength == length && Internal::SameBytes(stored + sizeof storedLength, key, length);
        });
    }

    void Add(const char* key, size_t length, size_t hash) {
        if (m_count >= (1u << 20)) return;
        Insert(key, length, hash, m_count + 1);
    }

private:
    void Insert(const char* key, size_t length, size_t hash, uint32_t index) {
        if (index >= m_keyOffsets.size()) m_keyOffsets.resize(std::max<size_t>(index + 1, 2 * m_keyOffsets.size()));
        m_keyOffsets[index] = m_keys.size();
        const uint32_t length32 = static_cast<uint32_t>(length);
        const char* const lengthOctets = reinterpret_cast<const char*>(&length32);
        m_keys.insert(m_keys.end(), lengthOctets, lengthOctets + sizeof length32);
        m_keys.insert(m_keys.end(), key, key + length);
        m_table.Insert(hash, index);
        ++m_count;
    }

    Internal::CProbeTable<uint32_t> m_table; // entry: the key's index
    std::vector<char> m_keys;                // per key: its length (uint32_t), then its octets
    std::vector<uint64_t> m_keyOffsets;      // by index: where the key starts in m_keys
    uint32_t m_count = 0;
};

class CFastInfosetWriter::CNameTable {
public:
    // Over the local name and the lengths of the other parts: names that differ only in
    // their namespace or prefix are rare, and Find compares all three parts anyway.
    static size_t Hash(const std::string& prefix, const std::string& namespaceUri, const std::string& localName) {
        return Internal::HashBytes(localName.data(), localName.size(),
                                   Internal::kHashSeed + namespaceUri.size() * 31 + prefix.size());
    }

    void Seed(CFIVocabulary::IndexMap&& map) {
        for (const auto& entry : map) {
            // The key is local name, 0x01, namespace, 0x01, prefix.
            const std::string& key = entry.first;
            const size_t first = key.find('\x01');
            const size_t second = first == std::string::npos ? std::string::npos : key.find('\x01', first + 1);
            CEntry name{second == std::string::npos ? std::string() : key.substr(second + 1),
                        second == std::string::npos ? std::string() : key.substr(first + 1, second - first - 1),
                        key.substr(0, first)};
            const size_t hash = Hash(name.m_prefix, name.m_namespaceUri, name.m_localName);
            const uint32_t index = static_cast<uint32_t>(entry.second);
            if (index >= m_entries.size()) m_entries.resize(std::max<size_t>(index + 1, 2 * m_entries.size()));
            m_entries[index] = std::move(name);
            m_table.Insert(hash, index);
            ++m_count;
        }
        map.clear();
    }

    const uint32_t* Find(const std::string& prefix, const std::string& namespaceUri, const std::string& localName,
                         size_t hash) const {
        return m_table.Find(hash, [&](uint32_t index) {
            const CEntry& entry = m_entries[index];
            return Same(entry.m_localName, localName) && Same(entry.m_namespaceUri, namespaceUri) &&
                   Same(entry.m_prefix, prefix);
        });
    }

    void Add(const std::string& prefix, const std::string& namespaceUri, const std::string& localName, size_t hash) {
        if (m_count >= (1u << 20)) return;
        ++m_count;
        if (m_count >= m_entries.size()) m_entries.resize(std::max<size_t>(m_count + 1, 2 * m_entries.size()));
        m_entries[m_count] = CEntry{prefix, namespaceUri, localName};
        m_table.Insert(hash, m_count);
    }

private:
    struct CEntry {
        std::string m_prefix;
        std::string m_namespaceUri;
        std::string m_localName;
    };
    Internal::CProbeTable<uint32_t> m_table; // entry: the name's index
    std::vector<CEntry> m_entries;           // by index
    uint32_t m_count = 0;
};

struct CFastInfosetWriter::CTables {
    CNameTable m_elementNames;
    CNameTable m_attributeNames;
    CIndexTable m_attributeValues;
    CIndexTable m_characterChunks;
    CIndexTable m_localNames;
    CIndexTable m_namespaceNames;
    CIndexTable m_prefixNames;
};

CFastInfosetWriter::CFastInfosetWriter(const CFastInfosetContext& context, CBinaryStream& stream)
    : CXmlWriter("CFastInfosetWriter"), m_pStream(&stream), m_pFIContext(&context), m_pPendingElement(),
      m_terminatorPending(false),
      m_pVocabulary(context.GetUseGeneratedVocabulary() ? new CFIVocabulary(*context.GetVocabulary())
                                                        : new CFIVocabulary()),
      m_pTables(new CTables), m_pOut(new unsigned char[kOutCapacity]), m_outUsed(0) {
    // The writer looks names and values up in hashed tables, which take the maps over.
    CFIVocabulary& v = *m_pVocabulary;
    m_pTables->m_elementNames.Seed(std::move(v.m_elementNamesMap));
    m_pTables->m_attributeNames.Seed(std::move(v.m_attributeNamesMap));
    m_pTables->m_attributeValues.Seed(std::move(v.m_attributeValuesMap));
    m_pTables->m_characterChunks.Seed(std::move(v.m_characterChunksMap));
    m_pTables->m_localNames.Seed(std::move(v.m_localNamesMap));
    m_pTables->m_namespaceNames.Seed(std::move(v.m_namespaceNamesMap));
    m_pTables->m_prefixNames.Seed(std::move(v.m_prefixNamesMap));
}

CFastInfosetWriter::~CFastInfosetWriter() {
    FlushQuietly();
    m_pVocabulary.reset();
}

// ---------------------------------------------------------------------------------------------
// Output

void CFastInfosetWriter::Put(const unsigned char* data, uint64_t length) {
    if (length <= kOutCapacity - m_outUsed) {
        unsigned char* const to = m_pOut.get() + m_outUsed;
        if (length <= 8) {
            // Most pieces are a few octets: no call for them.
            for (uint64_t i = 0; i < length; ++i)
                to[i] = data[i];
        } else {
            std::memcpy(to, data, length);
        }
        m_outUsed += length;
        return;
    }
    FlushOutput();
    if (length < kOutCapacity) {
        std::memcpy(m_pOut.get(), data, length);
        m_outUsed = length;
    } else {
        m_pStream->Append(const_cast<unsigned char*>(data), static_cast<unsigned long>(length));
    }
}

void CFastInfosetWriter::FlushOutput() {
    if (m_outUsed == 0) return;
    const uint64_t used = m_outUsed;
    m_outUsed = 0;
    m_pStream->Append(m_pOut.get(), static_cast<unsigned long>(used));
}

void CFastInfosetWriter::FlushQuietly() noexcept {
    try {
        FlushOutput();
    } catch (...) {
        // Only a stream whose data is shared refuses to grow; the octets are lost then.
    }
}

const unsigned char* CFastInfosetWriter::Utf8(const std::string& text, uint64_t& length) {
    if (ASCII_ONLY || !Internal::HasHighByte(text.data(), text.size())) {
        length = text.size();
        return reinterpret_cast<const unsigned char*>(text.data());
    }
    const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(text.c_str());
    m_scratch.assign(reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength());
    length = m_scratch.size();
    return reinterpret_cast<const unsigned char*>(m_scratch.data());
}

// ---------------------------------------------------------------------------------------------
// Integers

void CFastInfosetWriter::Integer1To2pw20Bit2(unsigned char prefix, uint64_t value) {
    if (value <= 64) {
        Put(static_cast<unsigned char>(prefix | (value - 1)));
    } else if (value <= 8256) {
        const uint64_t v = value - 65;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x40 | ((v >> 8) & 0x1F)),
                                        static_cast<unsigned char>(v)};
        Put(octets, 2);
    } else {
        const uint64_t v = value - 8257;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x60 | ((v >> 16) & 0x0F)),
                                        static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
        Put(octets, 3);
    }
}

void CFastInfosetWriter::Integer1To2pw20Bit3(unsigned char prefix, uint64_t value) {
    if (value <= 32) {
        Put(static_cast<unsigned char>(prefix | (value - 1)));
    } else if (value <= 2080) {
        const uint64_t v = value - 33;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x20 | ((v >> 8) & 0x07)),
                                        static_cast<unsigned char>(v)};
        Put(octets, 2);
    } else if (value <= 526368) {
        const uint64_t v = value - 2081;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x28 | ((v >> 16) & 0x07)),
                                        static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
        Put(octets, 3);
    } else {
        // One less than the reader adds back: such an index reads one higher (kept so).
        const uint64_t v = value - 526368;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x30),
                                        static_cast<unsigned char>((v >> 16) & 0x0F),
                                        static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
        Put(octets, 4);
    }
}

void CFastInfosetWriter::Integer1To2pw20Bit4(unsigned char prefix, uint64_t value) {
    if (value <= 16) {
        Put(static_cast<unsigned char>(prefix | (value - 1)));
    } else if (value <= 1040) {
        const uint64_t v = value - 17;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x10 | ((v >> 8) & 0x03)),
                                        static_cast<unsigned char>(v)};
        Put(octets, 2);
    } else if (value <= 263184) {
        const uint64_t v = value - 1041;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x14 | ((v >> 16) & 0x03)),
                                        static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
        Put(octets, 3);
    } else {
        const uint64_t v = value - 263185;
        const unsigned char octets[] = {static_cast<unsigned char>(prefix | 0x18),
                                        static_cast<unsigned char>((v >> 16) & 0x0F),
                                        static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
        Put(octets, 4);
    }
}

void CFastInfosetWriter::Integer0To2pw20Bit2(unsigned char prefix, uint64_t value) {
    if (value == 0)
        Put(static_cast<unsigned char>(prefix | 0x7F));
    else
        Integer1To2pw20Bit2(prefix, value);
}

// ---------------------------------------------------------------------------------------------
// Octet strings. A length of 0 takes the short form with (length - 1) wrapped: the
// octet FF and no data.

namespace {

// The length octets of a string: the short form up to shortMax, then one octet after
// the medium mark up to mediumMax, then four octets after the long mark.
unsigned LengthOctets(unsigned char* out, unsigned char prefix, uint64_t length, uint64_t shortMax, uint64_t mediumMax,
                      unsigned char mediumMark, unsigned char longMark) {
    if (length <= shortMax) {
        out[0] = static_cast<unsigned char>(prefix | (length - 1));
        return 1;
    }
    if (length <= mediumMax) {
        out[0] = static_cast<unsigned char>(prefix | mediumMark);
        out[1] = static_cast<unsigned char>(length - shortMax - 1);
        return 2;
    }
    const uint64_t v = length - mediumMax - 1;
    out[0] = static_cast<unsigned char>(prefix | longMark);
    out[1] = static_cast<unsigned char>(v >> 24);
    out[2] = static_cast<unsigned char>(v >> 16);
    out[3] = static_cast<unsigned char>(v >> 8);
    out[4] = static_cast<unsigned char>(v);
    return 5;
}

} // namespace

void CFastInfosetWriter::NonEmptyOctetStringBit5(unsigned char prefix, const unsigned char* data, uint64_t length) {
    unsigned char octets[5];
    Put(octets, LengthOctets(octets, prefix, length, 8, 264, 0x08, 0x0C));
    Put(data, length);
}

void CFastInfosetWriter::NonEmptyOctetStringBit7(unsigned char prefix, const unsigned char* data, uint64_t length) {
    unsigned char octets[5];
    Put(octets, LengthOctets(octets, prefix, length, 2, 258, 0x02, 0x03));
    Put(data, length);
}

void CFastInfosetWriter::NonEmptyOctetUTF8StringBit2(unsigned char prefix, const std::string& text) {
    uint64_t length = 0;
    const unsigned char* const data = Utf8(text, length);
    unsigned char octets[5];
    Put(octets, LengthOctets(octets, prefix, length, 64, 320, 0x40, 0x60));
    Put(data, length);
}

// ---------------------------------------------------------------------------------------------
// Encoded values

void CFastInfosetWriter::AppendRestrictedAlphabetString(uint64_t index, const std::string& text) {
    const std::string& alphabet = m_pVocabulary->m_restrictedAlphabets[index - 1];
    const uint64_t size = alphabet.size();
    if (size < 2 || size > (1u << 20))
        throw CQvException("Failed to write FastInfoset. Invalid Restricted Alphabet. Alphabet must contain between 2 "
                           "and 2^20 characters.");
    unsigned bits = 2;
    if (size >= 4) {
        bits = 3;
        while ((uint64_t(1) << bits) <= size)
            ++bits;
    }
    if (bits != 4 && bits != 8)
        throw CQvException("Failed to write FastInfoset. Unsupported Feature in AppendRestrictedAlphabetString.");
    // Position of each octet value in the alphabet, 0xFF for none (an alphabet of 4 or
    // 8 bits has fewer than 256 characters).
    unsigned char position[256];
    std::memset(position, 0xFF, sizeof position);
    for (uint64_t i = size; i-- > 0;)
        position[static_cast<unsigned char>(alphabet[i])] = static_cast<unsigned char>(i);
    const auto positionOf = [&](char c) {
        const unsigned char p = position[static_cast<unsigned char>(c)];
        if (p == 0xFF)
            throw CQvException("Failed to write FastInfoset. Invalid character not found for Restricted Alphabet.");
        return p;
    };
    m_scratch.clear();
    if (bits == 8) {
        for (const char c : text)
            m_scratch += static_cast<char>(positionOf(c));
        return;
    }
    const size_t n = text.size();
    for (size_t i = 0; i < n; i += 2) {
        const unsigned char high = positionOf(text[i]);
        const unsigned char low = i + 1 < n ? positionOf(text[i + 1]) : 0x0F;
        m_scratch += static_cast<char>((high << 4) | low);
    }
}

void CFastInfosetWriter::EncodeByAlgorithm(uint64_t index, const std::string& text) {
    unsigned char octets[8];
    if (const unsigned length = Internal::EncodeFixedWidth(static_cast<unsigned long>(index), text, octets)) {
        m_scratch.assign(reinterpret_cast<const char*>(octets), length);
        return;
    }
    CFastInfosetBinaryData data;
    data.SetAsEncodedString(static_cast<unsigned long>(index), text.c_str());
    m_scratch.assign(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

namespace {

const unsigned char* Bytes(const std::string& s) { return reinterpret_cast<const unsigned char*>(s.data()); }

} // namespace

void CFastInfosetWriter::EncodedCharacterStringBit5(unsigned char prefix, const std::string& text, ItemType type) {
    const CFastInfosetContext::EncodedCharacterString encoding = m_pFIContext->GetEncoding(type);
    switch (encoding.m_kind) {
    case CFastInfosetContext::EncodedKind_RestrictedAlphabet: {
        const uint64_t index = encoding.m_index;
        if (index != 1 && index != 2)
            throw CQvException(FormatString("Failed to write FastInfoset. Invalid Restricted Alphabet value [%d]",
                                            static_cast<int>(index)));
        AppendRestrictedAlphabetString(index, text);
        Put(static_cast<unsigned char>(prefix | 0x08 | (((index - 1) >> 6) & 0x03)));
        NonEmptyOctetStringBit7(static_cast<unsigned char>((index - 1) << 2), Bytes(m_scratch), m_scratch.size());
        break;
    }
    case CFastInfosetContext::EncodedKind_Algorithm: {
        const uint64_t index = encoding.m_index;
        if (index < 1 || index > 10)
            throw CQvException(FormatString("Failed to write FastInfoset. Invalid Encoding Algorithm value [%d]",
                                            static_cast<int>(index)));
        EncodeByAlgorithm(index, text);
        Put(static_cast<unsigned char>(prefix | 0x0C | (((index - 1) >> 6) & 0x03)));
        NonEmptyOctetStringBit7(static_cast<unsigned char>((index - 1) << 2), Bytes(m_scratch), m_scratch.size());
        break;
    }
    case CFastInfosetContext::EncodedKind_Default: {
        if (m_pFIContext->GetDefaultStringEncoding() == 1)
            throw CQvException(
                "Failed to write FastInfoset. Unsupported Feature UTF16BE in EncodedCharacterStringBit5.");
        uint64_t length = 0;
        const unsigned char* const data = Utf8(text, length);
        NonEmptyOctetStringBit7(prefix, data, length);
        break;
    }
    default:
        throw CQvException("Failed to write FastInfoset. Unknown encoding in EncodedCharacterStringBit7.");
    }
}

void CFastInfosetWriter::EncodedCharacterStringBit3(unsigned char prefix, const std::string& text, ItemType type) {
    const CFastInfosetContext::EncodedCharacterString encoding = m_pFIContext->GetEncoding(type);
    switch (encoding.m_kind) {
    case CFastInfosetContext::EncodedKind_RestrictedAlphabet: {
        const uint64_t index = encoding.m_index;
        if (index != 1 && index != 2)
            throw CQvException(FormatString("Failed to write FastInfoset. Invalid Restricted Alphabet value [%d]",
                                            static_cast<int>(index)));
        AppendRestrictedAlphabetString(index, text);
        Put(static_cast<unsigned char>(prefix | 0x20 | (((index - 1) >> 4) & 0x0F)));
        NonEmptyOctetStringBit5(static_cast<unsigned char>(((index - 1) & 0x0F) << 4), Bytes(m_scratch),
                                m_scratch.size());
        break;
    }
    case CFastInfosetContext::EncodedKind_Algorithm: {
        const uint64_t index = encoding.m_index;
        if (index < 1 || index > 10)
            throw CQvException(FormatString("Failed to write FastInfoset. Invalid Encoding Algorithm value [%d]",
                                            static_cast<int>(index)));
        EncodeByAlgorithm(index, text);
        Put(static_cast<unsigned char>(prefix | 0x30 | (((index - 1) >> 4) & 0x0F)));
        NonEmptyOctetStringBit5(static_cast<unsigned char>(((index - 1) & 0x0F) << 4), Bytes(m_scratch),
                                m_scratch.size());
        break;
    }
    case CFastInfosetContext::EncodedKind_Default: {
        if (m_pFIContext->GetDefaultStringEncoding() == 1)
            throw CQvException(
                "Failed to write FastInfoset. Unsupported Feature UTF16BE in EncodedCharacterStringBit5.");
        uint64_t length = 0;
        const unsigned char* const data = Utf8(text, length);
        NonEmptyOctetStringBit5(prefix, data, length);
        break;
    }
    default:
        throw CQvException("Failed to write FastInfoset. Unknown encoding in EncodedCharacterStringBit5.");
    }
}

// ---------------------------------------------------------------------------------------------
// Names and values

void CFastInfosetWriter::NamePart(const std::string& name, CIndexTable& table) {
    const size_t hash = Internal::HashBytes(name.data(), name.size());
    if (const uint32_t* index = table.Find(name.data(), name.size(), hash)) {
        Integer1To2pw20Bit2(0x80, *index);
        return;
    }
    NonEmptyOctetUTF8StringBit2(0, name);
    table.Add(name.data(), name.size(), hash);
}

void CFastInfosetWriter::LiteralQualifiedName(const std::string& prefix, const std::string& namespaceUri,
                                              const std::string& localName, CNameTable& names, size_t hash) {
    if (!prefix.empty()) NamePart(prefix, m_pTables->m_prefixNames);
    if (!namespaceUri.empty()) NamePart(namespaceUri, m_pTables->m_namespaceNames);
    NamePart(localName, m_pTables->m_localNames);
    names.Add(prefix, namespaceUri, localName, hash);
}

void CFastInfosetWriter::QualifiedNameOrIndexBit3(unsigned char prefixOctet, const std::string& prefix,
                                                  const std::string& namespaceUri, const std::string& localName,
                                                  CNameTable& names) {
    const size_t hash = CNameTable::Hash(prefix, namespaceUri, localName);
    if (const uint32_t* index = names.Find(prefix, namespaceUri, localName, hash)) {
        Integer1To2pw20Bit3(prefixOctet, *index);
        return;
    }
    Put(static_cast<unsigned char>(prefixOctet | (!prefix.empty() ? 0x3F : !namespaceUri.empty() ? 0x3D : 0x3C)));
    LiteralQualifiedName(prefix, namespaceUri, localName, names, hash);
}

void CFastInfosetWriter::QualifiedNameOrIndexBit2(unsigned char prefixOctet, const std::string& prefix,
                                                  const std::string& namespaceUri, const std::string& localName,
                                                  CNameTable& names) {
    const size_t hash = CNameTable::Hash(prefix, namespaceUri, localName);
    if (const uint32_t* index = names.Find(prefix, namespaceUri, localName, hash)) {
        Integer1To2pw20Bit2(prefixOctet, *index);
        return;
    }
    Put(static_cast<unsigned char>(prefixOctet | (!prefix.empty() ? 0x7B : !namespaceUri.empty() ? 0x79 : 0x78)));
    LiteralQualifiedName(prefix, namespaceUri, localName, names, hash);
}

void CFastInfosetWriter::NonIdentifyingStringOrIndexBit1(const std::string& text, CIndexTable& table,
                                                         uint64_t maxAddLength, ItemType type) {
    if (text.empty()) {
        Integer0To2pw20Bit2(0x80, 0);
        return;
    }
    if (text.size() >= maxAddLength) {
        EncodedCharacterStringBit3(0, text, type);
        return;
    }
    const size_t hash = Internal::HashBytes(text.data(), text.size());
    if (const uint32_t* index = table.Find(text.data(), text.size(), hash)) {
        Integer1To2pw20Bit2(0x80, *index);
        return;
    }
    EncodedCharacterStringBit3(0x40, text, type);
    table.Add(text.data(), text.size(), hash);
}

void CFastInfosetWriter::NonIdentifyingStringOrIndexBit3(unsigned char prefixOctet, const std::string& text,
                                                         CIndexTable& table, uint64_t maxAddLength, ItemType type) {
    if (text.size() >= maxAddLength) {
        EncodedCharacterStringBit5(prefixOctet, text, type);
        return;
    }
    const size_t hash = Internal::HashBytes(text.data(), text.size());
    if (const uint32_t* index = table.Find(text.data(), text.size(), hash)) {
        Integer1To2pw20Bit4(static_cast<unsigned char>(prefixOctet | 0x20), *index);
        return;
    }
    EncodedCharacterStringBit5(static_cast<unsigned char>(prefixOctet | 0x10), text, type);
    table.Add(text.data(), text.size(), hash);
}

// ---------------------------------------------------------------------------------------------
// Document

void CFastInfosetWriter::WriteStartDocument(FInfoDecl declaration) {
    if (declaration != FInfoDecl_None) {
        const CBinaryData text = CEncoder::LocalCodePageToUtf8Binary(FI_DECLARATION_LIST[declaration - 1]);
        Put(text.GetData(), text.GetLength());
    }
    static const unsigned char kHeader[] = {0xE0, 0x00, 0x00, 0x01};
    Put(kHeader, sizeof kHeader);
    if (!m_pFIContext->GetUseGeneratedVocabulary()) {
        Put(0x00);
        return;
    }
    // An initial vocabulary that holds only the reference to an external one.
    static const unsigned char kExternalVocabulary[] = {0x20, 0x10, 0x00};
    Put(kExternalVocabulary, sizeof kExternalVocabulary);
    const std::string uri = m_pFIContext->GetExternalVocabularyURI();
    NonEmptyOctetUTF8StringBit2(0, uri.empty() ? std::string(FI_DEFAULT_EXTERNAL_VOCABULARY_URI) : uri);
}

void CFastInfosetWriter::WriteEndDocument() {
    Put(m_terminatorPending ? kDoubleTerminator : kTerminator);
    FlushOutput();
}

// ---------------------------------------------------------------------------------------------
// Elements

void CFastInfosetWriter::WriteNamespaceDeclarations() {
    if (!m_defaultNamespace.empty()) {
        Put(0xCD);
        NamePart(m_defaultNamespace, m_pTables->m_namespaceNames);
    }
    for (const auto& entry : m_namespaceMap) {
        if (entry.first == XML_NAMESPACE) continue;
        Put(0xCF);
        NamePart(entry.second, m_pTables->m_prefixNames);
        NamePart(entry.first, m_pTables->m_namespaceNames);
    }
    Put(kTerminator);
}

const std::string& CFastInfosetWriter::ElementPrefix(CXmlWriterContext& context) {
    static const std::string kNone;
    const std::string& namespaceUri = context.m_namespaceUri;
    if (namespaceUri.empty()) return kNone;
    const std::string* prefix = nullptr;
    // A child in its parent's namespace shares the parent's scope, so it takes the
    // prefix its parent was written with.
    if (m_pContext && RecallNamePrefix(*m_pContext, prefix) && Same(namespaceUri, m_pContext->m_namespaceUri)) {
        RememberNamePrefix(context, prefix);
        return prefix ? *prefix : kNone;
    }
    if (Same(namespaceUri, context.GetDefaultNamespace())) {
        prefix = nullptr;
    } else {
        const NamespaceMap& map = context.GetNamespaceMap();
        const auto found = map.find(namespaceUri);
        // Not declared: the prefix and namespace stand in the name alone.
        prefix = found != map.end() ? &found->second : &SetAlias(context, namespaceUri, GetUniquePrefix(map));
    }
    RememberNamePrefix(context, prefix);
    return prefix ? *prefix : kNone;
}

void CFastInfosetWriter::WriteElement(bool hasAttributes) {
    if (!m_pPendingElement) return;
    unsigned char first = 0;
    if (hasAttributes) {
        m_pPendingElement->m_hasAttributes = true;
        first = 0x40;
    }
    if (!m_pContext && (!m_defaultNamespace.empty() || !m_namespaceMap.empty())) {
        Put(static_cast<unsigned char>(first | 0x38));
        WriteNamespaceDeclarations();
        first = 0;
    }
    CXmlWriterContext& context = *m_pPendingElement;
    QualifiedNameOrIndexBit3(first, ElementPrefix(context), context.m_namespaceUri, context.m_localName,
                             m_pTables->m_elementNames);
    // The pending element becomes the current one, below its parent.
    context.m_pParent = std::move(m_pContext);
    m_pContext = std::move(m_pPendingElement);
}

void CFastInfosetWriter::WriteStartElement(const std::string& localName, const std::string& namespaceUri) {
    WriteElement(false);
    if (m_terminatorPending) {
        Put(kTerminator);
        m_terminatorPending = false;
    }
    if (m_pContext) {
        ++m_pContext->m_childCount;
        if (m_pContext->m_startTagOpen) {
            m_pContext->m_startTagOpen = false;
            if (m_pContext->m_hasAttributes) Put(kTerminator);
        }
    }
    // The frame makes the context (reusing one of an element closed before); it waits
    // aside until the next event tells whether it has attributes.
    PushContext(localName, namespaceUri);
    m_pPendingElement = std::move(m_pContext);
    m_pContext = std::move(m_pPendingElement->m_pParent);
}

void CFastInfosetWriter::WriteString(const std::string& text, ItemType type) {
    WriteElement(false);
    if (m_pContext && m_pContext->m_startTagOpen) {
        m_pContext->m_startTagOpen = false;
        if (m_pContext->m_hasAttributes) Put(kTerminator);
    }
    if (!text.empty())
        NonIdentifyingStringOrIndexBit3(0x80, text, m_pTables->m_characterChunks,
                                        m_pFIContext->GetElementMaxAddLength(), type);
}

void CFastInfosetWriter::WriteEndElement() {
    WriteElement(false);
    if (!m_pContext) throw CQvException("An Element has not been opened.");
    if (m_pContext->m_startTagOpen) {
        m_pContext->m_startTagOpen = false;
        if (m_pContext->m_hasAttributes) Put(kTerminator);
    }
    if (m_terminatorPending) {
        Put(kDoubleTerminator);
        m_terminatorPending = false;
    } else {
        m_terminatorPending = true;
    }
    PopContext();
}

// ---------------------------------------------------------------------------------------------
// Attributes

void CFastInfosetWriter::CheckAttributeAllowed() const {
    if (!m_pContext || !m_pContext->m_startTagOpen) throw CQvException("Attributes must be added before elements");
}

const std::string& CFastInfosetWriter::AttributePrefix(const std::string& namespaceUri) {
    static const std::string kNone;
    if (namespaceUri.empty()) return kNone;
    const NamespaceMap& map = m_pContext->GetNamespaceMap();
    const auto found = map.find(namespaceUri);
    if (found != map.end()) return found->second;
    return SetAlias(*m_pContext, namespaceUri, GetUniquePrefix(map));
}

void CFastInfosetWriter::WriteAttributeString(const std::string& localName, const std::string& namespaceUri,
                                              const std::string& value, ItemType type) {
    WriteElement(true);
    CheckAttributeAllowed();
    QualifiedNameOrIndexBit2(0, AttributePrefix(namespaceUri), namespaceUri, localName, m_pTables->m_attributeNames);
    NonIdentifyingStringOrIndexBit1(value, m_pTables->m_attributeValues, m_pFIContext->GetAttributeMaxAddLength(),
                                    type);
}

void CFastInfosetWriter::WriteAttributeNil() {
    WriteElement(true);
    CheckAttributeAllowed();
    WriteAttributeString("nil", Internal::kXsiNamespace, "true", ItemType_boolean);
}

void CFastInfosetWriter::WriteAttributeType(const std::string& typeNamespaceUri, const std::string& typeName,
                                            ItemType type) {
    WriteElement(true);
    CheckAttributeAllowed();
    CXmlWriterContext& context = *m_pContext;
    if (typeNamespaceUri.empty() || typeNamespaceUri == context.GetDefaultNamespace()) {
        WriteAttributeString("type", Internal::kXsiNamespace, typeName, type);
        return;
    }
    const NamespaceMap& map = context.GetNamespaceMap();
    const auto found = map.find(typeNamespaceUri);
    std::string alias;
    if (found != map.end()) {
        // The xsi:type attribute, under the prefix of the type's namespace.
        alias = found->second;
        QualifiedNameOrIndexBit2(0, alias, Internal::kXsiNamespace, "type", m_pTables->m_attributeNames);
    } else {
        // An attribute named after the type itself, in the type's namespace.
        alias = SetAlias(context, typeNamespaceUri, GetUniquePrefix(map));
        QualifiedNameOrIndexBit2(0, alias, typeNamespaceUri, typeName, m_pTables->m_attributeNames);
    }
    NonIdentifyingStringOrIndexBit1(alias + ":" + typeName, m_pTables->m_attributeValues,
                                    m_pFIContext->GetAttributeMaxAddLength(), type);
}

// ---------------------------------------------------------------------------------------------
// Items that are not carried

void CFastInfosetWriter::WritePI(const std::string& /*text*/) { WriteElement(false); }

void CFastInfosetWriter::WriteComment(const std::string& /*text*/) {}

void CFastInfosetWriter::WriteInlineSchema(const std::string& /*schemaText*/) {}

} // namespace QvXmlLib10
