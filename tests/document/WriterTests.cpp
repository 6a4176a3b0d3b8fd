#include <gtest/gtest.h>

#include "document/XmlWriter.h"

using namespace QvXmlLib10;

namespace {

using Context = CXmlWriter::CXmlWriterContext;

std::string Dump(const CXmlWriter::NamespaceMap& map) {
    std::string out;
    for (const auto& entry : map)
        out += entry.first + "=" + entry.second + ";";
    return out;
}

} // namespace

TEST(WriterFrameTest, InventedPrefixes) {
    const std::pair<int, const char*> prefixes[] = {{0, "AA"},  {1, "AB"},  {25, "AZ"},
                                                    {26, "BA"}, {27, "BB"}, {676, "[A"}};
    for (const auto& p : prefixes)
        EXPECT_EQ(p.second, CXmlWriter::NsIntToString(p.first)) << p.first;

    // Only the aliases of the given map count, not its keys.
    CXmlWriter::NamespaceMap map{{"urn:a", "AA"}, {"AB", "x"}, {"urn:c", "AC"}};
    EXPECT_EQ("AB", CXmlWriter::GetUniquePrefix(map));
    map["urn:b"] = "AB";
    EXPECT_EQ("AD", CXmlWriter::GetUniquePrefix(map));
}

TEST(WriterFrameTest, ScopesAreSharedUntilAContextDeclaresSomething) {
    const CXmlWriter::NamespaceMap writerMap{{CXmlWriter::XML_NAMESPACE, "xml"}};
    auto root = std::make_unique<Context>("R", "", "urn:d", &writerMap, nullptr);
    Context* const r = root.get();
    EXPECT_NE(&writerMap, &r->GetNamespaceMap());
    auto a = std::make_unique<Context>("A", "", std::move(root));
    EXPECT_EQ(nullptr, root);
    auto b = std::make_unique<Context>("B", "", std::move(a));
    Context* const pa = b->m_pParent.get();

    EXPECT_EQ(2u, b->m_depth);
    EXPECT_TRUE(b->m_startTagOpen);
    EXPECT_TRUE(b->m_inheritsScope);
    EXPECT_FALSE(b->m_ownsNamespaceMap);
    EXPECT_EQ(&r->GetNamespaceMap(), &b->GetNamespaceMap());
    EXPECT_EQ("urn:d", b->GetDefaultNamespace());

    // A new alias copies the map and the inherited default; the ancestors keep theirs.
    b->SetNamespaceMapValue("urn:x", "AA");
    EXPECT_FALSE(b->m_inheritsScope);
    EXPECT_TRUE(b->m_ownsNamespaceMap);
    EXPECT_EQ("urn:d", b->GetDefaultNamespace());
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:x=AA;", Dump(b->GetNamespaceMap()));
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;", Dump(pa->GetNamespaceMap()));

    // A descendant sees the new scope; a default set on it alone is its own.
    auto c = std::make_unique<Context>("C", "", std::move(b));
    EXPECT_EQ("AA", c->GetNamespaceMapValue("urn:x"));
    c->SetDefaultNamespace("urn:c");
    EXPECT_EQ("urn:c", c->GetDefaultNamespace());
    EXPECT_EQ("urn:d", pa->GetDefaultNamespace());

    // Asking for an unknown namespace enters it with an empty alias, in the scope in force.
    EXPECT_EQ("", pa->GetNamespaceMapValue(std::string("urn:new")));
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:new=;", Dump(r->GetNamespaceMap()));
}

TEST(WriterFrameTest, ContextWithoutParentHasAnEmptyScopeOfItsOwn) {
    const Context orphan("A", "urn:a", nullptr);
    EXPECT_EQ(0u, orphan.m_depth);
    EXPECT_FALSE(orphan.m_inheritsScope);
    EXPECT_TRUE(orphan.GetNamespaceMap().empty());
    const Context root("R", "", "urn:d", nullptr, nullptr);
    EXPECT_EQ("urn:d", root.GetDefaultNamespace());
    EXPECT_TRUE(root.GetNamespaceMap().empty());
}

namespace {

// A writer that writes nothing, with the frame's element stack at hand.
class CStackWriter : public CXmlWriter {
public:
    CStackWriter() : CXmlWriter("CStackWriter") {}
    void Push(const std::string& name) { PushContext(name, ""); }
    void Pop() { PopContext(); }
    Context& Current() { return *m_pContext; }

    void WriteComment(const std::string&) override {}
    void WritePI(const std::string&) override {}
    void WriteInlineSchema(const std::string&) override {}
    void WriteStartElement(const std::string&, const std::string&) override {}
    void WriteString(const std::string&, ItemType) override {}
    void WriteEndElement() override {}
    void WriteAttributeString(const std::string&, const std::string&, const std::string&, ItemType) override {}
    void WriteAttributeType(const std::string&, const std::string&, ItemType) override {}
    void WriteAttributeNil() override {}
};

} // namespace

TEST(WriterFrameTest, ReusedContextsStartFromTheScopeInForce) {
    // Contexts of closed elements are reused, maps included: each new element must see
    // exactly its parent's scope, whatever its context held before.
    CStackWriter w;
    w.SetDefaultNamespace("urn:d");
    w.AddNamespace("r", "urn:r");
    w.Push("R");
    w.Push("A1");
    w.Push("B1");
    w.AddNamespace("x", "urn:x");
    w.AddNamespace("y", "urn:y");
    w.SetDefaultNamespace("urn:b1");
    w.Pop();
    w.Pop();

    w.Push("A2");
    w.AddNamespace("z", "urn:z");
    w.AddNamespace("r2", "urn:r");
    w.Push("B2");
    EXPECT_TRUE(w.Current().m_inheritsScope);
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:r=r2;urn:z=z;", Dump(w.Current().GetNamespaceMap()));
    w.AddNamespace("y2", "urn:y");
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:r=r2;urn:y=y2;urn:z=z;",
              Dump(w.Current().GetNamespaceMap()));
    EXPECT_EQ("urn:d", w.Current().GetDefaultNamespace());
    w.Pop();

    // The same context once more, under a parent whose scope is the root's.
    w.Pop();
    w.Push("A3");
    w.Push("B3");
    w.SetDefaultNamespace("urn:b3");
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:r=r;", Dump(w.Current().GetNamespaceMap()));
    EXPECT_EQ("urn:b3", w.Current().GetDefaultNamespace());
    w.AddNamespace("x", "urn:x");
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:r=r;urn:x=x;", Dump(w.Current().GetNamespaceMap()));
    w.Pop();
    EXPECT_EQ("urn:d", w.Current().GetDefaultNamespace());
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:r=r;", Dump(w.Current().GetNamespaceMap()));
    w.Pop();
    w.Pop();
    EXPECT_NO_THROW(w.Close());
}
