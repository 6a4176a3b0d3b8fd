#include "foundation/Streams.h"

#include "foundation/Encoder.h"
#include "foundation/QvException.h"

#include <algorithm>
#include <cstring>

namespace QvXmlLib10 {

namespace {

const char kEmptyText[] = "";
const unsigned long kDefaultBlockBytes = 4096;

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
        for (unsigned long i = 0; i < written; ++i) std::swap(bytes[2 * i], bytes[2 * i + 1]);
    }
    CBinaryData result(bytes.get(), written * 2, true);
    (void)bytes.release();
    return result;
}

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
    switch (m_encoding) {
    case XmlEncoding_UTF8:
        return CEncoder::LocalCodePageToUtf8Binary(GetText());
    case XmlEncoding_UTF16:
    case XmlEncoding_UTF16NoDecl:
        return LocalCodePageToUtf16LE(GetText());
    default:
        throw CQvException(kUnknownEncoding);
    }
}

// ---------------------------------------------------------------------------
// CFileTextStream

CFileTextStream::CFileTextStream(const char* path, XmlEncoding encoding)
    : CTextStream("CFileTextStream", encoding), m_fileName(path ? path : ""), m_pFile(nullptr) {}

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
    : CBinaryStream("CFileBinaryStream"), m_fileName(path ? path : ""), m_encoding(encoding) {}

CFileBinaryStream::CFileBinaryStream(const char* path, XmlEncoding encoding, CBinaryData& data)
    : CBinaryStream("CFileBinaryStream", data), m_fileName(path ? path : ""), m_encoding(encoding) {}

CFileBinaryStream::~CFileBinaryStream() = default;

void CFileBinaryStream::ToFile() {
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(m_fileName.c_str(), "wt"), &std::fclose);
    if (!file) throw CQvException(WriteFailedFor(m_fileName));
    if (IsUtf16(m_encoding) && std::fwrite(kUtf16ByteOrderMark, 1, sizeof kUtf16ByteOrderMark, file.get()) == 0)
        throw CQvException(WriteFailedFor(m_fileName));
    // Only a write of nothing counts as a failure; empty data therefore fails.
    const size_t written =
        m_data.GetLength() ? std::fwrite(m_data.GetData(), 1, m_data.GetLength(), file.get()) : 0;
    if (written == 0) throw CQvException(WriteFailedFor(m_fileName));
}

} // namespace QvXmlLib10
