#include "internal/Limits.h"

#include "foundation/QvException.h"

namespace QvXmlLib10 {
namespace Internal {

void ThrowNestingTooDeep(unsigned long line) {
    const int depth = static_cast<int>(kMaxNestingDepth);
    if (line == 0) throw CQvException(FormatString("The document nests elements deeper than %d levels", depth));
    throw CQvException(FormatString("The document nests elements deeper than %d levels at line %lu", depth, line));
}

void ThrowWritingTooDeep() {
    throw CQvException(
        FormatString("The elements to write nest deeper than %d levels", static_cast<int>(kMaxNestingDepth)));
}

} // namespace Internal
} // namespace QvXmlLib10
