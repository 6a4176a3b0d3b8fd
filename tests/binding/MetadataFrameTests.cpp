
#include "binding/metadata/AttributeInfo.h"
#include "binding/metadata/AttributeInfoKinds.h"
#include "binding/metadata/ElementInfo.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "document/XmlDocument.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using namespace QvXmlTest;

namespace {

CPrimitiveRestrictions AtMost(const char* bound) {
    return CPrimitiveRestrictions(nullptr, -1, -1, nullptr, bound, nullptr, nullptr, -1);
}

// A host object whose property 0 the metadata under test reads and writes.
struct Host {
    CSeqAB object;
    QvVariant& value = object.Property(0);
    CRecordingWriter writer;
    CXmlSerializationContext context;
};

TEST(ElementInfo, IsThisElementMatchesNameExactlyAndNamespaceUnlessIgnored) {
    CXmlDocument document;
    document.LoadXml("<r xmlns='urn:t'><a/><A/><a xmlns='urn:x'/></r>");
    CXmlElement* const a = document.GetDocumentElement()->GetFirstElement();
    CXmlElement* const upper = a->GetNextSiblingElement();
    CXmlElement* const other = upper->GetNextSiblingElement();
    const CElementInfoSeqPrimMnd info("a", kNs, 0, false, ItemType_string, nullptr, kCollapse, kNoFacets);
    CXmlSerializationContext context;
    EXPECT_TRUE(info.IsThisElement(context, a));
    EXPECT_FALSE(info.IsThisElement(context, upper));
    EXPECT_FALSE(info.IsThisElement(context, other));
    EXPECT_FALSE(info.IsThisElement(context, nullptr));
    context.SetIgnoreNamespaces(true);
    EXPECT_TRUE(info.IsThisElement(context, other));
    EXPECT_FALSE(info.IsThisElement(context, upper));
    CXmlSerializationContext noNamespaces;
    noNamespaces.SetSchemaType(SchemaType_NoNamespaces);
    EXPECT_TRUE(info.IsThisElement(noNamespaces, other));
}

TEST(ElementInfo, PrimitiveIsWrittenCheckedWithItsFormat) {
    Host host;
    const CElementInfoSeqPrimMnd info("v", "urn:v", 0, true, ItemType_r8, "%.2f", kCollapse, AtMost("2"));
    EXPECT_FALSE(info.ElementToXmlPrim(host.context, &host.object, &host.writer));
    EXPECT_EQ("", host.writer.m_log);

    host.value.SetR8(1.5);
    EXPECT_TRUE(info.ElementToXmlPrim(host.context, &host.object, &host.writer));
    EXPECT_EQ("<v{urn:v} \"1.50\" />", host.writer.m_log);

    // A facet that fails throws before anything is written.
    host.writer.m_log.clear();
    host.value.SetR8(2.5);
    EXPECT_EQ("Invalid Value for v [2.500000]",
              FailureOf([&] { info.ElementToXmlPrim(host.context, &host.object, &host.writer); }));
    EXPECT_EQ("", host.writer.m_log);

    // Nil is written without a facet check.
    host.value.SetNil();
    EXPECT_TRUE(info.ElementToXmlPrim(host.context, &host.object, &host.writer));
    EXPECT_EQ("<v{urn:v} @nil />", host.writer.m_log);
}

const char* DayName(int value) { return value == 1 ? "Monday" : "Other"; }

TEST(ElementInfo, EnumerationIsWrittenAsItsText) {
    Host host;
    const CElementInfoSeqPrimMnd info("d", "", 0, false, ItemType_i4, nullptr, kCollapse, AtMost("0"));
    EXPECT_FALSE(info.ElementToXmlEnum(host.context, &host.object, &host.writer, DayName));
    host.value.SetI4(1);
    // No facet is checked for an enumeration.
    EXPECT_TRUE(info.ElementToXmlEnum(host.context, &host.object, &host.writer, DayName));
    host.value.SetNil();
    EXPECT_TRUE(info.ElementToXmlEnum(host.context, &host.object, &host.writer, DayName));
    EXPECT_EQ("<d{} \"Monday\" /> <d{} @nil />", host.writer.m_log);
}

TEST(ElementInfo, ChildObjectIsWrittenUnderItsOwnNameInTheMetadatasNamespace) {
    Host host;
    const CElementInfoSeqClsOpt info("Child", "urn:m", 0, XmlElementType_Element, CreateTestObject,
                                     ClassId_InnerChoice);
    EXPECT_FALSE(info.ElementToXmlCls(host.context, &host.object, &host.writer, false));
    host.value.SetXmlObject(nullptr);
    EXPECT_FALSE(info.ElementToXmlCls(host.context, &host.object, &host.writer, false));
    EXPECT_EQ("", host.writer.m_log);

    CSmartPtr<CInnerChoice> inner = new CInnerChoice();
    host.value.SetXmlObject(inner);
    // The choice flag reaches the child: its empty choice is no error then.
    EXPECT_TRUE(info.ElementToXmlCls(host.context, &host.object, &host.writer, true));
    EXPECT_EQ("<Inner{urn:m} />", host.writer.m_log);
    EXPECT_EQ("Failed to convert the element [Inner] to XML\nThis element is a choice, and as such must have at one "
              "(and only one) valid item, currently there are none set",
              FailureOf([&] { info.ElementToXmlCls(host.context, &host.object, &host.writer, false); }));
}

TEST(ElementInfo, CollectionIsWrittenWhenItHasItems) {
    Host host;
    const CElementInfoSeqPrimCol info("tag", "urn:m", 0);
    CSmartPtr<CStringCol> tags = new CStringCol("tag", 0, -1, true, "urn:c");
    host.value.SetXmlCollection(tags);
    EXPECT_FALSE(info.ElementToXmlCol(host.context, &host.object, &host.writer));
    tags->AddFromString("x");
    EXPECT_TRUE(info.ElementToXmlCol(host.context, &host.object, &host.writer));
    EXPECT_EQ("<tag{urn:c} \"x\" />", host.writer.m_log);
    host.value.SetXmlCollection(nullptr);
    EXPECT_FALSE(info.ElementToXmlCol(host.context, &host.object, &host.writer));
}

TEST(ElementInfo, CheckRestrictionNeedsPrimitiveInformation) {
    const CElementInfoSeqPrimMnd primitive("v", "", 0, false, ItemType_i4, nullptr, kCollapse, AtMost("3"));
    QvVariant value;
    value.SetI4(3);
    EXPECT_NO_THROW(primitive.CheckRestriction(value));
    value.SetI4(4);
    // A failed facet is a plain CQvException, not a validation exception.
    try {
        primitive.CheckRestriction(value);
        ADD_FAILURE() << "no exception";
    } catch (const CQvException& e) {
        EXPECT_EQ(typeid(CQvException), typeid(e));
        EXPECT_EQ("Invalid Value for v [4]", e.GetFullMessage());
    }
    const CElementInfoSeqPrimCol collection("c", "", 0);
    try {
        collection.CheckRestriction(value);
        ADD_FAILURE() << "no exception";
    } catch (const CQvException& e) {
        EXPECT_EQ(typeid(CQvException), typeid(e));
        EXPECT_EQ("Cannot CheckRestriction for type: i4", e.GetFullMessage());
    }
}

TEST(ElementInfo, AnyDefaultNamespaceByRestriction) {
    struct Case {
        const char* restriction;
        const char* enclosing;
        const char* expected;
    };
    const Case cases[] = {
        {"##any", "n", "n"},
        {"##other", "n", ""},
        {"##other", "", "DefaultNamespace"},
        {"##local", "n", ""},
        {"##targetNamespace", "n", "t"},
        {"##targetNamespace urn:a", "n", "t"},
        {"##any ##local", "n", "n"},
        {"##other urn:a", "", "DefaultNamespace"},
        {"## x", "n", ""},
        {"urn:a urn:b", "n", ""},
        {"urn:a", "n", ""},
        {"", "n", ""},
        {"##anything", "n", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.expected, CElementInfo::GetAnyDefaultNamespace(c.restriction, c.enclosing, "t")) << c.restriction;
    EXPECT_EQ("", CElementInfo::GetAnyDefaultNamespace(nullptr, "n", "t"));
}

TEST(AttributeInfo, IsThisAttributeMatchesNameExactlyAndNamespaceUnlessIgnored) {
    CXmlDocument document;
    document.LoadXml("<r xmlns:p='urn:p' a='1' p:a='2' A='3'/>");
    const auto& attributes = document.GetDocumentElement()->GetAttributes();
    auto find = [&](const char* name, const char* namespaceUri) -> CXmlAttribute* {
        for (const auto& attribute : attributes)
            if (attribute->GetLocalName() == name && attribute->GetNamespaceURI() == namespaceUri)
                return attribute.get();
        return nullptr;
    };
    const CAttributeInfoPrimitive info("a", "", 0, true, ItemType_string, nullptr, kCollapse, kNoFacets, nullptr);
    CXmlSerializationContext context;
    EXPECT_TRUE(info.IsThisAttribute(context, find("a", "")));
    EXPECT_FALSE(info.IsThisAttribute(context, find("a", "urn:p")));
    EXPECT_FALSE(info.IsThisAttribute(context, find("A", "")));
    EXPECT_FALSE(info.IsThisAttribute(context, nullptr));
    context.SetIgnoreNamespaces(true);
    EXPECT_TRUE(info.IsThisAttribute(context, find("a", "urn:p")));
    EXPECT_TRUE(CAttributeInfo::IsNamespaceValid("urn:x", "urn:x", ""));
    EXPECT_EQ("Invalid namespace [urn:y]. The namespace must be one of [##local] where the target namespace is []",
              FailureOf([] { CAttributeInfo::TestNamespace("urn:y", "##local", ""); }));
}

TEST(GeneratedClass, TableQueries) {
    CSeqAB seq;
    EXPECT_EQ(2, seq.GetClassElementInfoCount());
    CEmpty empty;
    EXPECT_EQ(0, empty.GetClassElementInfoCount());
    EXPECT_FALSE(empty.DoesElementContainOptionalElements());
    CChoiceAB choice;
    EXPECT_FALSE(choice.DoesElementContainOptionalElements());

    CXmlDocument document;
    document.LoadXml("<r xmlns='urn:t'><b/><c/></r>");
    CXmlElement* const b = document.GetDocumentElement()->GetFirstElement();
    CXmlSerializationContext context;
    EXPECT_TRUE(seq.IsElementInList(context, b));
    EXPECT_FALSE(seq.IsElementInList(context, b->GetNextSiblingElement()));
    EXPECT_FALSE(empty.IsElementInList(context, b));

    QvVariant value;
    seq.Property(CSeqAB::P_b).SetI4(9);
    static_cast<const CSeqAB&>(seq).ReadProperty(CSeqAB::P_b, value);
    EXPECT_EQ(9, value.GetI4());
}

} // namespace
