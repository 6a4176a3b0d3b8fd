// Documents written by the Fast Infoset writer, read back by an independent
// implementation (the Java Fast Infoset library): the infoset it reports must be the
// one the writer meant to write.

#include "fastinfoset/FastInfosetWriter.h"
#include "foundation/Streams.h"
#include "fastinfoset/FiTestSupport.h"

#include <gtest/gtest.h>

#include <clocale>

using namespace QvXmlLib10;
using FiTest::Play;

namespace {

// A document of the script, after the given declarations before the root.
std::string Document(const CFastInfosetContext& fi, const std::string& script, FInfoDecl declaration = FInfoDecl_None,
                     const std::function<void(CXmlWriter&)>& declare = nullptr, ItemType type = ItemType_string) {
    CBinaryStream stream;
    CFastInfosetWriter writer(fi, stream);
    writer.WriteStartDocument(declaration);
    if (declare) declare(writer);
    Play(writer, script, type);
    writer.WriteEndDocument();
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
        ItemType type;
        const char *text, *rendered; // as the Java reader renders the algorithm's value
    } values[] = {
        {ItemType_hexBinary, "0AFF", "0AFF"},
        {ItemType_base64Binary, "AQID", "AQID"},
        {ItemType_i2, "-2", "-2"},
        {ItemType_i4, "-70000", "-70000"},
        {ItemType_i8, "-5000000000", "-5000000000"},
        {ItemType_boolean, "true", "true"},
        {ItemType_r4, "2.5", "2.5"},
        {ItemType_r8, "-0.125", "-0.125"},
        {ItemType_string, "00112233445566778899AABBCCDDEEFF", "00112233-4455-6677-8899-aabbccddeeff"},
        {ItemType_char, "a<b&c", "a<b&c"}, // character chunks only: no attribute
        // Position 13 of the numeric alphabet, "e" here, is a capital "E" in the Java reader's table.
        {ItemType_decimal, "-12.5e3", "-12.5E3"},
        {ItemType_datetime, "2024-02-29T10:00:00Z", "2024-02-29T10:00:00Z"},
        {ItemType_duration, "P1D", "P1D"},
    };
    std::vector<std::pair<std::string, std::string>> files;
    std::string expected;
    for (const auto& v : values) {
        const std::string name = "t" + std::to_string(v.type) + ".fi";
        const std::string attribute = v.type == ItemType_char ? "" : std::string(" @v=") + v.text;
        // The second element takes its name and a short value by index.
        files.emplace_back(
            name, Document(fi, "<r <e" + attribute + " '" + v.text + " > <e" + attribute + " '" + v.text + " > >",
                           FInfoDecl_None, nullptr, v.type));
        std::string element = "start {}e\n";
        if (!attribute.empty()) element += std::string("attr {}v=\"") + v.rendered + "\"\n";
        element += std::string("text \"") + v.rendered + "\"\nend {}e\n";
        expected += "== " + name + "\nstart {}r\n" + element + element + "end {}r\n";
    }
    EXPECT_EQ(expected, FiTest::JavaDump(files));
}

TEST_F(Interop, NamespacesNestingDeclarationsAndNonAsciiText) {
    // Non-ASCII text: the test runs under the C.UTF-8 locale, whose local code page is UTF-8.
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
    std::vector<std::pair<std::string, std::string>> files;
    files.emplace_back("namespaces.fi", Document(CFastInfosetContext(),
                                                 "<{urn:d}root @{urn:p}a=1 @b=Grüße€ <{urn:p}child 'naïve✓ > "
                                                 "<{urn:p}child <{urn:p}c <{urn:p}c 'deep > > > >",
                                                 FInfoDecl_None, [](CXmlWriter& w) {
                                                     w.SetDefaultNamespace("urn:d");
                                                     w.AddNamespace("p", "urn:p");
                                                     w.AddNamespace("xsi", "http://www.w3.org/2001/XMLSchema-instance");
                                                 }));
    files.emplace_back("declaration.fi", Document(CFastInfosetContext(), "<a >", FInfoDecl(9)));

    // The nil and type attributes are written through the writer's own operations.
    CBinaryStream stream;
    {
        const CFastInfosetContext fi;
        CFastInfosetWriter writer(fi, stream);
        writer.WriteStartDocument(FInfoDecl_None);
        writer.AddNamespace("xsi", "http://www.w3.org/2001/XMLSchema-instance");
        Play(writer, "<a");
        writer.WriteAttributeType("", "T", ItemType_string);
        writer.WriteAttributeNil();
        Play(writer, ">");
        writer.WriteEndDocument();
    }
    files.emplace_back("xsi.fi", FiTest::Bytes(stream.GetBinaryStream()));

    std::string expected = "== namespaces.fi\nstart {urn:d}root\nattr {urn:p}p:a=\"1\"\nattr {}b=\"Grüße€\"\n"
                           "start {urn:p}p:child\ntext \"naïve✓\"\nend {urn:p}p:child\n"
                           "start {urn:p}p:child\nstart {urn:p}p:c\nstart {urn:p}p:c\ntext \"deep\"\n"
                           "end {urn:p}p:c\nend {urn:p}p:c\nend {urn:p}p:child\nend {urn:d}root\n";
    expected += "== declaration.fi\nstart {}a\nend {}a\n";
    expected += "== xsi.fi\nstart {}a\nattr {http://www.w3.org/2001/XMLSchema-instance}xsi:type=\"T\"\n"
                "attr {http://www.w3.org/2001/XMLSchema-instance}xsi:nil=\"true\"\nend {}a\n";
    EXPECT_EQ(expected, FiTest::JavaDump(files));
    std::setlocale(LC_ALL, previous.c_str());
}

} // namespace
