#include "document/XmlTextWriter.h"

#include <array>
#include <cstring>

#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "internal/ByteScan.h"
#include "internal/Constants.h"
#include "internal/TextAppender.h"

namespace QvXmlLib10 {

namespace {

constexpr size_t kXmlNamespaceLength = sizeof(CXmlWriter::XML_NAMESPACE) - 1;
constexpr uint64_t kFlushThreshold = 4096;
constexpr char kCDataStart[] = "<![CDATA[";
constexpr size_t kCDataStartLength = sizeof(kCDataStart) - 1;

// Bytes that end a run of plain characters: the terminator and those that are
// escaped, dropped or expanded. The double quote is plain in text.
constexpr std::array<bool, 256> MakeStopTable(bool isAttribute) {
    std::array<bool, 256> table{};
    table['\0'] = true;
    table['\n'] = true;
    table['\r'] = true;
    table['&'] = true;
    table['<'] = true;
    table['>'] = true;
    table['"'] = isAttribute;
    return table;
}

constexpr std::array<bool, 256> kTextStops = MakeStopTable(false);
constexpr std::array<bool, 256> kAttributeStops = MakeStopTable(true);

// A run of tabs for indentation.
constexpr char kTabs[] = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
constexpr uint64_t kTabCount = sizeof(kTabs) - 1;

const std::string& InstanceNamespace() {
    static const std::string uri(Internal::kXsiNamespace);
    return uri;
}

} // namespace

// Puts pieces of output straight into the stream's buffer, which sees them when the
// output goes out of scope. Every event keeps one for its writing and lets it go before
// the stream is flushed. Text given as a string ends at its first NUL, as in the
// stream's own appends.
class CXmlTextWriter::COutput {
public:
    explicit COutput(CTextStream& stream) : m_appender(stream) {}
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;

    void Put(char c) { m_appender.Put(c); }

    template <size_t N> void Put(const char (&literal)[N]) { m_appender.Put(literal, N - 1); }

    void Put(const std::string& text) {
        const char* const data = text.data();
        const size_t size = text.size();
        if (size <= 16 && !Internal::HasNulShort(data, size)) {
            m_appender.Put(data, size);
            return;
        }
        const void* const nul = std::memchr(data, '\0', size);
        m_appender.Put(data, nul != nullptr ? static_cast<size_t>(static_cast<const char*>(nul) - data) : size);
    }

    // Bytes as they stand.
    void Put(const char* data, size_t length) { m_appender.Put(data, length); }

private:
    Internal::CTextAppender m_appender;
};

CXmlTextWriter::CXmlTextWriter(CTextStream& stream)
    : CXmlWriter("CXmlTextWriter"), m_eol("\n"), m_eolType(EOLType_LF), m_format(true), m_pStream(&stream) {}

CXmlTextWriter::~CXmlTextWriter() = default;

// ---------------------------------------------------------------------------
// Settings

bool CXmlTextWriter::GetFormat() const { return m_format; }

void CXmlTextWriter::SetFormat(bool format) { m_format = format; }

EOLType CXmlTextWriter::GetEOLType() const { return m_eolType; }

void CXmlTextWriter::SetEOLType(EOLType eolType) {
    switch (eolType) {
    case EOLType_CRLF:
        m_eol = "\r\n";
        break;
    case EOLType_LF:
        m_eol = "\n";
        break;
    default:
        throw CQvException("Invalid EOL type.");
    }
    m_eolType = eolType;
}

// ---------------------------------------------------------------------------
// Pieces of output. The small helpers are inline so that calls within the library
// stay direct.

inline void CXmlTextWriter::PutEol(COutput& out) const { out.Put(m_eol.data(), m_eol.size()); }

inline void CXmlTextWriter::PutTabs(COutput& out, uint64_t count) {
    for (; count > kTabCount; count -= kTabCount)
        out.Put(kTabs, kTabCount);
    out.Put(kTabs, static_cast<size_t>(count));
}

inline void CXmlTextWriter::PutDeclaration(COutput& out, const std::string& alias, const std::string& namespaceUri) {
    out.Put(" xmlns:");
    out.Put(alias);
    out.Put("=\"");
    out.Put(namespaceUri);
    out.Put('"');
}

inline void CXmlTextWriter::FlushIfFull() {
    if (m_pStream->GetLength() >= kFlushThreshold) m_pStream->Flush();
}

void CXmlTextWriter::Escape(COutput& out, const char* text, bool isAttribute) const {
    if (text == nullptr) return;
    const std::array<bool, 256>& stops = isAttribute ? kAttributeStops : kTextStops;
    const char* run = text;
    for (;;) {
        const char* p = run;
        while (!stops[static_cast<unsigned char>(*p)])
            ++p;
        out.Put(run, static_cast<size_t>(p - run));
        switch (*p) {
        case '\0':
            return;
        case '\n':
            if (isAttribute) {
                out.Put("&#xA;");
            } else if (m_eolType == EOLType_CRLF) {
                out.Put("\r\n");
            } else if (m_eolType == EOLType_LF) {
                out.Put('\n');
            } else {
                throw CQvException("Invalid EOL type.");
            }
            break;
        case '"':
            out.Put("&quot;");
            break;
        case '&':
            out.Put("&amp;");
            break;
        case '<':
            out.Put("&lt;");
            break;
        case '>':
            out.Put("&gt;");
            break;
        default: // '\r' is dropped
            break;
        }
        run = p + 1;
    }
}

void CXmlTextWriter::PadAndAppend(const char* text, bool isAttribute) {
    COutput out(*m_pStream);
    Escape(out, text, isAttribute);
}

// ---------------------------------------------------------------------------
// Document

void CXmlTextWriter::Open() {
    CXmlWriter::Open();
    m_pStream->Open();
}

void CXmlTextWriter::Close() {
    // The stream is closed even when an element is left open.
    m_pStream->Close();
    CXmlWriter::Close();
}

void CXmlTextWriter::WriteStartDocument() {
    {
        COutput out(*m_pStream);
        out.Put("<?xml version=\"1.0\"");
        switch (m_pStream->GetEncoding()) {
        case XmlEncoding_UTF8:
            out.Put(" encoding=\"UTF-8\"");
            break;
        case XmlEncoding_UTF16:
            out.Put(" encoding=\"UTF-16\"");
            break;
        default:
            break;
        }
        out.Put("?>");
        PutEol(out);
    }
    FlushIfFull();
}

void CXmlTextWriter::WriteHeaderDirective(const std::string& text) {
    // Only an open element counts: after the root has been closed a directive passes again.
    if (m_pContext) throw CQvException("Headed directives must appear before an Element has been added.");
    {
        COutput out(*m_pStream);
        out.Put(text);
        PutEol(out);
    }
    FlushIfFull();
}

void CXmlTextWriter::WriteRawElement(const std::string& text) {
    COutput out(*m_pStream);
    out.Put(text);
    if (m_format) PutEol(out);
}

void CXmlTextWriter::WriteComment(const std::string& text) {
    {
        COutput out(*m_pStream);
        out.Put("<!--");
        Escape(out, text.c_str(), false);
        out.Put("-->");
        PutEol(out);
    }
    FlushIfFull();
}

void CXmlTextWriter::WritePI(const std::string& text) {
    {
        COutput out(*m_pStream);
        out.Put(text);
        PutEol(out);
        PutEol(out);
    }
    FlushIfFull();
}

void CXmlTextWriter::WriteInlineSchema(const std::string& schemaText) {
    {
        COutput out(*m_pStream);
        out.Put(' ');
        PutEol(out);
        out.Put(schemaText);
        PutEol(out);
    }
    FlushIfFull();
}

// ---------------------------------------------------------------------------
// Elements

inline void CXmlTextWriter::CloseStartTag(COutput& out) {
    if (!m_pContext) return;
    ++m_pContext->m_childCount;
    if (m_pContext->m_startTagOpen) {
        m_pContext->m_startTagOpen = false;
        out.Put('>');
        if (m_format) PutEol(out);
    }
}

void CXmlTextWriter::CloseParentElm() {
    COutput out(*m_pStream);
    CloseStartTag(out);
}

void CXmlTextWriter::PutElementName(COutput& out, CXmlWriterContext& context, const std::string& namespaceUri) {
    const std::string* prefix = nullptr;
    const CXmlWriterContext* const parent = context.m_pParent.get();
    if (namespaceUri.empty()) {
        prefix = nullptr;
    } else if (parent != nullptr && RecallNamePrefix(*parent, prefix) && namespaceUri == parent->m_namespaceUri) {
        // A child in its parent's namespace shares the parent's scope, which still gives
        // that namespace the prefix the parent was written with.
    } else if (namespaceUri == context.GetDefaultNamespace()) {
        prefix = nullptr;
    } else {
        const NamespaceMap& map = context.GetNamespaceMap();
        const auto found = map.find(namespaceUri);
        if (found != map.end()) {
            prefix = &found->second;
        } else {
            prefix = &SetAlias(context, namespaceUri, GetUniquePrefix(map));
            out.Put(*prefix);
            out.Put(':');
            out.Put(context.m_localName);
            PutDeclaration(out, *prefix, namespaceUri);
            RememberNamePrefix(context, prefix);
            return;
        }
    }
    if (prefix != nullptr) {
        out.Put(*prefix);
        out.Put(':');
    }
    out.Put(context.m_localName);
    RememberNamePrefix(context, prefix);
}

void CXmlTextWriter::WriteStartElement(const std::string& localName, const std::string& namespaceUri) {
    {
        COutput out(*m_pStream);
        CloseStartTag(out);

        const bool isRoot = !m_pContext;
        PushContext(localName, namespaceUri);
        CXmlWriterContext& context = *m_pContext;

        if (m_format) PutTabs(out, context.m_depth);
        out.Put('<');
        PutElementName(out, context, namespaceUri);

        if (isRoot) {
            // What was declared before the first element, but never the xml namespace.
            if (!m_defaultNamespace.empty()) {
                out.Put(" xmlns=\"");
                out.Put(m_defaultNamespace);
                out.Put('"');
            }
            for (const auto& entry : m_namespaceMap) {
                if (entry.first.compare(0, kXmlNamespaceLength, XML_NAMESPACE) != 0)
                    PutDeclaration(out, entry.second, entry.first);
            }
        }
    }
    FlushIfFull();
}

void CXmlTextWriter::WriteEndElement() {
    if (!m_pContext) throw CQvException("An Element has not been opened.");
    {
        CXmlWriterContext& context = *m_pContext;
        COutput out(*m_pStream);
        if (context.m_startTagOpen) {
            out.Put("/>");
        } else {
            if (m_format && context.m_childCount > 0 && context.m_depth > 0) PutTabs(out, context.m_depth);
            out.Put("</");
            const std::string* prefix = nullptr;
            if (!RecallNamePrefix(context, prefix)) {
                prefix = nullptr;
                if (!context.m_namespaceUri.empty() && context.m_namespaceUri != context.GetDefaultNamespace())
                    prefix = &context.GetNamespaceMapValue(context.m_namespaceUri);
            }
            if (prefix != nullptr) {
                out.Put(*prefix);
                out.Put(':');
            }
            out.Put(context.m_localName);
            out.Put('>');
        }
        if (m_format) PutEol(out);
        PopContext();
    }
    FlushIfFull();
}

void CXmlTextWriter::WriteString(const std::string& text, ItemType /*type*/) {
    if (text.empty()) return;
    {
        COutput out(*m_pStream);
        if (m_pContext && m_pContext->m_startTagOpen) {
            m_pContext->m_startTagOpen = false;
            out.Put('>');
        }
        // Text that the reader kept with its CDATA markers goes back out as it stands.
        if (text[0] == '<' && text.compare(0, kCDataStartLength, kCDataStart) == 0)
            out.Put(text);
        else
            Escape(out, text.c_str(), false);
    }
    FlushIfFull();
}

// ---------------------------------------------------------------------------
// Attributes

inline void CXmlTextWriter::CheckAttributeAllowed() const {
    if (!m_pContext || !m_pContext->m_startTagOpen) throw CQvException("Attributes must be added before elements");
}

const std::string& CXmlTextWriter::AliasOrDeclare(COutput& out, const std::string& namespaceUri,
                                                  bool blankBeforeDeclaration) {
    CXmlWriterContext& context = *m_pContext;
    const NamespaceMap& map = context.GetNamespaceMap();
    const auto found = map.find(namespaceUri);
    if (found != map.end()) return found->second;

    const std::string& alias = SetAlias(context, namespaceUri, GetUniquePrefix(map));
    if (blankBeforeDeclaration) out.Put(' ');
    out.Put("xmlns:");
    out.Put(alias);
    out.Put("=\"");
    out.Put(namespaceUri);
    out.Put("\" ");
    return alias;
}

void CXmlTextWriter::WriteAttributeString(const std::string& localName, const std::string& namespaceUri,
                                          const std::string& value, ItemType /*type*/) {
    CheckAttributeAllowed();
    {
        COutput out(*m_pStream);
        out.Put(' ');
        // The default namespace plays no part: a namespaced attribute always has a prefix.
        if (!namespaceUri.empty()) {
            out.Put(AliasOrDeclare(out, namespaceUri, false));
            out.Put(':');
        }
        out.Put(localName);
        out.Put("=\"");
        Escape(out, value.c_str(), true);
        out.Put('"');
    }
    FlushIfFull();
}

void CXmlTextWriter::WriteAttributeNil() {
    CheckAttributeAllowed();
    static const std::string nil("nil");
    static const std::string trueText("true");
    WriteAttributeString(nil, InstanceNamespace(), trueText, ItemType_boolean);
}

void CXmlTextWriter::WriteAttributeType(const std::string& typeNamespaceUri, const std::string& typeName,
                                        ItemType type) {
    CheckAttributeAllowed();
    std::string value;
    if (typeNamespaceUri.empty() || typeNamespaceUri == m_pContext->GetDefaultNamespace()) {
        value = typeName;
    } else {
        // The declaration ends in a blank and the attribute begins with one: two blanks.
        COutput out(*m_pStream);
        value = AliasOrDeclare(out, typeNamespaceUri, true);
        value += ':';
        value += typeName;
    }
    static const std::string typeText("type");
    WriteAttributeString(typeText, InstanceNamespace(), value, type);
}

} // namespace QvXmlLib10
