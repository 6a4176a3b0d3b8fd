// CQvZip: what it compresses decompresses with the gzip program and with zlib, and back
// again; anything that is not a complete stream passes Decompress unchanged; input that
// does not shrink fails with the compression message.

#include "foundation/QvException.h"
#include "foundation/QvZip.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

using namespace QvXmlLib10;

namespace {

// A new[] array as CQvZip takes it, freed at the end of the test.
struct CArray {
    explicit CArray(const std::string& bytes) : data(new unsigned char[bytes.size()]), length(bytes.size()) {
        std::memcpy(data, bytes.data(), bytes.size());
    }
    ~CArray() { delete[] data; }
    std::string Bytes() const { return std::string(reinterpret_cast<const char*>(data), length); }
    unsigned char* data;
    unsigned long length;
};

std::string Compressed(const std::string& text, CompressionType type) {
    CArray array(text);
    CQvZip().Compress(&array.data, &array.length, type);
    return array.Bytes();
}

// About 200 KB of text, which spans several rounds of 65536 octets.
std::string LargeText() {
    std::string text;
    for (int i = 0; text.size() < 200000; ++i)
        text += "<item n=\"" + std::to_string(i) + "\">x</item>\n";
    return text;
}

std::string GunzipWithTheGzipProgram(const std::string& bytes) {
    const std::string path = ::testing::TempDir() + "zip_test_" + std::to_string(getpid()) + ".gz";
    std::ofstream(path, std::ios::binary) << bytes;
    FILE* pipe = popen(("gzip -dc " + path).c_str(), "r");
    std::string text;
    char block[4096];
    for (size_t n; (n = std::fread(block, 1, sizeof block, pipe)) > 0;)
        text.append(block, n);
    EXPECT_EQ(0, pclose(pipe));
    std::remove(path.c_str());
    return text;
}

std::string UncompressWithZlib(const std::string& bytes, size_t size) {
    std::string text(size, '\0');
    uLongf length = size;
    EXPECT_EQ(Z_OK, uncompress(reinterpret_cast<Bytef*>(&text[0]), &length,
                               reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
    text.resize(length);
    return text;
}

TEST(ZipTest, CompressedDataDecompressesWithTheStandardToolsAndBack) {
    for (const std::string& text : {std::string(300, 'a'), LargeText()}) {
        for (CompressionType type : {CompressionType_GZip, CompressionType_ZLib}) {
            const std::string compressed = Compressed(text, type);
            EXPECT_LT(compressed.size(), text.size() / 4);
            EXPECT_EQ(text, type == CompressionType_GZip ? GunzipWithTheGzipProgram(compressed)
                                                         : UncompressWithZlib(compressed, text.size()));
            CArray array(compressed);
            CQvZip().Decompress(&array.data, &array.length);
            EXPECT_EQ(text, array.Bytes());
        }
    }
}

TEST(ZipTest, WhatIsNotACompleteStreamPassesDecompressUnchanged) {
    const std::string gzip = Compressed(LargeText(), CompressionType_GZip);
    std::string badChecksum = Compressed(LargeText(), CompressionType_ZLib);
    badChecksum.back() ^= 1;
    const std::string cases[] = {
        "<a>text</a>",
        std::string("\xE0\x00\x00\x01\x00\x38\x8F\x61\xF0", 9), // Fast Infoset header and a root element
        gzip.substr(0, gzip.size() - 4),                        // without the length trailer
        gzip.substr(0, gzip.size() / 2),
        gzip.substr(0, 10) + "not deflate data",
        badChecksum,
    };
    for (const std::string& input : cases) {
        CArray array(input);
        unsigned char* const before = array.data;
        CQvZip().Decompress(&array.data, &array.length);
        EXPECT_EQ(before, array.data);
        EXPECT_EQ(input, array.Bytes());
    }
}

TEST(ZipTest, InputThatDoesNotShrinkFailsAndStands) {
    const std::string random("\x8e\x1f\xd2\x07\x5b\xc4\x39\xa0\x6e\xf3", 10);
    const struct {
        CompressionType type;
        const char* message;
    } cases[] = {{CompressionType_GZip, "Failed to compress data. [Error Code: -5]"},
                 {CompressionType_ZLib, "Failed to compress data. [Error Code: 0]"}};
    for (const auto& c : cases) {
        CArray array(random);
        unsigned char* const before = array.data;
        try {
            CQvZip().Compress(&array.data, &array.length, c.type);
            ADD_FAILURE() << "no exception";
        } catch (const CQvException& e) {
            EXPECT_EQ(c.message, e.GetFullMessage());
        }
        EXPECT_EQ(before, array.data);
        EXPECT_EQ(random, array.Bytes());

        // CompressData has taken the bytes out before compressing.
        CBinaryData data(array.data, array.length, false);
        EXPECT_THROW(CQvZip().CompressData(data, c.type), CQvException);
        EXPECT_EQ(0u, data.GetLength());
    }
}

TEST(ZipTest, CompressDataLeavesEmptyDataAndNoCompressionAsTheyWere) {
    CBinaryData empty;
    CQvZip().CompressData(empty, CompressionType_GZip);
    EXPECT_EQ(nullptr, empty.GetData());

    CBinaryData text("<a/>");
    CQvZip().CompressData(text, CompressionType_None);
    EXPECT_EQ(std::string("<a/>"), std::string(reinterpret_cast<const char*>(text.GetData()), text.GetLength()));
}

} // namespace
