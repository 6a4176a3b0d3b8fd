#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>

#include "binding/XmlGeneratedClass.h"
#include "binding/XmlSerializationContext.h"
#include "binding/metadata/ChoiceElementInfo.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "foundation/QvException.h"
#include "support/FamilyClasses.h"
#include "support/TestWriting.h"
#include "values/QvVariant.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using namespace QvXmlTest;

namespace {

const XmlElementType kElement = XmlElementType_Element;
const XmlElementType kPseudo = XmlElementType_Pseudo;
const CPrimitiveRestrictions kNoFacets;
const CWhitespaceUtils::WhitespaceRule kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

// C: a choice of a (i4), e (colour), Opt (a Leaf), Shape (abstract), w (untyped, from
// another namespace), pc (2 to 3 strings), ec (colours as text), Many (Leafs), Shapes
// (abstract) and rest (any elements).
struct ChoiceTables : CTableDefaults {
    enum { P_a, P_e, P_opt, P_shape, P_w, P_pc, P_ec, P_many, P_shapes, P_rest, kProperties };
    static constexpr const char* kName = "C";
    static void Construct(QvVariant* properties) {
        properties[P_pc].SetXmlCollection(new CPlainStringCol("pc", 2, 3));
        properties[P_ec].SetXmlCollection(new CPlainStringCol("ec", 1, -1));
        properties[P_many].SetXmlCollection(new CObjectCol("Many", CObjectCol::Kind_Leaf, 1, -1));
        properties[P_shapes].SetXmlCollection(new CObjectCol("Shapes", CObjectCol::Kind_Shape, 1, -1));
        properties[P_rest].SetXmlCollection(new CElementCol("", "##any", "", 0, -1));
    }
    static void Reset(QvVariant* properties) {
        for (int index : {P_opt, P_shape, P_w})
            properties[index].SetInvalid();
    }
    static void Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
        parent = MakeParent(XmlElementGroupType_Choice, kName);
        elements = MakeTable<CElementInfo>({
            new CElementInfoChoicePrimOpt("a", kNs, P_a, false, ItemType_i4, nullptr, kCollapse, kNoFacets),
            new CElementInfoChoiceEnumOpt("e", kNs, P_e, false, ColorToText, TextToColor),
            new CElementInfoChoiceClsOpt("Opt", kNs, P_opt, kElement, CreateFamilyObject, FamilyClass_Leaf),
            new CElementInfoChoiceAbsClsOpt("Shape", kNs, P_shape, kElement, CreateShape),
            new CElementInfoChoiceUntpdOpt("w", kNs, P_w, "##other", kNs),
            new CElementInfoChoicePrimCol("pc", kNs, P_pc),
            new CElementInfoChoiceEnumCol("ec", kNs, P_ec),
            new CElementInfoChoiceClsCol("Many", kNs, P_many, kElement),
            new CElementInfoChoiceAbsClsCol("Shapes", kNs, P_shapes, kElement),
            new CElementInfoChoiceUntpdCol("AnyElement", kNs, P_rest),
        });
        attributes = MakeTable<CAttributeInfo>({});
    }
};
using CChoice = CTableClass<ChoiceTables>;

// S: a strict choice, of collections with a minimum of 1 only.
template <int Minimum> struct CollectionChoiceTables : CTableDefaults {
    enum { P_pc, P_many, kProperties };
    static constexpr const char* kName = "S";
    static void Construct(QvVariant* properties) {
        properties[P_pc].SetXmlCollection(new CPlainStringCol("pc", Minimum, -1));
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
// The same with a collection of minimum 0, which lets the choice stay empty.
using CLoose = CTableClass<CollectionChoiceTables<0>>;

CSmartPtr<CXmlObjectBase> CreateStrict(int /*classId*/, const char* name) {
    CSmartPtr<CXmlObjectBase> object = new CStrict();
    object->SetElementName(name);
    return object;
}

// Outer: a choice of the strict S, or of t (string).
struct OuterTables : CTableDefaults {
    enum { P_s, P_t, kProperties };
    static constexpr const char* kName = "Outer";
    static void Reset(QvVariant* properties) { properties[P_s].SetInvalid(); }
    static void Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
        parent = MakeParent(XmlElementGroupType_Choice, kName);
        elements = MakeTable<CElementInfo>({
            new CElementInfoChoiceClsOpt("S", kNs, P_s, kElement, CreateStrict, 0),
            new CElementInfoChoicePrimOpt("t", kNs, P_t, false, ItemType_string, nullptr, kCollapse, kNoFacets),
        });
        attributes = MakeTable<CAttributeInfo>({});
    }
};
using COuter = CTableClass<OuterTables>;

std::string Read(CXmlObjectBase& object, const char* body,
                 const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) {
    return WrappedFailureOf([&] { object.FromXml(body, context); });
}

// ---------------------------------------------------------------------------------------------
// Single members at the cursor

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
    CElementInfoChoiceClsOpt leaf("Opt", kNs, 0, kElement, CreateFamilyObject, FamilyClass_Leaf);
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
    CElementInfoChoiceClsOpt group("Pair", kNs, 0, kPseudo, CreateFamilyObject, FamilyClass_Pair);
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
        host->Property(0).SetXmlCollection(new CPlainStringCol("pc", 1, 2));
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

// ---------------------------------------------------------------------------------------------
// Whole classes

TEST(ChoiceMetadata, EachMemberReadsAndWritesBackAlone) {
    const char* const xsiType = "xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"Circle\"";
    struct Row {
        int property;
        std::string body;
    };
    const Row rows[] = {
        {ChoiceTables::P_a, "<a>7</a>"},
        {ChoiceTables::P_e, "<e>blue</e>"},
        {ChoiceTables::P_opt, "<Opt><v>o</v></Opt>"},
        {ChoiceTables::P_shape, std::string("<Shape ") + xsiType + "><r>1</r></Shape>"},
        {ChoiceTables::P_w, "<AA:w xmlns:AA=\"urn:o\">u</AA:w>"},
        {ChoiceTables::P_pc, "<pc>p1</pc><pc>p2</pc>"},
        {ChoiceTables::P_ec, "<ec>red</ec><ec>green</ec>"},
        {ChoiceTables::P_many, "<Many><v>m</v></Many>"},
        {ChoiceTables::P_shapes, std::string("<Shapes ") + xsiType + "><r>2</r></Shapes>"},
        {ChoiceTables::P_rest, "<x1/><x2>v</x2>"},
    };
    for (const Row& row : rows) {
        const std::string text = "<C xmlns=\"urn:t\">" + row.body + "</C>";
        CSmartPtr<CChoice> object = new CChoice();
        EXPECT_EQ("no exception", Read(*object, text.c_str()));
        // Members tried before the chosen one are unset; an untyped one is set to null.
        for (int i = 0; i < ChoiceTables::kProperties; ++i) {
            const std::string value = Describe(object->Property(i));
            EXPECT_EQ(i == row.property, value != "none" && value != "#0" && value != "null") << row.body << " " << i;
        }
        EXPECT_EQ(text, WriteXml(*object, InT()));
    }
}

TEST(ChoiceMetadata, OnlyTheFirstMemberIsReadAndWritten) {
    CSmartPtr<CChoice> object = new CChoice();
    EXPECT_EQ("Failed to process the element [C]\nFailed read all the elements held within the element [C]. The "
              "unexpected element [e] remains un processed",
              Read(*object, "<C xmlns='urn:t'><a>1</a><e>red</e></C>"));
    object->Property(ChoiceTables::P_e).SetI4(1);
    CollectionIn<CPlainStringCol>(object->Property(ChoiceTables::P_pc))->m_values = {"p"};
    // a is the first member set; a collection below its minimum is written as it is.
    EXPECT_EQ("<C xmlns=\"urn:t\"><a>1</a></C>", WriteXml(*object, InT()));
    object->Property(ChoiceTables::P_a).SetInvalid();
    object->Property(ChoiceTables::P_e).SetInvalid();
    EXPECT_EQ("<C xmlns=\"urn:t\"><pc>p</pc></C>", WriteXml(*object, InT()));
}

TEST(ChoiceMetadata, ChoiceWithOptionalMembersMayStayEmpty) {
    CSmartPtr<CChoice> object = new CChoice();
    EXPECT_TRUE(object->DoesElementContainOptionalElements());
    EXPECT_EQ("no exception", Read(*object, "<C xmlns='urn:t'/>"));
    EXPECT_EQ("<C xmlns=\"urn:t\"/>", WriteXml(*object, InT()));

    CSmartPtr<CLoose> loose = new CLoose();
    EXPECT_TRUE(loose->DoesElementContainOptionalElements());
    EXPECT_EQ("no exception", Read(*loose, "<S xmlns='urn:t'/>"));
    EXPECT_EQ("<S xmlns=\"urn:t\"/>", WriteXml(*loose, InT()));
}

TEST(ChoiceMetadata, ChoiceOfCollectionsWithAMinimumIsStrictUnlessChosen) {
    CSmartPtr<CStrict> strict = new CStrict();
    EXPECT_FALSE(strict->DoesElementContainOptionalElements());
    EXPECT_EQ("Failed to process the element [S]\nNo child elements within the element [S] were populated. The "
              "element represents a choice, so one and only one element should be populated. The element contained "
              "no sutable child elements",
              Read(*strict, "<S xmlns='urn:t'/>"));
    EXPECT_EQ("Failed to convert the element [S] to XML\nThis element is a choice, and as such must have at one (and "
              "only one) valid item, currently there are none set",
              WrappedFailureOf([&] { WriteXml(*strict, InT()); }));

    // Chosen as member of another choice, it reads and writes empty.
    CSmartPtr<COuter> outer = new COuter();
    EXPECT_EQ("no exception", Read(*outer, "<Outer xmlns='urn:t'><S/></Outer>"));
    EXPECT_EQ("<S>", Describe(outer->Property(OuterTables::P_s)));
    EXPECT_EQ("<Outer xmlns=\"urn:t\"><S/></Outer>", WriteXml(*outer, InT()));
}

} // namespace
