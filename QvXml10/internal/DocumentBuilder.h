#pragma once

#include "document/XmlDocument.h"
#include "internal/ByteScan.h"
#include "internal/Limits.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib10 {

class CXmlSerializationContext;

namespace Internal {

// The one way a reader builds the tree of a document during a load. It keeps the rules
// in one place: text of each open element gathered until its end (or until the load
// fails), carriage returns and everything from a NUL on left out, the element hook, the
// alias map and the nesting limit.
//
// A reader hands over names as interned pairs, text in the local code page in as many
// pieces as it likes, and tells the end of each element and of the document; when it
// fails it calls Fail (or simply lets the builder go), and the tree built so far stays
// in place with its text.
class CDocumentBuilder {
public:
    // An interned pair of local name and namespace URI; a reader keeps the pointer.
    using Name = CXmlDocument::CName;
    // Whether ending an element runs the document's element hook (text input) or not.
    enum class Hook { Call, Ignore };
    // The line that the reader stands at, for the messages; 0 when unknown.
    using LineSource = unsigned long (*)(const void* reader);

    CDocumentBuilder(CXmlDocument& document, Hook hook);
    // Flushes the text of elements still open, as Fail does.
    ~CDocumentBuilder();

    CDocumentBuilder(const CDocumentBuilder&) = delete;
    CDocumentBuilder& operator=(const CDocumentBuilder&) = delete;

    const CXmlSerializationContext& GetContext() const { return *m_document.m_pContext; }
    SchemaType GetSchemaType() const { return m_document.m_schemaType; }
    // The raw input of the load, valid until the load returns.
    const unsigned char* GetData() const { return m_document.m_pInput; }
    uint64_t GetDataLength() const { return m_document.m_dataLength; }

    void SetLineSource(LineSource source, const void* reader) {
        m_lineSource = source;
        m_lineReader = reader;
    }

    const Name* InternName(const char* namespaceUri, size_t namespaceLength, const char* localName,
                           size_t localLength) const {
        return m_document.InternName(namespaceUri, namespaceLength, localName, localLength);
    }

    // Opens an element: the root when there is none yet, else a child of the innermost
    // open element. Throws when the document already has a root and all its elements
    // are closed, or when the element would nest deeper than kMaxNestingDepth.
    CXmlElement* StartElement(const Name* name);
    // The same with the names as strings; a reader that meets a name again and again
    // interns it once and keeps the Name instead. Prefixes play no part in the tree.
    CXmlElement* StartElement(const std::string& namespaceUri, const std::string& localName) {
        return StartElement(InternName(namespaceUri.data(), namespaceUri.size(), localName.data(), localName.size()));
    }
    // Attributes of the element opened last, in document order.
    void ReserveAttributes(size_t count);
    void AddAttribute(const Name* name, const char* value, size_t valueLength);
    void AddAttribute(const std::string& localName, const std::string& value, const std::string& namespaceUri) {
        AddAttribute(InternName(namespaceUri.data(), namespaceUri.size(), localName.data(), localName.size()),
                     value.data(), value.size());
    }
    // A namespace declaration: the alias map keeps the last one of each prefix.
    void DeclareNamespace(std::string prefix, std::string namespaceUri);

    // Text for the innermost open element, in the local code page.
    void AppendText(const char* text, size_t length);
    // The fast path of text: appends the piece and returns true when it fits the buffer
    // and holds no carriage return, no NUL and, where `highBits` asks for it
    // (0x8080808080808080), no byte outside ASCII. Otherwise appends nothing.
    bool AppendPlain(const char* text, size_t length, uint64_t highBits) {
        if (m_textCapacity - m_textSize < length || !CopyPlain(m_pText.get() + m_textSize, text, length, highBits))
            return false;
        m_textSize += length;
        return true;
    }

    // Closes the innermost open element with its text, then runs the hook if asked to.
    void EndElement();
    // Ends a load that succeeded.
    void EndDocument();
    // Ends a load that failed: open elements receive their text gathered so far and
    // stay in the tree.
    void Fail() noexcept;

    size_t GetDepth() const { return m_document.m_elementStack.size(); }

private:
    static bool CopyPlainLong(char* out, const char* text, size_t length, uint64_t highBits);
    // Copies the bytes to `out` and tells whether they can stay as they are. Short pieces
    // (line ends, indentation, entities) are the most frequent: they take overlapping
    // loads instead of a loop. Long pieces with a tab or a control character take the
    // exact path.
    static bool CopyPlain(char* out, const char* text, size_t length, uint64_t highBits) {
        if (length >= 8) return CopyPlainLong(out, text, length, highBits);
        if (length == 0) return true;
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
        return ((word & highBits) | ZeroBytes(word) | BytesEqual(word, '\r')) == 0;
    }

    void AppendRun(const char* text, size_t length);
    void GrowText(size_t length);
    void FlushText(CXmlElement* element, size_t begin, size_t end);
    void FlushAll() noexcept;
    [[noreturn]] void ThrowTooDeep() const;

    CXmlDocument& m_document;
    const bool m_callHook;
    bool m_finished;
    LineSource m_lineSource;
    const void* m_lineReader;
    // Character data of the open elements, gathered in one buffer: each open element
    // owns the stretch from its mark to the next element's mark (or the end), and text
    // always belongs to the innermost one.
    std::unique_ptr<char[]> m_pText;
    size_t m_textSize;
    size_t m_textCapacity;
    std::vector<size_t> m_textMarks;
};

} // namespace Internal
} // namespace QvXmlLib10
