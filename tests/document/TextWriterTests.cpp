#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "document/XmlTextWriter.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "internal/Limits.h"

#include "fastinfoset/FiTestSupport.h"
#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

// A memory sink that records the writer's calls to its virtual operations.
class CRecordingStream : public CTextStream {
public:
    explicit CRecordingStream(XmlEncoding encoding) : CTextStream("CRecordingStream", encoding) {}
    void Open() override {
        m_log += "open;";
        CTextStream::Open();
    }
    void Close() override { m_log += "close;"; }
    void Flush() override { m_log += "flush@" + std::to_string(GetLength()) + ";"; }
    std::string m_log;
};

// An opened writer on its own sink, with short forms of the common calls.
struct Fixture {
    explicit Fixture(bool format = true, EOLType eol = EOLType_LF, XmlEncoding encoding = XmlEncoding_None)
        : stream(encoding), writer(stream) {
        writer.Open();
        writer.SetFormat(format);
        writer.SetEOLType(eol);
    }
    // Writer events as blank-separated tokens: "<{uri}name", "@{uri}name=value", "'text", ">".
    void Play(const std::string& script) { FiTest::Play(writer, script); }
    void Start(const std::string& name, const std::string& ns = "") { writer.WriteStartElement(name, ns); }
    void End() { writer.WriteEndElement(); }
    void Text(const std::string& text) { writer.WriteString(text, ItemType_string); }
    void Attr(const std::string& name, const std::string& value, const std::string& ns = "") {
        writer.WriteAttributeString(name, ns, value, ItemType_string);
    }
    std::string Close() {
        writer.Close();
        return stream.GetText();
    }
    CRecordingStream stream;
    CXmlTextWriter writer;
};

} // namespace

TEST(TextWriterTest, TypicalDocumentInEachLayout) {
    const std::string formatted = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                  "<Root xmlns=\"urn:d\" xmlns:p=\"urn:p\" id=\"1\">\n"
                                  "\t<p:Item>a&lt;b</p:Item>\n"
                                  "\t<E/>\n"
                                  "</Root>\n";
    const std::string unformatted =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<Root xmlns=\"urn:d\" xmlns:p=\"urn:p\" id=\"1\"><p:Item>a&lt;b</p:Item><E/></Root>";
    // CRLF output is the LF output with every line end doubled up.
    const auto crlf = [](std::string text) {
        for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
            text.replace(at, 1, "\r\n");
        return text;
    };
    const struct {
        bool format;
        EOLType eol;
        std::string expected;
    } cases[] = {
        {true, EOLType_LF, formatted},
        {true, EOLType_CRLF, crlf(formatted)},
        {false, EOLType_LF, unformatted},
        {false, EOLType_CRLF, crlf(unformatted)},
    };
    for (const auto& c : cases) {
        Fixture f(c.format, c.eol, XmlEncoding_UTF8);
        f.writer.SetDefaultNamespace("urn:d");
        f.writer.AddNamespace("p", "urn:p");
        f.writer.WriteStartDocument();
        f.Play("<{urn:d}Root @id=1 <{urn:p}Item 'a<b > <{urn:d}E > >");
        EXPECT_EQ(c.expected, f.Close()) << c.format << " " << c.eol;
    }
}

TEST(TextWriterTest, DeclarationNamesTheEncodingOfTheStream) {
    const std::pair<XmlEncoding, const char*> cases[] = {
        {XmlEncoding_None, "<?xml version=\"1.0\"?>\n"},
        {XmlEncoding_UTF8, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"},
        {XmlEncoding_UTF16, "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"},
        {XmlEncoding_UTF16NoDecl, "<?xml version=\"1.0\"?>\n"},
    };
    for (const auto& c : cases) {
        Fixture f(false, EOLType_LF, c.first);
        f.writer.WriteStartDocument();
        EXPECT_EQ(c.second, f.Close()) << c.first;
    }
}

TEST(TextWriterTest, NilAndTypeAttributesWithInventedPrefixes) {
    Fixture f(false);
    f.Start("A");
    f.writer.WriteAttributeNil();
    f.Play("> <B");
    f.writer.WriteAttributeType("urn:t", "T", ItemType_string);
    f.writer.WriteAttributeNil();
    f.writer.WriteAttributeType("urn:t", "U", ItemType_string);
    f.End();
    EXPECT_EQ("<A xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>"
              "<B xmlns:AA=\"urn:t\"  xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:type=\"AA:T\""
              " AB:nil=\"true\" AB:type=\"AA:U\"/>",
              f.Close());
}

TEST(TextWriterTest, RootDeclarationsAndPrefixPrecedence) {
    Fixture f(false);
    f.writer.SetDefaultNamespace("urn:d");
    f.writer.AddNamespace("xsi", "http://www.w3.org/2001/XMLSchema-instance");
    f.writer.AddNamespace("t", "urn:t");
    f.writer.AddNamespace("alt", "http://www.w3.org/XML/1998/namespace-and-more");
    f.writer.AddNamespace("AA", "urn:taken");
    f.Start("R", "urn:r");
    f.writer.WriteAttributeType("urn:d", "D", ItemType_string);
    f.writer.WriteAttributeType("urn:t", "T", ItemType_string);
    f.Attr("a", "1", "urn:d"); // the default namespace gives attributes no exemption
    f.Attr("lang", "en", CXmlWriter::XML_NAMESPACE);
    // Aliases added to an open element enter its scope but are not declared. N has no
    // namespace: no prefix, and no undeclaration of the default.
    f.writer.AddNamespace("late", "urn:late");
    f.Play("<{urn:late}L > <{urn:d}D <N > > >");
    EXPECT_EQ("<AB:R xmlns:AB=\"urn:r\" xmlns=\"urn:d\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
              " xmlns:t=\"urn:t\" xmlns:AA=\"urn:taken\""
              " xsi:type=\"D\" xsi:type=\"t:T\" xmlns:AC=\"urn:d\" AC:a=\"1\" xml:lang=\"en\">"
              "<late:L/><D><N/></D></AB:R>",
              f.Close());
}

TEST(TextWriterTest, PrefixesFollowTheScopeAsItIsWhenUsed) {
    // An alias or default namespace set on an open element applies to its end tag and
    // to its later children, and its siblings start again from the parent's scope.
    Fixture f(false);
    f.Play("<{urn:r}r <{urn:a}a 't");
    f.writer.AddNamespace("p", "urn:a");
    f.Play("<{urn:a}c > > <{urn:a}b 't");
    f.writer.SetDefaultNamespace("urn:a");
    f.Play("<{urn:a}c > > <{urn:r}d @{urn:x}x=1 <{urn:r}e @{urn:y}y=2 >");
    f.writer.AddNamespace("q", "urn:r");
    f.Play("<{urn:r}e @{urn:x}x=3 > > <{urn:r}d @{urn:y}y=4");
    f.writer.SetDefaultNamespace("urn:r");
    f.Play("<{urn:x}e > > >");
    EXPECT_EQ("<AA:r xmlns:AA=\"urn:r\">"
              "<AB:a xmlns:AB=\"urn:a\">t<p:c/></p:a>"
              "<AB:b xmlns:AB=\"urn:a\">t<c/></b>"
              "<AA:d xmlns:AB=\"urn:x\" AB:x=\"1\"><AA:e xmlns:AC=\"urn:y\" AC:y=\"2\"/>"
              "<q:e AB:x=\"3\"/></q:d>"
              "<AA:d xmlns:AB=\"urn:y\" AB:y=\"4\"><AC:e xmlns:AC=\"urn:x\"/></d>"
              "</AA:r>",
              f.Close());
}

TEST(TextWriterTest, TextEndsAtAnEmbeddedNul) {
    // Names, values and raw text of every length end at their first NUL byte.
    for (const size_t length : {1u, 3u, 4u, 7u, 8u, 15u, 16u, 17u, 40u}) {
        const std::string head(length, 'n');
        const std::string withNul = head + std::string("\0tail", 5);
        Fixture f(false);
        f.Start(withNul);
        f.Attr(withNul, withNul);
        f.Start("c", "urn:" + withNul);
        f.End();
        f.Text(withNul);
        f.writer.WriteRawElement(withNul);
        f.End();
        EXPECT_EQ("<" + head + " " + head + "=\"" + head + "\"><AA:c xmlns:AA=\"urn:" + head + "\"/>" + head + head +
                      "</" + head + ">",
                  f.Close())
            << length;
    }
}

TEST(TextWriterTest, LongDocumentAcrossManyBlocks) {
    // Pieces of every length from 1 to 40 bytes, escaped and not, over many blocks of the
    // sink, against the same document put together here.
    Fixture f(true, EOLType_CRLF);
    f.Start("root", "urn:root");
    std::string expected = "<AA:root xmlns:AA=\"urn:root\">\r\n";
    for (int i = 0; i < 3000; ++i) {
        const std::string name(1 + i % 40, static_cast<char>('a' + i % 26));
        const std::string value(i % 37, static_cast<char>('0' + i % 10));
        const std::string text = value + (i % 3 == 0 ? "<&>\n" : "") + name;
        const std::string escapedText = value + (i % 3 == 0 ? "&lt;&amp;&gt;\r\n" : "") + name;
        f.Start(name, i % 2 ? "urn:root" : "");
        f.Attr(name, value + "\"");
        f.Text(text);
        f.End();
        expected += "\t<" + std::string(i % 2 ? "AA:" : "") + name + " " + name + "=\"" + value + "&quot;\">" +
                    escapedText + "</" + (i % 2 ? "AA:" : "") + name + ">\r\n";
    }
    f.End();
    expected += "</AA:root>\r\n";
    ASSERT_GT(expected.size(), 40000u);
    EXPECT_EQ(expected, f.Close());
}

TEST(TextWriterTest, EscapingInTextAndAttributes) {
    // Under a UTF-8 locale for the non-ASCII bytes, restored afterwards.
    const ScopedLocale utf8("C.UTF-8");
    const struct {
        const char* input;
        const char* textLF;
        const char* textCRLF;
        const char* attribute;
    } cases[] = {
        {"a\r\nb", "a\nb", "a\r\nb", "a&#xA;b"},
        {"\n\rc\n", "\nc\n", "\r\nc\r\n", "&#xA;c&#xA;"},
        {"<&>\"'", "&lt;&amp;&gt;\"'", "&lt;&amp;&gt;\"'", "&lt;&amp;&gt;&quot;'"},
        {"tab\there", "tab\there", "tab\there", "tab\there"},
        {"\r", "", "", ""},
        {"x]]>y", "x]]&gt;y", "x]]&gt;y", "x]]&gt;y"},
        {"\xC3\xA9<\xE2\x82\xAC\xFF", "\xC3\xA9&lt;\xE2\x82\xAC\xFF", "\xC3\xA9&lt;\xE2\x82\xAC\xFF",
         "\xC3\xA9&lt;\xE2\x82\xAC\xFF"},
        {"a rather long run of plain text & more", "a rather long run of plain text &amp; more",
         "a rather long run of plain text &amp; more", "a rather long run of plain text &amp; more"},
    };
    for (const auto& c : cases) {
        for (const EOLType eol : {EOLType_LF, EOLType_CRLF}) {
            Fixture f(false, eol);
            f.Start("e");
            f.Attr("a", c.input);
            f.Text(c.input);
            f.End();
            const std::string expected =
                std::string("<e a=\"") + c.attribute + "\">" + (eol == EOLType_LF ? c.textLF : c.textCRLF) + "</e>";
            EXPECT_EQ(expected, f.Close()) << c.input;
        }
    }
}

TEST(TextWriterTest, CDataOnlyAtTheVeryStartAndEmptyText) {
    Fixture f(false);
    f.Start("a");
    f.Text("<![CDATA[x<y]]> & <z>");
    f.Play("> <b");
    f.Text(" <![CDATA[x]]>");
    f.Play("> <c ' @late=ok >"); // empty text leaves the start tag open
    EXPECT_EQ("<a><![CDATA[x<y]]> & <z></a><b> &lt;![CDATA[x]]&gt;</b><c late=\"ok\"/>", f.Close());
}

TEST(TextWriterTest, IndentationAroundTextAndDeepLevels) {
    Fixture f;
    f.Play("<r <a 'text <b <c > > 'tail > >");
    EXPECT_EQ("<r>\n\t<a>text\t\t<b>\n\t\t\t<c/>\n\t\t</b>\ntail\t</a>\n</r>\n", f.Close());

    Fixture deep;
    for (int i = 0; i < 40; ++i)
        deep.Start("e");
    for (int i = 0; i < 40; ++i)
        deep.End();
    std::string expected;
    for (int i = 0; i < 39; ++i)
        expected += std::string(i, '\t') + "<e>\n";
    expected += std::string(39, '\t') + "<e/>\n";
    for (int i = 38; i >= 0; --i)
        expected += std::string(i, '\t') + "</e>\n";
    EXPECT_EQ(expected, deep.Close());
}

TEST(TextWriterTest, DirectivesInstructionsInlineSchemaAndComments) {
    Fixture f(true, EOLType_CRLF);
    f.writer.WriteStartDocument();
    f.writer.WriteHeaderDirective("<!DOCTYPE r>");
    f.writer.WritePI("<?pi one?>");
    f.Play("<r @a=1");
    f.writer.WriteInlineSchema("<xs:schema/>");
    f.Start("c");
    f.writer.WriteComment("a -> b & c"); // inside the open start tag, as told
    f.Play("> >");
    EXPECT_EQ("<?xml version=\"1.0\"?>\r\n<!DOCTYPE r>\r\n<?pi one?>\r\n\r\n"
              "<r a=\"1\" \r\n<xs:schema/>\r\n>\r\n\t<c<!--a -&gt; b &amp; c-->\r\n/>\r\n</r>\r\n",
              f.Close());

    // Without format the line ends of these stay; a directive passes again after the root.
    Fixture g(false);
    g.writer.WritePI("<?pi?>");
    g.Start("r");
    g.writer.WriteInlineSchema("S");
    g.Play("'x");
    g.writer.WriteComment("c");
    g.End();
    g.writer.WriteHeaderDirective("<!-- after -->");
    EXPECT_EQ("<?pi?>\n\n<r \nS\n>x<!--c-->\n</r><!-- after -->\n", g.Close());
}

TEST(TextWriterTest, RawElementAfterClosingTheParent) {
    for (const bool format : {true, false}) {
        Fixture f(format);
        f.Start("r");
        f.writer.CloseParentElm();
        f.writer.WriteRawElement("<x xmlns=\"urn:x\"/>");
        f.writer.CloseParentElm();
        f.End();
        EXPECT_EQ(format ? "<r>\n<x xmlns=\"urn:x\"/>\n</r>\n" : "<r><x xmlns=\"urn:x\"/></r>", f.Close());
    }
}

TEST(TextWriterTest, AttributeAfterContentThrowsAndKeepsTheOutput) {
    const std::function<void(CXmlTextWriter&)> attributeCalls[] = {
        [](CXmlTextWriter& w) { w.WriteAttributeString("a", "", "1", ItemType_string); },
        [](CXmlTextWriter& w) { w.WriteAttributeNil(); },
        [](CXmlTextWriter& w) { w.WriteAttributeType("urn:t", "T", ItemType_string); },
    };
    for (const auto& attribute : attributeCalls) {
        Fixture f(false);
        const auto attempt = [&] { return FailureOf([&] { attribute(f.writer); }); };
        f.Play("<r 'text");
        EXPECT_EQ("Attributes must be added before elements", attempt());
        f.Play("<c >");
        EXPECT_EQ("Attributes must be added before elements", attempt());
        f.End();
        EXPECT_EQ("Attributes must be added before elements", attempt());
        EXPECT_EQ("<r>text<c/></r>", f.Close());
    }
}

TEST(TextWriterTest, MisuseThrowsAndLeavesTheWriterAsItWas) {
    Fixture f(true, EOLType_CRLF);
    f.Start("r");
    EXPECT_EQ("Headed directives must appear before an Element has been added.",
              FailureOf([&] { f.writer.WriteHeaderDirective("<!-- x -->"); }));
    EXPECT_EQ("Invalid EOL type.", FailureOf([&] { f.writer.SetEOLType(static_cast<EOLType>(2)); }));
    EXPECT_EQ("Invalid EOL type.", FailureOf([&] { f.writer.SetEOLType(static_cast<EOLType>(-1)); }));
    EXPECT_EQ(EOLType_CRLF, f.writer.GetEOLType());
    f.Text("a\nb");
    f.End();
    EXPECT_EQ("<r>a\r\nb</r>\r\n", f.Close());
    // An end without an open element is refused.
    EXPECT_EQ("An Element has not been opened.", FailureOf([&] { f.End(); }));
}

TEST(TextWriterTest, CloseWithAnOpenElementThrowsAfterClosingTheSink) {
    Fixture f;
    f.Play("<r <c 'x");
    EXPECT_EQ("An Element has not been closed.", FailureOf([&] { f.writer.Close(); }));
    EXPECT_EQ("open;close;", f.stream.m_log);
    EXPECT_EQ("<r>\n\t<c>x", std::string(f.stream.GetText()));
}

TEST(TextWriterTest, WriterDestroyedWithManyOpenElementsReleasesThem) {
    CTextStream stream;
    {
        CXmlTextWriter writer(stream);
        writer.SetFormat(false);
        for (size_t i = 0; i < Internal::kMaxNestingDepth; ++i) {
            writer.WriteStartElement("e", "urn:deep");
            writer.WriteAttributeNil();
        }
    }
    const std::string start =
        "<AA:e xmlns:AA=\"urn:deep\" xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:nil=\"true\">"
        "<AA:e AB:nil=\"true\"><AA:e AB:nil=\"true\">";
    EXPECT_EQ(start, std::string(stream.GetText()).substr(0, start.size()));
}
