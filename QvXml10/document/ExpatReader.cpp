#include "document/ExpatReader.h"

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "internal/ByteScan.h"
#include "internal/DocumentBuilder.h"
#include "internal/Hashing.h"
#include "internal/Limits.h"
#include "internal/Locale.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace QvXmlLib10 {

namespace {

const uint64_t SCRATCH_SIZE = 1024;

using Internal::HasHighByte;

} // namespace

// The names of one parse as expat reports them ("uri|local" or "local", in UTF-8), each
// mapped to the document's interned pair. A name is converted and split at its first
// "|" once, when it is first met; later it costs one hash and one comparison. Kept for
// one parse only, because the conversion depends on the locale of the moment.
class CExpatReader::CNameCache {
public:
    explicit CNameCache(CExpatReader& reader) : m_reader(reader) {}

    const Internal::CDocumentBuilder::Name* Lookup(const char* name) {
        const size_t length = std::strlen(name);
        const size_t hash = Internal::HashBytes(name, length);
        const Entry* found = m_table.Find(hash, [&](const Entry& entry) {
            return entry.length == length && Internal::SameBytes(m_keys.data() + entry.offset, name, length);
        });
        return found ? found->name : Add(name, length, hash);
    }

private:
    struct Entry {
        const Internal::CDocumentBuilder::Name* name;
        size_t offset; // of the raw name in m_keys
        size_t length;
    };

    const Internal::CDocumentBuilder::Name* Add(const char* raw, size_t rawLength, size_t hash) {
        std::string converted;
        const char* name = raw;
        size_t length = rawLength;
        if (!m_reader.m_passThrough && HasHighByte(raw, rawLength)) {
            converted = m_reader.Convert(raw, rawLength);
            name = converted.data();
            length = converted.size();
        }
        const char* bar = static_cast<const char*>(std::memchr(name, '|', length));
        const size_t namespaceLength = bar ? static_cast<size_t>(bar - name) : 0;
        const Internal::CDocumentBuilder::Name* interned =
            bar ? m_reader.m_pBuilder->InternName(name, namespaceLength, bar + 1, length - namespaceLength - 1)
                : m_reader.m_pBuilder->InternName("", 0, name, length);

        const size_t offset = m_keys.size();
        m_keys.append(raw, rawLength);
        m_table.Insert(hash, Entry{interned, offset, rawLength});
        return interned;
    }

    CExpatReader& m_reader;
    Internal::CProbeTable<Entry> m_table;
    std::string m_keys;
};

CExpatReader::CExpatReader(CXmlDocument& document)
    : CInstanceMonitor("CExpatReader"), m_pDocument(&document), m_scratchSize(0), m_parser(nullptr),
      m_passThrough(false) {}

CExpatReader::~CExpatReader() {
    Cleanup();
    FreeParser();
}

void CExpatReader::Cleanup() {
    m_pScratch.reset();
    m_scratchSize = 0;
}

void CExpatReader::FreeParser() {
    if (m_parser) {
        XML_ParserFree(m_parser);
        m_parser = nullptr;
    }
}

void CExpatReader::CreateParser() {
    m_pScratch.reset(new unsigned char[SCRATCH_SIZE]);
    m_scratchSize = SCRATCH_SIZE;
    m_passThrough = ASCII_ONLY || Internal::IsUtf8Locale();
    m_pBuilder.reset(new Internal::CDocumentBuilder(*m_pDocument, Internal::CDocumentBuilder::Hook::Call));
    m_pBuilder->SetLineSource(CurrentLine, this);
    m_pNames.reset(new CNameCache(*this));

    FreeParser();
    if (m_pBuilder->GetSchemaType() == SchemaType_NoNamespaces)
        m_parser = XML_ParserCreate(nullptr);
    else
        m_parser = XML_ParserCreateNS(nullptr, '|');
    if (!m_parser) throw std::bad_alloc();

    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, FnStartElement, FnEndElement);
    XML_SetNamespaceDeclHandler(m_parser, FnStartNamespace, FnEndNamespace);
    XML_SetCharacterDataHandler(m_parser, FnText);
    if (!m_pBuilder->GetContext().GetStripCDATA()) XML_SetCdataSectionHandler(m_parser, FnStartCDATA, FnEndCDATA);
}

unsigned long CExpatReader::CurrentLine(const void* reader) {
    const CExpatReader* self = static_cast<const CExpatReader*>(reader);
    return self->m_parser ? static_cast<unsigned long>(XML_GetCurrentLineNumber(self->m_parser)) : 0;
}

void CExpatReader::Parse(bool isFinal) {
    if (!m_parser) CreateParser();
    // The input goes to expat in pieces: expat copies what it is given into a buffer of
    // its own, which then stays the size of a piece instead of growing to the whole input,
    // and a piece is still in the cache when it is parsed. Expat carries names, characters
    // and line numbers across the boundaries.
    const char* data = reinterpret_cast<const char*>(m_pBuilder->GetData());
    const uint64_t length = m_pBuilder->GetDataLength();
    uint64_t offset = 0;
    XML_Status status = XML_STATUS_OK;
    do {
        const uint64_t piece = std::min<uint64_t>(Internal::kParsePieceSize, length - offset);
        const bool last = offset + piece == length;
        status = XML_Parse(m_parser, data + offset, static_cast<int>(piece), last && isFinal ? 1 : 0);
        offset += piece;
    } while (status == XML_STATUS_OK && !m_pendingException && offset < length);
    if (m_pendingException || status != XML_STATUS_OK) m_pBuilder->Fail();
    if (m_pendingException) {
        Cleanup();
        FreeParser();
        std::exception_ptr pending = m_pendingException;
        m_pendingException = nullptr;
        std::rethrow_exception(pending);
    }
    if (status != XML_STATUS_OK) {
        const std::string message = FormatString("%s at line %d", XML_ErrorString(XML_GetErrorCode(m_parser)),
                                                 static_cast<int>(XML_GetCurrentLineNumber(m_parser)));
        Cleanup();
        FreeParser();
        throw CQvException(message);
    }
    if (isFinal) {
        m_pBuilder->EndDocument();
        FreeParser();
    }
}

std::string CExpatReader::Convert(const char* text, size_t length) {
    wchar_t* wide = reinterpret_cast<wchar_t*>(m_pScratch.get());
    char* narrow = reinterpret_cast<char*>(m_pScratch.get() + m_scratchSize / 2);
    return CEncoder::Utf8ToLocalCodePage(reinterpret_cast<unsigned char*>(const_cast<char*>(text)),
                                         static_cast<int>(length), wide, static_cast<unsigned long>(m_scratchSize / 8),
                                         narrow, static_cast<unsigned long>(m_scratchSize / 2));
}

void CExpatReader::AppendText(const char* text, size_t length) {
    std::string converted;
    if (!m_passThrough && HasHighByte(text, length)) {
        converted = Convert(text, length);
        text = converted.data();
        length = converted.size();
    }
    m_pBuilder->AppendText(text, length);
}

void CExpatReader::StartElement(const char* name, const char** attributes) {
    m_pBuilder->StartElement(m_pNames->Lookup(name));
    if (!attributes || !attributes[0]) return;

    size_t count = 0;
    while (attributes[2 * count])
        ++count;
    m_pBuilder->ReserveAttributes(count);
    for (const char** attribute = attributes; *attribute; attribute += 2) {
        const Internal::CDocumentBuilder::Name* attributeName = m_pNames->Lookup(attribute[0]);
        const char* value = attribute[1];
        const size_t valueLength = std::strlen(value);
        if (m_passThrough || !HasHighByte(value, valueLength)) {
            m_pBuilder->AddAttribute(attributeName, value, valueLength);
        } else {
            const std::string converted = CEncoder::Utf8ToLocalCodePage(value);
            m_pBuilder->AddAttribute(attributeName, converted.data(), converted.size());
        }
    }
}

template <typename Body> void CExpatReader::Guard(Body&& body) {
    if (m_pendingException) return;
    try {
        body();
    } catch (...) {
        m_pendingException = std::current_exception();
        XML_StopParser(m_parser, XML_FALSE);
    }
}

void CExpatReader::FnStartElement(void* userData, const char* name, const char** attributes) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] { reader->StartElement(name, attributes); });
}

void CExpatReader::FnEndElement(void* userData, const char* /*name*/) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] { reader->m_pBuilder->EndElement(); });
}

void CExpatReader::FnStartNamespace(void* userData, const char* prefix, const char* uri) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] {
        reader->m_pBuilder->DeclareNamespace(prefix ? CEncoder::Utf8ToLocalCodePage(prefix) : std::string(),
                                             uri ? CEncoder::Utf8ToLocalCodePage(uri) : std::string());
    });
}

void CExpatReader::FnEndNamespace(void* /*userData*/, const char* /*prefix*/) {
    // Scopes are not tracked: the alias map keeps the last declaration of each prefix.
}

void CExpatReader::FnText(void* userData, const char* text, int length) {
    if (length <= 0) return;
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    if (reader->m_pendingException) return;
    const size_t size = static_cast<size_t>(length);
    // The common case: a piece that fits and needs neither conversion nor removals.
    if (reader->m_pBuilder->AppendPlain(text, size, reader->m_passThrough ? 0 : Internal::kByteHighBits)) return;
    reader->Guard([&] { reader->AppendText(text, size); });
}

void CExpatReader::FnStartCDATA(void* userData) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] { reader->m_pBuilder->AppendText("<![CDATA[", 9); });
}

void CExpatReader::FnEndCDATA(void* userData) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] { reader->m_pBuilder->AppendText("]]>", 3); });
}

} // namespace QvXmlLib10
