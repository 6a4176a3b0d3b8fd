#pragma once

#include <string>

#include "foundation/QvTypes.h"
#include "validation/WhitespaceUtils.h"

namespace QvXmlLib10 {
namespace Internal {

// What the library knows of one ItemType, in one place: the name the variant gives it,
// and for the kinds whose value lives on the heap (string and the rich kinds) how that
// value is copied, freed, written as text and parsed. The variant's copy, clear and text
// dispatch consult this table instead of a switch each.
struct CItemKind {
    const char* m_name; // null for kinds without a name (0, 27, 28)
    // Heap kinds only; null for scalars and the counted object kinds.
    void* (*m_clone)(const void* value);
    void (*m_destroy)(void* value);
    std::string (*m_toString)(const void* value, const std::string& format);
    // A new heap value parsed from `text`; throws what the conversion throws.
    void* (*m_fromString)(const std::string& text, CWhitespaceUtils::WhitespaceRule rule);
};

// The entry of `type`; kinds outside 0 to 28 get an empty entry.
const CItemKind& GetItemKind(ItemType type);

// Kinds 1 to 26, which metadata, facets and collections speak of.
inline bool IsPrimitiveKind(ItemType type) { return type >= ItemType_hexBinary && type <= ItemType_integer; }

// Whether the variant keeps the value of `type` as an owned heap object.
inline bool IsHeapKind(ItemType type) { return GetItemKind(type).m_clone != nullptr; }

} // namespace Internal
} // namespace QvXmlLib10
