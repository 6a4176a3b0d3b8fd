// CQvZip on its own: large streams of either form decompress over several rounds, what
// is not a complete stream passes unchanged, and input that does not shrink fails.
// Streams of the standard tools are tested with the purchase orders.

#include "foundation/QvException.h"
#include "foundation/QvZip.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace QvXmlLib10;

namespace {

// A new[] array as CQvZip takes it.
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

// About 200 KB, several rounds of 65536 octets.
std::string LargeText() {
    std::string text;
    for (int i = 0; text.size() < 200000; ++i)
        text += "<item n=\"" + std::to_string(i) + "\">x</item>\n";
    return text;
}

TEST(ZipTest, LargeStreamsOfEitherFormDecompress) {
    const std::string text = LargeText();
    for (CompressionType type : {CompressionType_GZip, CompressionType_ZLib}) {
        CArray array(Compressed(text, type));
        CQvZip().Decompress(&array.data, &array.length);
        EXPECT_EQ(text, array.Bytes());
    }
}

TEST(ZipTest, WhatIsNotACompleteStreamPassesUnchanged) {
    const std::string gzip = Compressed(LargeText(), CompressionType_GZip);
    std::string badChecksum = Compressed(LargeText(), CompressionType_ZLib);
    badChecksum.back() ^= 1;
    for (const std::string& input :
         {std::string("<a>text</a>"), std::string("\xE0\x00\x00\x01\x00\x38\x8F\x61", 8),
          gzip.substr(0, gzip.size() - 4), gzip.substr(0, 10) + "not deflate data", badChecksum}) {
        CArray array(input);
        unsigned char* const before = array.data;
        CQvZip().Decompress(&array.data, &array.length);
        EXPECT_EQ(before, array.data);
        EXPECT_EQ(input, array.Bytes());
    }
}

TEST(ZipTest, InputThatDoesNotShrinkFailsAndStands) {
    const std::string random("\x8e\x1f\xd2\x07\x5b\xc4\x39\xa0\x6e\xf3", 10);
    for (const auto& c : {std::make_pair(CompressionType_GZip, "Failed to compress data. [Error Code: -5]"),
                          std::make_pair(CompressionType_ZLib, "Failed to compress data. [Error Code: 0]")}) {
        CArray array(random);
        std::string message = "no exception";
        try {
            CQvZip().Compress(&array.data, &array.length, c.first);
        } catch (const CQvException& e) {
            message = e.GetFullMessage();
        }
        EXPECT_EQ(c.second, message);
        EXPECT_EQ(random, array.Bytes());
        // CompressData has taken the bytes out before compressing.
        CBinaryData data(array.data, array.length, false);
        EXPECT_THROW(CQvZip().CompressData(data, c.first), CQvException);
        EXPECT_EQ(0u, data.GetLength());
    }
}

} // namespace
