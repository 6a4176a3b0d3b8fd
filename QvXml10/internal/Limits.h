#pragma once

#include <cstddef>

// Limits that every reader and writer of the library checks alike. One spelling each: kCamelCase.
namespace QvXmlLib10 {
namespace Internal {

// The deepest nesting of elements that a document may have. Reading bound objects, open
// content and its copies and output recurse once or twice per level; at this depth they
// stay well inside 1 MB of stack, the least a thread is commonly given.
inline constexpr std::size_t kMaxNestingDepth = 1000;

// Throws CQvException for a document that opens an element deeper than kMaxNestingDepth;
// a line of 0 is left out of the message (input without lines).
[[noreturn]] void ThrowNestingTooDeep(unsigned long line);

// Throws CQvException for a tree to be written that nests deeper than kMaxNestingDepth.
[[noreturn]] void ThrowWritingTooDeep();

} // namespace Internal
} // namespace QvXmlLib10
