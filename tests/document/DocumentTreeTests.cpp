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
    for (CXmlElement* c = element->GetFirstElement(); c; c = c->GetNextSiblingElement())
        names.push_back(c->GetLocalName());
    return names;
}

} // namespace

TEST(DocumentTree, CarriageReturnsVanishAndTextStopsAtNul) {
    struct Case {
        const char* text;
        unsigned long length;
        const char* expected;
    };
    const Case cases[] = {
        {"a\r\nb", 4, "a\nb"}, {"\r\r\r", 3, ""}, {"\rx\r", 3, "x"}, {"abc", 2, "ab"},
        {"ab\0cd", 5, "ab"},   {"abc", 0, ""},    {"", 5, ""},
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

    for (const char* name : {"a", "b", "c"})
        root->CreateNewChildElement()->SetElementName(name);
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
    for (int i = 0; i < 200000; ++i)
        document.AddChildElement("", "deep");
    for (int i = 0; i < 200000; ++i)
        document.EndElement();
    for (int i = 0; i < 200000; ++i) {
        document.AddChildElement("", "wide");
        document.EndElement();
    }
    document.Cleanup();
    EXPECT_EQ(document.GetDocumentElement(), nullptr);
    EXPECT_EQ(document.LookupNamespaceFromAlias(nullptr), "");
    // The emptied document takes a new tree.
    CXmlElement* second = document.AddDocElement("", "second");
    EXPECT_EQ(document.GetDocumentElement(), second);
}

TEST(DocumentTree, ElementsWithoutDocumentOwnTheirNamesChildrenAndAttributes) {
    std::unique_ptr<CXmlElement> root(new CXmlElement(nullptr));
    EXPECT_EQ(root->GetLocalName() + root->GetNamespaceURI(), ""); // names read before any is set
    root->SetElementName("r");
    root->SetElementName("root");
    root->AddAttribute("a", "1", "urn:a");
    root->AppendText("text");
    CXmlElement* child = root->CreateNewChildElement();
    child->SetElementName("c");
    child->AddAttribute("nil", "true", "http://www.w3.org/2001/XMLSchema-instance");
    child->CreateNewChildElement()->SetNamespace("urn:g");
    EXPECT_EQ(root->GetLocalName() + root->GetAttribute("a", "urn:a") + root->GetText(), "root1text");
    EXPECT_TRUE(child->GetAttributes()[0]->IsNilAttribute());
    EXPECT_EQ(child->GetFirstElement()->GetNamespaceURI(), "urn:g");
    std::unique_ptr<CXmlElement> removed(root->RemoveLastChildElement());
    EXPECT_EQ(removed->GetLocalName(), "c");
}

TEST(DocumentTree, ElementMadeByTheCallerForADocumentUsesItsStorage) {
    CXmlDocument document;
    {
        CXmlElement local(&document);
        local.SetElementName("local");
        local.AddAttribute("a", "a value longer than a short string", "");
        local.CreateNewChildElement()->SetElementName("child");
        EXPECT_EQ(local.GetAttribute("a", ""), "a value longer than a short string");
        EXPECT_EQ(local.GetFirstElement()->GetLocalName(), "child");
    }
    document.LoadXml("<r a=\"1\"><c/></r>");
    EXPECT_EQ(document.GetDocumentElement()->GetAttribute("a", ""), "1");
}

TEST(DocumentTree, RenamingAnElementLeavesItsNamesakesAlone) {
    CXmlDocument document;
    CXmlElement* root = document.AddDocElement("urn:u", "r");
    CXmlElement* first = document.AddChildElement("urn:u", "a");
    document.EndElement();
    CXmlElement* second = document.AddChildElement("urn:u", "a");
    document.EndElement();
    CXmlDocument::AddElementAttribute(first, "x", "1", "urn:u");
    CXmlDocument::AddElementAttribute(second, "x", "2", "urn:u");
    first->SetElementName("b");
    second->SetNamespace("urn:v");
    const auto name = [](const CXmlElement* e) {
        return "{" + e->GetNamespaceURI() + "}" + e->GetLocalName() + "=" + e->GetAttribute("x", "urn:u") + ";";
    };
    EXPECT_EQ(name(root) + name(first) + name(second), "{urn:u}r=;{urn:u}b=1;{urn:v}a=2;");
}

TEST(DocumentTree, NewDocumentElementReplacesTheTreeAndItsOpenElements) {
    CXmlDocument document;
    document.AddDocElement("", "a");
    document.AddChildElement("", "b");
    CXmlElement* c = document.AddDocElement("", "c");
    CXmlElement* d = document.AddChildElement("", "d");
    EXPECT_EQ(document.GetDocumentElement(), c);
    EXPECT_EQ(c->GetFirstElement(), d);
    document.EndElement();
    document.EndElement();
    document.EndElement(); // nothing open: no effect
    EXPECT_THROW(document.AddChildElement("", "e"), CQvException);
    EXPECT_EQ(ChildNames(c), (std::vector<std::string>{"d"}));
}

TEST(DocumentTree, DetachedElementOutlivesTheNextLoad) {
    CXmlDocument document;
    document.LoadXml("<r><a x=\"1\">text of a, long enough for the heap</a></r>");
    std::unique_ptr<CXmlElement> detached(document.GetDocumentElement()->RemoveLastChildElement());
    // The next loads must not build the new trees in the memory of the detached element.
    for (int i = 0; i < 3; ++i)
        document.LoadXml("<s><b y=\"2\">u</b><c z=\"3\"/><b y=\"4\">v</b></s>");
    EXPECT_EQ(detached->GetLocalName(), "a");
    EXPECT_EQ(detached->GetAttribute("x", ""), "1");
    EXPECT_EQ(detached->GetText(), "text of a, long enough for the heap");
    EXPECT_EQ(ChildNames(document.GetDocumentElement()), (std::vector<std::string>{"b", "c", "b"}));
    detached.reset();
    document.LoadXml("<t/>");
    EXPECT_EQ(document.GetDocumentElement()->GetLocalName(), "t");
}

namespace {
std::vector<std::string> g_consumed;
bool ConsumeItems(CXmlElement* element) {
    if (element->GetLocalName() != "item") return false;
    std::string seen = element->GetAttribute("n", "") + ":" + element->GetText();
    for (CXmlElement* c = element->GetFirstElement(); c; c = c->GetNextSiblingElement())
        seen += ":" + c->GetText();
    g_consumed.push_back(seen);
    return true;
}
} // namespace

TEST(DocumentTree, ElementsConsumedByTheHookLeaveTheirMemoryToLaterOnes) {
    // The memory of removed items is reused by the items and keepers after them; each
    // element must still read back exactly what was parsed into it.
    g_consumed.clear();
    std::string xml = "<r>";
    for (int i = 0; i < 2000; ++i) {
        const std::string n = std::to_string(i);
        xml += "<item n=\"" + n + "\">item text " + n + "<part>part of item number " + n + "</part></item>";
        if (i % 3 == 0) xml += "<keep n=\"" + n + "\" m=\"attribute value of keeper " + n + "\">kept " + n + "</keep>";
    }
    xml += "</r>";
    CXmlDocument document(&ConsumeItems);
    document.LoadXml(xml.c_str());

    ASSERT_EQ(g_consumed.size(), 2000u);
    EXPECT_EQ(g_consumed[0], "0:item text 0:part of item number 0");
    EXPECT_EQ(g_consumed[1999], "1999:item text 1999:part of item number 1999");
    int expected = 0;
    for (CXmlElement* keep = document.GetDocumentElement()->GetFirstElement(); keep;
         keep = keep->GetNextSiblingElement(), expected += 3) {
        const std::string n = std::to_string(expected);
        ASSERT_EQ(keep->GetLocalName(), "keep");
        EXPECT_EQ(keep->GetAttribute("n", ""), n);
        EXPECT_EQ(keep->GetAttribute("m", ""), "attribute value of keeper " + n);
        EXPECT_EQ(keep->GetText(), "kept " + n);
    }
    EXPECT_EQ(expected, 2001);
}
