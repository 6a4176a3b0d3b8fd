#pragma once

#include "FIVocabulary.h"
#include "FastInfosetContext.h"
#include "../document/XmlWriter.h"
#include "../foundation/QvExport.h"
#include "../foundation/QvTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib10 {

class CBinaryStream;

// The XML declarations that may stand in front of a Fast Infoset document; FInfoDecl
// value n selects entry n - 1.
inline constexpr const char* const FI_DECLARATION_LIST[9] = {
    "<?xml encoding='finf'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
};

// The URI a document announces its generated vocabulary under when the context names none.
inline constexpr const char FI_DEFAULT_EXTERNAL_VOCABULARY_URI[] = "urn:qvxml10:fastinfoset:vocabulary";

// Writes the events of the writer frame as a Fast Infoset document into a
// CBinaryStream, which it does not own. The octets reach the stream in blocks: all of
// them at the end of the document, or, after a failure, when the writer is destroyed. Names and short values are sent
// once and then by index; values are written as the context's encodings say. Namespace declarations are written on the
// root element only. Comments, processing instructions and inline schemas are not carried.
class QVXML_API CFastInfosetWriter : public CXmlWriter {
public:
    CFastInfosetWriter(const CFastInfosetContext& context, CBinaryStream& stream);
    ~CFastInfosetWriter() override;

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

    // The optional XML declaration, the header and the reference to the generated
    // vocabulary if the context uses one.
    void WriteStartDocument(FInfoDecl declaration);
    // The document's terminator, shared with a pending one.
    void WriteEndDocument();

private:
    // The tables of the working vocabulary that grow while writing, hashed; private to
    // the writer's source.
    class CIndexTable;
    class CNameTable;
    struct CTables;

    // Flushes the pending element with or without the attribute bit.
    void WriteElement(bool hasAttributes);
    void WriteNamespaceDeclarations();
    // The prefix the element's name takes in its context, inventing one if needed.
    const std::string& ElementPrefix(CXmlWriterContext& context);
    const std::string& AttributePrefix(const std::string& namespaceUri);
    void CheckAttributeAllowed() const;

    void QualifiedNameOrIndexBit2(unsigned char prefixOctet, const std::string& prefix, const std::string& namespaceUri,
                                  const std::string& localName, CNameTable& names);
    void QualifiedNameOrIndexBit3(unsigned char prefixOctet, const std::string& prefix, const std::string& namespaceUri,
                                  const std::string& localName, CNameTable& names);
    // The literal octet is decided; writes the parts and enters the key.
    void LiteralQualifiedName(const std::string& prefix, const std::string& namespaceUri, const std::string& localName,
                              CNameTable& names, size_t hash);
    // A prefix, namespace or local name by index, or literally and then added.
    void NamePart(const std::string& name, CIndexTable& table);
    void NonIdentifyingStringOrIndexBit1(const std::string& text, CIndexTable& table, uint64_t maxAddLength,
                                         ItemType type);
    void NonIdentifyingStringOrIndexBit3(unsigned char prefixOctet, const std::string& text, CIndexTable& table,
                                         uint64_t maxAddLength, ItemType type);

    void Integer1To2pw20Bit2(unsigned char prefix, uint64_t value);
    void Integer1To2pw20Bit3(unsigned char prefix, uint64_t value);
    void Integer1To2pw20Bit4(unsigned char prefix, uint64_t value);
    void Integer0To2pw20Bit2(unsigned char prefix, uint64_t value);
    void NonEmptyOctetStringBit5(unsigned char prefix, const unsigned char* data, uint64_t length);
    void NonEmptyOctetStringBit7(unsigned char prefix, const unsigned char* data, uint64_t length);
    void NonEmptyOctetUTF8StringBit2(unsigned char prefix, const std::string& text);
    void EncodedCharacterStringBit5(unsigned char prefix, const std::string& text, ItemType type);
    void EncodedCharacterStringBit3(unsigned char prefix, const std::string& text, ItemType type);
    // The encoded octets of a value: the restricted alphabet's packing or the
    // algorithm's bytes, in m_scratch.
    void AppendRestrictedAlphabetString(uint64_t index, const std::string& text);
    void EncodeByAlgorithm(uint64_t index, const std::string& text);
    // The text in UTF-8: the text itself when it is plain ASCII, else a conversion
    // held in m_scratch.
    const unsigned char* Utf8(const std::string& text, uint64_t& length);

    void Put(unsigned char octet) {
        if (m_outUsed == kOutCapacity) FlushOutput();
        m_pOut[m_outUsed++] = octet;
    }
    void Put(const unsigned char* data, uint64_t length);
    // Hands the octets collected so far to the stream.
    void FlushOutput();
    void FlushQuietly() noexcept;

    CBinaryStream* m_pStream;
    const CFastInfosetContext* m_pFIContext;
    std::unique_ptr<CXmlWriterContext> m_pPendingElement;
    bool m_terminatorPending;
    std::unique_ptr<CFIVocabulary> m_pVocabulary;

    std::unique_ptr<CTables> m_pTables;

    // Octets go to the stream in blocks, not one by one.
    static constexpr uint64_t kOutCapacity = 16384;
    std::unique_ptr<unsigned char[]> m_pOut;
    uint64_t m_outUsed;
    std::string m_scratch; // encoded value or UTF-8 text, reused
};

} // namespace QvXmlLib10
