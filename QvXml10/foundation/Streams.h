#pragma once

#include "QvExport.h"

#include "BinaryData.h"
#include "CriticalSection.h"
#include "QvTypes.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib10 {

namespace Internal {
class CTextAppender;
}

// Text buffer that grows by blocks, so that appending never moves what is
// already there. Appending a byte is a compare and a store; the text is made
// contiguous only when GetText is asked for it.
class QVXML_API CStringBuffer : public CInstanceMonitor {
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
    friend class CTextStream;
    friend class Internal::CTextAppender;
    friend class CXmlObjectBase; // ToXml takes the text out without joining the blocks first

    // The whole text as a string, copied block by block: one copy instead of the join
    // of GetText followed by a copy of the joined text.
    std::string CopyText() const;

    void AddBlock();
    // Appends length bytes as they stand, in as few copies as the blocks allow.
    void AppendBytes(const char* data, uint64_t length);

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
class QVXML_API CTextStream : public CInstanceMonitor {
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

private:
    friend class Internal::CTextAppender;
    friend class CXmlObjectBase;

    // The text in UTF-8 when it can be copied from the blocks as it stands: no NUL,
    // and no byte from 0x80 up unless ASCIIOnly lets those pass. Otherwise empty.
    CBinaryData CopyBlocksIfPlain() const;
};

// Text sink bound to a file. Open creates the file (with the bytes FF FE for
// the UTF-16 encodings). Flush writes the pending encoded bytes, which nothing
// fills, so flushing non-empty text fails: text reaches a file through
// CFileBinaryStream instead.
class QVXML_API CFileTextStream : public CTextStream {
public:
    CFileTextStream(const char* path, XmlEncoding encoding);
    // Closes a file that is still open, without flushing.
    ~CFileTextStream() override;
    CFileTextStream(const CFileTextStream&) = delete;
    CFileTextStream& operator=(const CFileTextStream&) = delete;

    void Open() override;
    void Close() override;
    void Flush() override;

private:
    void CloseFile();

    std::string m_fileName;
    CBinaryData m_encodedData;
    FILE* m_pFile;
};

// Byte sink of the Fast Infoset writer. The data is shared with the
// CBinaryData it is built on and with the copies it hands out.
class QVXML_API CBinaryStream : public CInstanceMonitor {
public:
    CBinaryStream();
    explicit CBinaryStream(CBinaryData& data);
    explicit CBinaryStream(const char* label);
    CBinaryStream(const char* label, CBinaryData& data);
    ~CBinaryStream() override;

    void Append(unsigned char* data, unsigned long length) { m_data.Append(data, length); }
    void Append(const CBinaryData& data) { m_data.Append(data); }
    void Append(unsigned char c) { m_data.Append(c); }

    // A copy sharing the bytes.
    CBinaryData GetBinaryStream() const { return m_data; }

protected:
    CBinaryData m_data;
};

// Stores bytes in a file, after the bytes FF FE for the UTF-16 encodings.
class QVXML_API CFileBinaryStream : public CBinaryStream {
public:
    CFileBinaryStream(const char* path, XmlEncoding encoding);
    CFileBinaryStream(const char* path, XmlEncoding encoding, CBinaryData& data);
    ~CFileBinaryStream() override;

    // Writes the file. Empty data fails, as does a file that can't be written.
    void ToFile();

private:
    std::string m_fileName;
    XmlEncoding m_encoding;
};

} // namespace QvXmlLib10
