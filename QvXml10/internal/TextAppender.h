#pragma once

// Direct writing into a text stream's block buffer, for the library's own writers.
#include "../foundation/Streams.h"
#include "ByteScan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace QvXmlLib10 {
namespace Internal {

// Writes straight into the current block of a text sink's buffer; the writers know the
// length of every piece they put. What has been put becomes part of the sink's text at
// Commit and at destruction; in between, nothing else may use the sink.
class CTextAppender {
public:
    explicit CTextAppender(CTextStream& stream)
        : m_buffer(stream.m_buffer), m_pos(m_buffer.m_pCurrent + m_buffer.m_currentUsed),
          m_end(m_buffer.m_pCurrent + m_buffer.m_currentCapacity) {}
    ~CTextAppender() { Commit(); }
    CTextAppender(const CTextAppender&) = delete;
    CTextAppender& operator=(const CTextAppender&) = delete;

    void Put(char c) {
        if (m_pos == m_end) NextBlock();
        *m_pos++ = c;
    }
    // length bytes as they stand, NULs included.
    void Put(const char* data, size_t length) {
        if (length <= static_cast<size_t>(m_end - m_pos)) {
            // Most pieces are a few bytes long: word moves rather than a call.
            if (length <= 16)
                CopyShort(m_pos, data, length);
            else
                std::memcpy(m_pos, data, length);
            m_pos += length;
        } else {
            PutAcrossBlocks(data, length);
        }
    }
    void Commit() {
        CStringBuffer& b = m_buffer;
        const uint64_t added = static_cast<uint64_t>(m_pos - (b.m_pCurrent + b.m_currentUsed));
        b.m_currentUsed += added;
        b.m_length += added;
    }

private:
    void NextBlock() {
        Commit();
        m_buffer.AddBlock();
        m_pos = m_buffer.m_pCurrent;
        m_end = m_pos + m_buffer.m_currentCapacity;
    }
    void PutAcrossBlocks(const char* data, size_t length) {
        while (length) {
            if (m_pos == m_end) NextBlock();
            const size_t chunk = std::min(length, static_cast<size_t>(m_end - m_pos));
            std::memcpy(m_pos, data, chunk);
            m_pos += chunk;
            data += chunk;
            length -= chunk;
        }
    }

    CStringBuffer& m_buffer;
    char* m_pos; // next free byte of the current block
    char* m_end; // end of the current block's text capacity
};

} // namespace Internal
} // namespace QvXmlLib10
