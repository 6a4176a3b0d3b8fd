#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace QvXmlLib10;

namespace {

std::string LoadError(CXmlDocument& document, const std::string& text) {
    return FailureOf<CQvException>([&] { document.LoadXml(text.c_str()); });
}

std::string Describe(const CXmlElement* e) {
    std::string out = "{" + e->GetNamespaceURI() + "}" + e->GetLocalName();
    for (const auto& a : e->GetAttributes())
        out += " @{" + a->GetNamespaceURI() + "}" + a->GetLocalName() + "=" + a->GetValue();
    if (!e->GetText().empty()) out += " '" + e->GetText() + "'";
    for (CXmlElement* c = e->GetFirstElement(); c; c = c->GetNextSiblingElement())
        out += " (" + Describe(c) + ")";
    return out;
}

std::string TempPath(const char* name) { return testing::TempDir() + name; }

} // namespace

TEST(ExpatReader, NamespacesPrefixesAndAliases) {
    CXmlDocument document;
    document.LoadXml("<a xmlns=\"u\" xmlns:p=\"v\"><p:b p:c=\"1\" d=\"2\"/></a>");
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{u}a ({v}b @{v}c=1 @{}d=2)");
    EXPECT_EQ(document.LookupNamespaceFromAlias(""), "u");
    EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "v");
    EXPECT_EQ(document.LookupNamespaceFromAlias("q"), "");
    // The flat map keeps the last declaration of a prefix; a new load starts a new map.
    document.LoadXml("<r><a xmlns:p=\"one\"/><b xmlns:p=\"two\"/><c xmlns=\"\"/></r>");
    EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "two");
    EXPECT_EQ(document.LookupNamespaceFromAlias(""), "");
    document.LoadXml("<second/>");
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{}second");
    EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "");
}

TEST(ExpatReader, WithoutNamespacesNamesStayWhole) {
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    CXmlDocument document(context);
    document.LoadXml("<a xmlns=\"u\" xmlns:p=\"v\"><p:b p:c=\"1\" d=\"2\"/></a>");
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{}a @{}xmlns=u @{}xmlns:p=v ({}p:b @{}p:c=1 @{}d=2)");
    EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "");
}

TEST(ExpatReader, TextStaysWithTheElementItIsDirectlyIn) {
    struct Case {
        bool stripCdata;
        const char* xml;
        const char* tree;
    };
    const Case cases[] = {
        {true, "<x>a<b/>c</x>", "{}x 'ac' ({}b)"},
        {true, "<x>a<!-- note -->b<?pi data?>c</x>", "{}x 'abc'"},
        {true, "<x>a&#13;b&#10;c</x>", "{}x 'ab\nc'"},
        {true, "<x>line1\r\nline2\rline3</x>", "{}x 'line1\nline2\nline3'"},
        {true, "<x>&lt;&amp;&gt;&quot;&apos;</x>", "{}x '<&>\"''"},
        {true, "<?xml version=\"1.0\"?>\n<!DOCTYPE x>\n<x a=\"1\"/>\n<!-- after -->", "{}x @{}a=1"},
        {true, "<r>1<a>2<b>3</b>4<c/>5</a>6</r>", "{}r '16' ({}a '245' ({}b '3') ({}c))"},
        {true, "<r><a><b>x</b></a>y</r>", "{}r 'y' ({}a ({}b 'x'))"},
        {true, "<r>a&#13;&#13;b<c>&#13;</c>&#13;</r>", "{}r 'ab' ({}c)"},
        {true, "<r>\n  <a>one\r\ntwo</a>\n</r>", "{}r '\n  \n' ({}a 'one\ntwo')"},
        {true, "<a>1<![CDATA[x<y]]>2</a>", "{}a '1x<y2'"},
        {false, "<a>1<![CDATA[x<y]]>2</a>", "{}a '1<![CDATA[x<y]]>2'"},
        {false, "<r>a<![CDATA[b]]><c><![CDATA[]]></c>d</r>", "{}r 'a<![CDATA[b]]>d' ({}c '<![CDATA[]]>')"},
    };
    for (const Case& c : cases) {
        CXmlSerializationContext context; // strips CDATA by default
        if (!c.stripCdata) context.SetStripCDATA(false);
        CXmlDocument document(context);
        document.LoadXml(c.xml);
        EXPECT_EQ(Describe(document.GetDocumentElement()), c.tree) << c.xml;
    }
}

TEST(ExpatReader, MalformedInputNamesExpatTextAndLine) {
    CXmlDocument document;
    EXPECT_EQ(LoadError(document, "<a></b>"), "mismatched tag at line 1");
    EXPECT_EQ(LoadError(document, "<a>\n<b>\n</a>"), "mismatched tag at line 3");
    EXPECT_EQ(LoadError(document, "<a>\n  <b x=1/></a>"), "not well-formed (invalid token) at line 2");
    EXPECT_EQ(LoadError(document, "<a>"), "no element found at line 1");
    EXPECT_EQ(LoadError(document, "plain text"), "syntax error at line 1");
    EXPECT_EQ(LoadError(document, "<?xml version=\"1.0\" encoding=\"KOI8-R\"?><a/>"), "unknown encoding at line 1");
    EXPECT_EQ(LoadError(document, "<a/><b/>"), "junk after document element at line 1");
    // Expat guards its namespace separator: a URI holding "|" is a syntax error, so
    // a name can never be split at a bar that belongs to its URI.
    EXPECT_EQ(LoadError(document, "<a xmlns=\"u|x\"/>"), "syntax error at line 1");
    // Compressed bytes are no XML text: LoadXml has no detection.
    EXPECT_EQ(LoadError(document, "\x1f\x8b\x08"), "not well-formed (invalid token) at line 1");
}

TEST(ExpatReader, EmptyInputsAndFileFailuresHaveTheirOwnMessages) {
    CXmlDocument document;
    unsigned char byte = '<';
    const std::string empty = "XML String is empty!";
    EXPECT_EQ(empty, FailureOf<CQvException>([&] { document.LoadXml(""); }));
    EXPECT_EQ(empty, FailureOf<CQvException>([&] { document.LoadXml(static_cast<const char*>(nullptr)); }));
    EXPECT_EQ(empty, FailureOf<CQvException>([&] { document.LoadXml(L""); }));
    EXPECT_EQ("XML Stream is empty!", FailureOf<CQvException>([&] { document.LoadXmlStream(&byte, 0); }));
    EXPECT_EQ("XML Stream is empty!", FailureOf<CQvException>([&] { document.LoadXmlStream(nullptr, 0); }));

    const std::string missing = TempPath("qvxml-missing.xml");
    std::remove(missing.c_str());
    const std::string emptyFile = TempPath("qvxml-empty.xml");
    { std::ofstream(emptyFile.c_str()); }
    // A pipe has no size: its descriptor reopened by path makes ftell fail.
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    const std::string pipePath = "/proc/self/fd/" + std::to_string(fds[0]);
    const auto load = [&](const std::string& path) { return FailureOf([&] { document.Load(path.c_str()); }); };
    EXPECT_EQ("Failed to open the file [" + missing + "]", load(missing));
    EXPECT_EQ("Failed to read the contents of the file [" + emptyFile + "] Error []", load(emptyFile));
    EXPECT_EQ("Failed to get the size of the file [" + pipePath + "] Error []", load(pipePath));
    EXPECT_EQ("Failed to open the file []", FailureOf([&] { document.Load(nullptr); }));
    close(fds[0]);
    close(fds[1]);
    std::remove(emptyFile.c_str());
}

TEST(ExpatReader, Utf16DocumentWithByteOrderMarkAndWideText) {
    const std::u16string text = u"<a x=\"\u00e9\">\u20ac</a>";
    std::vector<unsigned char> bytes = {0xFF, 0xFE};
    for (char16_t unit : text) {
        bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
        bytes.push_back(static_cast<unsigned char>(unit >> 8));
    }
    ScopedAsciiOnly ascii(true); // local code page is UTF-8: values come out as UTF-8 bytes
    CXmlDocument document;
    document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{}a @{}x=\xC3\xA9 '\xE2\x82\xAC'");
    // Wide text is read as UTF-16 too.
    document.LoadXml(L"<a b=\"\u00e9\">\u4e2d</a>");
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{}a @{}b=\xC3\xA9 '\xE4\xB8\xAD'");
}

TEST(ExpatReader, NonAsciiTextFollowsTheLocalCodePageOfEachLoad) {
    // One document loads the same text under each setting: nothing of an earlier load's
    // conversion may stick.
    const std::string xml = "<caf\xC3\xA9 n\xC3\xA9=\"\xC3\xA9t\xC3\xA9\">na\xC3\xAFve</caf\xC3\xA9>";
    const std::string unchanged = "{}caf\xC3\xA9 @{}n\xC3\xA9=\xC3\xA9t\xC3\xA9 'na\xC3\xAFve'";
    CXmlDocument document;
    {
        ScopedLocale c("C"); // plain ASCII locale: what it cannot represent becomes '?'
        document.LoadXml(xml.c_str());
        EXPECT_EQ(Describe(document.GetDocumentElement()), "{}caf? @{}n?=?t? 'na?ve'");
    }
    {
        ScopedLocale utf8("C.UTF-8"); // a UTF-8 locale: text passes unchanged
        document.LoadXml(xml.c_str());
        EXPECT_EQ(Describe(document.GetDocumentElement()), unchanged);
    }
    {
        ScopedAsciiOnly ascii(true); // ASCIIOnly(true) under the C locale: no conversion either
        ScopedLocale c("C");
        document.LoadXml(xml.c_str());
        EXPECT_EQ(Describe(document.GetDocumentElement()), unchanged);
    }
}

TEST(ExpatReader, LongNonAsciiTextAndNamesBeyondScratchSpace) {
    std::string name;
    std::string text;
    for (int i = 0; i < 700; ++i)
        name += "\xC3\xA9";
    for (int i = 0; i < 5000; ++i)
        text += "\xE2\x82\xAC";
    const std::string xml = "<" + name + ">" + text + "</" + name + ">";
    ScopedLocale c("C");
    CXmlDocument document;
    document.LoadXml(xml.c_str());
    EXPECT_EQ(document.GetDocumentElement()->GetLocalName(), std::string(700, '?'));
    EXPECT_EQ(document.GetDocumentElement()->GetText(), std::string(5000, '?'));
    // Text that went through the converter loses its carriage returns as well.
    document.LoadXml("<a>\xC3\xA9&#13;x\r\ny</a>");
    EXPECT_EQ(document.GetDocumentElement()->GetText(), "?x\ny");
}

namespace {
bool ThrowOnSecond(CXmlElement* element) {
    if (element->GetLocalName() == "second") throw CQvInvalidValueException("hook refused", CQvException("inner"));
    return false;
}
} // namespace

TEST(ExpatReader, ExceptionFromHandlerPassesThroughUnchanged) {
    CXmlDocument document(&ThrowOnSecond);
    EXPECT_EQ("hook refused\ninner", FailureOf<CQvInvalidValueException>([&] {
                  document.LoadXml("<r><first/><second><x/></second><third/></r>");
              }));
    // The document stays usable.
    document.LoadXml("<r><first/></r>");
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{}r ({}first)");
}

TEST(ExpatReader, FailedLoadKeepsTheTreeAndTextSoFar) {
    CXmlDocument document;
    EXPECT_EQ(LoadError(document, "<r>ab<c x=\"1\">cd<d>e</r>"), "mismatched tag at line 1");
    ASSERT_NE(document.GetDocumentElement(), nullptr);
    EXPECT_EQ(Describe(document.GetDocumentElement()), "{}r 'ab' ({}c @{}x=1 'cd' ({}d 'e'))");
}

TEST(ExpatReader, TextInPiecesIsJoinedAndCarriageReturnsGo) {
    // Expat hands over text in pieces broken at every entity and line end.
    std::string xml = "<r><first/>";
    std::string expected;
    for (int i = 0; i < 3; ++i) {
        xml += "ab&amp;c\n&#13;d";
        expected += "ab&c\nd";
    }
    xml += "<last/>z</r>";
    CXmlDocument document;
    document.LoadXml(xml.c_str());
    EXPECT_EQ(document.GetDocumentElement()->GetText(), expected + "z");
    EXPECT_EQ(Describe(document.GetDocumentElement()->GetFirstElement()), "{}first");
}
