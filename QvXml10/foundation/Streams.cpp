#include "foundation/Streams.h"

#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "internal/BinaryHandOver.h"
#include "internal/ByteScan.h"
#include "internal/Text.h"

#include <algorithm>
#include <cstring>

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

namespace {

const char kEmptyText[] = "";
const unsigned long kDefaultBlockBytes = 4096;
const size_t kInitialBlockSlots = 256;

const char kUnknownEncoding[] = "Unknown Encoding, select UTF-8 (contact support@qvxml.example for support)";
const char kWriteFailed[] = "Failed to write data to the file";
const unsigned char kUtf16ByteOrderMark[] = {0xFF, 0xFE};

bool IsUtf16(XmlEncoding encoding) { return encoding == XmlEncoding_UTF16 || encoding == XmlEncoding_UTF16NoDecl; }

std::string WriteFailedFor(const std::string& path) {
    return FormatString("Failed to write data to the file [%s]", path.c_str());
}

// The local text in UTF-16 little-endian: wide characters first, then the
// UTF-32 to UTF-16 converter, which gives surrogate pairs above U+FFFF.
CBinaryData LocalCodePageToUtf16LE(const char* text) {
    CBinaryData wide = CEncoder::LocalCodePageToUnicodeBinary(text);
    const unsigned long count = wide.GetLength() / sizeof(wchar_t);
    if (count == 0) return CBinaryData();
    wchar_t* chars = reinterpret_cast<wchar_t*>(wide.GetData());
    // A locale may decode sequences to values UTF-16 can't carry (glibc's UTF-8
    // accepts five-octet forms); they become U+FFFD, as in UTF-8 output.
    for (unsigned long i = 0; i < count; ++i) {
        const uint32_t ch = static_cast<uint32_t>(chars[i]);
        if (ch > 0x10FFFF || (ch >= 0xD800 && ch <= 0xDFFF)) chars[i] = static_cast<wchar_t>(0xFFFD);
    }
    const unsigned long units = UnicodeToUTF16(chars, count, nullptr, 0);
    if (units == 0) return CBinaryData();

    std::unique_ptr<unsigned char[]> bytes(new unsigned char[units * 2]);
    const unsigned long written = UnicodeToUTF16(chars, count, bytes.get(), units);
    const uint16_t probe = 1;
    if (*reinterpret_cast<const unsigned char*>(&probe) != 1) {
        // The converter writes in the machine's order; turn big-endian units around.
        for (unsigned long i = 0; i < written; ++i)
            std::swap(bytes[2 * i], bytes[2 * i + 1]);
    }
    return Internal::AdoptBytes(std::move(bytes), written * 2);
}

} // namespace

// ---------------------------------------------------------------------------
// CStringBuffer

CStringBuffer::CStringBuffer() : CStringBuffer(kDefaultBlockBytes) {}

CStringBuffer::CStringBuffer(unsigned long blockBytes)
    : CInstanceMonitor("CStringBuffer"),
      // A block must hold at least one character, or appending could never make room.
      m_blockSize(std::max<unsigned long>(blockBytes, 2) - 1), m_currentUsed(0), m_currentCapacity(0),
      m_pCurrent(nullptr), m_length(0) {}

CStringBuffer::~CStringBuffer() = default;

void CStringBuffer::AddBlock() {
    // One byte more than the capacity, for the terminator that GetText writes behind
    // the text. The bytes are not cleared: only those below m_currentUsed are read.
    std::unique_ptr<char[]> block(new char[m_blockSize + 1]);
    char* const current = block.get();
    if (m_blocks.size() == m_blocks.capacity() && m_blocks.capacity() < kInitialBlockSlots) {
        // Room for the lists of a long text at once: their arrays would otherwise be
        // reallocated in small steps among the blocks, and the small freed arrays,
        // which an allocator tends to keep aside, would split the blocks' memory
        // when it is freed.
        m_blocks.reserve(kInitialBlockSlots);
        m_blockSizes.reserve(kInitialBlockSlots);
    }
    m_blockSizes.push_back(m_blockSize);
    try {
        m_blocks.push_back(std::move(block));
    } catch (...) {
        m_blockSizes.pop_back();
        throw;
    }
    m_pCurrent = current;
    m_currentUsed = 0;
    m_currentCapacity = m_blockSize;
}

void CStringBuffer::AppendBytes(const char* data, uint64_t length) {
    m_length += length;
    while (length) {
        if (m_currentUsed == m_currentCapacity) AddBlock();
        const uint64_t chunk = std::min(length, m_currentCapacity - m_currentUsed);
        std::memcpy(m_pCurrent + m_currentUsed, data, chunk);
        m_currentUsed += chunk;
        data += chunk;
        length -= chunk;
    }
}

void CStringBuffer::Append(const char* text) {
    if (text) AppendBytes(text, std::strlen(text));
}

void CStringBuffer::SetText(const char* text) {
    Clear();
    Append(text);
}

std::string CStringBuffer::CopyText() const {
    std::string text;
    text.reserve(static_cast<size_t>(m_length));
    for (size_t i = 0; i + 1 < m_blocks.size(); ++i)
        text.append(m_blocks[i].get(), static_cast<size_t>(m_blockSizes[i]));
    if (m_pCurrent) text.append(m_pCurrent, static_cast<size_t>(m_currentUsed));
    return text;
}

const char* CStringBuffer::GetText() {
    if (m_blocks.empty()) return kEmptyText;
    if (m_blocks.size() == 1) {
        m_pCurrent[m_currentUsed] = '\0';
        return m_pCurrent;
    }

    // Everything that can fail comes first, so that a failure leaves the blocks as they are.
    std::unique_ptr<char[]> joined(new char[m_length + 1]);
    std::vector<std::unique_ptr<char[]>> blocks;
    std::vector<uint64_t> sizes;
    blocks.reserve(1);
    sizes.reserve(1);

    char* out = joined.get();
    const size_t last = m_blocks.size() - 1;
    for (size_t i = 0; i < last; ++i) {
        std::memcpy(out, m_blocks[i].get(), m_blockSizes[i]);
        out += m_blockSizes[i];
    }
    std::memcpy(out, m_pCurrent, m_currentUsed);
    out[m_currentUsed] = '\0';

    // The old vectors go with the blocks: their arrays, allocated while the blocks were,
    // would otherwise stay behind among the freed blocks and split that memory.
    const uint64_t length = m_length;
    blocks.push_back(std::move(joined));
    sizes.push_back(length);
    m_blocks.swap(blocks);
    m_blockSizes.swap(sizes);
    m_pCurrent = m_blocks.back().get();
    m_currentUsed = length;
    m_currentCapacity = length;
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
    switch (m_encoding) {
    case XmlEncoding_UTF8:
        if (m_buffer.m_blocks.size() > 1) {
            // Text that the conversion would copy byte for byte is copied straight from
            // the blocks, without joining them first.
            if (CBinaryData bytes = CopyBlocksIfPlain(); bytes.GetLength() == m_buffer.GetLength()) return bytes;
        }
        return CEncoder::LocalCodePageToUtf8Binary(GetText());
    case XmlEncoding_UTF16:
    case XmlEncoding_UTF16NoDecl:
        return LocalCodePageToUtf16LE(GetText());
    default:
        throw CQvException(kUnknownEncoding);
    }
}

CBinaryData CTextStream::CopyBlocksIfPlain() const {
    const CStringBuffer& b = m_buffer;
    if (b.m_length == 0) return CBinaryData();
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[b.m_length]);
    unsigned char* out = bytes.get();
    const size_t last = b.m_blocks.size() - 1;
    for (size_t i = 0; i <= last; ++i) {
        const char* block = b.m_blocks[i].get();
        const uint64_t size = i < last ? b.m_blockSizes[i] : b.m_currentUsed;
        if (Internal::HasNulOrHighByte(block, size, ASCII_ONLY)) return CBinaryData();
        std::memcpy(out, block, size);
        out += size;
    }
    return Internal::AdoptBytes(std::move(bytes), b.m_length);
}

// ---------------------------------------------------------------------------
// CFileTextStream

CFileTextStream::CFileTextStream(const char* path, XmlEncoding encoding)
    : CTextStream("CFileTextStream", encoding), m_fileName(OrEmpty(path)), m_pFile(nullptr) {}

CFileTextStream::~CFileTextStream() { CloseFile(); }

void CFileTextStream::CloseFile() {
    if (m_pFile) std::fclose(m_pFile);
    m_pFile = nullptr;
}

void CFileTextStream::Open() {
    CTextStream::Open();
    CloseFile();
    m_pFile = std::fopen(m_fileName.c_str(), "wt");
    if (!m_pFile) throw CQvException(WriteFailedFor(m_fileName));
    if (IsUtf16(m_encoding) && std::fwrite(kUtf16ByteOrderMark, 1, sizeof kUtf16ByteOrderMark, m_pFile) == 0) {
        CloseFile();
        throw CQvException(WriteFailedFor(m_fileName));
    }
}

void CFileTextStream::Flush() {
    if (GetLength() == 0) return;
    // The pending bytes are those of m_encodedData, which stays empty, so this
    // write reports nothing written.
    const size_t written = m_encodedData.GetLength() && m_pFile
                               ? std::fwrite(m_encodedData.GetData(), 1, m_encodedData.GetLength(), m_pFile)
                               : 0;
    if (written == 0) {
        CloseFile();
        throw CQvException(kWriteFailed);
    }
    m_buffer.Empty();
}

void CFileTextStream::Close() {
    Flush();
    CloseFile();
}

// ---------------------------------------------------------------------------
// CBinaryStream

CBinaryStream::CBinaryStream() : CInstanceMonitor("CBinaryStream") {}

CBinaryStream::CBinaryStream(CBinaryData& data) : CInstanceMonitor("CBinaryStream") { m_data = data; }

CBinaryStream::CBinaryStream(const char* label) : CInstanceMonitor(label) {}

CBinaryStream::CBinaryStream(const char* label, CBinaryData& data) : CInstanceMonitor(label) { m_data = data; }

CBinaryStream::~CBinaryStream() = default;

// ---------------------------------------------------------------------------
// CFileBinaryStream

CFileBinaryStream::CFileBinaryStream(const char* path, XmlEncoding encoding)
    : CBinaryStream("CFileBinaryStream"), m_fileName(OrEmpty(path)), m_encoding(encoding) {}

CFileBinaryStream::CFileBinaryStream(const char* path, XmlEncoding encoding, CBinaryData& data)
    : CBinaryStream("CFileBinaryStream", data), m_fileName(OrEmpty(path)), m_encoding(encoding) {}

CFileBinaryStream::~CFileBinaryStream() = default;

void CFileBinaryStream::ToFile() {
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(m_fileName.c_str(), "wt"), &std::fclose);
    if (!file) throw CQvException(WriteFailedFor(m_fileName));
    if (IsUtf16(m_encoding) && std::fwrite(kUtf16ByteOrderMark, 1, sizeof kUtf16ByteOrderMark, file.get()) == 0)
        throw CQvException(WriteFailedFor(m_fileName));
    // Only a write of nothing counts as a failure; empty data therefore fails.
    const size_t written = m_data.GetLength() ? std::fwrite(m_data.GetData(), 1, m_data.GetLength(), file.get()) : 0;
    if (written == 0) throw CQvException(WriteFailedFor(m_fileName));
}

} // namespace QvXmlLib10
