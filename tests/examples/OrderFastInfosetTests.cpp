// The sample order written as Fast Infoset, with the default options and with the
// suggested encodings, read back by the Java Fast Infoset library: its infoset equals
// that of the order's XML text as the platform's XML parser reads it.

#include "OrderTestSupport.h"

#include "../fastinfoset/FiTestSupport.h"

#include <cstdio>
#include <fstream>
#include <sstream>

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

using OrderFastInfosetTest = OrderTest;

// Splits a dump of several files at its "== name" lines.
std::vector<std::string> Split(const std::string& dump) {
    std::vector<std::string> parts;
    std::istringstream lines(dump);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind("== ", 0) == 0)
            parts.emplace_back();
        else if (!parts.empty())
            parts.back() += line + "\n";
    }
    return parts;
}

TEST_F(OrderFastInfosetTest, TheJavaReaderSeesTheOrderThatTheTextShows) {
    if (!FiTest::HaveJava()) GTEST_SKIP() << FiTest::kNoJava;
    CPurchaseOrder order;
    order.FromXml(SampleText().c_str());
    const CXmlSerializationContext context = Readable();
    CXmlSerializationContext suggested = Readable();
    suggested.GetFIContext().SetSuggestedValues();

    const std::vector<std::string> dumps = Split(
        FiTest::JavaDump({{"order.xml", Written(order, context)},
                          {"default.fi", FiTest::Bytes(order.ToFastInfosetStream(FInfoDecl_None, context))},
                          {"suggested.fi", FiTest::Bytes(order.ToFastInfosetStream(FInfoDecl_None, suggested))}}));
    ASSERT_EQ(3u, dumps.size());
    EXPECT_NE(std::string::npos, dumps[0].find("text \"Analytical engine caf\xC3\xA9 table\""));
    EXPECT_EQ(dumps[0], dumps[1]);
    EXPECT_EQ(dumps[0], dumps[2]);
}

TEST_F(OrderFastInfosetTest, EntryPoints) {
    CPurchaseOrder order;
    order.FromXml(SampleText().c_str());
    const CXmlSerializationContext context = Readable();
    const CBinaryData bytes = order.ToFastInfosetStream(FInfoDecl_None, context);
    // The file holds the same bytes, after the declaration asked for.
    const std::string path = ::testing::TempDir() + "order_" + std::to_string(getpid()) + ".fi";
    order.ToFastInfosetFile(path.c_str(), static_cast<FInfoDecl>(4), context);
    std::ifstream file(path, std::ios::binary);
    std::ostringstream read;
    read << file.rdbuf();
    std::remove(path.c_str());
    EXPECT_EQ(std::string("<?xml version='1.0' encoding='finf'?>") + FiTest::Bytes(bytes), read.str());

    // Gzip Fast Infoset in a file, and zlib in a stream with the suggested encodings and a
    // declaration, read back into the same order.
    const std::string expected = order.ToXml();
    order.ToFastInfosetFile(path.c_str(), FInfoDecl_None, context, CompressionType_GZip);
    CPurchaseOrder fromFile, fromStream;
    fromFile.FromXmlFile(path.c_str());
    std::remove(path.c_str());
    CXmlSerializationContext suggested;
    suggested.GetFIContext().SetSuggestedValues();
    fromStream.FromXmlStream(order.ToFastInfosetStream(static_cast<FInfoDecl>(4), suggested, CompressionType_ZLib),
                             suggested);
    EXPECT_EQ(expected, fromFile.ToXml());
    EXPECT_EQ(expected, fromStream.ToXml());
    EXPECT_EQ("CQvException: ZLIB Compression only available for To Stream methods.", FiTest::Failure([&] {
                  order.ToFastInfosetFile(path.c_str(), FInfoDecl_None, context, CompressionType_ZLib);
              }));
}

} // namespace
} // namespace OrderTests
