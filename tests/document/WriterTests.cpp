#include <gtest/gtest.h>

#include "document/XmlWriter.h"

using namespace QvXmlLib10;

namespace {

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

namespace {

// A writer that writes nothing, with the frame's element stack at hand.
class CStackWriter : public CXmlWriter {
public:
    CStackWriter() : CXmlWriter("CStackWriter") {}
    void Push(const std::string& name) { PushContext(name, ""); }
    void Pop() { PopContext(); }
    CXmlWriter::CXmlWriterContext& Current() { return *m_pContext; }

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
    // Asking for an unknown namespace enters it with an empty alias, in the scope in force.
    EXPECT_EQ("", w.Current().GetNamespaceMapValue(std::string("urn:new")));
    EXPECT_EQ("http://www.w3.org/XML/1998/namespace=xml;urn:new=;urn:r=r;", Dump(w.Current().GetNamespaceMap()));
    w.Pop();
    w.Pop();
    EXPECT_NO_THROW(w.Close());
}
