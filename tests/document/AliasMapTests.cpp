#include <gtest/gtest.h>

#include "binding/XmlSerializationContext.h"
#include "document/NamespaceAliasMap.h"
#include "foundation/QvException.h"

using namespace QvXmlLib10;

namespace {

// All URIs of the map in the order GetNamespaceAt counts them, as "uri=alias;...".
std::string Dump(const CNamespaceAliasMap& map) {
    std::string out;
    for (int i = 0; i < map.GetNamespaceCount(); ++i) {
        const std::string uri = map.GetNamespaceAt(i);
        out += uri + "=" + map.GetAliasFromNamespace(uri.c_str()) + ";";
    }
    return out;
}

} // namespace

TEST(AliasMapTest, KeyedByNamespaceInByteOrderOfTheUri) {
    CNamespaceAliasMap map;
    map.Add("a", "u");
    map.Add("b", "u"); // replaces the alias of "u"
    EXPECT_FALSE(map.DoesAliasExist("a"));
    map.Add("z", "urn:b");
    map.Add("y", "urn:B");
    map.Add("x", "http://a");
    map.Add("w", "urn:c");
    map.Add("w", "urn:a"); // one alias may stand for several namespaces: the first key wins
    EXPECT_EQ("http://a=x;u=b;urn:B=y;urn:a=w;urn:b=z;urn:c=w;", Dump(map));
    EXPECT_EQ("urn:a", map.GetNamespaceFromAlias("w"));
    // A negative index gives the first entry, one past the end the empty string.
    EXPECT_EQ("http://a", map.GetNamespaceAt(-5));
    EXPECT_EQ("", map.GetNamespaceAt(6));
    map.RemoveNamespace("u");
    map.RemoveNamespace("not there");
    EXPECT_EQ("http://a=x;urn:B=y;urn:a=w;urn:b=z;urn:c=w;", Dump(map));
}

TEST(AliasMapTest, UnknownAliasThrowsUnknownNamespaceIsEntered) {
    CNamespaceAliasMap map;
    try {
        map.GetNamespaceFromAlias("x");
        FAIL() << "no exception";
    } catch (const CQvException& e) {
        EXPECT_EQ("Namespace alias [x] not found", e.GetFullMessage());
    }
    EXPECT_EQ(0, map.GetNamespaceCount());

    const CNamespaceAliasMap& constMap = map;
    EXPECT_EQ("", constMap.GetAliasFromNamespace("x"));
    EXPECT_EQ(1, map.GetNamespaceCount());
    EXPECT_TRUE(map.DoesNamespaceExist("x"));
    // The entry has an empty alias, which can itself be looked up.
    EXPECT_EQ("x", map.GetNamespaceFromAlias(""));
}

TEST(AliasMapTest, ContextHoldsAMapAndCopiesIt) {
    CXmlSerializationContext context;
    EXPECT_EQ(0, context.GetNamespaceAliases().GetNamespaceCount());
    context.GetNamespaceAliases().Add("p", "urn:p");

    CXmlSerializationContext copy(context);
    copy.GetNamespaceAliases().Add("q", "urn:q");
    EXPECT_EQ("urn:p=p;", Dump(context.GetNamespaceAliases()));
    EXPECT_EQ("urn:p=p;urn:q=q;", Dump(copy.GetNamespaceAliases()));

    const CXmlSerializationContext& constContext = context;
    EXPECT_TRUE(constContext.GetNamespaceAliases().DoesAliasExist("p"));
}
