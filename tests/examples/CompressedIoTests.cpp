// Compressed purchase orders: ToXmlStream and ToXmlFile compress on request, for the
// gzip program and zlib to read, and the reading entry points take gzip and zlib
// streams, the library's own and those of other programs.

#include "OrderTestSupport.h"

#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "binding/XmlObjectBase.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

std::string TempPath(const char* name) { return ::testing::TempDir() + std::to_string(getpid()) + name; }

std::string Output(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    std::string out;
    char block[4096];
    for (size_t n; (n = std::fread(block, 1, sizeof block, pipe)) > 0;)
        out.append(block, n);
    EXPECT_EQ(0, pclose(pipe));
    return out;
}

class CompressedIoTest : public OrderTest {
protected:
    CompressedIoTest() { m_sample.FromXml(SampleText().c_str()); }
    CBinaryData Stream(CompressionType type) const {
        return m_sample.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, Readable(), type);
    }
    CPurchaseOrder m_sample;
};

TEST_F(CompressedIoTest, ToXmlStreamOutputDecompressesWithTheStandardToolsAndLoads) {
    const std::string plain = Bytes(Stream(CompressionType_None));
    for (CompressionType type : {CompressionType_GZip, CompressionType_ZLib}) {
        const CBinaryData compressed = Stream(type);
        std::string text(plain.size(), '\0');
        uLongf length = text.size();
        if (type == CompressionType_GZip) {
            const std::string path = TempPath("order.gz");
            std::ofstream(path, std::ios::binary) << Bytes(compressed);
            text = Output("gzip -dc " + path);
            std::remove(path.c_str());
        } else {
            EXPECT_EQ(Z_OK, uncompress(reinterpret_cast<Bytef*>(&text[0]), &length, compressed.GetData(),
                                       compressed.GetLength()));
        }
        EXPECT_EQ(plain, text);
        CPurchaseOrder order;
        order.FromXmlStream(compressed);
        EXPECT_EQ(Written(m_sample), Written(order));
    }
}

TEST_F(CompressedIoTest, StreamsOfOtherProgramsLoad) {
    const std::string path = TempPath("order.xml.gz");
    Output("gzip -9 -c " QVXML_EXAMPLE_DIR "/orders/order.xml > " + path);
    CPurchaseOrder fromGzip;
    fromGzip.FromXmlFile(path.c_str());
    std::remove(path.c_str());
    EXPECT_EQ(Written(m_sample), Written(fromGzip));

    const std::string text = SampleText();
    std::string zlib(compressBound(text.size()), '\0');
    uLongf length = zlib.size();
    ASSERT_EQ(Z_OK, compress2(reinterpret_cast<Bytef*>(&zlib[0]), &length, reinterpret_cast<const Bytef*>(text.data()),
                              text.size(), 9));
    CPurchaseOrder fromZlib;
    fromZlib.FromXmlStream(reinterpret_cast<unsigned char*>(&zlib[0]), length);
    EXPECT_EQ(Written(m_sample), Written(fromZlib));
}

TEST_F(CompressedIoTest, ACutStreamReachesTheParserAsItsBytes) {
    const CBinaryData gzip = Stream(CompressionType_GZip);
    CPurchaseOrder order;
    EXPECT_EQ("not well-formed (invalid token) at line 1",
              FailureOf([&] { order.FromXmlStream(gzip.GetData(), gzip.GetLength() - 1); }));
}

TEST_F(CompressedIoTest, ToXmlFileRefusesZlibFirstAndWritesGzipThroughTheStream) {
    const std::string path = TempPath("order.gz");
    const auto write = [&](CompressionType type) {
        m_sample.ToXmlFile(path.c_str(), true, true, XmlEncoding_UTF8, EOLType_LF, Readable(), type);
    };
    SetGeneratorVersion(9, 0);
    EXPECT_EQ("ZLIB Compression only available for To Stream methods.",
              FailureOf([&] { write(CompressionType_ZLib); }));
    SetGeneratorVersion(10, 1);
    EXPECT_FALSE(std::ifstream(path).good());

    AsyncToXmlFile(true);
    write(CompressionType_GZip);
    AsyncToXmlFile(false);
    std::ostringstream file;
    file << std::ifstream(path, std::ios::binary).rdbuf();
    EXPECT_EQ(Bytes(Stream(CompressionType_GZip)), file.str());
    std::remove(path.c_str());
}

} // namespace
} // namespace OrderTests
