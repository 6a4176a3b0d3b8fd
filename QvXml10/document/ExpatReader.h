#pragma once

#include "../foundation/CriticalSection.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

struct XML_ParserStruct;

namespace QvXmlLib10 {

class CXmlDocument;
namespace Internal {
class CDocumentBuilder;
}

// Adapts the expat parser to the document tree for one parse of the document's raw
// data, which goes to expat in pieces.
class CExpatReader : public CInstanceMonitor {
public:
    explicit CExpatReader(CXmlDocument& document);
    ~CExpatReader() override;

    CExpatReader(const CExpatReader&) = delete;
    CExpatReader& operator=(const CExpatReader&) = delete;

    // Allocates the scratch buffer, creates and configures the parser.
    void CreateParser();
    // Parses the whole raw data of the document. Throws CQvException with expat's
    // message and the line on malformed input.
    void Parse(bool isFinal);
    void Cleanup();

    static void FnStartElement(void* userData, const char* name, const char** attributes);
    static void FnEndElement(void* userData, const char* name);
    static void FnStartNamespace(void* userData, const char* prefix, const char* uri);
    static void FnEndNamespace(void* userData, const char* prefix);
    static void FnText(void* userData, const char* text, int length);
    static void FnStartCDATA(void* userData);
    static void FnEndCDATA(void* userData);

private:
    class CNameCache;

    void FreeParser();
    // Handler bodies.
    void StartElement(const char* name, const char** attributes);
    void AppendText(const char* text, size_t length);
    static unsigned long CurrentLine(const void* reader);
    // Converts UTF-8 from expat to the local code page in the scratch buffer.
    std::string Convert(const char* text, size_t length);
    // Runs a handler body; an exception stops the parser and is rethrown by Parse,
    // so that it never unwinds through expat.
    template <typename Body> void Guard(Body&& body);

    CXmlDocument* m_pDocument;
    std::unique_ptr<unsigned char[]> m_pScratch;
    uint64_t m_scratchSize;
    XML_ParserStruct* m_parser;
    // True when UTF-8 from expat is already the local code page (ASCIIOnly or a UTF-8 locale).
    bool m_passThrough;
    std::exception_ptr m_pendingException;
    // Names as expat reports them, each converted, split and interned once per parse.
    std::unique_ptr<CNameCache> m_pNames;
    // Builds the tree; an element receives its text at its end tag, or when the parse
    // stops early.
    std::unique_ptr<Internal::CDocumentBuilder> m_pBuilder;
};

} // namespace QvXmlLib10
