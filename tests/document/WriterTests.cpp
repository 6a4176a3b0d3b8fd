#include <gtest/gtest.h>

#include <cstring>

#include "document/XmlWriter.h"
#include "foundation/QvException.h"

using namespace QvXmlLib10;

namespace {

using Context = CXmlWriter::CXmlWriterContext;
using NamespaceMap = CXmlWriter::NamespaceMap;

// The smallest concrete writer: it pushes and pops contexts and writes nothing, so
// that the frame's scopes can be looked at from outside.
class CFrameOnlyWriter : public CXmlWriter {
public:
    CFrameOnlyWriter() : CXmlWriter("CFrameOnlyWriter") {}

    void WriteComment(const std::string&) override {}
    void WritePI(const std::string&) override {}
    void WriteInlineSchema(const std::string&) override {}
    void WriteStartElement(const std::string& localName, const std::string& namespaceUri) override {
        if (m_pContext)
            m_pContext.reset(new Context(localName, namespaceUri, std::move(m_pContext)));
        else
            m_pContext.reset(new Context(localName, namespaceUri, m_defaultNamespace, &m_namespaceMap, nullptr));
    }
    void WriteString(const std::string&, ItemType) override {}
    void WriteEndElement() override {
        std::unique_ptr<Context> parent = std::move(m_pContext->m_pParent);
        m_pContext = std::move(parent);
    }
    void WriteAttributeString(const std::string&, const std::string&, const std::string&, ItemType) override {}
    void WriteAttributeType(const std::string&, const std::string&, ItemType) override {}
    void WriteAttributeNil() override {}

    Context* Current() const { return m_pContext.get(); }
    const NamespaceMap& Map() const { return m_namespaceMap; }
    const std::string& Default() const { return m_defaultNamespace; }
};

std::string Dump(const NamespaceMap& map) {
    std::string out;
    for (const auto& entry : map)
        out += entry.first + "=" + entry.second + ";";
    return out;
}

} // namespace

TEST(WriterFrameTest, XmlNamespaceConstant) {
    EXPECT_STREQ("http://www.w3.org/XML/1998/namespace", CXmlWriter::XML_NAMESPACE);
}

TEST(WriterFrameTest, NsIntToString) {
    const struct {
        int n;
        const char* prefix;
    } cases[] = {{0, "AA"}, {1, "AB"}, {25, "AZ"}, {26, "BA"}, {27, "BB"}, {675, "ZZ"}, {676, "[A"}};
    for (const auto& c : cases)
        EXPECT_EQ(c.prefix, CXmlWriter::NsIntToString(c.n)) << c.n;
}

TEST(WriterFrameTest, GetUniquePrefixLooksAtTheAliasesOfTheGivenMapOnly) {
    NamespaceMap map;
    EXPECT_EQ("AA", CXmlWriter::GetUniquePrefix(map));
    map["urn:a"] = "AA";
    EXPECT_EQ("AB", CXmlWriter::GetUniquePrefix(map));
    map["AB"] = "x";  // a key equal to a prefix doesn't count
    map["urn:c"] = "AC";
    EXPECT_EQ("AB", CXmlWriter::GetUniquePrefix(map));
    map["urn:b"] = "AB";
    EXPECT_EQ("AD", CXmlWriter::GetUniquePrefix(map));
}

TEST(WriterFrameTest, NewWriterHasTheXmlAliasOnly) {
    CFrameOnlyWriter writer;
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;", Dump(writer.Map()));
    EXPECT_EQ("", writer.Default());
}

TEST(WriterFrameTest, SettingsBeforeTheRootGoToTheWriterAndAreCopiedIntoTheRoot) {
    CFrameOnlyWriter writer;
    writer.AddNamespace("p", "urn:p");
    writer.AddNamespace("q", "urn:p");  // replaces
    writer.SetDefaultNamespace("urn:d");
    writer.WriteStartElement("Root", "urn:d");

    Context* root = writer.Current();
    EXPECT_EQ(0u, root->m_depth);
    EXPECT_FALSE(root->m_inheritsScope);
    EXPECT_TRUE(root->m_ownsNamespaceMap);
    EXPECT_NE(&writer.Map(), &root->GetNamespaceMap());
    EXPECT_EQ("urn:d", root->GetDefaultNamespace());
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:p=q;", Dump(root->GetNamespaceMap()));

    // Once the root is open, the setters act on it, not on the writer.
    writer.AddNamespace("r", "urn:r");
    writer.SetDefaultNamespace("urn:e");
    EXPECT_EQ("urn:d", writer.Default());
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:p=q;", Dump(writer.Map()));
    EXPECT_EQ("urn:e", root->GetDefaultNamespace());
    EXPECT_EQ("q", root->GetNamespaceMapValue("urn:p"));
    EXPECT_EQ("r", root->GetNamespaceMapValue(std::string("urn:r")));
    writer.WriteEndElement();
    writer.Close();
}

TEST(WriterFrameTest, ChildSharesItsParentsScopeUntilItDeclaresSomething) {
    CFrameOnlyWriter writer;
    writer.SetDefaultNamespace("urn:d");
    writer.WriteStartElement("Root", "");
    Context* root = writer.Current();
    writer.WriteStartElement("A", "");
    Context* a = writer.Current();
    writer.WriteStartElement("B", "");
    Context* b = writer.Current();

    EXPECT_EQ(1u, a->m_depth);
    EXPECT_EQ(2u, b->m_depth);
    EXPECT_EQ(0u, b->m_childCount);
    EXPECT_TRUE(b->m_startTagOpen);
    EXPECT_FALSE(b->m_hasAttributes);
    EXPECT_TRUE(b->m_inheritsScope);
    EXPECT_FALSE(b->m_ownsNamespaceMap);
    EXPECT_EQ(&root->GetNamespaceMap(), &b->GetNamespaceMap());
    EXPECT_EQ("urn:d", b->GetDefaultNamespace());

    // B declares: it copies the map and the default, A and the root keep theirs.
    writer.AddNamespace("AA", "urn:x");
    EXPECT_FALSE(b->m_inheritsScope);
    EXPECT_TRUE(b->m_ownsNamespaceMap);
    EXPECT_EQ("urn:d", b->GetDefaultNamespace());
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:x=AA;", Dump(b->GetNamespaceMap()));
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;", Dump(a->GetNamespaceMap()));

    writer.WriteEndElement();  // B
    writer.WriteStartElement("C", "");
    Context* c = writer.Current();
    EXPECT_TRUE(c->m_inheritsScope);
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;", Dump(c->GetNamespaceMap()));

    // A default set on C alone copies the map but not the inherited default.
    writer.SetDefaultNamespace("urn:c");
    EXPECT_EQ("urn:c", c->GetDefaultNamespace());
    EXPECT_EQ("urn:d", a->GetDefaultNamespace());
    EXPECT_NE(&a->GetNamespaceMap(), &c->GetNamespaceMap());
    writer.WriteStartElement("D", "");
    EXPECT_EQ("urn:c", writer.Current()->GetDefaultNamespace());
    EXPECT_EQ(&c->GetNamespaceMap(), &writer.Current()->GetNamespaceMap());
    writer.WriteEndElement();
    writer.WriteEndElement();
    writer.WriteEndElement();
    writer.WriteEndElement();
    writer.Close();
}

TEST(WriterFrameTest, GetNamespaceMapValueEntersAnUnknownNamespace) {
    CFrameOnlyWriter writer;
    writer.WriteStartElement("Root", "");
    writer.WriteStartElement("A", "");
    EXPECT_EQ("", writer.Current()->GetNamespaceMapValue("urn:unknown"));
    // The entry lands in the scope the child shares: the root's.
    writer.WriteEndElement();
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:unknown=;", Dump(writer.Current()->GetNamespaceMap()));
    writer.WriteEndElement();
}

TEST(WriterFrameTest, CloseWithAnOpenElementThrows) {
    CFrameOnlyWriter writer;
    writer.Open();
    writer.WriteStartElement("Root", "");
    try {
        writer.Close();
        FAIL() << "no exception";
    } catch (const CQvException& e) {
        EXPECT_EQ("An Element has not been closed.", e.GetFullMessage());
    }
    writer.WriteEndElement();
    EXPECT_NO_THROW(writer.Close());
}

TEST(WriterFrameTest, ContextWithoutParentHasAnEmptyScopeOfItsOwn) {
    Context orphan("A", "urn:a", nullptr);
    EXPECT_EQ(0u, orphan.m_depth);
    EXPECT_FALSE(orphan.m_inheritsScope);
    EXPECT_TRUE(orphan.GetNamespaceMap().empty());
    Context root("R", "", "urn:d", nullptr, nullptr);
    EXPECT_EQ("urn:d", root.GetDefaultNamespace());
    EXPECT_TRUE(root.GetNamespaceMap().empty());
}

TEST(WriterFrameTest, WriterDestroyedWithManyOpenElementsFreesThemAll) {
    // Deep enough that a recursive teardown of the chain would exhaust the stack.
    CFrameOnlyWriter writer;
    for (int i = 0; i < 200000; ++i)
        writer.WriteStartElement("e", "");
    EXPECT_EQ(199999u, writer.Current()->m_depth);
}
