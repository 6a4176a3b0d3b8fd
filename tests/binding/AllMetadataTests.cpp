#include <functional>
#include <sstream>

#include "binding/metadata/AllElementInfo.h"
#include "collections/Element.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;
using namespace QvXmlTest;

namespace {

// B: the abstract Shape (mandatory) and Spare (optional).
struct AbstractTables : CTableDefaults {
    enum { P_shape, P_spare, kProperties };
    static constexpr const char* kName = "B";
    static void Build(CParentElementInfo*& parent, CElementInfo**& elements, CAttributeInfo**& attributes) {
        parent = MakeParent(XmlElementGroupType_All, kName);
        elements = MakeTable<CElementInfo>({
            new CElementInfoAllAbsClsMnd("Shape", kNs, P_shape, kElement, CreateShape, 7),
            new CElementInfoAllAbsClsOpt("Spare", kNs, P_spare, kElement, CreateShape),
        });
        attributes = MakeTable<CAttributeInfo>({});
    }
};
using CAbstract = CTableClass<AbstractTables>;

std::string Read(CXmlObjectBase& object, const char* body,
                 const CXmlSerializationContext& context = CXmlSerializationContext::m_defaultContext) {
    return WrappedFailureOf([&] { object.FromXml(body, context); });
}

TEST(AllMetadata, ValuesAnswerWhetherTheyReadTheElementAtTheCursor) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoAllPrimMnd mandatory("a", kNs, 0, true, ItemType_i4, nullptr, kCollapse, kNoFacets);
    CElementInfoAllPrimOpt optional("a", kNs, 0, true, ItemType_i4, nullptr, kCollapse, kNoFacets);
    CElementInfoAllEnumMnd color("a", kNs, 0, true, ColorToText, TextToColor);
    CElementInfoAllEnumOpt optionalColor("a", kNs, 0, true, ColorToText, TextToColor);
    for (CElementInfo* info : std::initializer_list<CElementInfo*>{&mandatory, &optional, &color, &optionalColor}) {
        for (XmlElementType type : {kElement, kPseudo}) {
            host = new CHost();
            // Nothing is passed over, whatever the context says.
            EXPECT_EQ((COffer{false, "x"}), Offer(*info, *host, "<x/><a>1</a>", type, IgnoringUnknown()));
            EXPECT_EQ((COffer{false, "null"}), Offer(*info, *host, "", type));
            EXPECT_EQ("none", Describe(host->Property(0)));
            EXPECT_EQ((COffer{true, "x"}), Offer(*info, *host, "<a xsi:nil='true'/><x/>", type));
            EXPECT_EQ("nil", Describe(host->Property(0)));
        }
    }
    EXPECT_EQ((COffer{true, "null"}), Offer(optional, *host, "<a> 12 </a>", kElement));
    EXPECT_EQ("12", Describe(host->Property(0)));
    EXPECT_EQ((COffer{true, "null"}), Offer(optionalColor, *host, "<a>blue</a>", kElement));
    EXPECT_EQ("2", Describe(host->Property(0)));
}

TEST(AllMetadata, ValidateReportsMissingMandatoryMembersOnlyInAClassWithATag) {
    const CElementInfoAllPrimMnd prim("a", kNs, 0, false, ItemType_i4, nullptr, kCollapse, kNoFacets);
    const CElementInfoAllEnumMnd color("e", kNs, 0, false, ColorToText, TextToColor);
    const CElementInfoAllAbsClsMnd shape("Shape", kNs, 0, kElement, CreateShape, 0);
    const CElementInfoAllUntpdMnd untyped("u", kNs, 0, "##any", "");
    const CElementInfoAllClsMnd pseudo("Pair", kNs, 0, kPseudo, nullptr, 0, false);
    const CElementInfoAllClsMnd required("Leaf", kNs, 0, kElement, nullptr, 0, true);
    const CElementInfoAllClsMnd own("Leaf", kNs, 0, kElement, nullptr, 0, false);
    const CElementInfoAllClsMnd group("Pair", kNs, 0, XmlElementType_PseudoGroup, nullptr, 0, false);
    const CElementInfoAllPrimOpt optional("b", kNs, 0, false, ItemType_i4, nullptr, kCollapse, kNoFacets);
    const CElementInfoAllEnumOpt optionalColor("f", kNs, 0, false, ColorToText, TextToColor);
    const CElementInfoAllClsOpt optionalChild("Opt", kNs, 0, kElement, nullptr, 0);
    const CElementInfoAllAbsClsOpt optionalShape("Spare", kNs, 0, kElement, CreateShape);
    const CElementInfoAllUntpdOpt optionalUntyped("w", kNs, 0, "##any", "");
    struct Row {
        const CElementInfo* info;
        const char* missing; // Validate(found false, check true): the failure, or the answer
    };
    const Row rows[] = {
        {&prim, "Failed to find the mandatory element [a]"},
        {&color, "Failed to find the mandatory element [e]"},
        {&shape, "Failed to find the mandatory element [Shape]"},
        {&untyped, "Failed to find the mandatory element [u]"},
        {&pseudo, "Failed to find the mandatory element [Pair]"},
        {&required, "Failed to find the mandatory element [Leaf]"},
        // A child with a tag of its own is missed only when the generator says so.
        {&own, "true"},
        {&group, "true"},
        {&optional, "true"},
        {&optionalColor, "true"},
        {&optionalChild, "true"},
        {&optionalShape, "true"},
        {&optionalUntyped, "true"},
    };
    const bool optionalRows[] = {false, false, false, false, false, false, false, false, true, true, true, true, true};
    for (size_t i = 0; i < sizeof(rows) / sizeof(rows[0]); ++i) {
        const Row& row = rows[i];
        const CXmlSerializationContext context = IgnoringMissing(); // plays no role here
        std::string answer;
        const std::string failure =
            FailureOf([&] { answer = row.info->Validate(context, nullptr, false, true) ? "true" : "false"; });
        EXPECT_EQ(row.missing, failure == "no exception" ? answer : failure) << row.info->m_elementName;
        EXPECT_TRUE(row.info->Validate(context, nullptr, true, true));
        EXPECT_TRUE(row.info->Validate(context, nullptr, true, false));
        // In a pseudo element a missing member makes the group not match; only the
        // optional ones always answer true.
        EXPECT_EQ(optionalRows[i], row.info->Validate(context, nullptr, false, false)) << row.info->m_elementName;
    }
}

TEST(AllMetadata, ChildrenAnswerWhetherTheyTookSomething) {
    CSmartPtr<CHost> host = new CHost();
    CLeaf* const leaf = new CLeaf();
    host->Property(0).SetXmlObject(leaf);
    CElementInfoAllClsMnd own("Leaf", kNs, 0, kElement, nullptr, 0, true);
    EXPECT_EQ((COffer{false, "x"}), Offer(own, *host, "<x/><Leaf/>", kElement, IgnoringUnknown()));
    EXPECT_EQ((COffer{true, "x"}), Offer(own, *host, "<Leaf><v>l</v></Leaf><x/>", kPseudo));
    EXPECT_EQ("l", Describe(leaf->Property(LeafTables::P_v)));

    CPair* const pair = new CPair();
    host->Property(1).SetXmlObject(pair);
    CElementInfoAllClsMnd group("Pair", kNs, 1, kPseudo, nullptr, 0, false);
    EXPECT_EQ((COffer{false, "z"}), Offer(group, *host, "<z/>", kElement));
    EXPECT_EQ((COffer{true, "z"}), Offer(group, *host, "<x>1</x><z/>", kElement));
    EXPECT_EQ("1", Describe(pair->Property(PairTables::P_x)));

    CSmartPtr<CHost> fresh = new CHost();
    CElementInfoAllClsOpt optional("Opt", kNs, 0, kElement, CreateTestObject, ClassId_Leaf);
    CElementInfoAllClsOpt optionalGroup("Pair", kNs, 1, kPseudo, CreateTestObject, ClassId_Pair);
    EXPECT_EQ((COffer{false, "x"}), Offer(optional, *fresh, "<x/>", kElement));
    EXPECT_EQ((COffer{false, "null"}), Offer(optionalGroup, *fresh, "", kElement));
    EXPECT_EQ((COffer{false, "z"}), Offer(optionalGroup, *fresh, "<z/>", kElement));
    EXPECT_EQ("none", Describe(fresh->Property(0)));
    EXPECT_EQ("none", Describe(fresh->Property(1)));
    EXPECT_EQ((COffer{true, "null"}), Offer(optional, *fresh, "<Opt><v>o</v></Opt>", kElement));
    EXPECT_EQ((COffer{true, "null"}), Offer(optionalGroup, *fresh, "<x>2</x>", kElement));
    EXPECT_EQ("o", Describe(ObjectIn<CLeaf>(fresh->Property(0))->Property(LeafTables::P_v)));
    EXPECT_EQ("2", Describe(ObjectIn<CPair>(fresh->Property(1))->Property(PairTables::P_x)));
}

TEST(AllMetadata, AbstractMembersCannotBeRead) {
    CSmartPtr<CHost> host = new CHost();
    CElementInfoAllAbsClsMnd mandatory("Shape", kNs, 0, kElement, CreateShape, 0);
    CElementInfoAllAbsClsOpt optional("Shape", kNs, 0, kElement, CreateShape);
    for (const char* children : {"<Shape xsi:type='Circle'><r>1</r></Shape>", "<x/>", ""}) {
        EXPECT_EQ("CElementInfoAllAbsClsMnd::ElementFromXml, has not been implemented fully, contact the "
                  "maintainers of libQvXml10",
                  FailureOf([&] { Offer(mandatory, *host, children, kElement); }));
        EXPECT_EQ("CElementInfoAllAbsClsOpt::ElementFromXml, has not been implemented fully, contact the "
                  "maintainers of libQvXml10",
                  FailureOf([&] { Offer(optional, *host, children, kPseudo); }));
    }
    // The walk offers nothing when there are no children; then the mandatory one is missing.
    CSmartPtr<CAbstract> object = new CAbstract();
    EXPECT_EQ("Failed to process the element [B]\nFailed to find the mandatory element [Shape]",
              Read(*object, "<B xmlns='urn:t'/>"));
    EXPECT_EQ("Failed to process the element [B]\nCElementInfoAllAbsClsMnd::ElementFromXml, has not been implemented "
              "fully, contact the maintainers of libQvXml10",
              Read(*object, "<B xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>"
                            "<Shape xsi:type='Circle'><r>1</r></Shape></B>"));
}

TEST(AllMetadata, UntypedMembersAnswerWhetherTheyTookTheElement) {
    CSmartPtr<CHost> host = new CHost();
    CElement* const existing = new CElement("u", "", "##any", "");
    host->Property(0).SetXmlObject(existing);
    CElementInfoAllUntpdMnd any("AnyElement", kNs, 0, "##any", "");
    CElementInfoAllUntpdMnd named("u", kNs, 0, "##any", "");
    EXPECT_EQ((COffer{false, "null"}), Offer(any, *host, "", kElement));
    EXPECT_EQ((COffer{false, "foo"}), Offer(named, *host, "<foo/>", kElement));
    EXPECT_EQ((COffer{true, "x"}), Offer(any, *host, "<foo>t</foo><x/>", kElement));
    EXPECT_EQ("foo", existing->GetName());

    CElementInfoAllUntpdOpt other("AnyElement", kNs, 1, "##other", kNs);
    EXPECT_EQ((COffer{false, "null"}), Offer(other, *host, "", kElement));
    EXPECT_EQ((COffer{false, "foo"}), Offer(other, *host, "<foo/>", kElement));
    EXPECT_EQ("none", Describe(host->Property(1)));
    EXPECT_EQ((COffer{true, "null"}), Offer(other, *host, "<foo xmlns='urn:o'/>", kElement));
    EXPECT_EQ("<foo>", Describe(host->Property(1)));
}

TEST(AllMetadata, CollectionsStayOpenAndAreCountedOnlyOnWriting) {
    // Every collection class of the family reads and writes by CElementInfoAllCol.
    CConcrete<CElementInfoAllPrimCol> prim("c", kNs, 0);
    CConcrete<CElementInfoAllClsCol> child("c", kNs, 0, kElement);
    CConcrete<CElementInfoAllAbsClsCol> shape("c", kNs, 0, kElement);
    CConcrete<CElementInfoAllUntpdCol> untyped("c", kNs, 0);
    for (CElementInfo* info : std::initializer_list<CElementInfo*>{&prim, &child, &shape, &untyped}) {
        CSmartPtr<CHost> host = new CHost();
        host->Property(0).SetXmlCollection(new CStringCol("c", 3, 3));
        EXPECT_EQ((COffer{false, "x"}), Offer(*info, *host, "<c>1</c><c>2</c><x/>", kElement));
        EXPECT_EQ((COffer{false, "x"}), Offer(*info, *host, "<x/>", kPseudo));
        EXPECT_EQ("#2", Describe(host->Property(0)));

        CRecordingWriter writer;
        EXPECT_EQ("The Minimum number of [c] elements allowed in this collection is 3",
                  FailureOf([&] { info->ElementToXml(CXmlSerializationContext::m_defaultContext, host, &writer); }));
        EXPECT_EQ("", writer.m_log);
        EXPECT_TRUE(info->ElementToXml(IgnoringCounts(), host, &writer));
        EXPECT_EQ("<c{urn:t} \"1\" /> <c{urn:t} \"2\" />", writer.m_log);
    }
}

} // namespace
