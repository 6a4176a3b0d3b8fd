#include "document/ExpatReader.h"

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "internal/DocumentBuilder.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <langinfo.h>
#include <string>

namespace QvXmlLib10 {

namespace {

const uint64_t SCRATCH_SIZE = 1024;

constexpr uint64_t HIGH_BITS = 0x8080808080808080ull;

uint64_t Load64(const char* p) {
    uint64_t word;
    std::memcpy(&word, p, 8);
    return word;
}

uint32_t Load32(const char* p) {
    uint32_t word;
    std::memcpy(&word, p, 4);
    return word;
}

// Whether any byte is outside ASCII, eight bytes per step.
bool HasHighBit(const char* text, size_t length) {
    size_t i = 0;
    for (; i + 8 <= length; i += 8)
        if (Load64(text + i) & HIGH_BITS) return true;
    for (; i < length; ++i)
        if (static_cast<unsigned char>(text[i]) & 0x80) return true;
    return false;
}

// Eight bytes per step: names are short, and this runs for every name expat reports.
// The last step reads the final eight bytes, overlapping the one before.
size_t HashName(const char* text, size_t length) {
    uint64_t hash = 0x9E3779B97F4A7C15ull ^ length;
    uint64_t last;
    if (length >= 8) {
        for (size_t i = 0; i + 8 < length; i += 8) {
            hash = (hash ^ Load64(text + i)) * 0xFF51AFD7ED558CCDull;
            hash ^= hash >> 32;
        }
        last = Load64(text + length - 8);
    } else if (length >= 4) {
        last = Load32(text) | static_cast<uint64_t>(Load32(text + length - 4)) << 32;
    } else {
        last = 0;
        for (size_t i = 0; i < length; ++i)
            last = last << 8 | static_cast<unsigned char>(text[i]);
    }
    hash = (hash ^ last) * 0xC4CEB9FE1A85EC53ull;
    return static_cast<size_t>(hash ^ hash >> 32);
}

// Whether two texts of the same length are equal; names are short, so the words are
// compared inline, the last one overlapping the one before.
inline bool SameBytes(const char* a, const char* b, size_t length) {
    if (length >= 8) {
        for (size_t i = 0; i + 8 < length; i += 8)
            if (Load64(a + i) != Load64(b + i)) return false;
        return Load64(a + length - 8) == Load64(b + length - 8);
    }
    if (length >= 4) return Load32(a) == Load32(b) && Load32(a + length - 4) == Load32(b + length - 4);
    for (size_t i = 0; i < length; ++i)
        if (a[i] != b[i]) return false;
    return true;
}

bool IsUtf8Locale() {
    const char* codeset = nl_langinfo(CODESET);
    return codeset && (std::strcmp(codeset, "UTF-8") == 0 || std::strcmp(codeset, "utf8") == 0);
}

} // namespace

// The names of one parse as expat reports them ("uri|local" or "local", in UTF-8), each
// mapped to the document's interned pair. A name is converted and split at its first
// "|" once, when it is first met; later it costs one hash and one comparison. Kept for
// one parse only, because the conversion depends on the locale of the moment.
class CExpatReader::CNameCache {
public:
    explicit CNameCache(CExpatReader& reader) : m_reader(reader), m_slots(64, Slot{0, nullptr, 0, 0}), m_count(0) {}

    const Internal::CDocumentBuilder::Name* Lookup(const char* name) {
        const size_t length = std::strlen(name);
        const size_t hash = HashName(name, length);
        const size_t mask = m_slots.size() - 1;
        for (size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& slot = m_slots[i];
            if (!slot.name) return Add(name, length, hash);
            if (slot.hash == hash && slot.length == length && SameBytes(m_keys.data() + slot.offset, name, length))
                return slot.name;
        }
    }

private:
    struct Slot {
        size_t hash;
        const Internal::CDocumentBuilder::Name* name;
        size_t offset; // of the raw name in m_keys
        size_t length;
    };

    const Internal::CDocumentBuilder::Name* Add(const char* raw, size_t rawLength, size_t hash) {
        std::string converted;
        const char* name = raw;
        size_t length = rawLength;
        if (!m_reader.m_passThrough && HasHighBit(raw, rawLength)) {
            converted = m_reader.Convert(raw, rawLength);
            name = converted.data();
            length = converted.size();
        }
        const char* bar = static_cast<const char*>(std::memchr(name, '|', length));
        const size_t namespaceLength = bar ? static_cast<size_t>(bar - name) : 0;
        const Internal::CDocumentBuilder::Name* interned =
            bar ? m_reader.m_pBuilder->InternName(name, namespaceLength, bar + 1, length - namespaceLength - 1)
                : m_reader.m_pBuilder->InternName("", 0, name, length);

        if (2 * (m_count + 1) > m_slots.size()) {
            std::vector<Slot> slots(m_slots.size() * 2, Slot{0, nullptr, 0, 0});
            for (const Slot& slot : m_slots)
                if (slot.name) Place(slots, slot);
            m_slots.swap(slots);
        }
        const size_t offset = m_keys.size();
        m_keys.append(raw, rawLength);
        Place(m_slots, Slot{hash, interned, offset, rawLength});
        ++m_count;
        return interned;
    }

    static void Place(std::vector<Slot>& slots, const Slot& slot) {
        const size_t mask = slots.size() - 1;
        size_t i = slot.hash & mask;
        while (slots[i].name)
            i = (i + 1) & mask;
        slots[i] = slot;
    }

    CExpatReader& m_reader;
    std::vector<Slot> m_slots;
    size_t m_count;
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
    m_passThrough = ASCII_ONLY || IsUtf8Locale();
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
    const uint64_t length = m_pBuilder->GetDataLength();
    const XML_Status status = XML_Parse(m_parser, reinterpret_cast<const char*>(m_pBuilder->GetData()),
                                        static_cast<int>(length), isFinal ? 1 : 0);
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
    if (!m_passThrough && HasHighBit(text, length)) {
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
        if (m_passThrough || !HasHighBit(value, valueLength)) {
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
    if (reader->m_pBuilder->AppendPlain(text, size, reader->m_passThrough ? 0 : HIGH_BITS)) return;
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
