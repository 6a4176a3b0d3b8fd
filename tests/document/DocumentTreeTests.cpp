#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib10;

namespace {

std::vector<std::string> ChildNames(const CXmlElement* element) {
    std::vector<std::string> names;
    for (CXmlElement* c = element->GetFirstElement(); c; c = c->GetNextSiblingElement()) names.push_back(c->GetLocalName());
    return names;
}

} // namespace

TEST(DocumentTree, BuildOperationsMakeTreeWithMixedText) {
    CXmlDocument document;
    EXPECT_EQ(document.GetDocumentElement(), nullptr);
    CXmlElement* x = document.AddDocElement("urn:x", "x");
    CXmlDocument::AppendTextExcludingCR(x, "a");
    CXmlElement* b = document.AddChildElement("", "b");
    CXmlDocument::AddElementAttribute(b, "at", "v", "urn:a");
    document.EndElement();
    CXmlDocument::AppendTextExcludingCR(x, "c");
    document.EndElement();

    ASSERT_EQ(document.GetDocumentElement(), x);
    EXPECT_EQ(x->GetNamespaceURI(), "urn:x");
    EXPECT_EQ(x->GetLocalName(), "x");
    EXPECT_EQ(x->GetText(), "ac");
    ASSERT_EQ(x->GetFirstElement(), b);
    EXPECT_EQ(b->GetText(), "");
    EXPECT_EQ(b->GetNextSiblingElement(), nullptr);
    EXPECT_EQ(b->GetAttribute("at", "urn:a"), "v");
}

TEST(DocumentTree, CarriageReturnsVanishAndTextStopsAtNul) {
    struct Case {
        const char* text;
        unsigned long length;
        const char* expected;
    };
    const Case cases[] = {
        {"a\r\nb", 4, "a\nb"},
        {"\r\r\r", 3, ""},
        {"\rx\r", 3, "x"},
        {"abc", 2, "ab"},
        {"ab\0cd", 5, "ab"},
        {"abc", 0, ""},
        {"", 5, ""},
    };
    for (const Case& c : cases) {
        CXmlDocument document;
        CXmlElement* e = document.AddDocElement("", "e");
        CXmlDocument::AppendTextExcludingCR(e, c.text, c.length);
        EXPECT_EQ(e->GetText(), c.expected) << c.text;
    }
    CXmlDocument document;
    CXmlElement* e = document.AddDocElement("", "e");
    CXmlDocument::AppendTextExcludingCR(e, "one\r\n");
    CXmlDocument::AppendTextExcludingCR(e, "two");
    EXPECT_EQ(e->GetText(), "one\ntwo");
}

TEST(DocumentTree, AppendingManyPiecesKeepsAllText) {
    CXmlDocument document;
    CXmlElement* e = document.AddDocElement("", "e");
    std::string expected;
    for (int i = 0; i < 100000; ++i) {
        e->AppendText("xy", 2);
        expected += "xy";
    }
    e->AppendText("z");
    e->AppendText(static_cast<const char*>(nullptr));
    EXPECT_EQ(e->GetText(), expected + "z");
}

TEST(DocumentTree, AttributesKeepOrderAndAbsentOnesAreEmpty) {
    CXmlDocument document;
    CXmlElement* e = document.AddDocElement("", "e");
    e->AddAttribute("a", "1", "");
    e->AddAttribute("a", "2", "urn:n");
    e->AddAttribute("a", "3", ""); // duplicates are not detected
    ASSERT_EQ(e->GetAttributes().size(), 3u);
    EXPECT_EQ(e->GetAttributes()[1]->GetValue(), "2");
    EXPECT_EQ(e->GetAttribute("a", ""), "1");
    EXPECT_EQ(e->GetAttribute("a", "urn:n"), "2");
    const std::string& absent = e->GetAttribute("b", "");
    EXPECT_EQ(absent, "");
    EXPECT_EQ(&absent, &e->GetAttribute("a", "urn:other")); // one shared empty string
}

TEST(DocumentTree, NilAndNamespaceAttributes) {
    const std::string xsi = "http://www.w3.org/2001/XMLSchema-instance";
    const std::string xmlns = "http://www.w3.org/2000/xmlns/";
    struct Case {
        std::string name;
        std::string ns;
        bool nil;
        bool namespaceAttribute;
    };
    const Case cases[] = {
        {"nil", xsi, true, false},
        {"nil", xmlns, true, false},
        {"nil", "", false, false},
        {"type", xsi, false, true},
        {"xmlns", xmlns, false, true},
        {"schemaLocation", xsi, false, true},
        {"noNamespaceSchemaLocation", xmlns, false, true},
        {"type", "urn:other", false, false},
        {"lang", xsi, false, false},
    };
    for (const Case& c : cases) {
        const CXmlAttribute attribute(c.name, "v", c.ns);
        EXPECT_EQ(attribute.IsNilAttribute(), c.nil) << c.name << " " << c.ns;
        EXPECT_EQ(attribute.IsNamespaceAttribute(), c.namespaceAttribute) << c.name << " " << c.ns;
    }
}

TEST(DocumentTree, RemoveLastChildElement) {
    CXmlDocument document;
    CXmlElement* root = document.AddDocElement("", "r");
    EXPECT_EQ(root->RemoveLastChildElement(), nullptr);

    CXmlElement* only = root->CreateNewChildElement();
    std::unique_ptr<CXmlElement> removed(root->RemoveLastChildElement());
    EXPECT_EQ(removed.get(), only);
    EXPECT_EQ(root->GetFirstElement(), nullptr);

    for (const char* name : {"a", "b", "c"}) root->CreateNewChildElement()->SetElementName(name);
    removed.reset(root->RemoveLastChildElement());
    EXPECT_EQ(removed->GetLocalName(), "c");
    EXPECT_EQ(ChildNames(root), (std::vector<std::string>{"a", "b"}));
    // Appending after a removal links behind the new last child.
    root->CreateNewChildElement()->SetElementName("d");
    EXPECT_EQ(ChildNames(root), (std::vector<std::string>{"a", "b", "d"}));
}

namespace {
int g_hookCalls = 0;
bool DropItems(CXmlElement* element) {
    ++g_hookCalls;
    return element->GetLocalName() == "item";
}
} // namespace

TEST(DocumentTree, HookSeesCompleteElementsAndRemovesThem) {
    g_hookCalls = 0;
    CXmlDocument document(&DropItems);
    document.AddDocElement("", "root");
    for (int i = 0; i < 3; ++i) {
        document.AddChildElement("", "item");
        document.AddChildElement("", "inner");
        document.EndElement();
        document.EndElement();
        document.AddChildElement("", "keep");
        document.EndElement();
    }
    document.EndElement();
    EXPECT_EQ(g_hookCalls, 3 * 3 + 1);
    EXPECT_EQ(ChildNames(document.GetDocumentElement()), (std::vector<std::string>{"keep", "keep", "keep"}));
}

TEST(DocumentTree, DeepAndWideTreesAreDestroyedWithoutExhaustingTheStack) {
    CXmlDocument document;
    document.AddDocElement("", "root");
    for (int i = 0; i < 200000; ++i) document.AddChildElement("", "deep");
    for (int i = 0; i < 200000; ++i) document.EndElement();
    for (int i = 0; i < 200000; ++i) {
        document.AddChildElement("", "wide");
        document.EndElement();
    }
    document.Cleanup();
    EXPECT_EQ(document.GetDocumentElement(), nullptr);
}

TEST(DocumentTree, CleanupEmptiesEverythingAndAllowsReuse) {
    CXmlDocument document;
    document.AddDocElement("", "first");
    document.Cleanup();
    EXPECT_EQ(document.GetDocumentElement(), nullptr);
    EXPECT_EQ(document.LookupNamespaceFromAlias("p"), "");
    CXmlElement* second = document.AddDocElement("", "second");
    EXPECT_EQ(document.GetDocumentElement(), second);
    EXPECT_EQ(document.LookupNamespaceFromAlias(nullptr), "");
}

TEST(DocumentTree, ChildWithoutOpenElementIsRefused) {
    CXmlDocument document;
    EXPECT_THROW(document.AddChildElement("", "orphan"), CQvException);
}
