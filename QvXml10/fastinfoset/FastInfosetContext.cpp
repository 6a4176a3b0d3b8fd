#include "fastinfoset/FastInfosetContext.h"

#include "foundation/QvTypes.h"

namespace QvXmlLib10 {

CFastInfosetContext::CFastInfosetContext()
    : m_defaultStringEncoding(StringEncoding_UTF8), m_attributeMaxAddLength(6), m_elementMaxAddLength(6),
      m_useGeneratedVocabulary(false) {
    for (EncodedCharacterString& encoding : m_encodings)
        encoding = EncodedCharacterString{EncodedKind_Default, 0};
}

void CFastInfosetContext::SetSuggestedValues() {
    struct Suggestion {
        ItemType type;
        EncodedKind kind;
        uint64_t index;
    };
    static constexpr Suggestion kSuggestions[] = {
        {ItemType_hexBinary, EncodedKind_Algorithm, 1},
        {ItemType_base64Binary, EncodedKind_Algorithm, 2},
        {ItemType_i1, EncodedKind_Algorithm, 3},
        {ItemType_i2, EncodedKind_Algorithm, 3},
        {ItemType_i4, EncodedKind_Algorithm, 4},
        {ItemType_i8, EncodedKind_Algorithm, 5},
        // Unsigned types take the next wider algorithm; ui8 stays on long.
        {ItemType_ui1, EncodedKind_Algorithm, 3},
        {ItemType_ui2, EncodedKind_Algorithm, 4},
        {ItemType_ui4, EncodedKind_Algorithm, 5},
        {ItemType_ui8, EncodedKind_Algorithm, 5},
        {ItemType_r4, EncodedKind_Algorithm, 7},
        {ItemType_r8, EncodedKind_Algorithm, 8},
        {ItemType_duration, EncodedKind_Default, 0},
        {ItemType_yearMonth, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_monthDay, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_year, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_month, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_day, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_date, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_datetime, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_time, EncodedKind_RestrictedAlphabet, 2},
        {ItemType_boolean, EncodedKind_Algorithm, 6},
        {ItemType_decimal, EncodedKind_RestrictedAlphabet, 1},
        {ItemType_integer, EncodedKind_RestrictedAlphabet, 1},
    };
    for (const Suggestion& s : kSuggestions)
        m_encodings[s.type] = EncodedCharacterString{s.kind, s.index};
}

} // namespace QvXmlLib10
