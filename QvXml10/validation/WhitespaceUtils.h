#pragma once

#include "../foundation/QvExport.h"

#include <cstdint>
#include <string>

namespace QvXmlLib10 {

// The XSD whiteSpace facet, applied to the text of one value before it is parsed.
// Works on bytes and looks at nothing above 0x7F, so UTF-8 text passes unharmed.
class QVXML_API CWhitespaceUtils {
public:
    // Generated code passes these by number.
    enum WhitespaceRule : int32_t {
        WhitespaceRule_None = 0,     // untouched
        WhitespaceRule_Preserve = 1, // line ends become LF
        WhitespaceRule_Replace = 2,  // line ends and tabs become spaces
        WhitespaceRule_Collapse = 3  // runs become one space, ends trimmed
    };

    // Space, tab, CR and LF; nothing else.
    static bool IsWhiteSpace(char c);

    // The text after the rule. Throws CQvException "Unknown WhitespaceRule" for a
    // value outside 0 to 3.
    static std::string ApplyRule(WhitespaceRule rule, const std::string& text);

    // Where a rule changes something, its result ends at the first NUL byte of the
    // input; an unchanged text is returned whole.
    static std::string Preserve(const std::string& text);
    // Over `length` bytes of a buffer that need not be terminated; a length of zero
    // or less is the empty text.
    static std::string Preserve(const char* text, int length);
    static std::string Replace(const std::string& text);
    static std::string Collapse(const std::string& text);
};

} // namespace QvXmlLib10
