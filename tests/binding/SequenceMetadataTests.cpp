#include <functional>
#include <sstream>

#include "binding/metadata/SequenceElementInfo.h"
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using namespace QvXmlTest;

namespace {

TEST(SequenceMetadata, MandatoryValuesSeekTheirElementAsTheSettingsSay) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoSeqPrimMnd prim("p", kNs, 0, false, ItemType_i4, nullptr, kCollapse, kNoFacets);
    CElementInfoSeqEnumMnd color("e", kNs, 0, false, ColorToText, TextToColor);
    struct Row {
        CElementInfo* info;
        const char* children;
        XmlElementType type;
        CXmlSerializationContext context;
        COffer offer;
        const char* property;
    };
    const Row rows[] = {
        {&prim, "<p>5</p><q/>", kElement, CXmlSerializationContext(), {true, "q"}, "5"},
        {&prim, "<x/><y/><p>5</p>", kElement, IgnoringUnknown(), {true, "null"}, "5"},
        {&prim, "<x/><p>5</p>", kElement, IgnoringMissing(), {true, "x"}, "none"},
        {&prim, "", kElement, IgnoringMissing(), {true, "null"}, "none"},
        {&prim, "<x/><p>5</p>", kPseudo, IgnoringUnknown(), {true, "null"}, "5"},
        {&prim, "<x/><p>5</p>", kPseudo, CXmlSerializationContext(), {false, "x"}, "none"},
        {&prim, "", kPseudo, IgnoringMissing(), {false, "null"}, "none"},
        {&color, "<x/><e>blue</e>", kElement, IgnoringUnknown(), {true, "null"}, "2"},
        {&color, "", kElement, IgnoringMissing(), {true, "null"}, "none"},
        // A pseudo element does not pass over unknown elements for an enumeration.
        {&color, "<x/><e>blue</e>", kPseudo, IgnoringUnknown(), {false, "x"}, "none"},
        {&color, "<e>green</e>", kPseudo, CXmlSerializationContext(), {true, "null"}, "1"},
    };
    for (const Row& row : rows) {
        host->Property(0).SetInvalid();
        EXPECT_EQ(row.offer, Offer(*row.info, *host, row.children, row.type, row.context)) << row.children;
        EXPECT_EQ(row.property, Describe(host->Property(0))) << row.children;
    }
    EXPECT_EQ("Failed to find a required element [p]",
              FailureOf([&] { Offer(prim, *host, "<x/><p>5</p>", kElement); }));
    EXPECT_EQ("Failed to find a required element [p]",
              FailureOf([&] { Offer(prim, *host, "<x/>", kElement, IgnoringUnknown()); }));
    EXPECT_EQ("Failed to find a required element [e]", FailureOf([&] { Offer(color, *host, "", kElement); }));
}

TEST(SequenceMetadata, OptionalValuesReadOnlyWhatStandsAtTheCursor) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoSeqPrimOpt prim("o", kNs, 0, false, ItemType_string, nullptr, kCollapse, kNoFacets);
    CElementInfoSeqEnumOpt color("f", kNs, 1, false, ColorToText, TextToColor);
    for (XmlElementType type : {kElement, kPseudo}) {
        EXPECT_EQ((COffer{true, "x"}), Offer(prim, *host, "<x/><o/>", type, IgnoringUnknown()));
        EXPECT_EQ((COffer{true, "x"}), Offer(color, *host, "<x/><f>red</f>", type, IgnoringUnknown()));
        EXPECT_EQ("none", Describe(host->Property(0)));
        EXPECT_EQ("none", Describe(host->Property(1)));
    }
    EXPECT_EQ((COffer{true, "x"}), Offer(prim, *host, "<o> a  b </o><x/>", kElement));
    EXPECT_EQ((COffer{true, "null"}), Offer(color, *host, "<f>green</f>", kElement));
    EXPECT_EQ("a b", Describe(host->Property(0)));
    EXPECT_EQ("1", Describe(host->Property(1)));
}

TEST(SequenceMetadata, NilTestIgnoresCaseAndTheTextOfANilElement) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoSeqPrimMnd nillable("p", kNs, 0, true, ItemType_i4, nullptr, kCollapse, kNoFacets);
    CElementInfoSeqPrimMnd plain("p", kNs, 0, false, ItemType_i4, nullptr, kCollapse, kNoFacets);
    CElementInfoSeqEnumOpt color("p", kNs, 0, true, ColorToText, TextToColor);
    struct Row {
        CElementInfo* info;
        const char* children;
        const char* result; // the property, or the failure
    };
    const Row rows[] = {
        {&nillable, "<p xsi:nil='true'>junk</p>", "nil"},
        {&nillable, "<p xsi:nil='TRUE'/>", "nil"},
        {&nillable, "<p xsi:nil='1'/>", "nil"},
        {&nillable, "<p xsi:nil='False'>4</p>", "4"},
        {&nillable, "<p xsi:nil='0'>4</p>", "4"},
        {&nillable, "<p nil='true'>4</p>", "4"},
        {&nillable, "<p xsi:nil='yes'>4</p>", "Unexpected Value [yes] for 'nil' Attribute found."},
        {&plain, "<p xsi:nil='false'>4</p>", "4"},
        {&plain, "<p xsi:nil='true'/>", "Invalid use of 'nil' attibute in non-nillable element [p]"},
        {&plain, "<p xsi:nil='yes'/>", "Invalid use of 'nil' attibute in non-nillable element [p]"},
        {&color, "<p xsi:nil='true'>junk</p>", "nil"},
        {&color, "<p>blue</p>", "2"},
    };
    for (const Row& row : rows) {
        host->Property(0).SetInvalid();
        const std::string failure = FailureOf([&] { Offer(*row.info, *host, row.children, kElement); });
        EXPECT_EQ(row.result, failure == "no exception" ? Describe(host->Property(0)) : failure) << row.children;
    }
}

TEST(SequenceMetadata, MandatoryChildWithItsOwnTagIsReadIntoTheExistingObject) {
    CSmartPtr<CHost> host = new CHost();
    CLeaf* const leaf = new CLeaf();
    host->Property(0).SetXmlObject(leaf);
    leaf->Property(LeafTables::P_v).SetString("old");
    CElementInfoSeqClsMnd info("Leaf", kNs, 0, kElement, nullptr, 0, false);
    EXPECT_EQ((COffer{true, "x"}), Offer(info, *host, "<Leaf><v>new</v></Leaf><x/>", kElement));
    EXPECT_EQ("new", Describe(leaf->Property(LeafTables::P_v)));
    EXPECT_EQ((COffer{true, "null"}), Offer(info, *host, "<x/><Leaf><v>x</v></Leaf>", kElement, IgnoringUnknown()));
    leaf->Property(LeafTables::P_v).SetString("old");
    EXPECT_EQ((COffer{true, "x"}), Offer(info, *host, "<x/>", kElement, IgnoringMissing()));
    EXPECT_EQ("old", Describe(leaf->Property(LeafTables::P_v)));
    EXPECT_EQ((COffer{false, "x"}), Offer(info, *host, "<x/><Leaf/>", kPseudo, IgnoringUnknown()));
    EXPECT_EQ("Failed to find a required element [Leaf]", FailureOf([&] { Offer(info, *host, "<x/>", kElement); }));
    EXPECT_EQ(leaf, host->Property(0).GetXmlObject().Get());
}

TEST(SequenceMetadata, MandatoryPseudoChildAnswersByWhetherItTookSomething) {
    CSmartPtr<CHost> host = new CHost();
    CPair* const pair = new CPair();
    host->Property(0).SetXmlObject(pair);
    CElementInfoSeqClsMnd required("Pair", kNs, 0, kPseudo, nullptr, 0, true);
    CElementInfoSeqClsMnd loose("Pair", kNs, 0, kPseudo, nullptr, 0, false);
    struct Row {
        CElementInfo* info;
        const char* children;
        XmlElementType type;
        CXmlSerializationContext context;
        COffer offer;
    };
    const Row rows[] = {
        {&required, "<x>1</x><z/>", kElement, CXmlSerializationContext(), {true, "z"}},
        {&required, "", kPseudo, CXmlSerializationContext(), {false, "null"}},
        {&required, "<z/>", kPseudo, CXmlSerializationContext(), {false, "z"}},
        {&required, "<x>1</x>", kPseudo, CXmlSerializationContext(), {true, "null"}},
        {&loose, "<z/>", kElement, CXmlSerializationContext(), {true, "z"}},
        {&loose, "", kElement, IgnoringUnknown(), {true, "null"}},
        // Only here may the walk pass over the element the group did not take.
        {&loose, "<z/>", kElement, IgnoringUnknown(), {false, "z"}},
        {&loose, "<z/>", kPseudo, IgnoringUnknown(), {true, "z"}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.offer, Offer(*row.info, *host, row.children, row.type, row.context)) << row.children;
    EXPECT_EQ("Failed to find a required element [Pair]", FailureOf([&] { Offer(required, *host, "", kElement); }));
    EXPECT_EQ("Failed to find a required element [Pair]", FailureOf([&] { Offer(required, *host, "<z/>", kElement); }));
}

TEST(SequenceMetadata, OptionalChildIsCreatedOnlyWhenItsElementOrGroupIsThere) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoSeqClsOpt own("Opt", kNs, 0, kElement, CreateTestObject, ClassId_Leaf);
    CElementInfoSeqClsOpt group("Pair", kNs, 1, kPseudo, CreateTestObject, ClassId_Pair);
    EXPECT_EQ((COffer{true, "x"}), Offer(own, *host, "<x/><Opt/>", kElement, IgnoringUnknown()));
    EXPECT_EQ((COffer{true, "null"}), Offer(group, *host, "", kElement));
    EXPECT_EQ((COffer{true, "z"}), Offer(group, *host, "<z/>", kElement));
    EXPECT_EQ("none", Describe(host->Property(0)));
    EXPECT_EQ("none", Describe(host->Property(1)));

    EXPECT_EQ((COffer{true, "x"}), Offer(own, *host, "<Opt><v>b</v></Opt><x/>", kElement));
    EXPECT_EQ((COffer{true, "z"}), Offer(group, *host, "<x>1</x><y>2</y><z/>", kPseudo));
    EXPECT_EQ("<Opt>", Describe(host->Property(0)));
    EXPECT_EQ("b", Describe(ObjectIn<CLeaf>(host->Property(0))->Property(LeafTables::P_v)));
    EXPECT_EQ("2", Describe(ObjectIn<CPair>(host->Property(1))->Property(PairTables::P_y)));

    CElementInfoSeqClsOpt uncreatable("Opt", kNs, 0, kElement, CreateTestObject, ClassId_None);
    EXPECT_EQ("The class 99 of the element [Opt] could not be created",
              FailureOf([&] { Offer(uncreatable, *host, "<Opt/>", kElement); }));
}

TEST(SequenceMetadata, AbstractChildIsMadeFromTheElementAndIgnoresTheSettings) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoSeqAbsClsMnd mandatory("Shape", kNs, 0, kElement, CreateShape);
    CElementInfoSeqAbsClsOpt optional("Shape", kNs, 1, kElement, CreateShape);
    const char* const circle = "<Shape xsi:type='Circle'><r>3</r></Shape><x/>";
    for (CElementInfo* info : {static_cast<CElementInfo*>(&mandatory), static_cast<CElementInfo*>(&optional)}) {
        EXPECT_EQ((COffer{true, "x"}), Offer(*info, *host, circle, kElement));
        EXPECT_EQ((COffer{true, "x"}), Offer(*info, *host, circle, kPseudo));
    }
    EXPECT_EQ("<Shape>", Describe(host->Property(0)));
    EXPECT_EQ("3", Describe(ObjectIn<CCircle>(host->Property(1))->Property(CircleTables::P_r)));

    host->Property(1).SetInvalid();
    EXPECT_EQ((COffer{true, "Shape"}), Offer(optional, *host, "<Shape xsi:type='Square'/>", kElement));
    EXPECT_EQ((COffer{true, "x"}), Offer(optional, *host, "<x/>", kElement));
    EXPECT_EQ("none", Describe(host->Property(1)));
    EXPECT_EQ((COffer{false, "Shape"}), Offer(mandatory, *host, "<Shape/>", kPseudo));
    EXPECT_EQ((COffer{false, "x"}), Offer(mandatory, *host, "<x/><Shape/>", kPseudo, IgnoringUnknown()));
    for (const CXmlSerializationContext& context : {IgnoringUnknown(), IgnoringMissing()}) {
        for (const char* children : {"<Shape/>", "<x/><Shape xsi:type='Circle'><r>3</r></Shape>", ""}) {
            EXPECT_EQ("Failed to find a suitable substitution element for [Shape]",
                      FailureOf([&] { Offer(mandatory, *host, children, kElement, context); }));
        }
    }
}

TEST(SequenceMetadata, CollectionReadsItsElementsAndChecksTheCount) {
    struct Row {
        const char* children;
        XmlElementType type;
        CXmlSerializationContext context;
        const char* result; // the offer and the count, or the failure
    };
    const Row rows[] = {
        {"<pc>a</pc><pc>b</pc><x/>", kElement, CXmlSerializationContext(), "true at x, #2"},
        {"<pc>a</pc><pc>b</pc><pc>c</pc>", kElement, CXmlSerializationContext(),
         "The Maximum number of [pc] elements allowed in this collection is 2"},
        {"<x/>", kElement, CXmlSerializationContext(),
         "The Minimum number of [pc] elements allowed in this collection is 1"},
        {"<x/>", kElement, IgnoringCounts(), "true at x, #0"},
        {"<pc>a</pc><pc>b</pc><pc>c</pc>", kPseudo, CXmlSerializationContext(), "false at null, #3"},
        {"<x/>", kPseudo, CXmlSerializationContext(), "false at x, #0"},
        {"<pc>a</pc>", kPseudo, CXmlSerializationContext(), "true at null, #1"},
    };
    for (const Row& row : rows) {
        CSmartPtr<CHost> host = new CHost();
        host->Property(0).SetXmlCollection(new CStringCol("pc", 1, 2));
        CElementInfoSeqPrimCol info("pc", kNs, 0);
        std::string result;
        const std::string failure = FailureOf([&] {
            std::ostringstream offer;
            offer << Offer(info, *host, row.children, row.type, row.context) << ", " << Describe(host->Property(0));
            result = offer.str();
        });
        EXPECT_EQ(row.result, failure == "no exception" ? result : failure) << row.children;
    }
}

TEST(SequenceMetadata, UntypedMembersTakeAnyNameOrTheirOwn) {
    CSmartPtr<CHost> host = new CHost();
    CElement* const existing = new CElement("any", "", "##any", "");
    host->Property(0).SetXmlObject(existing);
    CElementInfoSeqUntpdMnd any("AnyElement", kNs, 0, "##any", "");
    CElementInfoSeqUntpdMnd named("w", kNs, 0, "##any", "");
    EXPECT_EQ((COffer{true, "x"}), Offer(any, *host, "<foo a='1'>t</foo><x/>", kElement));
    EXPECT_EQ("foo", existing->GetName());
    EXPECT_EQ("t", existing->GetText());
    EXPECT_EQ((COffer{true, "null"}), Offer(named, *host, "<w xmlns='urn:o'/>", kElement));
    EXPECT_EQ("urn:o", existing->GetNamespace());
    EXPECT_EQ((COffer{false, "W"}), Offer(named, *host, "<W/>", kPseudo));
    EXPECT_EQ("Failed to find the required element from namespace [urn:t]",
              FailureOf([&] { Offer(named, *host, "<W/>", kElement); }));
    EXPECT_EQ("Failed to find a required element [AnyElement]", FailureOf([&] { Offer(any, *host, "", kPseudo); }));
    // The element's restriction refuses it: nothing is taken.
    host->Property(0).SetXmlObject(new CElement("any", "", "##local", ""));
    EXPECT_EQ((COffer{false, "foo"}), Offer(any, *host, "<foo/>", kPseudo));

    // The optional member builds its element under the restriction "##other" of kNs.
    CElementInfoSeqUntpdOpt other("AnyElement", kNs, 1, "##other", kNs);
    CElementInfoSeqUntpdOpt otherW("w", kNs, 1, "##other", kNs);
    EXPECT_EQ((COffer{true, "null"}), Offer(other, *host, "", kElement));
    EXPECT_EQ((COffer{true, "foo"}), Offer(other, *host, "<foo/>", kElement));
    EXPECT_EQ((COffer{true, "foo"}), Offer(otherW, *host, "<foo xmlns='urn:o'/>", kElement));
    EXPECT_EQ("none", Describe(host->Property(1)));
    EXPECT_EQ((COffer{true, "null"}), Offer(otherW, *host, "<w xmlns='urn:o'>t</w>", kPseudo));
    EXPECT_EQ("urn:o", ObjectIn<CElement>(host->Property(1))->GetNamespace());
    EXPECT_EQ("##other", ObjectIn<CElement>(host->Property(1))->GetNamespaceRestriction());
}

TEST(SequenceMetadata, UntypedCollectionIgnoresItsBoundsAndMayBeLockedToAName) {
    struct Row {
        const char* name;
        const char* children;
        XmlElementType type;
        const char* result;
    };
    const Row rows[] = {
        {"AnyElement", "<a/><b xmlns='urn:o'/>", kElement, "true at null, #2"},
        {"a", "<a/><a/><b/>", kElement, "true at b, #2"},
        // Locked to the namespace of the first element.
        {"a", "<a xmlns='urn:o'/><a/>", kElement, "true at a, #1"},
        {"a", "", kElement, "true at null, #0"},
        {"a", "<b/>", kPseudo, "true at b, #0"},
    };
    for (const Row& row : rows) {
        CSmartPtr<CHost> host = new CHost();
        // Bounds of 2 to 3 are given and not kept.
        host->Property(0).SetXmlCollection(new CElementCol("", "##any", "", 2, 3));
        CElementInfoSeqUntpdCol info(row.name, kNs, 0);
        std::ostringstream result;
        result << Offer(info, *host, row.children, row.type) << ", " << Describe(host->Property(0));
        EXPECT_EQ(row.result, result.str()) << row.name << row.children;
    }
}

TEST(SequenceMetadata, ValidateIsNeverToBeCalled) {
    const CElementInfoSeqPrimCol info("pc", kNs, 0);
    EXPECT_EQ("Not implemented, should never be called",
              FailureOf([&] { info.Validate(CXmlSerializationContext::m_defaultContext, nullptr, true, true); }));
}

} // namespace
