#include "support/Recorder.h"

#include <cstdio>
#include <fstream>
#include <functional>

#include <unistd.h>

using namespace QvXmlLib10;
using QvXmlTest::CRecorder;

namespace {

// What the recorder read, in one line: name, namespace, text, attributes and children.
std::string Summary(const CRecorder& r) {
    std::string out = r.GetElementName() + "{" + r.namespaceUri + "} local=" + r.localName + " text=" + r.text;
    for (const CRecorder::Attribute& a : r.attributes)
        out += " @" + a.localName + "{" + a.namespaceUri + "}=" + a.value;
    for (const std::string& child : r.children)
        out += " " + child;
    return out;
}

// Reads one document by all four routes and checks that they agree with `expected`.
void ReadAllRoutes(const std::string& utf8, const std::wstring& wide, const std::string& expected,
                   const CXmlSerializationContext& context) {
    CRecorder fromText;
    fromText.FromXml(utf8.c_str(), context);
    EXPECT_EQ(Summary(fromText), expected) << "narrow text";

    CRecorder fromWide;
    fromWide.FromXml(wide.c_str(), context);
    EXPECT_EQ(Summary(fromWide), expected) << "wide text";

    // One file per test and process: the tests run in parallel processes.
    const std::string path = testing::TempDir() + "qvxml-entry-" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() + "-" +
                             std::to_string(getpid()) + ".xml";
    { std::ofstream(path.c_str(), std::ios::binary) << utf8; }
    CRecorder fromFile;
    fromFile.FromXmlFile(path.c_str(), context);
    EXPECT_EQ(Summary(fromFile), expected) << "file";
    std::remove(path.c_str());

    std::vector<unsigned char> bytes(utf8.begin(), utf8.end());
    CRecorder fromBytes;
    fromBytes.FromXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()), context);
    EXPECT_EQ(Summary(fromBytes), expected) << "byte block";
}

} // namespace

TEST(ReadingEntryPoints, AllRoutesReadTheSameDocument) {
    ScopedAsciiOnly ascii(true); // ASCIIOnly(true): the local code page is UTF-8
    CXmlSerializationContext noNamespaces;
    noNamespaces.SetSchemaType(SchemaType_NoNamespaces);
    noNamespaces.SetStripCDATA(false);
    const std::string namespaced = "<o:order xmlns:o=\"urn:o\" xmlns=\"urn:d\" id=\"7\" o:kind=\"x\">head"
                                   "<line/><o:note><![CDATA[<b>]]></o:note>tail</o:order>";
    const std::string plain = "<o:order xmlns:o=\"urn:o\" id=\"7\">a<![CDATA[<b>]]>c<o:line/></o:order>";
    ReadAllRoutes(namespaced, std::wstring(namespaced.begin(), namespaced.end()),
                  "order{urn:o} local=order text=headtail @id{}=7 @kind{urn:o}=x {urn:d}line {urn:o}note",
                  CXmlSerializationContext::m_defaultContext);
    ReadAllRoutes(plain, std::wstring(plain.begin(), plain.end()),
                  "o:order{} local=o:order text=a<![CDATA[<b>]]>c @xmlns:o{}=urn:o @id{}=7 {}o:line", noNamespaces);
    ReadAllRoutes("<caf\xC3\xA9 p=\"\xE2\x82\xAC\">\xC3\xA9t\xC3\xA9</caf\xC3\xA9>",
                  L"<caf\u00e9 p=\"\u20ac\">\u00e9t\u00e9</caf\u00e9>",
                  "caf\xC3\xA9{} local=caf\xC3\xA9 text=\xC3\xA9t\xC3\xA9 @p{}=\xE2\x82\xAC",
                  CXmlSerializationContext::m_defaultContext);
}

TEST(ReadingEntryPoints, FailuresLeaveTheObjectUntouched) {
    CRecorder object;
    object.SetElementName("before");
    struct Case {
        std::function<void()> call;
        std::string message;
    };
    const std::string missing = testing::TempDir() + "qvxml-no-such-file.xml";
    unsigned char bytes[] = "<a>";
    const Case cases[] = {
        {[&] { object.FromXml(""); }, "XML String is empty!"},
        {[&] { object.FromXml(L""); }, "XML String is empty!"},
        {[&] { object.FromXmlStream(bytes, 0); }, "XML Stream is empty!"},
        {[&] { object.FromXmlFile(missing.c_str()); }, "Failed to open the file [" + missing + "]"},
        {[&] { object.FromXml("<a>\n<b></a>"); }, "mismatched tag at line 2"},
        {[&] { object.FromXmlStream(bytes, 3); }, "no element found at line 1"},
    };
    for (const Case& c : cases) {
        try {
            c.call();
            ADD_FAILURE() << c.message << ": no exception";
        } catch (const CQvException& e) {
            EXPECT_EQ(typeid(e), typeid(CQvException));
            EXPECT_EQ(e.GetFullMessage(), c.message);
        }
    }
    EXPECT_EQ(object.reads, 0);
    EXPECT_EQ(object.GetElementName(), "before");
}

TEST(ReadingEntryPoints, EmptyRootGivesNullCursorAndAsyncFlagChangesNothing) {
    AsyncFromXmlFile(true);
    CRecorder object;
    object.FromXml("<empty/>");
    EXPECT_TRUE(object.firstChildWasNull);
    EXPECT_EQ(object.reads, 1);
    AsyncFromXmlFile(false);
}
