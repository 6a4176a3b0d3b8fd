#include <functional>
#include <sstream>

#include "binding/metadata/ChoiceElementInfo.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using namespace QvXmlTest;

namespace {

// S: a choice of collections only, strict with a minimum of 1, loose with a minimum of 0.
template <int Minimum> struct CollectionChoiceTables : CTableDefaults {
    enum { P_pc, P_many, kProperties };
    static constexpr const char* kName = "S";
    static void Construct(QvVariant* properties) {
        properties[P_pc].SetXmlCollection(new CStringCol("pc", Minimum, -1));
        properties[P_many].SetXmlCollection(new CObjectCol("Many", CObjectCol::Kind_Leaf, 1, -1));
    }
    static void Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
        parent = MakeParent(XmlElementGroupType_Choice, kName);
        elements = MakeTable<CElementInfo>({
            new CElementInfoChoicePrimCol("pc", kNs, P_pc),
            new CElementInfoChoiceClsCol("Many", kNs, P_many, kElement),
        });
        attributes = MakeTable<CAttributeInfo>({});
    }
};
using CStrict = CTableClass<CollectionChoiceTables<1>>;
using CLoose = CTableClass<CollectionChoiceTables<0>>;
CSmartPtr<CXmlObjectBase> CreateStrict(int /*classId*/, const char* name) {
    CSmartPtr<CXmlObjectBase> object = new CStrict();
    object->SetElementName(name);
    return object;
}

TEST(ChoiceMetadata, ValuesAreChosenWhenTheirElementStandsAtTheCursor) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoChoicePrimOpt prim("a", kNs, 0, false, ItemType_i4, nullptr, kCollapse, kNoFacets);
    CElementInfoChoiceEnumOpt color("e", kNs, 1, true, ColorToText, TextToColor);
    for (XmlElementType type : {kElement, kPseudo}) {
        EXPECT_EQ((COffer{false, "x"}), Offer(prim, *host, "<x/><a>1</a>", type, IgnoringUnknown()));
        EXPECT_EQ((COffer{false, "null"}), Offer(color, *host, "", type));
    }
    EXPECT_EQ("none", Describe(host->Property(0)));
    EXPECT_EQ((COffer{true, "x"}), Offer(prim, *host, "<a>5</a><x/>", kElement));
    EXPECT_EQ((COffer{true, "null"}), Offer(color, *host, "<e xsi:nil='1'/>", kPseudo));
    EXPECT_EQ("5", Describe(host->Property(0)));
    EXPECT_EQ("nil", Describe(host->Property(1)));
}

TEST(ChoiceMetadata, ChildIsStoredBeforeItIsReadAndReadAsAChoiceMember) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoChoiceClsOpt leaf("Opt", kNs, 0, kElement, CreateTestObject, ClassId_Leaf);
    EXPECT_EQ((COffer{false, "x"}), Offer(leaf, *host, "<x/>", kElement));
    EXPECT_EQ("none", Describe(host->Property(0)));
    EXPECT_EQ((COffer{true, "x"}), Offer(leaf, *host, "<Opt><v>o</v></Opt><x/>", kElement));
    EXPECT_EQ("o", Describe(ObjectIn<CLeaf>(host->Property(0))->Property(LeafTables::P_v)));
    // A child that fails is in the property already.
    host->Property(0).SetInvalid();
    EXPECT_EQ("Failed to process the element [Opt]\nFailed to find a required element [v]",
              FailureOf([&] { Offer(leaf, *host, "<Opt/>", kElement); }));
    EXPECT_EQ("<Opt>", Describe(host->Property(0)));

    // A strict choice read as the chosen member may stay empty.
    CElementInfoChoiceClsOpt strict("S", kNs, 1, kElement, CreateStrict, 0);
    EXPECT_EQ((COffer{true, "null"}), Offer(strict, *host, "<S/>", kElement));
    EXPECT_EQ("<S>", Describe(host->Property(1)));
}

TEST(ChoiceMetadata, PseudoChildThatReadsNothingLeavesItsPropertyNull) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoChoiceClsOpt group("Pair", kNs, 0, kPseudo, CreateTestObject, ClassId_Pair);
    host->Property(0).SetXmlObject(new CLeaf());
    EXPECT_EQ((COffer{false, "null"}), Offer(group, *host, "", kElement));
    EXPECT_EQ("<Leaf>", Describe(host->Property(0)));
    for (XmlElementType type : {kElement, kPseudo}) {
        host->Property(0).SetXmlObject(new CLeaf());
        EXPECT_EQ((COffer{false, "z"}), Offer(group, *host, "<z/><x>1</x>", type));
        EXPECT_EQ("null", Describe(host->Property(0)));
    }
    EXPECT_EQ((COffer{true, "z"}), Offer(group, *host, "<x>1</x><z/>", kElement));
    EXPECT_EQ("1", Describe(ObjectIn<CPair>(host->Property(0))->Property(PairTables::P_x)));
}

TEST(ChoiceMetadata, AbstractChildStoresWhatTheFactoryGivesNullIncluded) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoChoiceAbsClsOpt shape("Shape", kNs, 0, kElement, CreateShape);
    host->Property(0).SetXmlObject(new CLeaf());
    EXPECT_EQ((COffer{false, "x"}), Offer(shape, *host, "<x/>", kElement));
    EXPECT_EQ("<Leaf>", Describe(host->Property(0)));
    EXPECT_EQ((COffer{false, "Shape"}), Offer(shape, *host, "<Shape xsi:type='Square'/>", kElement));
    EXPECT_EQ("null", Describe(host->Property(0)));
    EXPECT_EQ((COffer{true, "null"}), Offer(shape, *host, "<Shape xsi:type='Circle'><r>9</r></Shape>", kPseudo));
    EXPECT_EQ("9", Describe(ObjectIn<CCircle>(host->Property(0))->Property(CircleTables::P_r)));
}

TEST(ChoiceMetadata, UntypedChildIsChosenWhenItsNamespaceFits) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoChoiceUntpdOpt other("AnyElement", kNs, 0, "##other", kNs);
    CElementInfoChoiceUntpdOpt named("w", kNs, 0, "##any", kNs);
    host->Property(0).SetXmlObject(new CLeaf());
    EXPECT_EQ((COffer{false, "null"}), Offer(other, *host, "", kElement));
    EXPECT_EQ("<Leaf>", Describe(host->Property(0)));
    EXPECT_EQ((COffer{false, "foo"}), Offer(other, *host, "<foo/>", kElement));
    EXPECT_EQ("null", Describe(host->Property(0)));
    EXPECT_EQ((COffer{true, "null"}), Offer(other, *host, "<foo xmlns='urn:o'>t</foo>", kElement));
    EXPECT_EQ("t", ObjectIn<CElement>(host->Property(0))->GetText());
    EXPECT_EQ((COffer{false, "foo"}), Offer(named, *host, "<foo/>", kElement));
    EXPECT_EQ("null", Describe(host->Property(0)));
}

TEST(ChoiceMetadata, CollectionIsChosenWhenItTakesSomething) {
    struct Row {
        const char* children;
        XmlElementType type;
        const char* result; // the offer and the count, or the failure
    };
    const Row rows[] = {
        {"<x/>", kElement, "false at x, #0"},
        {"<pc>a</pc><x/>", kElement, "true at x, #1"},
        {"<pc/><pc/><pc/>", kElement, "The Maximum number of [pc] elements allowed in this collection is 2"},
        // In a pseudo element an invalid count is no choice; the items stay.
        {"<pc/><pc/><pc/>", kPseudo, "false at pc, #3"},
        {"<pc/><pc/>", kPseudo, "true at null, #2"},
    };
    for (const Row& row : rows) {
        CSmartPtr<CHost> host = new CHost();
        host->Property(0).SetXmlCollection(new CStringCol("pc", 1, 2));
        CElementInfoChoicePrimCol info("pc", kNs, 0);
        std::string result;
        const std::string failure = FailureOf([&] {
            std::ostringstream offer;
            offer << Offer(info, *host, row.children, row.type) << ", " << Describe(host->Property(0));
            result = offer.str();
        });
        EXPECT_EQ(row.result, failure == "no exception" ? result : failure) << row.children;
    }
}

TEST(ChoiceMetadata, UntypedCollectionUnderAFixedNameNeedsAnElementAtTheCursor) {
    struct Row {
        const char* name;
        const char* children;
        const char* result;
    };
    const Row rows[] = {
        {"AnyElement", "<a/><b/>", "true at null, #2"},
        {"AnyElement", "", "false at null, #0"},
        {"a", "", "false at null, #0"},
        {"a", "<b/>", "false at b, #0"},
        {"a", "<a/><a xmlns='urn:o'/>", "true at a, #1"},
    };
    for (const Row& row : rows) {
        CSmartPtr<CHost> host = new CHost();
        host->Property(0).SetXmlCollection(new CElementCol("", "##any", "", 3, 4));
        CElementInfoChoiceUntpdCol info(row.name, kNs, 0);
        std::ostringstream result;
        result << Offer(info, *host, row.children, kElement) << ", " << Describe(host->Property(0));
        EXPECT_EQ(row.result, result.str()) << row.name << row.children;
    }
}

TEST(ChoiceMetadata, ValidateIsNeverToBeCalled) {
    const CElementInfoChoicePrimCol info("pc", kNs, 0);
    EXPECT_EQ("Not implemented, should never be called",
              FailureOf([&] { info.Validate(CXmlSerializationContext::m_defaultContext, nullptr, false, true); }));
}

// A choice may stay empty when a member is optional or a collection of minimum 0;
// otherwise it fails on reading and on writing.
TEST(ChoiceMetadata, WhenAChoiceMayStayEmpty) {
    CSmartPtr<CChooser> optional = new CChooser();
    CSmartPtr<CLoose> loose = new CLoose();
    CSmartPtr<CStrict> strict = new CStrict();
    EXPECT_TRUE(optional->DoesElementContainOptionalElements());
    EXPECT_TRUE(loose->DoesElementContainOptionalElements());
    EXPECT_FALSE(strict->DoesElementContainOptionalElements());
    EXPECT_EQ("no exception", WrappedFailureOf([&] { optional->FromXml("<Ch xmlns='urn:t'/>"); }));
    EXPECT_EQ("<Ch xmlns=\"urn:t\"/>", WriteXml(*optional, InT()));
    EXPECT_EQ("no exception", WrappedFailureOf([&] { loose->FromXml("<S xmlns='urn:t'/>"); }));
    EXPECT_EQ("<S xmlns=\"urn:t\"/>", WriteXml(*loose, InT()));
    EXPECT_EQ("Failed to process the element [S]\nNo child elements within the element [S] were populated. The "
              "element represents a choice, so one and only one element should be populated. The element contained "
              "no sutable child elements",
              WrappedFailureOf([&] { strict->FromXml("<S xmlns='urn:t'/>"); }));
    EXPECT_EQ("Failed to convert the element [S] to XML\nThis element is a choice, and as such must have at one (and "
              "only one) valid item, currently there are none set",
              WrappedFailureOf([&] { WriteXml(*strict, InT()); }));
}

} // namespace
