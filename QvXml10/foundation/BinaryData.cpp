#include "foundation/BinaryData.h"

#include "foundation/Base64.h"
#include "foundation/QvException.h"

#include <algorithm>
#include <cstring>

namespace QvXmlLib10 {

namespace {

const uint64_t kMinimumCopyCapacity = 8192;

// Holds a CQVCriticalSection for the lifetime of a scope.
class CLockGuard {
public:
    explicit CLockGuard(CQVCriticalSection& lock) : m_lock(lock) { m_lock.Enter(); }
    ~CLockGuard() { m_lock.Leave(); }
    CLockGuard(const CLockGuard&) = delete;
    CLockGuard& operator=(const CLockGuard&) = delete;

private:
    CQVCriticalSection& m_lock;
};

int HexDigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

} // namespace

// ---------------------------------------------------------------------------
// CDataHolder

CBinaryData::CDataHolder::CDataHolder(unsigned char* data, unsigned long length, bool takeOwnership)
    : m_length(data ? length : 0), m_capacity(m_length), m_refCount(1) {
    if (takeOwnership) {
        m_pBuffer.reset(data);
        return;
    }
    m_capacity = std::max<uint64_t>(2 * m_length, kMinimumCopyCapacity);
    m_pBuffer.reset(new unsigned char[m_capacity]);
    if (m_length) std::memcpy(m_pBuffer.get(), data, m_length);
}

CBinaryData::CDataHolder::~CDataHolder() = default;

void CBinaryData::CDataHolder::AddRef() {
    CLockGuard guard(m_lock);
    ++m_refCount;
}

void CBinaryData::CDataHolder::Append(unsigned char* data, unsigned long length) {
    CLockGuard guard(m_lock);
    if (m_refCount >= 2) throw CQvException(FormatString("Failed to append. [RefCount=%d]", m_refCount));
    if (!length || !data) return;

    const uint64_t newLength = m_length + length;
    if (newLength > m_capacity) {
        // The data may lie inside our own buffer (appending a value to itself).
        const unsigned char* oldBuffer = m_pBuffer.get();
        const bool fromSelf = oldBuffer && data >= oldBuffer && data < oldBuffer + m_length;
        const uint64_t offset = fromSelf ? static_cast<uint64_t>(data - oldBuffer) : 0;

        std::unique_ptr<unsigned char[]> grown(new unsigned char[2 * newLength]);
        if (m_length) std::memcpy(grown.get(), oldBuffer, m_length);
        m_pBuffer = std::move(grown);
        m_capacity = 2 * newLength;
        if (fromSelf) data = m_pBuffer.get() + offset;
    }
    std::memmove(m_pBuffer.get() + m_length, data, length);
    m_length = newLength;
}

void CBinaryData::CDataHolder::Release(bool keepBuffer) {
    int remaining;
    {
        CLockGuard guard(m_lock);
        remaining = --m_refCount;
    }
    if (keepBuffer) {
        if (remaining > 0) throw CQvException(FormatString("Failed to release data. [RefCount=%d]", remaining));
        (void)m_pBuffer.release(); // the caller took the buffer with GetData
        delete this;
        return;
    }
    if (remaining == 0) delete this;
}

CBinaryData::CDataHolder* CBinaryData::CDataHolder::GetExclusiveCopy() {
    CLockGuard guard(m_lock);
    if (m_refCount <= 1) return this;
    CDataHolder* copy = new CDataHolder(m_pBuffer.get(), static_cast<unsigned long>(m_length), false);
    // Dropping our reference cannot reach 0 here, so the holder stays alive.
    --m_refCount;
    return copy;
}

// ---------------------------------------------------------------------------
// CBinaryData

CBinaryData::CBinaryData() : m_pHolder(nullptr) {}

CBinaryData::CBinaryData(const CBinaryData& other) : m_pHolder(other.m_pHolder) {
    if (m_pHolder) m_pHolder->AddRef();
}

CBinaryData::CBinaryData(CBinaryData&& other) noexcept : m_pHolder(other.m_pHolder) { other.m_pHolder = nullptr; }

CBinaryData::CBinaryData(unsigned char* data, unsigned long length, bool takeOwnership)
    : m_pHolder(new CDataHolder(data, length, takeOwnership)) {}

CBinaryData::CBinaryData(const char* text) : m_pHolder(nullptr) {
    if (text)
        m_pHolder = new CDataHolder(reinterpret_cast<unsigned char*>(const_cast<char*>(text)),
                                    static_cast<unsigned long>(std::strlen(text)), false);
}

CBinaryData::~CBinaryData() { Clear(); }

unsigned char* CBinaryData::GetData() const { return m_pHolder ? m_pHolder->GetData() : nullptr; }

unsigned long CBinaryData::GetLength() const { return m_pHolder ? m_pHolder->GetLength() : 0; }

void CBinaryData::Separate() {
    if (m_pHolder) m_pHolder = m_pHolder->GetExclusiveCopy();
}

unsigned char& CBinaryData::operator[](unsigned long index) {
    if (!m_pHolder || index > m_pHolder->GetLength())
        throw CQvException(FormatString("Index Out of range [%d]", static_cast<int>(index)));
    Separate();
    return m_pHolder->GetData()[index];
}

const unsigned char& CBinaryData::operator[](unsigned long index) const {
    if (!m_pHolder || index > m_pHolder->GetLength())
        throw CQvException(FormatString("Index Out of range [%d]", static_cast<int>(index)));
    return m_pHolder->GetData()[index];
}

bool CBinaryData::operator==(const CBinaryData& other) const {
    if (!m_pHolder || !other.m_pHolder) return !m_pHolder && !other.m_pHolder;
    if (m_pHolder == other.m_pHolder) return true;
    const unsigned long length = m_pHolder->GetLength();
    return length == other.m_pHolder->GetLength() &&
           (length == 0 || std::memcmp(m_pHolder->GetData(), other.m_pHolder->GetData(), length) == 0);
}

bool CBinaryData::operator!=(const CBinaryData& other) const { return !(*this == other); }

CBinaryData& CBinaryData::operator=(const CBinaryData& other) {
    if (m_pHolder == other.m_pHolder) return *this;
    Clear();
    m_pHolder = other.m_pHolder;
    if (m_pHolder) m_pHolder->AddRef();
    return *this;
}

CBinaryData& CBinaryData::operator=(CBinaryData&& other) noexcept {
    if (this != &other) {
        Clear();
        m_pHolder = other.m_pHolder;
        other.m_pHolder = nullptr;
    }
    return *this;
}

void CBinaryData::Append(unsigned char* data, unsigned long length) {
    if (!m_pHolder) {
        m_pHolder = new CDataHolder(data, length, false);
        return;
    }
    Separate();
    m_pHolder->Append(data, length);
}

void CBinaryData::Append(const CBinaryData& data) {
    // A source that shares our holder is left behind by the separation, and a
    // source that is this very object is handled by the holder's append.
    Append(data.GetData(), data.GetLength());
}

void CBinaryData::Append(const char* text) {
    if (!text) return;
    Append(reinterpret_cast<unsigned char*>(const_cast<char*>(text)), static_cast<unsigned long>(std::strlen(text)));
}

void CBinaryData::Append(const std::string& text) { Append(text.c_str()); }

void CBinaryData::Append(char c) {
    unsigned char byte = static_cast<unsigned char>(c);
    Append(&byte, 1);
}

void CBinaryData::Append(unsigned char c) { Append(&c, 1); }

void CBinaryData::Clear() {
    CDataHolder* holder = m_pHolder;
    m_pHolder = nullptr;
    if (holder) holder->Release(false);
}

void CBinaryData::SetBuffer(unsigned char* data, unsigned long length) {
    Clear();
    m_pHolder = new CDataHolder(data, length, false);
}

void CBinaryData::SetBuffer(const char* text) {
    Clear();
    if (text)
        m_pHolder = new CDataHolder(reinterpret_cast<unsigned char*>(const_cast<char*>(text)),
                                    static_cast<unsigned long>(std::strlen(text)), false);
}

unsigned char* CBinaryData::ReleaseData() {
    if (!m_pHolder) return nullptr;
    Separate();
    CDataHolder* holder = m_pHolder;
    unsigned char* buffer = holder->GetData();
    m_pHolder = nullptr;
    holder->Release(true);
    return buffer;
}

std::string CBinaryData::GetAsBase64() const {
    if (!m_pHolder) return std::string();
    return CBase64().Encode(m_pHolder->GetData(), static_cast<int>(m_pHolder->GetLength()));
}

void CBinaryData::SetAsBase64(const char* text) {
    Clear();
    if (!text) return;
    std::unique_ptr<unsigned char[]> decoded(new unsigned char[std::strlen(text) + 1]);
    const int length = CBase64().Decode(text, decoded.get());
    m_pHolder = new CDataHolder(decoded.get(), static_cast<unsigned long>(length), true);
    (void)decoded.release();
}

std::string CBinaryData::GetAsHexString() const { return GetAsHexString(GetData(), GetLength()); }

std::string CBinaryData::GetAsHexString(unsigned char* data, unsigned long length) {
    static const char digits[] = "0123456789ABCDEF";
    if (!data) return std::string();
    std::string text(2 * static_cast<size_t>(length), '\0');
    for (unsigned long i = 0; i < length; ++i) {
        text[2 * i] = digits[data[i] >> 4];
        text[2 * i + 1] = digits[data[i] & 0x0F];
    }
    return text;
}

void CBinaryData::SetAsHexString(const char* text) {
    Clear();
    unsigned char* raw = nullptr;
    const unsigned long length = ConvertToHexData(text, &raw);
    std::unique_ptr<unsigned char[]> bytes(raw);
    m_pHolder = new CDataHolder(bytes.get(), length, true);
    (void)bytes.release();
}

unsigned long CBinaryData::ConvertToHexData(const char* text, unsigned char** out) {
    const size_t textLength = text ? std::strlen(text) : 0;
    if (textLength % 2) throw CQvException("Invalid length in hex string");

    const size_t length = textLength / 2;
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[length]);
    *out = bytes.get();
    for (size_t i = 0; i < length; ++i) {
        const int high = HexDigitValue(text[2 * i]);
        const int low = HexDigitValue(text[2 * i + 1]);
        if (high < 0 || low < 0) {
            *out = nullptr;
            throw CQvException(
                FormatString("Invalid char in hex string [%c]", high < 0 ? text[2 * i] : text[2 * i + 1]));
        }
        bytes[i] = static_cast<unsigned char>((high << 4) | low);
    }
    (void)bytes.release();
    return static_cast<unsigned long>(length);
}

} // namespace QvXmlLib10
