#include "foundation/Streams.h"

#include "foundation/QvException.h"

#include <algorithm>
#include <cstring>

namespace QvXmlLib10 {

namespace {

const char kEmptyText[] = "";
const unsigned long kDefaultBlockBytes = 4096;

const char kUnknownEncoding[] = "Unknown Encoding, select UTF-8 (contact support@qvxml.example for support)";

} // namespace

// ---------------------------------------------------------------------------
// CStringBuffer

CStringBuffer::CStringBuffer() : CStringBuffer(kDefaultBlockBytes) {}

CStringBuffer::CStringBuffer(unsigned long blockBytes)
    : CInstanceMonitor("CStringBuffer"),
      // A block must hold at least one character, or appending could never make room.
      m_blockSize(std::max<unsigned long>(blockBytes, 2) - 1),
      m_currentUsed(0),
      m_currentCapacity(0),
      m_pCurrent(nullptr),
      m_length(0) {}

CStringBuffer::~CStringBuffer() = default;

void CStringBuffer::AddBlock() {
    // One byte more than the capacity, zero-filled, so every block is terminated.
    m_blocks.emplace_back(new char[m_blockSize + 1]());
    m_blockSizes.push_back(m_blockSize);
    m_pCurrent = m_blocks.back().get();
    m_currentUsed = 0;
    m_currentCapacity = m_blockSize;
}

void CStringBuffer::Append(const char* text) {
    if (!text) return;
    uint64_t remaining = std::strlen(text);
    m_length += remaining;
    while (remaining) {
        if (m_currentUsed == m_currentCapacity) AddBlock();
        const uint64_t chunk = std::min(remaining, m_currentCapacity - m_currentUsed);
        std::memcpy(m_pCurrent + m_currentUsed, text, chunk);
        m_currentUsed += chunk;
        text += chunk;
        remaining -= chunk;
    }
}

void CStringBuffer::SetText(const char* text) {
    Clear();
    Append(text);
}

const char* CStringBuffer::GetText() {
    if (m_blocks.empty()) return kEmptyText;
    if (m_blocks.size() == 1) return m_blocks.front().get();

    std::unique_ptr<char[]> joined(new char[m_length + 1]);
    char* out = joined.get();
    const size_t last = m_blocks.size() - 1;
    for (size_t i = 0; i < last; ++i) {
        std::memcpy(out, m_blocks[i].get(), m_blockSizes[i]);
        out += m_blockSizes[i];
    }
    std::memcpy(out, m_pCurrent, m_currentUsed);
    out[m_currentUsed] = '\0';

    const uint64_t length = m_length;
    Clear();
    m_blocks.push_back(std::move(joined));
    m_blockSizes.push_back(length);
    m_pCurrent = m_blocks.back().get();
    m_currentUsed = length;
    m_currentCapacity = length;
    m_length = length;
    return m_pCurrent;
}

void CStringBuffer::Clear() {
    m_blocks.clear();
    m_blockSizes.clear();
    m_currentUsed = 0;
    m_currentCapacity = 0;
    m_pCurrent = nullptr;
    m_length = 0;
}

void CStringBuffer::Empty() {
    if (m_blocks.size() != 1) {
        Clear();
        return;
    }
    std::memset(m_pCurrent, 0, m_currentCapacity + 1);
    m_currentUsed = 0;
    m_length = 0;
}

// ---------------------------------------------------------------------------
// CTextStream

CTextStream::CTextStream() : CTextStream("CTextStream", XmlEncoding_None) {}

CTextStream::CTextStream(XmlEncoding encoding) : CTextStream("CTextStream", encoding) {}

CTextStream::CTextStream(const char* label, XmlEncoding encoding) : CInstanceMonitor(label), m_encoding(encoding) {}

CTextStream::~CTextStream() = default;

void CTextStream::Open() { m_buffer.Empty(); }

void CTextStream::Close() {}

void CTextStream::Flush() {}

CBinaryData CTextStream::GetEncodedStream() const {
    throw CQvException(kUnknownEncoding);
}

} // namespace QvXmlLib10
