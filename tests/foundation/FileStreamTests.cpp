#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <typeinfo>

using namespace QvXmlLib10;

namespace {

std::string TempPath(const std::string& name) { return testing::TempDir() + "qvxml_streams_" + name; }

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

const char kMissingDir[] = "/nonexistent-qvxml-dir/out.xml";

} // namespace

TEST(BinaryStream, AppendLeavesTheCallersDataAlone) {
    CBinaryData data("<a/>");
    CBinaryStream stream(data);
    stream.Append(CBinaryData("!"));
    EXPECT_EQ(Bytes(stream.GetBinaryStream()), "<a/>!");
    EXPECT_EQ(Bytes(data), "<a/>");
    // A stream made empty holds no data at all, not a block of length 0.
    EXPECT_TRUE(CBinaryStream("label").GetBinaryStream() == CBinaryData());
}

TEST(FileBinaryStream, WritesDataWithByteOrderMarkForUtf16) {
    struct Case {
        XmlEncoding encoding;
        std::string prefix;
    } cases[] = {
        {XmlEncoding_None, ""},
        {XmlEncoding_UTF8, ""},
        {XmlEncoding_UTF16, "\xFF\xFE"},
        {XmlEncoding_UTF16NoDecl, "\xFF\xFE"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.encoding);
        const std::string path = TempPath("binary.xml");
        CBinaryData data("<a>x</a>");
        CFileBinaryStream file(path.c_str(), c.encoding, data);
        file.ToFile();
        // The data as it stands, whatever the encoding.
        EXPECT_EQ(ReadFile(path), c.prefix + "<a>x</a>");
        std::remove(path.c_str());
    }
}

TEST(FileStreams, FailOnEmptyDataAndUnwritablePaths) {
    const std::string path = TempPath("empty.xml");
    CFileBinaryStream empty(path.c_str(), XmlEncoding_UTF16);
    EXPECT_EQ(FailureOf<CQvException>([&] { empty.ToFile(); }), "Failed to write data to the file [" + path + "]");
    std::remove(path.c_str());

    CBinaryData data("<a/>");
    CFileBinaryStream nowhere(kMissingDir, XmlEncoding_UTF8, data);
    EXPECT_EQ(FailureOf<CQvException>([&] { nowhere.ToFile(); }),
              std::string("Failed to write data to the file [") + kMissingDir + "]");
    CFileTextStream text(kMissingDir, XmlEncoding_UTF8);
    EXPECT_EQ(FailureOf<CQvException>([&] { text.Open(); }),
              std::string("Failed to write data to the file [") + kMissingDir + "]");
    // Never opened: closing an empty sink is harmless.
    EXPECT_NO_THROW(text.Close());
}

TEST(FileTextStream, OpenWritesByteOrderMarkAndCloseOfEmptyTextSucceeds) {
    for (XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoDecl}) {
        SCOPED_TRACE(encoding);
        const std::string path = TempPath("text.xml");
        {
            CFileTextStream stream(path.c_str(), encoding);
            stream.Open();
            stream.Flush();
            stream.Close();
        }
        EXPECT_EQ(ReadFile(path), encoding == XmlEncoding_UTF8 ? "" : "\xFF\xFE");
        std::remove(path.c_str());
    }
}

TEST(FileTextStream, FlushOfTextFailsAndClosesTheFile) {
    const std::string path = TempPath("flush.xml");
    CFileTextStream stream(path.c_str(), XmlEncoding_UTF16);
    stream.Open();
    stream.Append("<a/>");
    EXPECT_EQ(FailureOf<CQvException>([&] { stream.Flush(); }), "Failed to write data to the file");
    // The text stays, so closing fails the same way; the file holds the mark only.
    EXPECT_EQ(stream.GetLength(), 4u);
    EXPECT_EQ(FailureOf<CQvException>([&] { stream.Close(); }), "Failed to write data to the file");
    EXPECT_EQ(ReadFile(path), "\xFF\xFE");

    // Opening again empties the text and starts a new file.
    stream.Open();
    EXPECT_EQ(stream.GetLength(), 0u);
    stream.Close();
    std::remove(path.c_str());
}

TEST(FileTextStream, DestructorClosesWithoutFlushing) {
    const std::string path = TempPath("destroyed.xml");
    {
        CFileTextStream stream(path.c_str(), XmlEncoding_UTF8);
        stream.Open();
        stream.Append("<never/>");
    }
    EXPECT_EQ(ReadFile(path), "");
    std::remove(path.c_str());
}
