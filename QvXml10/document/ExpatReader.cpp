#include "document/ExpatReader.h"

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"

#include <expat.h>

#include <cstring>
#include <langinfo.h>
#include <string>

namespace QvXmlLib10 {

namespace {

const uint64_t SCRATCH_SIZE = 1024;

// Whether any byte is outside ASCII, eight bytes per step.
bool HasHighBit(const char* text, size_t length) {
    size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        uint64_t word;
        std::memcpy(&word, text + i, 8);
        if (word & 0x8080808080808080ull) return true;
    }
    for (; i < length; ++i)
        if (static_cast<unsigned char>(text[i]) & 0x80) return true;
    return false;
}

bool IsUtf8Locale() {
    const char* codeset = nl_langinfo(CODESET);
    return codeset && (std::strcmp(codeset, "UTF-8") == 0 || std::strcmp(codeset, "utf8") == 0);
}

} // namespace

CExpatReader::CExpatReader(CXmlDocument& document)
    : CInstanceMonitor("CExpatReader"),
      m_pDocument(&document),
      m_scratchSize(0),
      m_parser(nullptr),
      m_passThrough(false),
      m_depth(0) {}

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

    FreeParser();
    if (m_pDocument->m_schemaType == SchemaType_NoNamespaces)
        m_parser = XML_ParserCreate(nullptr);
    else
        m_parser = XML_ParserCreateNS(nullptr, '|');
    if (!m_parser) throw std::bad_alloc();

    m_pendingText.assign(1, std::string());
    m_depth = 0;
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, FnStartElement, FnEndElement);
    XML_SetNamespaceDeclHandler(m_parser, FnStartNamespace, FnEndNamespace);
    XML_SetCharacterDataHandler(m_parser, FnText);
    if (!m_pDocument->m_pContext->GetStripCDATA())
        XML_SetCdataSectionHandler(m_parser, FnStartCDATA, FnEndCDATA);
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
        const std::string message =
            FormatString("%s at line %d", XML_ErrorString(XML_GetErrorCode(m_parser)),
                         static_cast<int>(XML_GetCurrentLineNumber(m_parser)));
        Cleanup();
        FreeParser();
        throw CQvException(message);
    }
    if (isFinal) FreeParser();
}

void CExpatReader::AppendPending(const char* text, size_t length) {
    if (m_depth == 0 || length == 0) return;
    // The text ends at its first NUL, and carriage returns vanish.
    const char* end = text + strnlen(text, length);
    std::string& pending = PendingText();
    while (text != end) {
        const char* cr = static_cast<const char*>(std::memchr(text, '\r', static_cast<size_t>(end - text)));
        const char* runEnd = cr ? cr : end;
        pending.append(text, static_cast<size_t>(runEnd - text));
        text = cr ? cr + 1 : end;
    }
}

void CExpatReader::FlushPending(CXmlElement* element, size_t depth) {
    std::string& pending = m_pendingText[depth];
    if (pending.empty()) return;
    element->AppendText(pending.data(), static_cast<int>(pending.size()));
    pending.clear();
}

void CExpatReader::FlushAllPending() {
    const std::vector<CXmlElement*>& open = m_pDocument->m_elementStack;
    for (size_t depth = 1; depth <= m_depth && depth <= open.size(); ++depth) FlushPending(open[depth - 1], depth);
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
    reader->Guard([&] {
        CXmlDocument* document = reader->m_pDocument;

        // The name, in the local code page; converted only when it has to be.
        size_t nameLength = std::strlen(name);
        std::string converted;
        if (!reader->m_passThrough && HasHighBit(name, nameLength)) {
            wchar_t* wide = reinterpret_cast<wchar_t*>(reader->m_pScratch.get());
            char* narrow = reinterpret_cast<char*>(reader->m_pScratch.get() + reader->m_scratchSize / 2);
            converted = CEncoder::Utf8ToLocalCodePage(
                reinterpret_cast<unsigned char*>(const_cast<char*>(name)), static_cast<int>(nameLength), wide,
                static_cast<unsigned long>(reader->m_scratchSize / 8), narrow,
                static_cast<unsigned long>(reader->m_scratchSize / 2));
            name = converted.c_str();
            nameLength = converted.size();
        }

        const char* bar = static_cast<const char*>(std::memchr(name, '|', nameLength));
        CXmlElement* element =
            bar ? document->AddElement_Int(name, static_cast<size_t>(bar - name), bar + 1,
                                           nameLength - static_cast<size_t>(bar - name) - 1)
                : document->AddElement_Int("", 0, name, nameLength);
        if (++reader->m_depth == reader->m_pendingText.size()) reader->m_pendingText.emplace_back();

        if (attributes && attributes[0]) {
            size_t count = 0;
            while (attributes[2 * count]) ++count;
            element->m_attributes.reserve(count);
        }
        for (const char** attribute = attributes; attribute && attribute[0]; attribute += 2) {
            const char* attributeName = attribute[0];
            const char* value = attribute[1];
            size_t attributeNameLength = std::strlen(attributeName);
            size_t valueLength = std::strlen(value);
            std::string convertedName;
            std::string convertedValue;
            if (!reader->m_passThrough) {
                if (HasHighBit(attributeName, attributeNameLength)) {
                    convertedName = CEncoder::Utf8ToLocalCodePage(attributeName);
                    attributeName = convertedName.c_str();
                    attributeNameLength = convertedName.size();
                }
                if (HasHighBit(value, valueLength)) {
                    convertedValue = CEncoder::Utf8ToLocalCodePage(value);
                    value = convertedValue.c_str();
                    valueLength = convertedValue.size();
                }
            }
            const char* attributeBar = static_cast<const char*>(std::memchr(attributeName, '|', attributeNameLength));
            if (attributeBar) {
                const size_t namespaceLength = static_cast<size_t>(attributeBar - attributeName);
                element->AddAttribute(attributeBar + 1, attributeNameLength - namespaceLength - 1, value, valueLength,
                                      attributeName, namespaceLength);
            } else {
                element->AddAttribute(attributeName, attributeNameLength, value, valueLength, "", 0);
            }
        }
    });
}

void CExpatReader::FnEndElement(void* userData, const char* /*name*/) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] {
        CXmlDocument* document = reader->m_pDocument;
        if (reader->m_depth > 0 && !document->m_elementStack.empty())
            reader->FlushPending(document->m_elementStack.back(), reader->m_depth);
        if (reader->m_depth > 0) --reader->m_depth;
        document->EndElement();
    });
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
    reader->Guard([&] {
        if (reader->m_passThrough || !HasHighBit(text, static_cast<size_t>(length))) {
            reader->AppendPending(text, static_cast<size_t>(length));
            return;
        }
        wchar_t* wide = reinterpret_cast<wchar_t*>(reader->m_pScratch.get());
        char* narrow = reinterpret_cast<char*>(reader->m_pScratch.get() + reader->m_scratchSize / 2);
        const std::string converted = CEncoder::Utf8ToLocalCodePage(
            reinterpret_cast<unsigned char*>(const_cast<char*>(text)), length, wide,
            static_cast<unsigned long>(reader->m_scratchSize / 8), narrow,
            static_cast<unsigned long>(reader->m_scratchSize / 2));
        reader->AppendPending(converted.data(), converted.size());
    });
}

void CExpatReader::FnStartCDATA(void* userData) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] { reader->AppendPending("<![CDATA[", 9); });
}

void CExpatReader::FnEndCDATA(void* userData) {
    CExpatReader* reader = static_cast<CExpatReader*>(userData);
    reader->Guard([&] { reader->AppendPending("]]>", 3); });
}

} // namespace QvXmlLib10
