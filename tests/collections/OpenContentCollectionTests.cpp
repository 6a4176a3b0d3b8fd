#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>

#include "binding/XmlSerializationContext.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "document/XmlDocument.h"
#include "document/XmlTextWriter.h"
#include "foundation/QvException.h"
#include "foundation/Streams.h"
#include "support/TestSupport.h"

using namespace QvXmlLib10;

namespace {

std::string Names(const CElementCol& elements) {
    std::string out;
    for (const CElement* element : elements)
        out += "{" + element->GetNamespace() + "}" + element->GetName() + "'" + element->GetText() + "' ";
    return out;
}

std::string Names(const CAttributeCol& attributes) {
    std::string out;
    for (const CAttribute* attribute : attributes)
        out += "{" + attribute->GetNamespace() + "}" + attribute->GetName() + "=" + attribute->GetValue() + " ";
    return out;
}

// Writes `object` inside an element <w>, unformatted.
std::string WrittenInside(const CXmlObjectBase* object, const CXmlSerializationContext& context) {
    CTextStream stream;
    CXmlTextWriter writer(stream);
    writer.SetFormat(false);
    writer.WriteStartElement("w", "");
    CXmlObjectBase::ToXml_Int(object, &writer, false, "urn:arg", context, false);
    writer.WriteEndElement();
    return std::string(stream.GetText(), static_cast<size_t>(stream.GetLength()));
}

} // namespace

TEST(Attribute, WritesItselfAndIsReadOnlyByItsCollection) {
    CSmartPtr<CAttribute> attribute(new CAttribute("n", "a\"b", "urn:a"));
    EXPECT_EQ(attribute->GetNamespace(), "urn:a");
    EXPECT_EQ(attribute->GetTargetNamespace(), "urn:a");
    EXPECT_EQ(WrittenInside(attribute.Get(), CXmlSerializationContext::m_defaultContext),
              "<w xmlns:AA=\"urn:a\" AA:n=\"a&quot;b\"/>");

    // A collection writes each attribute, with no count check.
    CSmartPtr<CAttributeCol> attributes(new CAttributeCol("", "##any", ""));
    attributes->Add("a", "1", "");
    attributes->Add(attribute->Clone());
    EXPECT_EQ(WrittenInside(attributes.Get(), CXmlSerializationContext::m_defaultContext),
              "<w a=\"1\" xmlns:AA=\"urn:a\" AA:n=\"a&quot;b\"/>");

    CXmlDocument document;
    document.LoadXml("<r a=\"1\"/>");
    CXmlElement* const root = document.GetDocumentElement();
    for (CXmlElement* element : {root, static_cast<CXmlElement*>(nullptr)})
        EXPECT_EQ(FailureOf<CQvException>([&] {
                      CXmlObjectBase::FromXml_Int(attribute.Get(), element, element,
                                                  CXmlSerializationContext::m_defaultContext);
                  }),
                  "This should be done by the collection");
}

TEST(AttributeCol, NamespaceComesFromTheArgumentOrTheFirstUriOfTheRestriction) {
    struct Case {
        const char* namespaceUri;
        const char* restriction;
        const char* expected;
    } cases[] = {
        {"", "urn:a urn:b", "urn:a"},
        {"", "##other", ""},
        {"urn:n", "urn:a", "urn:n"},
        {"", "ab", "ab"},
        {"", "a", ""},
        {"", "a#b", ""},
        {"", "#a", ""},
        {"", "", ""},
        {nullptr, "urn:c", "urn:c"},
    };
    for (const Case& c : cases) {
        CSmartPtr<CAttributeCol> attributes(new CAttributeCol(c.namespaceUri, c.restriction, "t"));
        EXPECT_EQ(attributes->GetNamespace(), c.expected) << c.restriction;
        EXPECT_EQ(attributes->GetTargetNamespace(), c.expected) << c.restriction;
        EXPECT_EQ(attributes->GetNamespaceRestriction(), c.restriction);
    }
}

TEST(AttributeCol, AddTestsTheNamespaceExceptForAnAttributeObject) {
    CSmartPtr<CAttributeCol> attributes(new CAttributeCol("", "urn:a", ""));
    attributes->Add("one");
    attributes->Add("two", "2");
    attributes->Add("three", "3", "");
    attributes->Add(new CAttribute("four", "4", "urn:anything"));
    EXPECT_EQ(Names(*attributes), "{urn:a}one= {urn:a}two=2 {}three=3 {urn:anything}four=4 ");

    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { attributes->Add("x", "1", "urn:b"); }),
              "Invalid namespace [urn:b]. The namespace must be one of [urn:a] where the target namespace is []");
    // A list admits only a namespace equal to the whole list, so a collection that took
    // its first URI refuses to add in it.
    CSmartPtr<CAttributeCol> list(new CAttributeCol("", "urn:a urn:b", ""));
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { list->Add("x"); }),
              "Invalid namespace [urn:a]. The namespace must be one of [urn:a urn:b] where the target namespace is "
              "[]");
    CSmartPtr<CAttributeCol> local(new CAttributeCol("urn:n", "##local", ""));
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([&] { local->Add("x", "1"); }),
              "Invalid namespace [urn:n]. The namespace must be one of [##local] where the target namespace is []");
    EXPECT_EQ(list->GetCount() + local->GetCount(), 0);
    EXPECT_EQ(FailureOf<CQvInvalidParamException>([&] { attributes->Item(4); }), "Index 4 is out of range, use 0 - 4");
    EXPECT_EQ(FailureOf<CQvInvalidParamException>([&] { attributes->Add(static_cast<CAttribute*>(nullptr)); }),
              "A NULL item can not be added to the collection");
}

TEST(AttributeCol, ReadsEveryAttributeOrRefusesTheElement) {
    CXmlDocument document;
    document.LoadXml("<r xmlns:o=\"urn:o\" xmlns:t=\"urn:t\" a=\"1\" o:b=\"2\" t:c=\"3\"><x/></r>");
    CXmlElement* const root = document.GetDocumentElement();
    const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext;

    CSmartPtr<CAttributeCol> any(new CAttributeCol("", "##any", "urn:t"));
    EXPECT_EQ(CXmlObjectBase::FromXml_Int(any.Get(), root, root->GetFirstElement(), context), root->GetFirstElement());
    EXPECT_EQ(Names(*any), "{}a=1 {urn:o}b=2 {urn:t}c=3 ");

    CSmartPtr<CAttributeCol> other(new CAttributeCol("", "##other", "urn:t"));
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>(
                  [&] { CXmlObjectBase::FromXml_Int(other.Get(), root, nullptr, context); }),
              "Invalid Attribute [c]. The attributes namespace is Inappropriate.");
    // What came before the refused attribute stays.
    EXPECT_EQ(Names(*other), "{}a=1 {urn:o}b=2 ");
}

TEST(ElementCol, CollectionNamespaceMirrorsTheAttributeRule) {
    struct Case {
        const char* namespaceUri;
        const char* restriction;
        const char* collectionNamespace;
    } cases[] = {
        {"", "##any", "##any"},          {"", "##other", "##other"},  {"", "u", ""},
        {"", "urn:a urn:b", ""},         {"urn:n", "##any", "urn:n"}, {"", "#", ""},
        {nullptr, "##local", "##local"},
    };
    for (const Case& c : cases) {
        CSmartPtr<CElementCol> elements(new CElementCol(c.namespaceUri, c.restriction, "t", 0, -1));
        EXPECT_EQ(elements->GetCollectionNamespace(), c.collectionNamespace) << c.restriction;
        // Whatever is passed, items are held to "##any".
        EXPECT_EQ(elements->GetNamespaceRestriction(), "##any");
        EXPECT_EQ(elements->GetNamespace(), "t");
        EXPECT_EQ(elements->GetTargetNamespace(), "t");
    }
    EXPECT_EQ(FailureOf<CQvInvalidNamespaceException>([] { CElementCol e("urn:x", "##local", "", 0, -1); }),
              "Invalid namespace [urn:x]. The namespace must be one of [##local] where the target namespace is []");
}

TEST(ElementCol, AddNamesTheNamespaceOrNeedsTheCollections) {
    CSmartPtr<CElementCol> keyword(new CElementCol("", "##any", "", 0, -1));
    CSmartPtr<CElement> added = keyword->Add("x");
    EXPECT_EQ(added->GetNamespace(), "##any");
    EXPECT_EQ(added->GetNamespaceRestriction(), "##any");
    keyword->Add("y", "urn:y");
    keyword->Add(new CElement("z", "urn:z"));
    EXPECT_EQ(Names(*keyword), "{##any}x'' {urn:y}y'' {urn:z}z'' ");

    CSmartPtr<CElementCol> none(new CElementCol("", "u", "", 0, -1));
    EXPECT_EQ(FailureOf<CQvInvalidStateException>([&] { none->Add("x"); }),
              "A Namespace has not been set for this Collection");
    // The clone keeps the empty namespace.
    EXPECT_EQ(FailureOf<CQvInvalidStateException>([&] { none->Clone()->Add("x"); }),
              "A Namespace has not been set for this Collection");
    EXPECT_EQ(FailureOf<CQvInvalidParamException>([&] { none->Add(static_cast<CElement*>(nullptr)); }),
              "A NULL item can not be added to the collection");
}

TEST(ElementCol, OccurrenceBoundsAreIgnored) {
    CSmartPtr<CElementCol> elements(new CElementCol("urn:e", "##any", "", 2, 3));
    const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext;
    for (int count : {0, 5}) {
        while (elements->GetCount() < count)
            elements->Add("e");
        EXPECT_NO_THROW(elements->ValidateCount(context));
        EXPECT_TRUE(elements->IsValidCount(context));
    }
    EXPECT_EQ(elements->Clone()->GetCount(), 5);
}

TEST(ElementCol, ReadsAllSiblingsOrOnlyThoseOfALockedName) {
    CXmlDocument document;
    document.LoadXml("<r xmlns=\"urn:r\"><a>1</a><a>2</a><b>3</b><a xmlns=\"urn:x\">4</a></r>");
    CXmlElement* const root = document.GetDocumentElement();
    CXmlElement* const first = root->GetFirstElement();
    CXmlElement* const b = first->GetNextSiblingElement()->GetNextSiblingElement();
    const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext;

    CSmartPtr<CElementCol> all(new CElementCol("", "##any", "t", 0, -1));
    EXPECT_EQ(CXmlObjectBase::FromXml_Int(all.Get(), root, first, context), nullptr);
    EXPECT_EQ(Names(*all), "{urn:r}a'1' {urn:r}a'2' {urn:r}b'3' {urn:x}a'4' ");
    EXPECT_EQ(all->Item(0)->GetRestrictionTargetNamespace(), "t");

    CSmartPtr<CElementCol> locked(new CElementCol("", "##any", "", 0, -1));
    EXPECT_EQ(locked->FromXmlLockElementName_Int("a", "urn:r", root, first, context), b);
    EXPECT_EQ(Names(*locked), "{urn:r}a'1' {urn:r}a'2' ");
    // The namespace is compared exactly, too.
    EXPECT_EQ(locked->FromXmlLockElementName_Int("a", "urn:r", root, b->GetNextSiblingElement(), context),
              b->GetNextSiblingElement());
    EXPECT_EQ(locked->FromXmlLockElementName_Int("a", "urn:x", root, b->GetNextSiblingElement(), context), nullptr);
    EXPECT_EQ(locked->GetCount(), 3);
    EXPECT_EQ(locked->FromXmlLockElementName_Int("a", "", root, nullptr, context), nullptr);
}

TEST(ElementCol, WritesEachElement) {
    CSmartPtr<CElementCol> elements(new CElementCol("urn:e", "##any", "", 1, 1));
    EXPECT_EQ(WrittenInside(elements.Get(), CXmlSerializationContext::m_defaultContext), "<w/>");
    elements->Add("a")->SetText("1");
    elements->Add("b", "");
    EXPECT_EQ(WrittenInside(elements.Get(), CXmlSerializationContext::m_defaultContext),
              "<w><AA:a xmlns:AA=\"urn:e\">1</AA:a><b/></w>");
}
