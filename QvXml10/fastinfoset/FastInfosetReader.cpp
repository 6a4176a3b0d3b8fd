#include "fastinfoset/FastInfosetReader.h"

#include "fastinfoset/FastInfosetBinaryData.h"
#include "fastinfoset/FastInfosetContext.h"
#include "fastinfoset/FastInfosetWriter.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "internal/ByteScan.h"
#include "internal/DocumentBuilder.h"

#include <cstring>
#include <stdexcept>
#include <vector>

namespace QvXmlLib10 {

namespace {

const uint64_t kScratchSize = 1024;
// A table of names keeps to the largest index that the format can carry.
const size_t kMaxNames = 0x100000;

const char kEndOfFile[] = "Failed to parse FastInfoset. Unexpected End of File.";
const char kBit2Length[] =
    "Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the second bit of an octet.";
const char kBit5Length[] =
    "Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the fifth bit of an octet.";
const char kInteger1Bit2[] =
    "Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the second bit of an octet.";
const char kInteger1Bit3[] =
    "Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the third bit of an octet.";
const char kInteger1Bit4[] =
    "Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the fourth bit of an octet.";
const char kInteger0Bit2[] =
    "Failed to parse FastInfoset. Invalid Encoding of integers 0 To 2^20 type  on the second bit of an octet.";
const char kElementType[] = "Failed to parse FastInfoset. Invalid Encoding of Element type.";
const char kPrefixWithoutNamespace[] = "Failed to parse FastInfoset. Invalid QName type Prefix without Namespace.";
const char kUtf16[] = "Failed to parse FastInfoset. Unsupported Feature UTF16BE in NonEmptyOctetUTF16BEString.";

// The string tables, in the order of CTables::m_strings.
enum StringTable { kPrefixes, kNamespaces, kLocalNames, kAttributeValues, kCharacterChunks, kStringTables };
const char* const kStringTableNames[] = {"Prefix Names", "Namespace Names", "Local Names", "Attribute Values",
                                         "Character Chunks"};

} // namespace

// The tables of one document. Strings are kept in the local code page; a qualified name
// keeps its interned pair once it has been used for an element or attribute.
class CFastInfosetReader::CTables {
public:
    struct CNameEntry {
        CQName parts;
        const Internal::CDocumentBuilder::Name* interned;
    };

    explicit CTables(const CFastInfosetContext& context) {
        if (!context.GetUseGeneratedVocabulary()) {
            m_strings[kPrefixes].emplace_back(FI_DEFAULT_PREFIX);
            m_strings[kNamespaces].emplace_back(FI_DEFAULT_NAMESPACE);
            return;
        }
        const CFIVocabulary& vocabulary = *context.GetVocabulary();
        m_strings[kPrefixes] = vocabulary.GetPrefixNamesTable().m_table;
        m_strings[kNamespaces] = vocabulary.GetNamespaceNamesTable().m_table;
        m_strings[kLocalNames] = vocabulary.GetLocalNamesTable().m_table;
        m_strings[kAttributeValues] = vocabulary.GetAttributeValuesTable().m_table;
        m_strings[kCharacterChunks] = vocabulary.GetCharacterChunksTable().m_table;
        for (const CFIVocabulary::CQNameParts& name : vocabulary.GetElementNamesTable())
            m_elementNames.push_back({{name.m_prefixIndex, name.m_namespaceIndex, name.m_localNameIndex}, nullptr});
        for (const CFIVocabulary::CQNameParts& name : vocabulary.GetAttributeNamesTable())
            m_attributeNames.push_back({{name.m_prefixIndex, name.m_namespaceIndex, name.m_localNameIndex}, nullptr});
    }

    // The interned name of an element or attribute name of the table, by m_indexValue.
    const Internal::CDocumentBuilder::Name* NameEntry(CFastInfosetReader& reader, bool element);
    // Reads a literal name, enters it in the table, and returns it interned.
    const Internal::CDocumentBuilder::Name* LiteralName(CFastInfosetReader& reader, bool element);
    const Internal::CDocumentBuilder::Name* Intern(CFastInfosetReader& reader, const CQName& name);

    std::vector<std::string> m_strings[kStringTables];
    std::vector<CNameEntry> m_elementNames;
    std::vector<CNameEntry> m_attributeNames;
};

const Internal::CDocumentBuilder::Name* CFastInfosetReader::CTables::NameEntry(CFastInfosetReader& reader,
                                                                               bool element) {
    std::vector<CTables::CNameEntry>& names = element ? m_elementNames : m_attributeNames;
    if (reader.m_indexValue > names.size())
        reader.Fail(FormatString("Failed to parse FastInfoset. Index [%lu] beyond the %s table.",
                                 static_cast<unsigned long>(reader.m_indexValue),
                                 element ? "Element Names" : "Attribute Names"));
    CTables::CNameEntry& entry = names[reader.m_indexValue - 1];
    if (!entry.interned) entry.interned = Intern(reader, entry.parts);
    return entry.interned;
}

const Internal::CDocumentBuilder::Name* CFastInfosetReader::CTables::LiteralName(CFastInfosetReader& reader,
                                                                                 bool element) {
    std::vector<CTables::CNameEntry>& names = element ? m_elementNames : m_attributeNames;
    const CQName parts = reader.ReadQName();
    const Internal::CDocumentBuilder::Name* interned = Intern(reader, parts);
    if (names.size() < kMaxNames) names.push_back({parts, interned});
    return interned;
}

const Internal::CDocumentBuilder::Name* CFastInfosetReader::CTables::Intern(CFastInfosetReader& reader,
                                                                            const CQName& name) {
    // A generated vocabulary may hold names whose parts lie beyond its tables.
    const std::vector<std::string>& namespaces = m_strings[kNamespaces];
    const std::vector<std::string>& localNames = m_strings[kLocalNames];
    if (name.namespaceName > namespaces.size()) reader.CheckIndex(kNamespaces, name.namespaceName);
    reader.CheckIndex(kLocalNames, name.localName);
    const std::string* uri = name.namespaceName ? &namespaces[name.namespaceName - 1] : nullptr;
    const std::string& local = localNames[name.localName - 1];
    return reader.m_pBuilder->InternName(uri ? uri->data() : "", uri ? uri->size() : 0, local.data(), local.size());
}

CFastInfosetReader::CFastInfosetReader(const CFastInfosetContext& context, CXmlDocument& document)
    : CInstanceMonitor("CFastInfosetReader"), m_pFIContext(&context), m_pDocument(&document), m_pNext(nullptr),
      m_pCurrent(nullptr), m_pEnd(nullptr), m_indexValue(0), m_addToTable(false), m_text{nullptr, 0}, m_scratchSize(0) {
}

CFastInfosetReader::~CFastInfosetReader() { Cleanup(); }

void CFastInfosetReader::Cleanup() {
    m_pTables.reset();
    m_pNext = nullptr;
    m_pCurrent = nullptr;
    m_pEnd = nullptr;
    m_pScratch.reset();
    m_scratchSize = 0;
}

void CFastInfosetReader::Fail(const std::string& text) {
    Cleanup();
    throw CQvException(text);
}

const unsigned char* CFastInfosetReader::Move(uint64_t count) {
    m_pCurrent = m_pNext;
    if (!m_pNext || count > static_cast<uint64_t>(m_pEnd - m_pNext)) Fail(kEndOfFile);
    m_pNext += count;
    return m_pCurrent;
}

uint64_t CFastInfosetReader::ReadBigEndian(unsigned count) {
    const unsigned char* p = Move(count);
    uint64_t value = 0;
    for (unsigned i = 0; i < count; ++i)
        value = value << 8 | p[i];
    return value;
}

// ---------------------------------------------------------------------------------------------
// Document level

bool CFastInfosetReader::Parse() {
    m_pBuilder.reset(new Internal::CDocumentBuilder(*m_pDocument, Internal::CDocumentBuilder::Hook::Ignore));
    m_pNext = m_pBuilder->GetData();
    m_pEnd = m_pNext ? m_pNext + m_pBuilder->GetDataLength() : nullptr;
    if (!m_pNext || !ReadHeader()) {
        m_pBuilder.reset();
        Cleanup();
        return false;
    }
    m_pScratch.reset(new unsigned char[kScratchSize]);
    m_scratchSize = kScratchSize;
    m_pTables.reset(new CTables(*m_pFIContext));
    ReadOptionalData();
    ReadChildren();
    m_pBuilder->EndDocument();
    m_pBuilder.reset();
    Cleanup();
    return true;
}

bool CFastInfosetReader::ReadHeader() {
    if (CheckHeader()) return true;
    for (const char* declaration : FI_DECLARATION_LIST)
        if (CheckDeclaration(declaration)) return CheckHeader();
    return false;
}

bool CFastInfosetReader::CheckHeader() {
    // The identification, the version 1, and at least one octet behind them.
    if (m_pEnd - m_pNext < 5) return false;
    if (m_pNext[0] != 0xE0 || m_pNext[1] != 0 || m_pNext[2] != 0 || m_pNext[3] != 1) return false;
    m_pNext += 4;
    return true;
}

bool CFastInfosetReader::CheckDeclaration(const char* text) {
    // The declarations are ASCII: their UTF-8 form is the text itself.
    const size_t length = std::strlen(text);
    if (static_cast<uint64_t>(m_pEnd - m_pNext) <= length || std::memcmp(m_pNext, text, length) != 0) return false;
    m_pNext += length;
    return true;
}

void CFastInfosetReader::ReadOptionalData() {
    const unsigned char flags = *Move(1);
    if (flags & 0x40) AdditionalData();
    if (flags & 0x20) InitialVocabulary();
    if (flags & 0x10) Notations();
    if (flags & 0x08) UnparsedEntities();
    if (flags & 0x04) CharacterEncodingScheme();
    if (flags & 0x02) Standalone();
    if (flags & 0x01) Version();
}

void CFastInfosetReader::Standalone() { Move(1); }

void CFastInfosetReader::Version() { NonIdentifyingStringOrIndexBit1(); }

void CFastInfosetReader::SkipOctetString() {
    Move(1);
    Move(NonEmptyOctetStringBit2Length());
}

void CFastInfosetReader::CharacterEncodingScheme() { SkipOctetString(); }

void CFastInfosetReader::Notations() {
    while ((*Move(1) & 0xFC) == 0xC0) {
        const unsigned char octet = *m_pCurrent;
        IdentifyingStringOrIndex();
        if (octet & 0x02) IdentifyingStringOrIndex();
        if (octet & 0x01) IdentifyingStringOrIndex();
    }
}

void CFastInfosetReader::UnparsedEntities() {
    while ((*Move(1) & 0xFE) == 0xD0) {
        const unsigned char octet = *m_pCurrent;
        IdentifyingStringOrIndex();
        IdentifyingStringOrIndex();
        if (octet & 0x01) IdentifyingStringOrIndex();
        IdentifyingStringOrIndex();
    }
}

void CFastInfosetReader::AdditionalData() {
    // The length of each string is taken from the octet read last, without a move first.
    const uint64_t count = LengthOfSequence();
    for (uint64_t i = 0; i < count; ++i) {
        Move(NonEmptyOctetStringBit2Length());
        Move(NonEmptyOctetStringBit2Length());
    }
}

void CFastInfosetReader::InitialVocabulary() {
    const unsigned char first = *Move(1);
    const unsigned char second = *Move(1);
    // Each table is a sequence whose length is read anew before every item.
    auto sequence = [this](auto item) {
        for (uint64_t i = 0; i < LengthOfSequence(); ++i)
            item();
    };
    auto octetString = [this] { SkipOctetString(); };
    auto encodedString = [this] { EncodedCharacterStringBit3(); };
    auto surrogate = [this] { NonIdentifyingStringOrIndexBit1(); };
    if (first & 0x10) SkipOctetString();
    if (first & 0x08) sequence(octetString);
    if (first & 0x04) sequence(octetString);
    if (first & 0x02) sequence(octetString);
    if (first & 0x01) sequence(octetString);
    if (second & 0x80) sequence(octetString);
    if (second & 0x40) sequence(octetString);
    if (second & 0x20) sequence(octetString);
    if (second & 0x10) sequence(encodedString);
    if (second & 0x08) sequence(encodedString);
    if (second & 0x04) sequence(encodedString);
    if (second & 0x02) sequence(surrogate);
    if (second & 0x01) sequence(surrogate);
}

uint64_t CFastInfosetReader::LengthOfSequence() {
    const unsigned char octet = *Move(1);
    if (octet < 0x80) return octet + 1u;
    return ((static_cast<uint64_t>(octet & 0x0F) << 16) | ReadBigEndian(2)) + 129;
}

void CFastInfosetReader::ProcessingInstruction() {
    IdentifyingStringOrIndex();
    NonIdentifyingStringOrIndexBit1();
}

void CFastInfosetReader::DocumentTypeDeclarationBit7() {
    const unsigned char octet = *m_pCurrent;
    if (octet & 0x02) IdentifyingStringOrIndex();
    if (octet & 0x01) IdentifyingStringOrIndex();
}

void CFastInfosetReader::UnexpandedEntityReferenceBit7() {
    const unsigned char octet = *m_pCurrent;
    IdentifyingStringOrIndex();
    if (octet & 0x02) IdentifyingStringOrIndex();
    if (octet & 0x01) IdentifyingStringOrIndex();
}

void CFastInfosetReader::ReadChildren() {
    for (;;) {
        const unsigned char octet = *Move(1);
        if (octet < 0x80)
            ElementBit2();
        else if (octet == 0xE1)
            ProcessingInstruction();
        else if (octet == 0xE2)
            NonIdentifyingStringOrIndexBit1();
        else if ((octet & 0xFC) == 0xC4)
            DocumentTypeDeclarationBit7();
        // The octet read last decides, whatever item it belonged to.
        if (*m_pCurrent == 0xF0 || *m_pCurrent == 0xFF) return;
    }
}

// ---------------------------------------------------------------------------------------------
// Elements and attributes

void CFastInfosetReader::ElementBit2() {
    // Entered with the first octet of an element current. The elements nested in it are
    // read in this loop instead of by recursion, so that deep nesting costs no stack.
    size_t open = 0;
    bool start = true;
    for (;;) {
        if (start) {
            if (StartElement()) {
                // The attribute list ended with the element's terminator.
                m_pBuilder->EndElement();
                if (open == 0) return;
            } else {
                ++open;
            }
        }
        const unsigned char octet = *Move(1);
        start = octet < 0x80;
        if (start) continue;
        if (octet == 0xF0 || octet == 0xFF) {
            // FF closes the element and the one that encloses it.
            for (int ends = octet == 0xFF ? 2 : 1; ends > 0; --ends) {
                m_pBuilder->EndElement();
                if (--open == 0) return;
            }
        } else if (octet < 0xC0) {
            CharacterChunk();
        } else if (octet == 0xE1) {
            ProcessingInstruction();
        } else if (octet == 0xE2) {
            NonIdentifyingStringOrIndexBit1();
        } else if ((octet & 0xFC) == 0xC8) {
            UnexpandedEntityReferenceBit7();
        } else {
            Fail(kElementType);
        }
    }
}

bool CFastInfosetReader::StartElement() {
    const unsigned char first = *m_pCurrent;
    if ((first & 0x3C) == 0x38) {
        // Namespace attributes; the octet that ends the list isn't checked.
        while ((*Move(1) & 0xFC) == 0xCC)
            NamespaceAttributeBit7();
        Move(1);
    }
    m_pBuilder->StartElement(QualifiedNameOrIndexBit3() ? m_pTables->NameEntry(*this, true)
                                                        : m_pTables->LiteralName(*this, true));
    if (first & 0x40) {
        while ((*Move(1) & 0x80) == 0)
            AtrributeBit2();
        if (*m_pCurrent == 0xFF) return true;
    }
    return false;
}

void CFastInfosetReader::CheckIndex(int table, uint64_t index) {
    if (index == 0 || index > m_pTables->m_strings[table].size())
        Fail(FormatString("Failed to parse FastInfoset. Index [%lu] beyond the %s table.",
                          static_cast<unsigned long>(index), kStringTableNames[table]));
}

void CFastInfosetReader::NamespaceAttributeBit7() {
    const unsigned char octet = *m_pCurrent;
    std::string prefix;
    std::string uri;
    if (octet & 0x02) {
        const uint64_t index = IdentifyingIndexOrAdd(kPrefixes);
        prefix = m_pTables->m_strings[kPrefixes][index - 1];
    }
    if (octet & 0x01) {
        const uint64_t index = IdentifyingIndexOrAdd(kNamespaces);
        uri = m_pTables->m_strings[kNamespaces][index - 1];
    }
    m_pBuilder->DeclareNamespace(std::move(prefix), std::move(uri));
}

void CFastInfosetReader::AtrributeBit2() {
    const Internal::CDocumentBuilder::Name* name =
        QualifiedNameOrIndexBit2() ? m_pTables->NameEntry(*this, false) : m_pTables->LiteralName(*this, false);
    std::vector<std::string>& values = m_pTables->m_strings[kAttributeValues];
    if (NonIdentifyingStringOrIndexBit1()) {
        if (m_indexValue == 0) {
            m_pBuilder->AddAttribute(name, "", 0);
            return;
        }
        CheckIndex(kAttributeValues, m_indexValue);
        const std::string& value = values[m_indexValue - 1];
        m_pBuilder->AddAttribute(name, value.data(), value.size());
        return;
    }
    if (m_addToTable) values.emplace_back(m_text.data, m_text.size);
    m_pBuilder->AddAttribute(name, m_text.data, m_text.size);
}

void CFastInfosetReader::CharacterChunk() {
    std::vector<std::string>& chunks = m_pTables->m_strings[kCharacterChunks];
    if (NonIdentifyingStringOrIndexBit3()) {
        CheckIndex(kCharacterChunks, m_indexValue);
        const std::string& chunk = chunks[m_indexValue - 1];
        m_pBuilder->AppendText(chunk.data(), chunk.size());
        return;
    }
    if (m_addToTable) chunks.emplace_back(m_text.data, m_text.size);
    if (!m_pBuilder->AppendPlain(m_text.data, m_text.size, 0)) m_pBuilder->AppendText(m_text.data, m_text.size);
}

bool CFastInfosetReader::QualifiedNameOrIndexBit3() {
    if ((*m_pCurrent & 0x3C) == 0x3C) return false;
    m_indexValue = Integer1To2pw20Bit3();
    return true;
}

bool CFastInfosetReader::QualifiedNameOrIndexBit2() {
    if ((*m_pCurrent & 0x78) == 0x78) return false;
    m_indexValue = Integer1To2pw20Bit2();
    return true;
}

CFastInfosetReader::CQName CFastInfosetReader::ReadQName() {
    const unsigned char octet = *m_pCurrent;
    if ((octet & 0x03) == 0x02) throw CQvException(kPrefixWithoutNamespace);
    CQName name{0, 0, 0};
    if (octet & 0x02) name.prefix = IdentifyingIndexOrAdd(kPrefixes);
    if (octet & 0x01) name.namespaceName = IdentifyingIndexOrAdd(kNamespaces);
    name.localName = IdentifyingIndexOrAdd(kLocalNames);
    return name;
}

uint64_t CFastInfosetReader::IdentifyingIndexOrAdd(int table) {
    std::vector<std::string>& strings = m_pTables->m_strings[table];
    if (IdentifyingStringOrIndex()) {
        CheckIndex(table, m_indexValue);
        return m_indexValue;
    }
    strings.emplace_back(m_text.data, m_text.size);
    return strings.size();
}

// ---------------------------------------------------------------------------------------------
// Strings

bool CFastInfosetReader::IdentifyingStringOrIndex() {
    if (*Move(1) & 0x80) {
        m_indexValue = Integer1To2pw20Bit2();
        return true;
    }
    m_text = NonEmptyOctetUTF8String(NonEmptyOctetStringBit2Length());
    return false;
}

bool CFastInfosetReader::NonIdentifyingStringOrIndexBit1() {
    const unsigned char octet = *Move(1);
    if (octet & 0x80) {
        m_indexValue = Integer0To2pw20Bit2();
        return true;
    }
    m_addToTable = (octet & 0x40) != 0;
    m_text = EncodedCharacterStringBit3();
    return false;
}

bool CFastInfosetReader::NonIdentifyingStringOrIndexBit3() {
    const unsigned char octet = *m_pCurrent;
    if (octet & 0x20) {
        m_indexValue = Integer1To2pw20Bit4();
        return true;
    }
    m_addToTable = (octet & 0x10) != 0;
    m_text = EncodedCharacterStringBit5();
    return false;
}

CFastInfosetReader::CText CFastInfosetReader::EncodedCharacterStringBit3() {
    const unsigned char octet = *m_pCurrent;
    const unsigned discriminant = (octet >> 4) & 0x03;
    if (discriminant == 0) return NonEmptyOctetUTF8String(NonEmptyOctetStringBit5Length());
    if (discriminant == 1) return NonEmptyOctetUTF16BEString(NonEmptyOctetStringBit5Length());
    // The index of the alphabet or algorithm less one: four bits here, four of the next octet.
    const uint64_t index = ((static_cast<uint64_t>(octet & 0x0F) << 4) | (*Move(1) >> 4)) + 1;
    const uint64_t length = NonEmptyOctetStringBit5Length();
    return discriminant == 2 ? NonEmptyOctetRestrictedAlphabetString(length, index)
                             : NonEmptyOctetEncryptedString(length, index);
}

CFastInfosetReader::CText CFastInfosetReader::EncodedCharacterStringBit5() {
    const unsigned char octet = *m_pCurrent;
    const unsigned discriminant = (octet >> 2) & 0x03;
    if (discriminant == 0) return NonEmptyOctetUTF8String(NonEmptyOctetStringBit7Length());
    if (discriminant == 1) return NonEmptyOctetUTF16BEString(NonEmptyOctetStringBit7Length());
    // Two bits here, six of the next octet.
    const uint64_t index = ((static_cast<uint64_t>(octet & 0x03) << 6) | (*Move(1) >> 2)) + 1;
    const uint64_t length = NonEmptyOctetStringBit7Length();
    return discriminant == 2 ? NonEmptyOctetRestrictedAlphabetString(length, index)
                             : NonEmptyOctetEncryptedString(length, index);
}

uint64_t CFastInfosetReader::NonEmptyOctetStringBit2Length() {
    const unsigned value = *m_pCurrent & 0x7F;
    if (value < 0x40) return value + 1;
    if (value == 0x40) return ReadBigEndian(1) + 65;
    if (value == 0x60) return ReadBigEndian(4) + 321;
    Fail(kBit2Length);
}

uint64_t CFastInfosetReader::NonEmptyOctetStringBit5Length() {
    const unsigned value = *m_pCurrent & 0x0F;
    if (value < 8) return value + 1;
    if (value == 8) return ReadBigEndian(1) + 9;
    if (value == 12) return ReadBigEndian(4) + 265;
    Fail(kBit5Length);
}

uint64_t CFastInfosetReader::NonEmptyOctetStringBit7Length() {
    const unsigned value = *m_pCurrent & 0x03;
    if (value < 2) return value + 1;
    if (value == 2) return ReadBigEndian(1) + 3;
    return ReadBigEndian(4) + 259;
}

CFastInfosetReader::CText CFastInfosetReader::NonEmptyOctetUTF8String(uint64_t length) {
    const unsigned char* data = Move(length);
    // Plain ASCII reads the same in every locale and stays where it lies.
    if (!Internal::HasNulOrHighByte(reinterpret_cast<const char*>(data), static_cast<size_t>(length), false))
        return {reinterpret_cast<const char*>(data), static_cast<size_t>(length)};
    // Half of the scratch space for wide characters, half for the result.
    const uint64_t half = m_scratchSize / 2;
    m_stringValue = CEncoder::Utf8ToLocalCodePage(
        const_cast<unsigned char*>(data), static_cast<int>(length), reinterpret_cast<wchar_t*>(m_pScratch.get()),
        static_cast<unsigned long>(m_scratchSize / 8), reinterpret_cast<char*>(m_pScratch.get() + half),
        static_cast<unsigned long>(half));
    return {m_stringValue.data(), m_stringValue.size()};
}

CFastInfosetReader::CText CFastInfosetReader::NonEmptyOctetUTF16BEString(uint64_t length) {
    const unsigned char* data = Move(length);
    // UTF-16 strings are refused, not converted.
    try {
        m_stringValue = CEncoder::Utf16ToLocalCodePage(const_cast<unsigned char*>(data), static_cast<int>(length));
    } catch (const std::logic_error&) {
        Fail(kUtf16);
    }
    return {m_stringValue.data(), m_stringValue.size()};
}

CFastInfosetReader::CText CFastInfosetReader::NonEmptyOctetEncryptedString(uint64_t length, uint64_t index) {
    if (index == 10) return NonEmptyOctetUTF8String(length);
    const unsigned char* data = Move(length);
    const CFastInfosetBinaryData bytes(const_cast<unsigned char*>(data), static_cast<unsigned long>(length), false);
    m_stringValue = bytes.GetAsString(static_cast<unsigned long>(index));
    return {m_stringValue.data(), m_stringValue.size()};
}

CFastInfosetReader::CText CFastInfosetReader::NonEmptyOctetRestrictedAlphabetString(uint64_t length, uint64_t index) {
    // Only the two built-in alphabets exist, numeric and date and time, of 15 characters
    // each: four bits per character, and the value 0xF ends the string.
    if (index == 0 || index > 2)
        Fail(FormatString("Failed to parse FastInfoset. Invalid Restricted Alphabet index [%lu].",
                          static_cast<unsigned long>(index)));
    const char* alphabet = index == 1 ? RESTRICTED_ALPHABET_VALUES_NUMERIC : RESTRICTED_ALPHABET_VALUES_DATE_TIME;
    const unsigned char* data = Move(length);
    m_stringValue.clear();
    for (uint64_t i = 0; i < length; ++i) {
        const unsigned high = data[i] >> 4;
        const unsigned low = data[i] & 0x0F;
        if (high == 0x0F) break;
        m_stringValue += alphabet[high];
        if (low == 0x0F) break;
        m_stringValue += alphabet[low];
    }
    return {m_stringValue.data(), m_stringValue.size()};
}

// ---------------------------------------------------------------------------------------------
// Integers

uint64_t CFastInfosetReader::Integer1To2pw20Bit2() {
    const unsigned char octet = *m_pCurrent;
    if ((octet & 0x7F) < 64) return (octet & 0x7Fu) + 1;
    if ((octet & 0x60) == 0x40) return ((static_cast<uint64_t>(octet & 0x1F) << 8) | ReadBigEndian(1)) + 65;
    if ((octet & 0x60) == 0x60) return ((static_cast<uint64_t>(octet & 0x0F) << 16) | ReadBigEndian(2)) + 8257;
    Fail(kInteger1Bit2);
}

uint64_t CFastInfosetReader::Integer0To2pw20Bit2() {
    if ((*m_pCurrent & 0x7F) == 0x7F) return 0;
    try {
        return Integer1To2pw20Bit2();
    } catch (const CQvException&) {
        throw CQvException(kInteger0Bit2);
    }
}

uint64_t CFastInfosetReader::Integer1To2pw20Bit3() {
    const unsigned char octet = *m_pCurrent;
    if ((octet & 0x3F) < 32) return (octet & 0x3Fu) + 1;
    switch (octet & 0x38) {
    case 0x20:
        return ((static_cast<uint64_t>(octet & 0x07) << 8) | ReadBigEndian(1)) + 33;
    case 0x28:
        return ((static_cast<uint64_t>(octet & 0x07) << 16) | ReadBigEndian(2)) + 2081;
    case 0x30:
        return ReadBigEndian(3) + 526369;
    default:
        Fail(kInteger1Bit3);
    }
}

uint64_t CFastInfosetReader::Integer1To2pw20Bit4() {
    const unsigned char octet = *m_pCurrent;
    if ((octet & 0x1F) < 16) return (octet & 0x1Fu) + 1;
    switch (octet & 0x1C) {
    case 0x10:
        return ((static_cast<uint64_t>(octet & 0x03) << 8) | ReadBigEndian(1)) + 17;
    case 0x14:
        return ((static_cast<uint64_t>(octet & 0x03) << 16) | ReadBigEndian(2)) + 1041;
    case 0x18:
        return ReadBigEndian(3) + 263185;
    default:
        Fail(kInteger1Bit4);
    }
}

} // namespace QvXmlLib10
