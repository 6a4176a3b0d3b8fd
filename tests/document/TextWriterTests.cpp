#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <functional>
#include <string>
#include <vector>

#include "document/XmlTextWriter.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"

using namespace QvXmlLib10;

namespace {

const std::string kXsi = "http://www.w3.org/2001/XMLSchema-instance";

// A memory sink that records the calls of the writer to its virtual operations.
class CRecordingStream : public CTextStream {
public:
    explicit CRecordingStream(XmlEncoding encoding = XmlEncoding_None) : CTextStream("CRecordingStream", encoding) {}
    void Open() override {
        m_log += "open;";
        CTextStream::Open();
    }
    void Close() override { m_log += "close;"; }
    void Flush() override {
        m_log += "flush@" + std::to_string(GetLength()) + ";";
    }
    std::string m_log;
};

std::string Text(const CTextStream& stream) {
    return stream.GetText();
}

// Runs the message of a CQvException thrown by the call, or "no exception".
std::string FailureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

// The calls of the typical document: default namespace urn:d, alias p for urn:p.
void WriteTypical(CXmlTextWriter& writer) {
    writer.SetDefaultNamespace("urn:d");
    writer.AddNamespace("p", "urn:p");
    writer.WriteStartDocument();
    writer.WriteStartElement("Root", "urn:d");
    writer.WriteAttributeString("id", "", "1", ItemType_string);
    writer.WriteStartElement("Item", "urn:p");
    writer.WriteString("a<b", ItemType_string);
    writer.WriteEndElement();
    writer.WriteStartElement("E", "urn:d");
    writer.WriteEndElement();
    writer.WriteEndElement();
}

// A writer on its own sink, opened, with the given format settings.
struct Fixture {
    explicit Fixture(bool format = true, EOLType eol = EOLType_LF, XmlEncoding encoding = XmlEncoding_None)
        : stream(encoding), writer(stream) {
        writer.Open();
        writer.SetFormat(format);
        writer.SetEOLType(eol);
    }
    std::string Close() {
        writer.Close();
        return Text(stream);
    }
    CRecordingStream stream;
    CXmlTextWriter writer;
};

} // namespace

TEST(TextWriterTest, Defaults) {
    CTextStream stream;
    CXmlTextWriter writer(stream);
    EXPECT_TRUE(writer.GetFormat());
    EXPECT_EQ(EOLType_LF, writer.GetEOLType());
}

TEST(TextWriterTest, TypicalDocumentInEachLayout) {
    const struct {
        bool format;
        EOLType eol;
        const char* expected;
    } cases[] = {
        {true, EOLType_LF,
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<Root xmlns=\"urn:d\" xmlns:p=\"urn:p\" id=\"1\">\n"
         "\t<p:Item>a&lt;b</p:Item>\n"
         "\t<E/>\n"
         "</Root>\n"},
        {true, EOLType_CRLF,
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
         "<Root xmlns=\"urn:d\" xmlns:p=\"urn:p\" id=\"1\">\r\n"
         "\t<p:Item>a&lt;b</p:Item>\r\n"
         "\t<E/>\r\n"
         "</Root>\r\n"},
        {false, EOLType_LF,
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<Root xmlns=\"urn:d\" xmlns:p=\"urn:p\" id=\"1\"><p:Item>a&lt;b</p:Item><E/></Root>"},
        {false, EOLType_CRLF,
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
         "<Root xmlns=\"urn:d\" xmlns:p=\"urn:p\" id=\"1\"><p:Item>a&lt;b</p:Item><E/></Root>"},
    };
    for (const auto& c : cases) {
        Fixture f(c.format, c.eol, XmlEncoding_UTF8);
        WriteTypical(f.writer);
        EXPECT_EQ(c.expected, f.Close()) << c.format << " " << c.eol;
    }
}

TEST(TextWriterTest, DeclarationNamesTheEncodingOfTheStream) {
    const struct {
        XmlEncoding encoding;
        const char* expected;
    } cases[] = {
        {XmlEncoding_None, "<?xml version=\"1.0\"?>\n"},
        {XmlEncoding_UTF8, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"},
        {XmlEncoding_UTF16, "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"},
        {XmlEncoding_UTF16NoDecl, "<?xml version=\"1.0\"?>\n"},
    };
    for (const auto& c : cases) {
        Fixture f(false, EOLType_LF, c.encoding);
        f.writer.WriteStartDocument();
        EXPECT_EQ(c.expected, f.Close()) << c.encoding;
    }
}

TEST(TextWriterTest, InventedPrefixesForUndeclaredNamespaces) {
    Fixture f;
    f.writer.WriteStartElement("A", "urn:x");
    f.writer.WriteStartElement("B", "urn:x");
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("C", "urn:y");
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    EXPECT_EQ("<AA:A xmlns:AA=\"urn:x\">\n"
              "\t<AA:B/>\n"
              "\t<AB:C xmlns:AB=\"urn:y\"/>\n"
              "</AA:A>\n",
              f.Close());
}

TEST(TextWriterTest, SiblingSubtreesDeclareTheirOwnPrefixes) {
    Fixture f(false);
    f.writer.WriteStartElement("R", "");
    f.writer.WriteStartElement("A", "urn:x");
    f.writer.WriteStartElement("A1", "urn:x");
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("B", "urn:y");
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("C", "urn:x");
    f.writer.WriteString("t", ItemType_string);
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    EXPECT_EQ("<R>"
              "<AA:A xmlns:AA=\"urn:x\"><AA:A1/></AA:A>"
              "<AA:B xmlns:AA=\"urn:y\"/>"
              "<AA:C xmlns:AA=\"urn:x\">t</AA:C>"
              "</R>",
              f.Close());
}

TEST(TextWriterTest, NilAndTypeAttributes) {
    Fixture f(false);
    f.writer.WriteStartElement("A", "");
    f.writer.WriteAttributeNil();
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("B", "");
    f.writer.WriteAttributeType("urn:t", "T", ItemType_string);
    // Both namespaces are now in B's scope.
    f.writer.WriteAttributeNil();
    f.writer.WriteAttributeType("urn:t", "U", ItemType_string);
    f.writer.WriteEndElement();
    EXPECT_EQ("<A xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>"
              "<B xmlns:AA=\"urn:t\"  xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:type=\"AA:T\""
              " AB:nil=\"true\" AB:type=\"AA:U\"/>",
              f.Close());
}

TEST(TextWriterTest, TypeNamesInTheDefaultNamespaceOrInTheMap) {
    Fixture f(false);
    f.writer.SetDefaultNamespace("urn:d");
    f.writer.AddNamespace("xsi", kXsi);
    f.writer.AddNamespace("t", "urn:t");
    f.writer.WriteStartElement("R", "urn:d");
    f.writer.WriteAttributeType("urn:d", "D", ItemType_string);
    f.writer.WriteAttributeType("", "N", ItemType_string);
    f.writer.WriteAttributeType("urn:t", "T", ItemType_string);
    // An attribute in the default namespace still takes a prefix.
    f.writer.WriteAttributeString("a", "urn:d", "1", ItemType_string);
    f.writer.WriteAttributeString("lang", CXmlWriter::XML_NAMESPACE, "en", ItemType_string);
    f.writer.WriteEndElement();
    EXPECT_EQ("<R xmlns=\"urn:d\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:t=\"urn:t\""
              " xsi:type=\"D\" xsi:type=\"N\" xsi:type=\"t:T\" xmlns:AA=\"urn:d\" AA:a=\"1\" xml:lang=\"en\"/>",
              f.Close());
}

TEST(TextWriterTest, RootDeclarationsComeFromWhatWasSetBeforeTheRoot) {
    Fixture f(false);
    f.writer.AddNamespace("z", "urn:a");
    f.writer.AddNamespace("y", "urn:b");
    f.writer.AddNamespace("alt", "http://www.w3.org/XML/1998/namespace-and-more");
    f.writer.AddNamespace("AA", "urn:taken");
    f.writer.WriteStartElement("R", "urn:r");
    // Declarations on an open element enter its scope but are not written.
    f.writer.AddNamespace("late", "urn:late");
    f.writer.WriteStartElement("L", "urn:late");
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("S", "urn:b");
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    // The root's own prefix stands behind its name, before the declarations in key
    // order; the xml namespace and keys that begin with it are left out.
    EXPECT_EQ("<AB:R xmlns:AB=\"urn:r\" xmlns:z=\"urn:a\" xmlns:y=\"urn:b\" xmlns:AA=\"urn:taken\">"
              "<late:L/><y:S/></AB:R>",
              f.Close());
}

TEST(TextWriterTest, ElementsWithoutNamespaceTakeNoPrefixAndNoUndeclaration) {
    Fixture f(false);
    f.writer.SetDefaultNamespace("urn:d");
    f.writer.WriteStartElement("R", "urn:d");
    f.writer.WriteStartElement("N", "");
    f.writer.WriteString("x", ItemType_string);
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    EXPECT_EQ("<R xmlns=\"urn:d\"><N>x</N></R>", f.Close());
}

TEST(TextWriterTest, DefaultNamespaceSetOnAnOpenElement) {
    Fixture f(false);
    f.writer.WriteStartElement("R", "");
    f.writer.SetDefaultNamespace("urn:x");
    f.writer.WriteStartElement("A", "urn:x");
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("B", "urn:x");
    f.writer.WriteEndElement();
    // Nothing declares the default of R; B, after R, is back in an empty scope.
    EXPECT_EQ("<R><A/></R><AA:B xmlns:AA=\"urn:x\"/>", f.Close());
}

TEST(TextWriterTest, EscapingInTextAndAttributes) {
    const struct {
        const char* input;
        const char* textLF;
        const char* textCRLF;
        const char* attribute;
    } cases[] = {
        {"a\r\nb", "a\nb", "a\r\nb", "a&#xA;b"},
        {"a\nb\rc", "a\nbc", "a\r\nbc", "a&#xA;bc"},
        {"<&>\"'", "&lt;&amp;&gt;\"'", "&lt;&amp;&gt;\"'", "&lt;&amp;&gt;&quot;'"},
        {"tab\there", "tab\there", "tab\there", "tab\there"},
        {"plain", "plain", "plain", "plain"},
        {"&&", "&amp;&amp;", "&amp;&amp;", "&amp;&amp;"},
        {"\n", "\n", "\r\n", "&#xA;"},
        {"\r", "", "", ""},
        {"x]]>y", "x]]&gt;y", "x]]&gt;y", "x]]&gt;y"},
    };
    for (const auto& c : cases) {
        for (const EOLType eol : {EOLType_LF, EOLType_CRLF}) {
            Fixture f(false, eol);
            f.writer.WriteStartElement("e", "");
            f.writer.WriteAttributeString("a", "", c.input, ItemType_string);
            f.writer.WriteString(c.input, ItemType_string);
            f.writer.WriteEndElement();
            const std::string text = eol == EOLType_LF ? c.textLF : c.textCRLF;
            const std::string expected = "<e a=\"" + std::string(c.attribute) + "\">" + text + "</e>";
            EXPECT_EQ(expected, f.Close()) << c.input;
        }
    }
}

TEST(TextWriterTest, BytesAboveAsciiPassUnchanged) {
    // Sets a UTF-8 locale for the non-ASCII text, and restores the previous one.
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C.UTF-8");
    Fixture f(false);
    f.writer.WriteStartElement("e", "");
    f.writer.WriteAttributeString("a", "", "\xC3\xA9<", ItemType_string);
    f.writer.WriteString("\xE2\x82\xAC&\xFF", ItemType_string);
    f.writer.WriteEndElement();
    EXPECT_EQ("<e a=\"\xC3\xA9&lt;\">\xE2\x82\xAC&amp;\xFF</e>", f.Close());
    std::setlocale(LC_ALL, previous.c_str());
}

TEST(TextWriterTest, CDataIsWrittenRawOnlyAtTheVeryStart) {
    Fixture f(false);
    f.writer.WriteStartElement("a", "");
    f.writer.WriteString("<![CDATA[x<y]]> & <z>", ItemType_string);
    f.writer.WriteEndElement();
    f.writer.WriteStartElement("b", "");
    f.writer.WriteString(" <![CDATA[x]]>", ItemType_string);
    f.writer.WriteEndElement();
    EXPECT_EQ("<a><![CDATA[x<y]]> & <z></a><b> &lt;![CDATA[x]]&gt;</b>", f.Close());
}

TEST(TextWriterTest, EmptyTextLeavesTheStartTagOpen) {
    Fixture f;
    f.writer.WriteStartElement("a", "");
    f.writer.WriteString("", ItemType_string);
    f.writer.WriteAttributeString("late", "", "ok", ItemType_string);
    f.writer.WriteEndElement();
    EXPECT_EQ("<a late=\"ok\"/>\n", f.Close());
}

TEST(TextWriterTest, ChildAfterTextAndIndentationOfDeeperLevels) {
    Fixture f;
    f.writer.WriteStartElement("r", "");
    f.writer.WriteStartElement("a", "");
    f.writer.WriteString("text", ItemType_string);
    f.writer.WriteStartElement("b", "");
    f.writer.WriteStartElement("c", "");
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    f.writer.WriteString("tail", ItemType_string);
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    EXPECT_EQ("<r>\n"
              "\t<a>text\t\t<b>\n"
              "\t\t\t<c/>\n"
              "\t\t</b>\n"
              "tail\t</a>\n"
              "</r>\n",
              f.Close());
}

TEST(TextWriterTest, DeepIndentation) {
    Fixture f;
    for (int i = 0; i < 40; ++i)
        f.writer.WriteStartElement("e", "");
    for (int i = 0; i < 40; ++i)
        f.writer.WriteEndElement();
    std::string expected;
    for (int i = 0; i < 40; ++i)
        expected += std::string(i, '\t') + (i == 39 ? "<e/>\n" : "<e>\n");
    for (int i = 38; i >= 0; --i)
        expected += std::string(i, '\t') + "</e>\n";
    EXPECT_EQ(expected, f.Close());
}

TEST(TextWriterTest, ProcessingInstructionsInlineSchemaAndComments) {
    Fixture f(true, EOLType_CRLF);
    f.writer.WriteStartDocument();
    f.writer.WriteHeaderDirective("<!DOCTYPE r>");
    f.writer.WritePI("<?pi one?>");
    f.writer.WriteStartElement("r", "");
    f.writer.WriteAttributeString("a", "", "1", ItemType_string);
    f.writer.WriteInlineSchema("<xs:schema/>");
    f.writer.WriteStartElement("c", "");
    f.writer.WriteComment("a -> b & c");
    f.writer.WriteEndElement();
    f.writer.WriteEndElement();
    EXPECT_EQ("<?xml version=\"1.0\"?>\r\n"
              "<!DOCTYPE r>\r\n"
              "<?pi one?>\r\n\r\n"
              "<r a=\"1\" \r\n<xs:schema/>\r\n>\r\n"
              "\t<c<!--a -&gt; b &amp; c-->\r\n/>\r\n"
              "</r>\r\n",
              f.Close());
}

TEST(TextWriterTest, UnformattedOutputStillBreaksAfterPisSchemaAndComments) {
    Fixture f(false);
    f.writer.WritePI("<?pi?>");
    f.writer.WriteStartElement("r", "");
    f.writer.WriteInlineSchema("S");
    f.writer.WriteString("x", ItemType_string);
    f.writer.WriteComment("c");
    f.writer.WriteEndElement();
    f.writer.WriteHeaderDirective("<!-- after -->");
    EXPECT_EQ("<?pi?>\n\n<r \nS\n>x<!--c-->\n</r><!-- after -->\n", f.Close());
}

TEST(TextWriterTest, RawElementAfterClosingTheParent) {
    // The way an untyped element with a default namespace of its own is inserted.
    for (const bool format : {true, false}) {
        Fixture f(format);
        f.writer.WriteStartElement("r", "");
        f.writer.CloseParentElm();
        f.writer.WriteRawElement("<x xmlns=\"urn:x\"/>");
        f.writer.CloseParentElm();
        f.writer.WriteEndElement();
        EXPECT_EQ(format ? "<r>\n<x xmlns=\"urn:x\"/>\n</r>\n" : "<r><x xmlns=\"urn:x\"/></r>", f.Close());
    }
}

TEST(TextWriterTest, SettingsChangeTakesEffectAtTheNextWrite) {
    Fixture f;
    f.writer.WriteStartElement("r", "");
    f.writer.WriteStartElement("a", "");
    f.writer.WriteEndElement();
    f.writer.SetFormat(false);
    f.writer.WriteStartElement("b", "");
    f.writer.WriteEndElement();
    f.writer.SetFormat(true);
    f.writer.SetEOLType(EOLType_CRLF);
    f.writer.WriteEndElement();
    EXPECT_EQ("<r>\n\t<a/>\n<b/></r>\r\n", f.Close());
    EXPECT_EQ(EOLType_CRLF, f.writer.GetEOLType());
}

TEST(TextWriterTest, AttributeAfterContentThrowsAndKeepsTheOutput) {
    const std::function<void(CXmlTextWriter&)> attributeCalls[] = {
        [](CXmlTextWriter& w) { w.WriteAttributeString("a", "", "1", ItemType_string); },
        [](CXmlTextWriter& w) { w.WriteAttributeNil(); },
        [](CXmlTextWriter& w) { w.WriteAttributeType("urn:t", "T", ItemType_string); },
    };
    for (const auto& attribute : attributeCalls) {
        Fixture f(false);
        f.writer.WriteStartElement("r", "");
        f.writer.WriteString("text", ItemType_string);
        EXPECT_EQ("Attributes must be added before elements", FailureOf([&] { attribute(f.writer); }));
        f.writer.WriteStartElement("c", "");
        f.writer.WriteEndElement();
        EXPECT_EQ("Attributes must be added before elements", FailureOf([&] { attribute(f.writer); }));
        f.writer.WriteEndElement();
        EXPECT_EQ("Attributes must be added before elements", FailureOf([&] { attribute(f.writer); }));
        EXPECT_EQ("<r>text<c/></r>", f.Close());
    }
}

TEST(TextWriterTest, HeaderDirectiveOnlyWithoutOpenElement) {
    Fixture f(false);
    f.writer.WriteHeaderDirective("<!-- one -->");
    f.writer.WriteStartElement("r", "");
    EXPECT_EQ("Headed directives must appear before an Element has been added.",
              FailureOf([&] { f.writer.WriteHeaderDirective("<!-- two -->"); }));
    f.writer.WriteEndElement();
    f.writer.WriteHeaderDirective("<!-- three -->");
    EXPECT_EQ("<!-- one -->\n<r/><!-- three -->\n", f.Close());
}

TEST(TextWriterTest, InvalidLineEndTypeChangesNothing) {
    Fixture f(true, EOLType_CRLF);
    f.writer.WriteStartElement("r", "");
    EXPECT_EQ("Invalid EOL type.", FailureOf([&] { f.writer.SetEOLType(static_cast<EOLType>(2)); }));
    EXPECT_EQ("Invalid EOL type.", FailureOf([&] { f.writer.SetEOLType(static_cast<EOLType>(-1)); }));
    EXPECT_EQ(EOLType_CRLF, f.writer.GetEOLType());
    f.writer.WriteString("a\nb", ItemType_string);
    f.writer.WriteEndElement();
    EXPECT_EQ("<r>a\r\nb</r>\r\n", f.Close());
}

TEST(TextWriterTest, CloseWithAnOpenElementThrowsAfterClosingTheSink) {
    CRecordingStream stream;
    CXmlTextWriter writer(stream);
    writer.Open();
    writer.WriteStartElement("r", "");
    writer.WriteStartElement("c", "");
    writer.WriteString("x", ItemType_string);
    EXPECT_EQ("An Element has not been closed.", FailureOf([&] { writer.Close(); }));
    EXPECT_EQ("open;close;", stream.m_log);
    EXPECT_EQ("<r>\n\t<c>x", Text(stream));
}

TEST(TextWriterTest, EndWithoutOpenElementThrows) {
    Fixture f;
    EXPECT_EQ("An Element has not been opened.", FailureOf([&] { f.writer.WriteEndElement(); }));
    EXPECT_EQ("", f.Close());
}

TEST(TextWriterTest, OpenEmptiesTheStream) {
    CRecordingStream stream;
    stream.Append("old");
    CXmlTextWriter writer(stream);
    writer.Open();
    writer.WriteStartElement("r", "");
    writer.WriteEndElement();
    writer.Close();
    EXPECT_EQ("<r/>\n", Text(stream));
}

TEST(TextWriterTest, FlushAtTheEndOfEventsOnceTheStreamHoldsAPage) {
    CRecordingStream stream;
    CXmlTextWriter writer(stream);
    writer.SetFormat(false);
    writer.WriteStartElement("r", "");
    const std::string big(4090, 'x');
    writer.WriteString(big, ItemType_string);  // 4093 bytes: no flush
    writer.CloseParentElm();                   // never flushes
    writer.WriteRawElement("abc");             // never flushes, 4096 now
    EXPECT_EQ("", stream.m_log);
    writer.WriteString("y", ItemType_string);
    writer.WriteComment("");
    writer.WriteEndElement();
    writer.WritePI("");
    writer.WriteHeaderDirective("");
    writer.WriteStartDocument();
    writer.WriteStartElement("s", "");
    writer.WriteAttributeString("a", "", "", ItemType_string);
    writer.WriteInlineSchema("");
    writer.WriteEndElement();
    writer.WriteString("", ItemType_string);   // does nothing at all
    EXPECT_EQ("flush@4097;flush@4105;flush@4109;flush@4111;flush@4112;flush@4134;flush@4136;flush@4141;flush@4144;"
              "flush@4146;",
              stream.m_log);
}

TEST(TextWriterTest, WriterDestroyedWithOpenElementsReleasesThem) {
    CTextStream stream;
    {
        CXmlTextWriter writer(stream);
        writer.SetFormat(false);
        for (int i = 0; i < 100000; ++i) {
            writer.WriteStartElement("e", "urn:deep");
            writer.WriteAttributeNil();
        }
    }
    const std::string start =
        "<AA:e xmlns:AA=\"urn:deep\" xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:nil=\"true\">"
        "<AA:e AB:nil=\"true\"><AA:e AB:nil=\"true\">";
    EXPECT_EQ(start, std::string(stream.GetText()).substr(0, start.size()));
}

#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
#define QVXML_TIMING_DISABLED 1
#endif

// Writing costs at most three times what appending the same pieces of text to a
// std::string costs (escaping included), on a document of small elements, where the
// writer's share is largest. Timings are the best of several rounds.
TEST(TextWriterTest, CostIsWithinThreeTimesOfStringAppends) {
#ifdef QVXML_TIMING_DISABLED
    GTEST_SKIP() << "timings are meaningful in optimised builds only";
#else
    struct Item {
        std::string name;
        std::string value;
    };
    std::vector<Item> items;
    for (int i = 0; i < 2000; ++i)
        items.push_back({i % 3 == 0 ? "Description" : "Price", i % 5 == 0 ? "Fish & Chips <large>" : std::to_string(i * 7919)});
    const std::string ns = "urn:example:orders:2024";

    auto escape = [](std::string& out, const std::string& text) {
        for (const char c : text) {
            switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '\r': break;
            default: out += c;
            }
        }
    };
    std::string reference;
    auto byString = [&] {
        std::string out;
        out += "<Orders xmlns=\"";
        out += ns;
        out += "\">\n";
        for (const Item& item : items) {
            out += "\t<Order id=\"";
            out += item.value.size() < 8 ? item.value : "x";
            out += "\">\n\t\t<";
            out += item.name;
            out += '>';
            escape(out, item.value);
            out += "</";
            out += item.name;
            out += ">\n\t</Order>\n";
        }
        out += "</Orders>\n";
        reference = out;
    };
    std::string written;
    auto byWriter = [&] {
        CTextStream stream;
        CXmlTextWriter writer(stream);
        writer.Open();
        writer.SetDefaultNamespace(ns);
        writer.WriteStartElement("Orders", ns);
        for (const Item& item : items) {
            writer.WriteStartElement("Order", ns);
            writer.WriteAttributeString("id", "", item.value.size() < 8 ? item.value : "x", ItemType_string);
            writer.WriteStartElement(item.name, ns);
            writer.WriteString(item.value, ItemType_string);
            writer.WriteEndElement();
            writer.WriteEndElement();
        }
        writer.WriteEndElement();
        writer.Close();
        written = stream.GetText();
    };
    auto seconds = [](const std::function<void()>& run) {
        const auto start = std::chrono::steady_clock::now();
        run();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    // Rounds alternate, so that both sides see the same load on the machine.
    double stringTime = 1e30;
    double writerTime = 1e30;
    for (int round = 0; round < 50; ++round) {
        stringTime = std::min(stringTime, seconds(byString));
        writerTime = std::min(writerTime, seconds(byWriter));
    }
    ASSERT_EQ(reference, written);
    EXPECT_LT(writerTime, 3 * stringTime) << "writer " << writerTime << " s, string " << stringTime << " s";
    std::printf("writer/string cost ratio: %.2f (%.0f us, %.0f us)\n", writerTime / stringTime, writerTime * 1e6, stringTime * 1e6);
#endif
}
