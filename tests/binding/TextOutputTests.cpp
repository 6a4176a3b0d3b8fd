#include "support/HandOrder.h"

#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>

using namespace QvXmlLib10;
using QvXmlTest::CHandOrder;

namespace {

const char SOURCE[] =
    "<o:order xmlns:o=\"urn:example:orders\" xmlns:m=\"urn:example:meta\" id=\"A&amp;1\" m:priority=\"high\">"
    "<o:customer>Ada &lt;Lovelace&gt;</o:customer>"
    "<l:line xmlns:l=\"urn:example:lines\" sku=\"P-1\" m:quantity=\"2\">gears \"x\"</l:line>"
    "<l:line xmlns:l=\"urn:example:lines\" sku=\"P-2\" m:quantity=\"1\">table</l:line></o:order>";

const char FORMATTED[] =
    "<?xml version=\"1.0\"?>\n"
    "<AA:order xmlns:AA=\"urn:example:orders\" id=\"A&amp;1\" xmlns:AB=\"urn:example:meta\" AB:priority=\"high\">\n"
    "\t<AA:customer>Ada &lt;Lovelace&gt;</AA:customer>\n"
    "\t<AC:line xmlns:AC=\"urn:example:lines\" sku=\"P-1\" AB:quantity=\"2\">gears \"x\"</AC:line>\n"
    "\t<AC:line xmlns:AC=\"urn:example:lines\" sku=\"P-2\" AB:quantity=\"1\">table</AC:line>\n"
    "</AA:order>\n";

const char UNFORMATTED[] =
    "<AA:order xmlns:AA=\"urn:example:orders\" id=\"A&amp;1\" xmlns:AB=\"urn:example:meta\" AB:priority=\"high\">"
    "<AA:customer>Ada &lt;Lovelace&gt;</AA:customer>"
    "<AC:line xmlns:AC=\"urn:example:lines\" sku=\"P-1\" AB:quantity=\"2\">gears \"x\"</AC:line>"
    "<AC:line xmlns:AC=\"urn:example:lines\" sku=\"P-2\" AB:quantity=\"1\">table</AC:line></AA:order>";

std::string ReadFile(const std::string& path) {
    std::ifstream in(path.c_str(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string Utf16(const std::string& ascii) {
    std::string out;
    for (char c : ascii) {
        out += c;
        out += '\0';
    }
    return out;
}

} // namespace

TEST(TextOutput, ToXmlAndToXmlStreamFormattedAndUnformatted) {
    CHandOrder order;
    order.FromXml(SOURCE);
    std::string crlf;
    for (char c : std::string(FORMATTED))
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    EXPECT_EQ(order.ToXml(), FORMATTED);
    EXPECT_EQ(order.ToXml(true, true, EOLType_CRLF), crlf);
    EXPECT_EQ(order.ToXml(false, false, EOLType_LF), UNFORMATTED);
    EXPECT_EQ(order.ToXml(false, false, EOLType_CRLF), UNFORMATTED);

    const std::string body = std::string(FORMATTED).substr(std::string("<?xml version=\"1.0\"?>").size());
    EXPECT_EQ(Bytes(order.ToXmlStream(true, true, XmlEncoding_UTF8)),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + body);
    EXPECT_EQ(Bytes(order.ToXmlStream(true, true, XmlEncoding_UTF16)),
              Utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + body));
    EXPECT_EQ(Bytes(order.ToXmlStream(true, true, XmlEncoding_UTF16NoDecl)), Utf16(FORMATTED));
    EXPECT_EQ(FailureOf<CQvException>([&] { order.ToXmlStream(true, true, XmlEncoding_None); }),
              "Unknown Encoding, select UTF-8 (contact support@qvxml.example for support)");
}

// Files and streams in every encoding give back the same bytes; non-ASCII text survives.
TEST(TextOutput, FilesAndStreamsRoundTripAndUtf16FilesBeginWithByteOrderMark) {
    ScopedAsciiOnly ascii(true); // ASCIIOnly(true): the local code page is UTF-8, so non-ASCII text survives
    const std::string text = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
    const std::string source = std::string(SOURCE).replace(std::string(SOURCE).find("table"), 5, text);
    const std::string path = testing::TempDir() + "qvxml-output.xml";
    for (XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoDecl}) {
        CHandOrder first;
        first.FromXml(source.c_str());
        first.ToXmlFile(path.c_str(), true, false, encoding, EOLType_CRLF);
        const std::string firstFile = ReadFile(path);
        const CBinaryData stream = first.ToXmlStream(true, false, encoding, EOLType_CRLF);
        const bool utf16 = encoding != XmlEncoding_UTF8;
        EXPECT_EQ(firstFile.substr(0, 2), utf16 ? std::string("\xFF\xFE") : std::string("<?")) << encoding;
        EXPECT_EQ(firstFile.substr(utf16 ? 2 : 0), Bytes(stream));

        CHandOrder second;
        second.FromXmlFile(path.c_str());
        second.ToXmlFile(path.c_str(), true, false, encoding, EOLType_CRLF);
        EXPECT_EQ(ReadFile(path), firstFile) << encoding;
        CHandOrder third;
        third.FromXmlStream(stream);
        EXPECT_EQ(Bytes(third.ToXmlStream(true, false, encoding, EOLType_CRLF)), Bytes(stream)) << encoding;
        ASSERT_EQ(third.lines.size(), 2u);
        EXPECT_EQ(third.lines[1]->description, text) << encoding;
    }
    std::remove(path.c_str());
}

TEST(TextOutput, FileFailures) {
    CHandOrder order;
    order.FromXml(SOURCE);
    const std::string unwritable = testing::TempDir() + "no-such-folder/out.xml";
    EXPECT_EQ(FailureOf<CQvException>([&] { order.ToXmlFile(unwritable.c_str()); }),
              "Failed to write data to the file [" + unwritable + "]");

    // The streaming route writes through a file text sink, which fails at its first flush.
    const std::string path = testing::TempDir() + "qvxml-async.xml";
    AsyncToXmlFile(true);
    EXPECT_EQ(FailureOf<CQvException>([&] { order.ToXmlFile(path.c_str()); }), "Failed to write data to the file");
    AsyncToXmlFile(false);
    std::remove(path.c_str());
}

TEST(TextOutput, WriterFailurePassesThroughUnwrapped) {
    class CBroken : public QvXmlTest::CHandLine {
    protected:
        void ToXml_Int(CXmlWriter* writer, bool, const char* ns, const CXmlSerializationContext&, bool) const override {
            writer->WriteStartElement("broken", ns);
            writer->WriteString("text", ItemType_string);
            writer->WriteAttributeString("late", "", "v", ItemType_string);
        }
    };
    CBroken broken;
    EXPECT_EQ(FailureOf<CQvException>([&] { broken.ToXml(); }), "Attributes must be added before elements");
}

// ToXml copies a text of many blocks into one string.
TEST(TextOutput, LongOutputSpanningManyBlocksIsWhole) {
    CHandOrder order;
    order.FromXml(SOURCE);
    for (int i = 0; i < 2000; ++i) {
        CSmartPtr<QvXmlTest::CHandLine> line(new QvXmlTest::CHandLine);
        line->sku = "S-" + std::to_string(i);
        line->quantity = std::to_string(i % 7);
        line->description = std::string(static_cast<size_t>(i % 50), 'd');
        order.lines.push_back(line);
    }
    const std::string text = order.ToXml(false, true, EOLType_CRLF);
    EXPECT_GT(text.size(), 100000u);
    EXPECT_EQ(text, Bytes(order.ToXmlStream(false, true, XmlEncoding_UTF8, EOLType_CRLF)));
    CHandOrder reread;
    reread.FromXml(text.c_str());
    EXPECT_EQ(reread.ToXml(false, true, EOLType_CRLF), text);
    ASSERT_EQ(reread.lines.size(), 2002u);
    EXPECT_EQ(reread.lines.back()->sku, "S-1999");
}
