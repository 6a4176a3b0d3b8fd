#pragma once

#include "FIVocabulary.h"
#include "../foundation/QvExport.h"

#include <cstdint>
#include <string>

namespace QvXmlLib10 {

// The options of Fast Infoset writing and reading: how values of each ItemType are
// encoded, up to which length values are shared through the tables, and the
// vocabulary that a document may start from.
class QVXML_API CFastInfosetContext {
public:
    enum StringEncoding : uint8_t { StringEncoding_UTF8 = 0, StringEncoding_UTF16BE = 1 };

    enum EncodedKind : int32_t {
        EncodedKind_Default = 0,            // UTF-8 string
        EncodedKind_RestrictedAlphabet = 1, // m_index: 1 numeric, 2 date and time
        EncodedKind_Algorithm = 2           // m_index: encoding algorithm 1 to 10
    };

    // How the values of one ItemType are written.
    struct EncodedCharacterString {
        EncodedKind m_kind;
        uint64_t m_index; // not looked at with EncodedKind_Default
    };

    // Every type as a UTF-8 string; values shorter than 6 bytes go into the tables.
    CFastInfosetContext();

    uint64_t GetAttributeMaxAddLength() const { return m_attributeMaxAddLength; }
    void SetAttributeMaxAddLength(unsigned long length) { m_attributeMaxAddLength = length; }
    uint64_t GetElementMaxAddLength() const { return m_elementMaxAddLength; }
    void SetElementMaxAddLength(unsigned long length) { m_elementMaxAddLength = length; }

    uint8_t GetDefaultStringEncoding() const { return m_defaultStringEncoding; }

    // itemType is an ItemType value, used as an index without a check.
    EncodedCharacterString GetEncoding(unsigned long itemType) const { return m_encodings[itemType]; }
    void SetEncoding(unsigned long itemType, EncodedCharacterString encoding) { m_encodings[itemType] = encoding; }

    bool GetUseGeneratedVocabulary() const { return m_useGeneratedVocabulary; }
    void SetUseGeneratedVocabulary(bool use) { m_useGeneratedVocabulary = use; }

    // The vocabulary that documents start from when the generated vocabulary is used.
    CFIVocabulary* GetVocabulary() { return &m_vocabulary; }
    const CFIVocabulary* GetVocabulary() const { return &m_vocabulary; }

    void SetExternalVocabularyURI(std::string uri) { m_externalVocabularyURI = std::move(uri); }
    std::string GetExternalVocabularyURI() const { return m_externalVocabularyURI; }

    // Binary forms for numbers, booleans and binary data, restricted alphabets for
    // decimals and dates; char, string and the entries outside the schema kinds are
    // left as they are.
    void SetSuggestedValues();

    static constexpr unsigned kEncodingCount = 29;

protected:
    uint8_t m_defaultStringEncoding;
    EncodedCharacterString m_encodings[kEncodingCount];
    uint64_t m_attributeMaxAddLength;
    uint64_t m_elementMaxAddLength;
    bool m_useGeneratedVocabulary;
    CFIVocabulary m_vocabulary;
    std::string m_externalVocabularyURI;
};

} // namespace QvXmlLib10
