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
    const std::pair<int, const char*> prefixes[] = {{0, "AA"}, {1, "AB"}, {25, "AZ"}, {26, "BA"}, {27, "BB"}, {676, "[A"}};
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
