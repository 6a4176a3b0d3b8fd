#pragma once

#include "foundation/BinaryData.h"
#include "foundation/CriticalSection.h"
#include "foundation/QvTypes.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib10 {

// Text buffer that grows by blocks, so that appending never moves what is
// already there. Appending a byte is a compare and a store; the text is made
// contiguous only when GetText is asked for it.
class CStringBuffer : public CInstanceMonitor {
public:
    CStringBuffer();
    // blockBytes counts the terminator: a block holds blockBytes - 1 characters.
    explicit CStringBuffer(unsigned long blockBytes);
    ~CStringBuffer() override;
    CStringBuffer(const CStringBuffer&) = delete;
    CStringBuffer& operator=(const CStringBuffer&) = delete;

    void Append(char c) {
        if (m_currentUsed == m_currentCapacity) AddBlock();
        m_pCurrent[m_currentUsed++] = c;
        ++m_length;
    }
    void Append(const char* text);
    // Goes through the const char* form, so the text ends at an embedded NUL.
    void Append(const std::string& text) { Append(text.c_str()); }
    void SetText(const char* text);

    // The whole text, terminated, owned by the buffer and valid until its next
    // change. Joins the blocks into one when there are several.
    const char* GetText();
    uint64_t GetLength() const { return m_length; }

    // Frees every block.
    void Clear();
    // Keeps a single block for reuse; otherwise the same as Clear.
    void Empty();

private:
    friend class CStringBufferInspector; // test access to the block layout

    void AddBlock();

    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::vector<uint64_t> m_blockSizes;
    uint64_t m_blockSize;
    uint64_t m_currentUsed;
    uint64_t m_currentCapacity;
    char* m_pCurrent;
    uint64_t m_length;
};

// In-memory text sink of the writers. Text is in the local code page;
// GetEncodedStream turns it into the bytes of the sink's encoding.
class CTextStream : public CInstanceMonitor {
public:
    CTextStream();
    explicit CTextStream(XmlEncoding encoding);
    CTextStream(const char* label, XmlEncoding encoding);
    ~CTextStream() override;

    virtual void Open();
    virtual void Close();
    virtual void Flush();

    void Append(const std::string& text) { m_buffer.Append(text); }
    void Append(const char* text) { m_buffer.Append(text); }
    void Append(char c) { m_buffer.Append(c); }

    // Joining the blocks changes the buffer's layout, not its text, hence const.
    const char* GetText() const { return m_buffer.GetText(); }
    uint64_t GetLength() const { return m_buffer.GetLength(); }
    XmlEncoding GetEncoding() const { return m_encoding; }

    // UTF-8 bytes, or UTF-16 little-endian bytes (without byte order mark) for
    // both UTF-16 encodings. XmlEncoding_None and unknown values throw.
    CBinaryData GetEncodedStream() const;

protected:
    mutable CStringBuffer m_buffer;
    XmlEncoding m_encoding;
};

} // namespace QvXmlLib10
