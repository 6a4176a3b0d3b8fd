#pragma once

#include "../foundation/QvExport.h"

#include <memory>
#include <string>

namespace QvXmlLib10 {

// True when the whole of `value` (local code page) matches the XSD regular expression
// `pattern` (UTF-8). The XSD escapes \i, \I, \c, \C and four \p{Is...} blocks are
// rewritten for PCRE, and the pattern is anchored at both ends; a value that goes on
// behind the match, a final newline included, does not match. The value ends at its
// first NUL. A failed or aborted match is false.
//
// Throws CQvException "Invalid Regular Expression: <value> Error: '<PCRE's text>'"
// when PCRE refuses the rewritten pattern. The pattern is compiled on every call.
QVXML_API bool TestRegEx(std::string pattern, std::string value);

namespace Internal {
class CPatternCache;
// As TestRegEx, but reuses the compiled pattern held in `slot` when it was compiled from
// the same text, and otherwise compiles it and keeps it there. The facet checks keep
// one slot per set of facets, so that a pattern is compiled once, not once per value.
QVXML_API bool TestRegExReusing(const std::string& utf8Pattern, const std::string& value,
                                std::shared_ptr<const CPatternCache>& slot);
} // namespace Internal

} // namespace QvXmlLib10
