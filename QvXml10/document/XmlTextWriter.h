#pragma once

#include "../foundation/QvExport.h"

#include <cstdint>
#include <string>

#include "XmlWriter.h"
#include "../foundation/QvTypes.h"

namespace QvXmlLib10 {

class CTextStream;

// Writes XML text into a CTextStream, which it does not own. Values arrive as
// finished text, so the ItemType arguments are not looked at. The writer checks only
// the call order of attributes, header directives and open elements at Close.
class QVXML_API CXmlTextWriter : public CXmlWriter {
public:
    explicit CXmlTextWriter(CTextStream& stream);
    ~CXmlTextWriter() override;

    // Opens the stream.
    void Open() override;
    // Closes the stream, then throws if an element is still open.
    void Close() override;
    void WriteComment(const std::string& text) override;
    void WritePI(const std::string& text) override;
    void WriteInlineSchema(const std::string& schemaText) override;
    void WriteStartElement(const std::string& localName, const std::string& namespaceUri) override;
    void WriteString(const std::string& text, ItemType type) override;
    void WriteEndElement() override;
    void WriteAttributeString(const std::string& localName, const std::string& namespaceUri, const std::string& value,
                              ItemType type) override;
    void WriteAttributeType(const std::string& typeNamespaceUri, const std::string& typeName, ItemType type) override;
    void WriteAttributeNil() override;

    // Indent and break lines.
    bool GetFormat() const;
    void SetFormat(bool format);
    EOLType GetEOLType() const;
    // Throws for a value that is no EOLType, and then changes nothing.
    void SetEOLType(EOLType eolType);

    // The XML declaration, with the encoding of the stream.
    void WriteStartDocument();
    // Raw text and a line end; refused while an element is open.
    void WriteHeaderDirective(const std::string& text);
    // Raw text, and a line end when formatting.
    void WriteRawElement(const std::string& text);

    // Counts a child of the open element and closes its start tag if still open.
    void CloseParentElm();
    // Appends text with the markup characters escaped, as text or as attribute value.
    void PadAndAppend(const char* text, bool isAttribute);

private:
    // Puts pieces of output straight into the stream's buffer.
    class COutput;

    void CloseStartTag(COutput& out);
    void Escape(COutput& out, const char* text, bool isAttribute) const;
    void PutEol(COutput& out) const;
    static void PutTabs(COutput& out, uint64_t count);
    // ` xmlns:alias="uri"` with the URI as it stands.
    static void PutDeclaration(COutput& out, const std::string& alias, const std::string& namespaceUri);
    void FlushIfFull();
    // Throws unless an element is open with its start tag not yet closed.
    void CheckAttributeAllowed() const;
    // The name of the element just opened, with its prefix and the declaration of a prefix
    // that had to be invented. The prefix is remembered for the end tag and the children.
    void PutElementName(COutput& out, CXmlWriterContext& context, const std::string& namespaceUri);
    // The alias of a namespace in the scope of the open element. When there is none, one
    // is invented, entered in the scope and declared on the spot, followed by a blank.
    const std::string& AliasOrDeclare(COutput& out, const std::string& namespaceUri, bool blankBeforeDeclaration);

    std::string m_eol;
    EOLType m_eolType;
    bool m_format;
    CTextStream* m_pStream;
};

} // namespace QvXmlLib10
