#include "document/ExpatReader.h"

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <langinfo.h>
#include <string>

namespace QvXmlLib10 {

namespace {

const uint64_t SCRATCH_SIZE = 1024;
const size_t INITIAL_TEXT_CAPACITY = 4096;

constexpr uint64_t ONES = 0x0101010101010101ull;
constexpr uint64_t HIGH_BITS = 0x8080808080808080ull;
constexpr uint64_t CARRIAGE_RETURNS = ONES * '\r';

constexpr uint64_t ZeroBytes(uint64_t word) { return (word - ONES) & ~word & HIGH_BITS; }

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

// Whether a word holds a byte that text can't take as it is: a carriage return, a NUL
// or, when `highBits` asks for it, a byte outside ASCII.
inline uint64_t OddBytes(uint64_t word, uint64_t highBits) {
    return (word & highBits) | ZeroBytes(word) | ZeroBytes(word ^ CARRIAGE_RETURNS);
}

// Bytes below 0x0E: the carriage return and the NUL among them. Expat hands over line
// ends as pieces of their own, so a long piece holds such a byte only with a tab or a
// control character, and then takes the exact path.
constexpr uint64_t LowBytes(uint64_t word) { return (word - ONES * 0x0E) & ~word & HIGH_BITS; }

// Out of line, so that the short pieces take a path without its register saves.
[[gnu::noinline]] bool CopyPlainLong(char* out, const char* text, size_t length, uint64_t highBits) {
    uint64_t odd = 0;
    for (size_t i = 0; i + 8 < length; i += 8) {
        const uint64_t word = Load64(text + i);
        odd |= (word & highBits) | LowBytes(word);
        std::memcpy(out + i, &word, 8);
    }
    const uint64_t last = Load64(text + length - 8);
    std::memcpy(out + length - 8, &last, 8);
    return (odd | (last & highBits) | LowBytes(last)) == 0;
}

// Copies the bytes to `out` and tells whether they can stay as they are. Most pieces of
// text are such, and this one pass replaces the scans for each odd byte and the copy.
// Short pieces (line ends, indentation, entities) are the most frequent: they take
// overlapping loads instead of a loop.
inline bool CopyPlain(char* out, const char* text, size_t length, uint64_t highBits) {
    if (length >= 8) return CopyPlainLong(out, text, length, highBits);
    uint64_t word;
    if (length >= 4) {
        const uint32_t first = Load32(text);
        const uint32_t last = Load32(text + length - 4);
        std::memcpy(out, &first, 4);
        std::memcpy(out + length - 4, &last, 4);
        word = first | static_cast<uint64_t>(last) << 32;
    } else {
        const unsigned char first = static_cast<unsigned char>(text[0]);
        const unsigned char middle = static_cast<unsigned char>(text[length / 2]);
        const unsigned char last = static_cast<unsigned char>(text[length - 1]);
        out[0] = static_cast<char>(first);
        out[length / 2] = static_cast<char>(middle);
        out[length - 1] = static_cast<char>(last);
        word = (first | middle << 8 | last << 16 | first << 24) * 0x0000000100000001ull;
    }
    return OddBytes(word, highBits) == 0;
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

    const CXmlDocument::CName* Lookup(const char* name) {
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
        const CXmlDocument::CName* name;
        size_t offset; // of the raw name in m_keys
        size_t length;
    };

    const CXmlDocument::CName* Add(const char* raw, size_t rawLength, size_t hash) {
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
        const CXmlDocument::CName* interned =
            bar ? m_reader.m_pDocument->InternName(name, namespaceLength, bar + 1, length - namespaceLength - 1)
                : m_reader.m_pDocument->InternName("", 0, name, length);

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
      m_passThrough(false), m_textSize(0), m_textCapacity(0) {}

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
    m_pNames.reset(new CNameCache(*this));
    m_textSize = 0;
    m_textMarks.clear();

    FreeParser();
    if (m_pDocument->m_schemaType == SchemaType_NoNamespaces)
        m_parser = XML_ParserCreate(nullptr);
    else
        m_parser = XML_ParserCreateNS(nullptr, '|');
    if (!m_parser) throw std::bad_alloc();

    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, FnStartElement, FnEndElement);
    XML_SetNamespaceDeclHandler(m_parser, FnStartNamespace, FnEndNamespace);
    XML_SetCharacterDataHandler(m_parser, FnText);
    if (!m_pDocument->m_pContext->GetStripCDATA()) XML_SetCdataSectionHandler(m_parser, FnStartCDATA, FnEndCDATA);
}

void CExpatReader::Parse(bool isFinal) {
    if (!m_parser) CreateParser();
    const uint64_t length = m_pDocument->m_dataLength;
    const XML_Status status = XML_Parse(m_parser, reinterpret_cast<const char*>(m_pDocument->m_pData.get()),
                                        static_cast<int>(length), isFinal ? 1 : 0);
    if (m_pendingException || status != XML_STATUS_OK) FlushAllPending();
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
    if (isFinal) FreeParser();
}

std::string CExpatReader::Convert(const char* text, size_t length) {
    wchar_t* wide = reinterpret_cast<wchar_t*>(m_pScratch.get());
    char* narrow = reinterpret_cast<char*>(m_pScratch.get() + m_scratchSize / 2);
    return CEncoder::Utf8ToLocalCodePage(reinterpret_cast<unsigned char*>(const_cast<char*>(text)),
                                         static_cast<int>(length), wide, static_cast<unsigned long>(m_scratchSize / 8),
                                         narrow, static_cast<unsigned long>(m_scratchSize / 2));
}

void CExpatReader::GrowText(size_t length) {
    const size_t capacity = std::max({2 * m_textCapacity, m_textSize + length, INITIAL_TEXT_CAPACITY});
    std::unique_ptr<char[]> text(new char[capacity]);
    if (m_textSize) std::memcpy(text.get(), m_pText.get(), m_textSize);
    m_pText.swap(text);
    m_textCapacity = capacity;
}

void CExpatReader::AppendRun(const char* text, size_t length) {
    if (m_textCapacity - m_textSize < length) GrowText(length);
    std::memcpy(m_pText.get() + m_textSize, text, length);
    m_textSize += length;
}

void CExpatReader::AppendText(const char* text, size_t length) {
    // The text in the local code page; it ends at its first NUL, and carriage returns vanish.
    std::string converted;
    if (!m_passThrough && HasHighBit(text, length)) {
        converted = Convert(text, length);
        text = converted.data();
        length = converted.size();
    }
    const char* end = text + strnlen(text, length);
    while (text != end) {
        const char* cr = static_cast<const char*>(std::memchr(text, '\r', static_cast<size_t>(end - text)));
        const char* runEnd = cr ? cr : end;
        AppendRun(text, static_cast<size_t>(runEnd - text));
        text = cr ? cr + 1 : end;
    }
}

void CExpatReader::FlushText(CXmlElement* element, size_t begin, size_t end) {
    if (begin >= end) return;
    const char* text = m_pText.get() + begin;
    const size_t length = end - begin;
    if (element->m_text.empty()) {
        // A new string is allocated at the exact size, where assigning would round it up.
        if (length <= element->m_text.capacity())
            element->m_text.assign(text, length);
        else
            element->m_text = std::string(text, length);
    } else
        element->AppendText(text, static_cast<int>(length));
}

void CExpatReader::FlushAllPending() {
    const std::vector<CXmlElement*>& open = m_pDocument->m_elementStack;
    const size_t count = std::min(open.size(), m_textMarks.size());
    for (size_t depth = 0; depth < count; ++depth) {
        const size_t end = depth + 1 < m_textMarks.size() ? m_textMarks[depth + 1] : m_textSize;
        FlushText(open[depth], m_textMarks[depth], end);
    }
    m_textMarks.clear();
    m_textSize = 0;
}

void CExpatReader::StartElement(const char* name, const char** attributes) {
    CXmlElement* element = m_pDocument->AddElement_Int(m_pNames->Lookup(name));
    m_textMarks.push_back(m_textSize);
    if (!attributes || !attributes[0]) return;

    size_t count = 0;
    while (attributes[2 * count])
        ++count;
    element->m_attributes.reserve(count);
    for (const char** attribute = attributes; *attribute; attribute += 2) {
        const CXmlDocument::CName* attributeName = m_pNames->Lookup(attribute[0]);
        const char* value = attribute[1];
        const size_t valueLength = std::strlen(value);
        if (m_passThrough || !HasHighBit(value, valueLength)) {
            element->NewAttribute(attributeName, value, valueLength);
        } else {
            const std::string converted = CEncoder::Utf8ToLocalCodePage(value);
            element->NewAttribute(attributeName, converted.data(), converted.size());
        }
    }
}

void CExpatReader::EndElement() {
    if (!m_textMarks.empty()) {
        const std::vector<CXmlElement*>& open = m_pDocument->m_elementStack;
        const size_t mark = m_textMarks.back();
        if (!open.empty()) FlushText(open.back(), mark, m_textSize);
        m_textSize = mark;
        m_textMarks.pop_back();
    }
    // Without a hook, closing is just the pop.
    std::vector<CXmlElement*>& stack = m_pDocument->m_elementStack;
    if (!m_pDocument->m_pElementHook && !stack.empty())
        stack.pop_back();
    else
        m_pDocument->EndElement();
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
    reader->Guard([&] { reader->EndElement(); });
}

void CExpatReader::FnStartNamespace(void* userData, const char* prefix, const char* uri) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] {
        const std::string key = prefix ? CEncoder::Utf8ToLocalCodePage(prefix) : std::string();
        reader->m_pDocument->m_namespaceAliases[key] = uri ? CEncoder::Utf8ToLocalCodePage(uri) : std::string();
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
    if (reader->m_textCapacity - reader->m_textSize >= size &&
        CopyPlain(reader->m_pText.get() + reader->m_textSize, text, size, reader->m_passThrough ? 0 : HIGH_BITS)) {
        reader->m_textSize += size;
        return;
    }
    reader->Guard([&] { reader->AppendText(text, size); });
}

void CExpatReader::FnStartCDATA(void* userData) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] {
        if (!reader->m_textMarks.empty()) reader->AppendRun("<![CDATA[", 9);
    });
}

void CExpatReader::FnEndCDATA(void* userData) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] {
        if (!reader->m_textMarks.empty()) reader->AppendRun("]]>", 3);
    });
}

} // namespace QvXmlLib10
