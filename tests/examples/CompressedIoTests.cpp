// Compressed purchase orders: ToXmlStream and ToXmlFile compress on request, and the
// reading entry points take gzip and zlib streams made here or by other programs.

#include "OrderTestSupport.h"

#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "binding/XmlObjectBase.h"
#include "foundation/QvZip.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

std::string TempPath(const char* name) {
    return ::testing::TempDir() + "compressed_io_" + std::to_string(getpid()) + "_" + name;
}

std::string FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::string Decompressed(const CBinaryData& data) {
    CBinaryData copy(data.GetData(), data.GetLength(), false);
    unsigned long length = copy.GetLength();
    unsigned char* bytes = copy.ReleaseData();
    CQvZip().Decompress(&bytes, &length);
    const std::string text(reinterpret_cast<const char*>(bytes), length);
    delete[] bytes;
    return text;
}

class CompressedIoTest : public OrderTest {
protected:
    CompressedIoTest() { m_sample.FromXml(SampleText().c_str()); }
    CPurchaseOrder m_sample;
};

TEST_F(CompressedIoTest, ToXmlStreamCompressesTheDocumentAndBothFormsLoad) {
    const CBinaryData plain = m_sample.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, Readable());
    for (CompressionType type : {CompressionType_GZip, CompressionType_ZLib}) {
        const CBinaryData compressed = m_sample.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, Readable(), type);
        EXPECT_EQ(type == CompressionType_GZip ? 0x1F : 0x78, compressed.GetData()[0]);
        EXPECT_EQ(Bytes(plain), Decompressed(compressed));
        CPurchaseOrder order;
        order.FromXmlStream(compressed);
        EXPECT_EQ(Written(m_sample), Written(order));
    }
}

TEST_F(CompressedIoTest, StreamsOfOtherProgramsLoad) {
    const std::string path = TempPath("order.xml.gz");
    ASSERT_EQ(0, std::system(("gzip -9 -c " QVXML_EXAMPLE_DIR "/orders/order.xml > " + path).c_str()));
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

TEST_F(CompressedIoTest, ATruncatedStreamReachesTheParserAsItsBytes) {
    const CBinaryData gzip =
        m_sample.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, Readable(), CompressionType_GZip);
    CPurchaseOrder order;
    EXPECT_EQ("not well-formed (invalid token) at line 1",
              FailureOf([&] { order.FromXmlStream(gzip.GetData(), gzip.GetLength() - 1); }));
}

TEST_F(CompressedIoTest, ToXmlFileRefusesZlibFirstAndWritesGzipThroughTheStream) {
    const std::string path = TempPath("order.gz");
    SetGeneratorVersion(9, 0);
    EXPECT_EQ("ZLIB Compression only available for To Stream methods.", FailureOf([&] {
                  m_sample.ToXmlFile(path.c_str(), true, true, XmlEncoding_UTF8, EOLType_LF, Readable(),
                                     CompressionType_ZLib);
              }));
    SetGeneratorVersion(10, 1);
    EXPECT_FALSE(std::ifstream(path).good());

    AsyncToXmlFile(true);
    m_sample.ToXmlFile(path.c_str(), true, true, XmlEncoding_UTF8, EOLType_LF, Readable(), CompressionType_GZip);
    AsyncToXmlFile(false);
    EXPECT_EQ(Bytes(m_sample.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, Readable(), CompressionType_GZip)),
              FileBytes(path));
    std::remove(path.c_str());
}

} // namespace
} // namespace OrderTests
