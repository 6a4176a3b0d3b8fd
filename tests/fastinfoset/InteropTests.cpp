// Documents written by the Fast Infoset writer, read back by an independent
// implementation (the Java Fast Infoset library): the infoset it reports must be the
// one the writer meant to write.

#include "fastinfoset/FastInfosetWriter.h"
#include "foundation/Encoder.h"
#include "foundation/Streams.h"
#include "fastinfoset/FiTestSupport.h"

#include <gtest/gtest.h>

#include <clocale>
#include <functional>

using namespace QvXmlLib10;

namespace {

const char kXsi[] = "http://www.w3.org/2001/XMLSchema-instance";

std::string Document(const CFastInfosetContext& fi, const std::function<void(CFastInfosetWriter&)>& events,
                     FInfoDecl declaration = FInfoDecl_None) {
    CBinaryStream stream;
    CFastInfosetWriter writer(fi, stream);
    writer.Open();
    writer.WriteStartDocument(declaration);
    events(writer);
    writer.WriteEndDocument();
    writer.Close();
    return FiTest::Bytes(stream.GetBinaryStream());
}

class Interop : public ::testing::Test {
protected:
    void SetUp() override {
        if (!FiTest::HaveJava()) GTEST_SKIP() << FiTest::kNoJava;
    }
};

TEST_F(Interop, AlgorithmsAlphabetsAndIndices) {
    CFastInfosetContext fi;
    fi.SetSuggestedValues();
    fi.SetEncoding(ItemType_string, {CFastInfosetContext::EncodedKind_Algorithm, 9});
    fi.SetEncoding(ItemType_char, {CFastInfosetContext::EncodedKind_Algorithm, 10});
    const struct {
        const char* name;
        const char* text;
        ItemType type;
        const char* rendered; // as the Java reader renders the algorithm's value
    } values[] = {
        {"hex", "0AFF", ItemType_hexBinary, "0AFF"},
        {"base64", "AQID", ItemType_base64Binary, "AQID"},
        {"short", "-2", ItemType_i2, "-2"},
        {"int", "-70000", ItemType_i4, "-70000"},
        {"long", "-5000000000", ItemType_i8, "-5000000000"},
        {"boolean", "true", ItemType_boolean, "true"},
        {"float", "2.5", ItemType_r4, "2.5"},
        {"double", "-0.125", ItemType_r8, "-0.125"},
        {"uuid", "00112233445566778899AABBCCDDEEFF", ItemType_string, "00112233-4455-6677-8899-aabbccddeeff"},
        {"cdata", "a<b&c", ItemType_char, "a<b&c"}, // character chunks only: no attribute
        // Position 13 of the numeric alphabet, "e" here, is a capital "E" in the Java reader's table.
        {"decimal", "-12.5e3", ItemType_decimal, "-12.5E3"},
        {"date", "2024-02-29T10:00:00Z", ItemType_datetime, "2024-02-29T10:00:00Z"},
        {"duration", "P1D", ItemType_duration, "P1D"},
    };
    const std::string bytes = Document(fi, [&](CFastInfosetWriter& w) {
        w.SetDefaultNamespace("urn:d");
        w.WriteStartElement("values", "urn:d");
        for (int pass = 0; pass < 2; ++pass) { // the second pass takes names and short values by index
            for (const auto& v : values) {
                w.WriteStartElement(v.name, "urn:d");
                if (v.type != ItemType_char) w.WriteAttributeString("v", "", v.text, v.type);
                w.WriteString(v.text, v.type);
                w.WriteEndElement();
            }
        }
        w.WriteEndElement();
    });
    std::string expected = "== values.fi\nstart {urn:d}values\n";
    for (int pass = 0; pass < 2; ++pass)
        for (const auto& v : values)
            expected += std::string("start {urn:d}") + v.name + "\n" +
                        (v.type != ItemType_char ? std::string("attr {}v=\"") + v.rendered + "\"\n" : "") + "text \"" +
                        v.rendered + "\"\nend {urn:d}" + v.name + "\n";
    expected += "end {urn:d}values\n";
    EXPECT_EQ(expected, FiTest::JavaDump({{"values.fi", bytes}}));
}

TEST_F(Interop, NamespacesDeepNestingDeclarationsAndNonAsciiText) {
    // Non-ASCII text: the test runs under the C.UTF-8 locale, so that the local code
    // page is UTF-8.
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
    std::vector<std::pair<std::string, std::string>> files;
    files.emplace_back("namespaces.fi", Document(CFastInfosetContext(), [](CFastInfosetWriter& w) {
                           w.SetDefaultNamespace("urn:d");
                           w.AddNamespace("p", "urn:p");
                           w.AddNamespace("xsi", kXsi);
                           w.WriteStartElement("root", "urn:d");
                           w.WriteAttributeString("a", "urn:p", "1", ItemType_string);
                           w.WriteAttributeString("b", "", "Grüße €", ItemType_string);
                           w.WriteStartElement("child", "urn:p");
                           w.WriteAttributeType("urn:d", "T", ItemType_string);
                           w.WriteString("naïve ✓", ItemType_string);
                           w.WriteEndElement();
                           w.WriteStartElement("child", "urn:p");
                           w.WriteAttributeNil();
                           w.WriteEndElement();
                           w.WriteStartElement("plain", "urn:d");
                           w.WriteEndElement();
                           w.WriteEndElement();
                       }));
    const int depth = 300;
    files.emplace_back("deep.fi", Document(CFastInfosetContext(), [&](CFastInfosetWriter& w) {
                           for (int i = 0; i < depth; ++i)
                               w.WriteStartElement("e" + std::to_string(i % 7), "");
                           w.WriteString("deep", ItemType_string);
                           for (int i = 0; i < depth; ++i)
                               w.WriteEndElement();
                       }));
    for (int d = 1; d <= 9; ++d)
        files.emplace_back("declaration" + std::to_string(d) + ".fi", Document(
                                                                          CFastInfosetContext(),
                                                                          [](CFastInfosetWriter& w) {
                                                                              w.WriteStartElement("a", "");
                                                                              w.WriteEndElement();
                                                                          },
                                                                          static_cast<FInfoDecl>(d)));
    std::string expected = "== namespaces.fi\n"
                           "start {urn:d}root\n"
                           "attr {urn:p}p:a=\"1\"\n"
                           "attr {}b=\"Grüße €\"\n"
                           "start {urn:p}p:child\n"
                           "attr {http://www.w3.org/2001/XMLSchema-instance}xsi:type=\"T\"\n"
                           "text \"naïve ✓\"\n"
                           "end {urn:p}p:child\n"
                           "start {urn:p}p:child\n"
                           "attr {http://www.w3.org/2001/XMLSchema-instance}xsi:nil=\"true\"\n"
                           "end {urn:p}p:child\n"
                           "start {urn:d}plain\n"
                           "end {urn:d}plain\n"
                           "end {urn:d}root\n"
                           "== deep.fi\n";
    for (int i = 0; i < depth; ++i)
        expected += "start {}e" + std::to_string(i % 7) + "\n";
    expected += "text \"deep\"\n";
    for (int i = depth; i-- > 0;)
        expected += "end {}e" + std::to_string(i % 7) + "\n";
    for (int d = 1; d <= 9; ++d)
        expected += "== declaration" + std::to_string(d) + ".fi\nstart {}a\nend {}a\n";
    EXPECT_EQ(expected, FiTest::JavaDump(files));
    std::setlocale(LC_ALL, previous.c_str());
}

} // namespace
