#pragma once

#include <cstddef>

// Limits that every reader and writer of the library checks alike. One spelling each: kCamelCase.
namespace QvXmlLib10 {
namespace Internal {

// The deepest nesting of elements that a document may have. Reading and writing bound
// objects, open content and its copies recurse once or more per level: a recursive
// generated class takes about 1.5 KB of stack per level to write and 1.3 KB to read in
// the sanitizer build, open content about 0.6 KB. At this depth every such path stays
// within 1 MB of stack, the least a thread is commonly given, with room to spare for
// the caller's own frames.
inline constexpr std::size_t kMaxNestingDepth = 500;

// How many bytes of text input the parser is given at a time.
inline constexpr std::size_t kParsePieceSize = 64 * 1024;

// Throws CQvException for a document that opens an element deeper than kMaxNestingDepth;
// a line of 0 is left out of the message (input without lines).
[[noreturn]] void ThrowNestingTooDeep(unsigned long line);

// Throws CQvException for a tree to be written that nests deeper than kMaxNestingDepth.
[[noreturn]] void ThrowWritingTooDeep();

} // namespace Internal
} // namespace QvXmlLib10
