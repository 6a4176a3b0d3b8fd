#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

#include "binding/XmlSerializationContext.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "support/HandOrder.h"
#include "support/TestSupport.h"

using namespace QvXmlLib10;
using QvXmlTest::CHandOrder;

namespace {

// One line per node: depth, {namespace}name, text, then the attributes.
void Describe(const CElement& element, int depth, std::string& out) {
    out += std::string(static_cast<size_t>(depth), ' ') + "{" + element.GetNamespace() + "}" + element.GetName() +
           " '" + element.GetText() + "'";
    for (const CAttribute* attribute : *element.GetAttributes())
        out += " {" + attribute->GetNamespace() + "}" + attribute->GetName() + "=" + attribute->GetValue();
    out += "\n";
    for (const CElement* child : *element.GetElements())
        Describe(*child, depth + 1, out);
}

std::string Describe(const CElement& element) {
    std::string out;
    Describe(element, 0, out);
    return out;
}

const char ORDER_SOURCE[] =
    "<o:order xmlns:o=\"urn:example:orders\" xmlns:m=\"urn:example:meta\" id=\"A&amp;1\" m:priority=\"high\">"
    "<o:customer>Ada</o:customer>"
    "<l:line xmlns:l=\"urn:example:lines\" sku=\"P-1\" m:quantity=\"2\">gears</l:line></o:order>";

// A child collection that refuses every element, so that a child is left over.
class CRefusingCol : public CElementCol {
public:
    CRefusingCol() : CElementCol("", "##any", "", 0, -1) {}

protected:
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* first, const CXmlSerializationContext&, bool) override {
        return first;
    }
};

} // namespace

TEST(Element, ConstructorsStoreAndCheckTheirTexts) {
    // A namespace of its own is the restriction; without one the restriction is "##any"
    // and the children get the keyword as their namespace.
    CSmartPtr<CElement> own(new CElement("a", "urn:x"));
    EXPECT_EQ(own->GetNamespaceRestriction(), "urn:x");
    CSmartPtr<CElement> open(new CElement("b"));
    EXPECT_EQ(open->GetNamespaceRestriction(), "##any");
    EXPECT_EQ(open->GetElements()->GetCollectionNamespace(), "##any");
    // The target namespace is the element's namespace, not the restriction's target.
    CSmartPtr<CElement> full(new CElement("c", "urn:o", "##other", "urn:t"));
    EXPECT_EQ(full->GetTargetNamespace(), "urn:o");

    struct Case {
        std::function<void()> make;
        const char* message;
    } cases[] = {
        {[] { CElement e("a", "##any"); }, "Invalid Namespace [##any]"},
        {[] { CElement e("a", "##other"); }, "Invalid Namespace [##other]"},
        {[] { CElement e("a", "##local"); }, "Invalid Namespace [##local]"},
        {[] { CElement e("a", "##targetNamespace"); }, "Invalid Namespace [##targetNamespace]"},
        {[] { CElement e(static_cast<const char*>(nullptr)); }, "Element Name must have a value"},
        {[] { CElement e(nullptr, "u", nullptr, nullptr); }, "Element Name must have a value"},
        {[] { CElement e("a", "u", nullptr, nullptr); }, "Namespace Restriction must have a value"},
        {[] { CElement e("a", "u", "##any", nullptr); }, "Target Namespace must have a value"},
        {[] { CElement e("a", "urn:y", "##local", ""); },
         "Invalid namespace [urn:y]. The namespace must be one of [##local] where the target namespace is []"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>(c.make), c.message);
}

TEST(Element, SettersKeepTheNamespaceWithinTheRestriction) {
    CSmartPtr<CElement> element(new CElement("a", "urn:x", "##other", "urn:t"));
    element->SetNamespace("urn:y");
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { element->SetNamespace("urn:t"); }),
              "Invalid namespace [urn:t]. The namespace must be one of [##other] where the target namespace is "
              "[urn:t]");
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { element->SetNamespaceRestriction("##local"); }),
              "Invalid namespace [urn:y]. The namespace must be one of [##local] where the target namespace is "
              "[urn:t]");
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { element->SetRestrictionTargetNamespace("urn:y"); }),
              "Invalid namespace [urn:y]. The namespace must be one of [##other] where the target namespace is "
              "[urn:y]");
    EXPECT_EQ(element->GetNamespace() + " " + element->GetNamespaceRestriction() + " " +
                  element->GetRestrictionTargetNamespace(),
              "urn:y ##other urn:t");
    EXPECT_EQ(FailureOf<CQvInvalidParamException>([&] { element->SetAttributes(nullptr); }),
              "The Property [Attributes] is mandatory, it may node be NULL");
}

TEST(Element, EveryReadingEntryPointReadsTheDocumentElementItself) {
    const char text[] = "<r xmlns=\"urn:r\" xmlns:p=\"urn:p\" a=\"1\" p:b=\"2\">t<c>x</c><p:d q=\"3\"/></r>";
    const wchar_t wide[] = L"<r xmlns=\"urn:r\" xmlns:p=\"urn:p\" a=\"1\" p:b=\"2\">t<c>x</c><p:d q=\"3\"/></r>";
    const std::string expected = "{urn:r}r 't' {}a=1 {urn:p}b=2\n"
                                 " {urn:r}c 'x'\n"
                                 " {urn:p}d '' {}q=3\n";
    std::string bytes(text);
    CXmlDocument document;
    document.LoadXml(text);

    const std::vector<std::function<void(CElement&)>> reads = {
        [&](CElement& e) { e.FromXml(text); },
        [&](CElement& e) { e.FromXml(text, CXmlSerializationContext::m_defaultContext); },
        [&](CElement& e) { e.FromXml(wide); },
        [&](CElement& e) {
            e.FromXmlStream(reinterpret_cast<unsigned char*>(&bytes[0]), static_cast<unsigned long>(bytes.size()));
        },
        [&](CElement& e) {
            e.FromXmlStream(CBinaryData(reinterpret_cast<unsigned char*>(&bytes[0]),
                                        static_cast<unsigned long>(bytes.size()), false));
        },
        [&](CElement& e) { EXPECT_EQ(e.FromXmlElement(document.GetDocumentElement()), nullptr); },
    };
    for (size_t i = 0; i < reads.size(); ++i) {
        CSmartPtr<CElement> element(new CElement("old"));
        reads[i](*element);
        EXPECT_EQ(Describe(*element), expected) << "read " << i;
        // Reading again replaces what was read.
        reads[i](*element);
        EXPECT_EQ(Describe(*element), expected) << "read " << i;
    }
}

TEST(Element, AnElementOutsideTheRestrictionIsLeftUnreadAndAChildLeftOverRefused) {
    CXmlDocument document;
    document.LoadXml("<y xmlns=\"urn:t\" a=\"1\"><z/></y>");
    CXmlElement* const root = document.GetDocumentElement();

    CSmartPtr<CElement> element(new CElement("x", "urn:a", "##other", "urn:t"));
    EXPECT_EQ(element->FromXmlElement(root), root);
    EXPECT_EQ(Describe(*element), "{urn:a}x ''\n");

    // A child left over names the element and the former name.
    element = new CElement("before");
    element->SetElements(new CRefusingCol);
    EXPECT_EQ(FailureOf<CQvValidationException>([&] { element->FromXml("<r><c/></r>"); }),
              "Invalid Element [r] found in element [before]");
    // Without a child nothing is left over.
    element->FromXml("<r>t</r>");
    EXPECT_EQ(Describe(*element), "{}r 't'\n");
}

TEST(Element, CopyKeepsTheDefaultNamespaceOfADocumentReadWithoutNamespaces) {
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    CXmlDocument document(context);
    document.LoadXml("<a xmlns=\"u\" b=\"1\">t<c d=\"2\">x<e/></c></a>");

    CSmartPtr<CElement> element(new CElement("z", "urn:z"));
    element->GetAttributes()->Add("stale", "1");
    element->CopyXmlElement(document.GetDocumentElement());
    EXPECT_EQ(element->GetDefaultNamespace(), "u");
    EXPECT_EQ(Describe(*element), "{}a 't' {}xmlns=u {}b=1\n"
                                  " {}c 'x' {}d=2\n"
                                  "  {}e ''\n");
    // Written on its own with its default namespace: the attributes are lost.
    EXPECT_EQ(element->ToXml(false, false), "<a xmlns=\"u\"><c d=\"2\"><e/>x</c>t</a>");

    EXPECT_EQ(FailureOf<CQvInvalidParamException>([&] { element->CopyXmlElement(nullptr); }),
              "The Property [element] is mandatory, it may node be NULL");
}

TEST(Element, WritesNameNamespaceAttributesChildrenAndText) {
    CSmartPtr<CElement> order(new CElement("order", "urn:o"));
    order->GetAttributes()->Add("id", "7", "");
    // Without a namespace of its own the attribute is in the collection's, the element's.
    order->GetAttributes()->Add("kind", "x&y");
    order->GetElements()->Add("line")->SetText("a<b");
    order->GetElements()->Add("note", "urn:n")->GetAttributes()->Add("lang", "en", "");
    order->SetText("t");

    EXPECT_EQ(order->ToXml(false, true), "<AA:order xmlns:AA=\"urn:o\" id=\"7\" AA:kind=\"x&amp;y\">\n"
                                         "\t<AA:line>a&lt;b</AA:line>\n"
                                         "\t<AB:note xmlns:AB=\"urn:n\" lang=\"en\"/>\n"
                                         "t</AA:order>\n");
    EXPECT_EQ(order->ToXml(true, false),
              "<?xml version=\"1.0\"?>\n"
              "<AA:order xmlns:AA=\"urn:o\" id=\"7\" AA:kind=\"x&amp;y\"><AA:line>a&lt;b</AA:line>"
              "<AB:note xmlns:AB=\"urn:n\" lang=\"en\"/>t</AA:order>");
}

TEST(Element, AChildWithADefaultNamespaceIsRenderedOnItsOwn) {
    CSmartPtr<CElement> wrap(new CElement("wrap"));
    CSmartPtr<CElement> outer = wrap->GetElements()->Add("outer", "");
    CSmartPtr<CElement> inner = outer->GetElements()->Add("inner", "urn:d");
    inner->SetDefaultNamespace("urn:d");
    inner->GetAttributes()->Add("lost", "1", "");
    inner->GetElements()->Add("leaf", "urn:d")->SetText("x");
    inner->GetElements()->Add("other", "urn:e");

    // The raw text starts its indentation from 0 and gets a line end of its own.
    EXPECT_EQ(wrap->ToXml(false, true), "<wrap>\n"
                                        "\t<outer>\n"
                                        "<inner xmlns=\"urn:d\">\n"
                                        "\t<leaf>x</leaf>\n"
                                        "\t<AA:other xmlns:AA=\"urn:e\"/>\n"
                                        "</inner>\n"
                                        "\n"
                                        "\t</outer>\n"
                                        "</wrap>\n");
    EXPECT_EQ(wrap->ToXml(false, false, EOLType_CRLF),
              "<wrap><outer><inner xmlns=\"urn:d\"><leaf>x</leaf><AA:other xmlns:AA=\"urn:e\"/></inner></outer>"
              "</wrap>");
}

TEST(Element, CloneIsDeepAndDropsTheDefaultNamespace) {
    CSmartPtr<CElement> original(new CElement("a", "urn:a", "##other", "urn:t"));
    original->SetText("t");
    original->SetDefaultNamespace("urn:a");
    original->GetAttributes()->Add("n", "1", "");
    CSmartPtr<CElement> child = original->GetElements()->Add("c");
    child->SetText("x");

    CSmartPtr<CElement> copy = original->Clone();
    EXPECT_EQ(Describe(*copy), Describe(*original));
    EXPECT_EQ(copy->GetNamespaceRestriction(), "##other");
    EXPECT_EQ(copy->GetRestrictionTargetNamespace(), "urn:t");
    EXPECT_EQ(copy->GetDefaultNamespace(), "");

    copy->GetElements()->Item(0)->SetText("changed");
    copy->GetAttributes()->Item(0)->SetValue("2");
    EXPECT_EQ(child->GetText(), "x");
    EXPECT_EQ(original->GetAttributes()->Item(0)->GetValue(), "1");
    EXPECT_NE(copy->GetElements()->Item(0).Get(), child.Get());

    // The copy is written by the first route, with its attributes.
    EXPECT_EQ(copy->ToXml(false, false), "<AA:a xmlns:AA=\"urn:a\" n=\"2\"><AA:c>changed</AA:c>t</AA:a>");
    EXPECT_EQ(original->ToXml(false, false), "<a xmlns=\"urn:a\"><c>x</c>t</a>");
}

TEST(Element, SetNamespaceRestrictionsThrowsAPointerForTheElementItself) {
    CSmartPtr<CElement> element(new CElement("a", "urn:x"));
    element->GetAttributes()->Add("b", "1", "");
    element->GetElements()->Add("c", "urn:x");

    // Passing leaves everything as it was.
    element->SetNamespaceRestrictions("##other", "urn:t");
    EXPECT_EQ(element->GetNamespaceRestriction(), "urn:x");
    EXPECT_EQ(element->GetRestrictionTargetNamespace(), "");

    // The failure of the element itself, or of a descendant, is thrown as a pointer.
    const auto ThrownPointer = [](CElement& target, const char* restriction, const char* targetNamespace) {
        try {
            target.SetNamespaceRestrictions(restriction, targetNamespace);
        } catch (CQvInvalidNamespaceException* e) {
            const std::string message = e->GetFullMessage();
            delete e;
            return message;
        }
        return std::string("no exception");
    };
    EXPECT_EQ(ThrownPointer(*element, "##local", ""),
              "The namespace a in the class urn:x is invalid against restriction ##local\n"
              "Invalid namespace [urn:x]. The namespace must be one of [##local] where the target namespace "
              "is []");

    CSmartPtr<CElement> tree(new CElement("a", "urn:x"));
    tree->GetElements()->Add("c", "urn:x")->GetElements()->Add("g", "urn:z");
    EXPECT_EQ(ThrownPointer(*tree, "##targetNamespace", "urn:x"),
              "The namespace g in the class urn:z is invalid against restriction ##targetNamespace\n"
              "Invalid namespace [urn:z]. The namespace must be one of [##targetNamespace] where the "
              "target namespace is [urn:x]");

    // A refused attribute throws by value.
    element->GetAttributes()->Add("d", "2", "urn:y");
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { element->SetNamespaceRestrictions("urn:x", ""); }),
              "Invalid namespace [urn:y]. The namespace must be one of [urn:x] where the target namespace is []");
}

TEST(Element, BuiltFromABoundObjectAndReadBackIntoOne) {
    CHandOrder order;
    order.FromXml(ORDER_SOURCE);

    CSmartPtr<CElement> element(new CElement(&order, nullptr));
    EXPECT_EQ(element->GetDefaultNamespace(), "");
    EXPECT_EQ(Describe(*element), "{urn:example:orders}order '' {}id=A&1 {urn:example:meta}priority=high\n"
                                  " {urn:example:orders}customer 'Ada'\n"
                                  " {urn:example:lines}line 'gears' {}sku=P-1 {urn:example:meta}quantity=2\n");
    EXPECT_EQ(element->ToXml(false, false), order.ToXml(false, false));

    CHandOrder copy;
    copy.FromXmlElement(element.Get());
    EXPECT_EQ(copy.ToXml(), order.ToXml());

    // With a default namespace the element declares it, and leaves its attributes out.
    CSmartPtr<CElement> withDefault(new CElement(&order, QvXmlTest::ORDER_NS));
    EXPECT_EQ(withDefault->GetDefaultNamespace(), QvXmlTest::ORDER_NS);
    EXPECT_EQ(withDefault->ToXml(false, false),
              "<order xmlns=\"urn:example:orders\"><customer>Ada</customer>"
              "<AA:line xmlns:AA=\"urn:example:lines\" sku=\"P-1\" xmlns:AB=\"urn:example:meta\" "
              "AB:quantity=\"2\">gears</AA:line></order>");

    EXPECT_EQ(FailureOf<CQvInvalidParamException>([] { CElement e(static_cast<CXmlObjectBase*>(nullptr), nullptr); }),
              "The Property [source] is mandatory, it may node be NULL");
    EXPECT_EQ(FailureOf<CQvInvalidParamException>([] {
                  CHandOrder target;
                  target.FromXmlElement(static_cast<const CElement*>(nullptr));
              }),
              "The Property [element] is mandatory, it may node be NULL");
}
