#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "TestLocale.h"

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

template <class F> std::string FailureOf(F f) {
    try {
        f();
    } catch (const CQvException& e) {
        EXPECT_EQ(typeid(e), typeid(CQvException));
        return e.GetFullMessage();
    }
    ADD_FAILURE() << "no exception";
    return std::string();
}

const char kMissingDir[] = "/nonexistent-qvxml-dir/out.xml";

} // namespace

TEST(BinaryStream, SharesItsDataAndSeparatesOnAppend) {
    CBinaryData data("<a/>");
    CBinaryStream stream(data);
    EXPECT_EQ(stream.GetBinaryStream().GetData(), data.GetData());
    unsigned char more[] = {'x', 'y'};
    stream.Append(more, 2);
    stream.Append(static_cast<unsigned char>('z'));
    stream.Append(CBinaryData("!"));
    EXPECT_EQ(Bytes(stream.GetBinaryStream()), "<a/>xyz!");
    EXPECT_EQ(Bytes(data), "<a/>");

    CBinaryStream empty("label");
    EXPECT_TRUE(empty.GetBinaryStream() == CBinaryData());
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

TEST(FileBinaryStream, FailsOnEmptyDataAndUnwritablePaths) {
    const std::string path = TempPath("empty.xml");
    CFileBinaryStream empty(path.c_str(), XmlEncoding_UTF16);
    EXPECT_EQ(FailureOf([&] { empty.ToFile(); }), "Failed to write data to the file [" + path + "]");
    std::remove(path.c_str());

    CBinaryData data("<a/>");
    CFileBinaryStream nowhere(kMissingDir, XmlEncoding_UTF8, data);
    EXPECT_EQ(FailureOf([&] { nowhere.ToFile(); }),
              std::string("Failed to write data to the file [") + kMissingDir + "]");
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
    EXPECT_EQ(FailureOf([&] { stream.Flush(); }), "Failed to write data to the file");
    // The text stays, so closing fails the same way; the file holds the mark only.
    EXPECT_EQ(stream.GetLength(), 4u);
    EXPECT_EQ(FailureOf([&] { stream.Close(); }), "Failed to write data to the file");
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

TEST(FileTextStream, OpenFailsForUnwritablePath) {
    CFileTextStream stream(kMissingDir, XmlEncoding_UTF8);
    EXPECT_EQ(FailureOf([&] { stream.Open(); }), std::string("Failed to write data to the file [") + kMissingDir + "]");
    // Never opened: closing an empty sink is harmless.
    EXPECT_NO_THROW(stream.Close());
}
