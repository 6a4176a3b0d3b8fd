#pragma once

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
bool TestRegEx(std::string pattern, std::string value);

} // namespace QvXmlLib10
