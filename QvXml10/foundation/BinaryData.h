#pragma once

#include "QvExport.h"

#include "CriticalSection.h"

#include <cstdint>
#include <memory>
#include <string>

namespace QvXmlLib10 {

// Reference-counted byte buffer. Copies share one holder and separate at their
// first change (copy on write); the holder's lock makes sharing and separating
// safe across threads, while one CBinaryData object belongs to one thread.
class QVXML_API CBinaryData {
public:
    // The shared content: the bytes, their count and the number of sharers.
    class CDataHolder {
    public:
        // With takeOwnership the array (allocated with new[]) is adopted and the
        // capacity equals the length; otherwise the bytes are copied into a
        // buffer of twice the length, at least 8192 bytes.
        CDataHolder(unsigned char* data, unsigned long length, bool takeOwnership);
        CDataHolder(const CDataHolder&) = delete;
        CDataHolder& operator=(const CDataHolder&) = delete;

        unsigned char* GetData() const { return m_pBuffer.get(); }
        unsigned long GetLength() const { return m_length; }
        void AddRef();
        // Only an unshared holder may grow; a shared one throws.
        void Append(unsigned char* data, unsigned long length);
        // Drops one reference. Without keepBuffer the last one frees everything;
        // with keepBuffer the holder goes and the buffer is left to the caller,
        // which must hold the last reference.
        void Release(bool keepBuffer);
        // This holder if unshared, otherwise a private copy (this one loses a reference).
        CDataHolder* GetExclusiveCopy();

    private:
        ~CDataHolder();

        std::unique_ptr<unsigned char[]> m_pBuffer;
        uint64_t m_length;
        uint64_t m_capacity;
        int m_refCount;
        CQVCriticalSection m_lock;
    };

    CBinaryData();
    CBinaryData(const CBinaryData& other);
    CBinaryData(CBinaryData&& other) noexcept;
    CBinaryData(unsigned char* data, unsigned long length, bool takeOwnership);
    // Copies the text without its terminator.
    CBinaryData(const char* text);
    virtual ~CBinaryData();

    unsigned char* GetData() const;
    unsigned long GetLength() const;

    // The index equal to the length is accepted and refers just past the data.
    unsigned char& operator[](unsigned long index);
    const unsigned char& operator[](unsigned long index) const;

    bool operator==(const CBinaryData& other) const;
    bool operator!=(const CBinaryData& other) const;
    CBinaryData& operator=(const CBinaryData& other);
    CBinaryData& operator=(CBinaryData&& other) noexcept;

    void Append(unsigned char* data, unsigned long length);
    void Append(const CBinaryData& data);
    // Text forms stop at the first NUL.
    void Append(const char* text);
    void Append(const std::string& text);
    void Append(char c);
    void Append(unsigned char c);

    void Clear();
    void SetBuffer(unsigned char* data, unsigned long length);
    void SetBuffer(const char* text);
    // Hands the buffer (allocated with new[]) to the caller and leaves this object
    // empty. Null when empty. Other sharers keep their content.
    unsigned char* ReleaseData();

    std::string GetAsBase64() const;
    // Invalid base64 text yields an empty value, not a failure.
    void SetAsBase64(const char* text);
    std::string GetAsHexString() const;
    static std::string GetAsHexString(unsigned char* data, unsigned long length);
    void SetAsHexString(const char* text);
    // Decodes hexadecimal digits into a new array stored in *out, returning its
    // length. On failure *out is left null.
    static unsigned long ConvertToHexData(const char* text, unsigned char** out);

private:
    // Makes the holder exclusive to this object before a change.
    void Separate();

    CDataHolder* m_pHolder;
};

} // namespace QvXmlLib10
