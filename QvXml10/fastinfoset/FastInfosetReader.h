#pragma once

#include "../foundation/CriticalSection.h"
#include "../foundation/QvExport.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace QvXmlLib10 {

class CFastInfosetContext;
class CXmlDocument;
namespace Internal {
class CDocumentBuilder;
}

// Reads a Fast Infoset document (ITU-T X.891) that lies in the raw data of a document
// into its tree. It reads what CFastInfosetWriter writes and steps over the optional
// parts of the format that it doesn't use. Used once: constructed, Parse, destroyed.
class QVXML_API CFastInfosetReader : public CInstanceMonitor {
public:
    CFastInfosetReader(const CFastInfosetContext& context, CXmlDocument& document);
    ~CFastInfosetReader() override;

    CFastInfosetReader(const CFastInfosetReader&) = delete;
    CFastInfosetReader& operator=(const CFastInfosetReader&) = delete;

    // False, with nothing built, when the data doesn't start with the Fast Infoset
    // header (optionally behind one of the known XML declarations). Otherwise builds the
    // tree and returns true, or throws CQvException on a defect of the document.
    bool Parse();

private:
    class CTables;
    // A string item: in place in the input, in a table, or in m_stringValue.
    struct CText {
        const char* data;
        size_t size;
    };
    // A qualified name as indices into the prefix, namespace and local name tables.
    struct CQName {
        uint64_t prefix;
        uint64_t namespaceName;
        uint64_t localName;
    };

    bool ReadHeader();
    bool CheckHeader();
    bool CheckDeclaration(const char* text);
    void ReadOptionalData();
    void ReadChildren();
    void Cleanup();
    const unsigned char* Move(uint64_t count);
    [[noreturn]] void Fail(const std::string& text);

    // Optional parts of a document, read and thrown away.
    void AdditionalData();
    void InitialVocabulary();
    void Notations();
    void UnparsedEntities();
    void CharacterEncodingScheme();
    void Standalone();
    void Version();
    void ProcessingInstruction();
    void DocumentTypeDeclarationBit7();
    void UnexpandedEntityReferenceBit7();
    uint64_t LengthOfSequence();
    void SkipOctetString();

    // Elements, attributes and names.
    void ElementBit2();
    bool StartElement();
    void NamespaceAttributeBit7();
    void AtrributeBit2();
    void CharacterChunk();
    bool QualifiedNameOrIndexBit3();
    bool QualifiedNameOrIndexBit2();
    CQName ReadQName();
    // The index of a name part, read by index or as a literal that enters its table.
    uint64_t IdentifyingIndexOrAdd(int table);
    void CheckIndex(int table, uint64_t index);

    // Strings and integers; a routine that yields a string or an index returns true for
    // an index (in m_indexValue) and false for a string (in m_text).
    bool IdentifyingStringOrIndex();
    bool NonIdentifyingStringOrIndexBit1();
    bool NonIdentifyingStringOrIndexBit3();
    CText EncodedCharacterStringBit3();
    CText EncodedCharacterStringBit5();
    CText EncodedString(uint64_t discriminant, uint64_t index, uint64_t length);
    uint64_t NonEmptyOctetStringBit2Length();
    uint64_t NonEmptyOctetStringBit5Length();
    uint64_t NonEmptyOctetStringBit7Length();
    uint64_t Integer1To2pw20Bit2();
    uint64_t Integer0To2pw20Bit2();
    uint64_t Integer1To2pw20Bit3();
    uint64_t Integer1To2pw20Bit4();
    CText NonEmptyOctetUTF8String(uint64_t length);
    CText NonEmptyOctetUTF16BEString(uint64_t length);
    CText NonEmptyOctetEncryptedString(uint64_t length, uint64_t index);
    CText NonEmptyOctetRestrictedAlphabetString(uint64_t length, uint64_t index);
    uint64_t ReadBigEndian(unsigned count);

    const CFastInfosetContext* m_pFIContext;
    CXmlDocument* m_pDocument;
    const unsigned char* m_pNext;
    const unsigned char* m_pCurrent;
    const unsigned char* m_pEnd;
    std::string m_stringValue;
    uint64_t m_indexValue;
    bool m_addToTable;
    CText m_text;
    std::unique_ptr<unsigned char[]> m_pScratch;
    uint64_t m_scratchSize;
    // The working tables of this document, seeded from the generated vocabulary if the
    // context asks for it.
    std::unique_ptr<CTables> m_pTables;
    std::unique_ptr<Internal::CDocumentBuilder> m_pBuilder;
};

} // namespace QvXmlLib10
