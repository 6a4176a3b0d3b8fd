// Documents encoded by the Java Fast Infoset library from XML text load into the same
// tree and alias map as the text reader builds from that text.

#include "FiReaderSupport.h"
#include "FiTestSupport.h"

#include "document/XmlDocument.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

using namespace QvXmlLib10;

namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The document's XML text, encoded by the Java library with the options given.
std::string EncodeWithJava(const std::string& xml, const std::string& name, const std::string& options) {
#ifdef QVXML_JAVA
    const std::string base = testing::TempDir() + "qvxml_fi_" + name + "_" + std::to_string(::getpid());
    std::ofstream(base + ".xml", std::ios::binary) << xml;
    const std::string command = std::string("\"") + QVXML_JAVA + "\" -cp \"" + QVXML_FI_CLASSPATH + "\" FiEncode \"" +
                                base + ".xml\" \"" + base + ".fi\" " + options;
    EXPECT_EQ(0, std::system(command.c_str())) << command;
    std::string bytes = ReadFile(base + ".fi");
    std::remove((base + ".xml").c_str());
    std::remove((base + ".fi").c_str());
    return bytes;
#else
    (void)xml;
    (void)name;
    (void)options;
    return std::string();
#endif
}

std::string FromText(const std::string& xml, const char* const* prefixes) {
    CXmlDocument document;
    document.LoadXml(xml.c_str());
    return FiTest::Describe(document, prefixes);
}

std::string FromFastInfoset(const std::string& bytes, const char* const* prefixes) {
    CXmlDocument document;
    FiTest::LoadBytes(document, bytes);
    return FiTest::Describe(document, prefixes);
}

// Many distinct names, values and chunks, each used twice, so that indices of every
// integer form occur: element names beyond 2080, attribute values beyond 8256 and
// character chunks beyond 1040.
std::string ManyNames() {
    std::string xml = "<root xmlns='urn:many' xmlns:q='urn:q'>";
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 8300; ++i) {
            const std::string n = std::to_string(i);
            xml += "<e" + std::to_string(i % 2100) + " q:a" + std::to_string(i % 100) + "='v" + n + "'>" +
                   (i < 1100 ? "t" + n : std::string()) + "</e" + std::to_string(i % 2100) + ">";
        }
    }
    return xml + "</root>";
}

const std::string kOrderLike =
    "<?xml version='1.0'?>\n"
    "<!-- a comment before the root -->\n"
    "<p:order xmlns:p='urn:p' xmlns='urn:d' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' id='7' "
    "xsi:type='p:OrderType' p:note=''>\n"
    "  <?process this?>\n"
    "  <name xml:lang='en'>Ann &amp; Bob</name>\n"
    "  <name xml:lang='en'>Ann &amp; Bob</name>\n"
    "  <text>" +
    std::string(400, 'x') +
    "</text>\n"
    "  <p:line p:no='1'><qty>2</qty><price>10.50</price></p:line>\n"
    "  <p:line p:no='2' xmlns:p='urn:p2'><qty>2</qty><empty/></p:line>\n"
    "</p:order>\n";

const char* const kOrderPrefixes[] = {"p", "", "xsi", nullptr};
const char* const kNoPrefixes[] = {"", "q", nullptr};

#ifdef QVXML_JAVA
#define QVXML_NEEDS_JAVA()
#else
#define QVXML_NEEDS_JAVA()                                                                                             \
    GTEST_SKIP() << "SKIPPED: Java or the Java Fast Infoset library was not found when the tests were configured"
#endif

} // namespace

TEST(FastInfosetJava, DocumentsLoadAsTheirText) {
    QVXML_NEEDS_JAVA();
    const std::string order = ReadFile(QVXML_ORDER_XML);
    ASSERT_FALSE(order.empty());
    const struct {
        const char* name;
        std::string xml;
        const char* const* prefixes;
    } documents[] = {
        {"orderlike", kOrderLike, kOrderPrefixes},
        {"example", order, kOrderPrefixes},
        {"many", ManyNames(), kNoPrefixes},
        {"cdata", "<r>a<![CDATA[<b>]]>c</r>", kNoPrefixes},
    };
    // The library's defaults, and every value and chunk of up to 1000 characters indexed.
    const char* const options[] = {"", "minAttribute=0 maxAttribute=1000 minChunk=0 maxChunk=1000"};
    for (const auto& document : documents) {
        const std::string expected = FromText(document.xml, document.prefixes);
        for (const char* option : options) {
            const std::string bytes = EncodeWithJava(document.xml, document.name, option);
            ASSERT_EQ(0, bytes.compare(0, 4, FiTest::Bytes("E0 00 00 01"))) << document.name;
            EXPECT_EQ(expected, FromFastInfoset(bytes, document.prefixes)) << document.name << " " << option;
        }
    }
}
