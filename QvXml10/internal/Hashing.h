#pragma once

// One hash function for short byte strings (names, URIs) and one open-addressing table.
#include "ByteScan.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QvXmlLib10 {
namespace Internal {

inline constexpr uint64_t kHashSeed = 0x9E3779B97F4A7C15ull;

// Eight bytes per step; the last step reads the final eight bytes, overlapping the one
// before. Chain calls through `seed` to hash several pieces as one key.
inline size_t HashBytes(const char* text, size_t length, uint64_t seed = kHashSeed) {
    uint64_t hash = seed ^ length;
    uint64_t last = 0;
    if (length >= 8) {
        for (size_t i = 0; i + 8 < length; i += 8) {
            hash = (hash ^ Load64(text + i)) * 0xFF51AFD7ED558CCDull;
            hash ^= hash >> 32;
        }
        last = Load64(text + length - 8);
    } else if (length >= 4) {
        last = Load32(text) | static_cast<uint64_t>(Load32(text + length - 4)) << 32;
    } else {
        for (size_t i = 0; i < length; ++i)
            last = last << 8 | static_cast<unsigned char>(text[i]);
    }
    hash = (hash ^ last) * 0xC4CEB9FE1A85EC53ull;
    return static_cast<size_t>(hash ^ hash >> 32);
}

// Whether two texts of the same length are equal; short texts are compared inline.
inline bool SameBytes(const char* a, const char* b, size_t length) {
    if (length >= 8) {
        for (size_t i = 0; i + 8 < length; i += 8)
            if (Load64(a + i) != Load64(b + i)) return false;
        return Load64(a + length - 8) == Load64(b + length - 8);
    }
    if (length >= 4) return Load32(a) == Load32(b) && Load32(a + length - 4) == Load32(b + length - 4);
    for (size_t i = 0; i < length; ++i)
        if (a[i] != b[i]) return false;
    return true;
}

// Open addressing with linear probing over a power-of-two number of slots, kept at most
// half full. Entries are small values (pointers, offsets); the caller hashes and compares.
template <class Entry> class CProbeTable {
public:
    explicit CProbeTable(size_t initialSlots = 64) : m_slots(RoundUpToPowerOfTwo(initialSlots)), m_count(0) {}

    // The entry stored under `hash` for which `matches(entry)` holds, or null.
    template <class Matches> const Entry* Find(size_t hash, Matches matches) const {
        const size_t mask = m_slots.size() - 1;
        for (size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& slot = m_slots[i];
            if (!slot.used) return nullptr;
            if (slot.hash == hash && matches(slot.entry)) return &slot.entry;
        }
    }

    // Adds an entry that Find doesn't know yet.
    void Insert(size_t hash, const Entry& entry) {
        if (2 * (m_count + 1) > m_slots.size()) Grow();
        Place(m_slots, Slot{hash, entry, true});
        ++m_count;
    }

    size_t Size() const { return m_count; }
    size_t SlotCount() const { return m_slots.size(); }

private:
    struct Slot {
        size_t hash = 0;
        Entry entry{};
        bool used = false;
    };

    static size_t RoundUpToPowerOfTwo(size_t n) {
        size_t size = 2;
        while (size < n)
            size *= 2;
        return size;
    }

    static void Place(std::vector<Slot>& slots, const Slot& slot) {
        const size_t mask = slots.size() - 1;
        size_t i = slot.hash & mask;
        while (slots[i].used)
            i = (i + 1) & mask;
        slots[i] = slot;
    }

    void Grow() {
        std::vector<Slot> slots(m_slots.size() * 2);
        for (const Slot& slot : m_slots)
            if (slot.used) Place(slots, slot);
        m_slots.swap(slots);
    }

    std::vector<Slot> m_slots;
    size_t m_count;
};

} // namespace Internal
} // namespace QvXmlLib10
