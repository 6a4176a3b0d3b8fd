
#include "document/XmlDocument.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlTest;

namespace {

std::string Text(const QvVariant& value) { return value.IsValid() ? value.ToString() : "<none>"; }

const char* const kLeftover = "Failed read all the elements held within the element [%s]. The unexpected element "
                              "[%s] remains un processed";
const char* const kNoChoice = "No child elements within the element [%s] were populated. The element represents a "
                              "choice, so one and only one element should be populated. The element contained no "
                              "sutable child elements";

// Every reading failure comes back as a CQvValidationException naming the element read;
// the settings that are ignored let the document pass.
TEST(GeneratedClassReading, FailuresAndTheSettingsThatPassThem) {
    CSeqAB seq;
    CItem item;
    CNillableText nt;
    CEmpty empty;
    CAllABC all;
    CChoiceAB choice;
    CInnerChoice inner;
    CWithChoiceGroup cg;
    const CXmlSerializationContext plain;
    const CXmlSerializationContext unknown = IgnoringUnknown();
    CXmlSerializationContext attributes;
    attributes.SetIgnoreUnknownAttributes(true);
    CXmlSerializationContext missingChoice;
    missingChoice.SetIgnoreMissingChoice(true);
    const char* const nilFalse = "<SeqAB xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                                 "xsi:nil='false'><a/><b>1</b></SeqAB>";
    const std::string noChoice = FormatString(kNoChoice, "ChoiceAB");
    struct Row {
        CXmlObjectBase* object;
        std::string text;
        const CXmlSerializationContext* context;
        std::string expected; // the inner message below "Failed to process the element [...]", or "no exception"
    };
    const Row rows[] = {
        {&seq, "<SeqAB xmlns='urn:t' zz='1'><a/><b>1</b></SeqAB>", &plain, "Unexpected Attribute [zz] found."},
        {&seq, "<SeqAB xmlns='urn:t' zz='1'><a/><b>1</b></SeqAB>", &attributes, "no exception"},
        // Attributes of another namespace than the metadata's are unknown too.
        {&seq, "<SeqAB xmlns='urn:t' xmlns:p='urn:p' p:id='1'><a/><b>1</b></SeqAB>", &plain,
         "Unexpected Attribute [id] found."},
        // Namespace and schema instance attributes are passed over.
        {&seq,
         "<SeqAB xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:q='urn:q' "
         "xsi:type='SeqAB' xsi:schemaLocation='urn:t t.xsd' xsi:noNamespaceSchemaLocation='t.xsd'><a/><b>1</b></SeqAB>",
         &plain, "no exception"},
        // The required attribute is checked after all attributes.
        {&item, "<Item xmlns='urn:t'><label/></Item>", &plain, "Failed to find the required Attribute [n]"},
        {&nt, "<NT xmlns='urn:t'>4x</NT>", &plain, "The value [4x] can not be converted to a i4"},
        {&nt, "<NT xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='yes'></NT>", &plain,
         "Unexpected Value [yes] for 'nil' Attribute found."},
        {&seq, nilFalse, &plain, "Invalid use of 'nil' attibute in non-nillable element [SeqAB]"},
        // Sequence walk.
        {&seq, "<SeqAB xmlns='urn:t'><a/><b>1</b><c/></SeqAB>", &plain, FormatString(kLeftover, "SeqAB", "c")},
        // One trailing unknown element passes and two do not: the second pass starts again
        // at b, which passes over y and finds no b.
        {&seq, "<SeqAB xmlns='urn:t'><a>1</a><b>2</b><x/></SeqAB>", &unknown, "no exception"},
        {&seq, "<SeqAB xmlns='urn:t'><a>1</a><b>2</b><x/><y/></SeqAB>", &unknown,
         "Failed to find a required element [b]"},
        {&empty, "<Empty xmlns='urn:t'><a/><b/></Empty>", &plain, FormatString(kLeftover, "Empty", "a")},
        // All walk: it stops at an unknown element with or without the ignore setting.
        {&all, "<AllABC xmlns='urn:t'><a>1</a><x/><b>2</b></AllABC>", &plain,
         "Failed to find the mandatory element [b]"},
        {&all, "<AllABC xmlns='urn:t'><a>1</a><x/><b>2</b></AllABC>", &unknown,
         "Failed to find the mandatory element [b]"},
        {&all, "<AllABC xmlns='urn:t'><a>1</a><b>2</b><a>3</a></AllABC>", &plain,
         FormatString(kLeftover, "AllABC", "a")},
        {&all, "<AllABC xmlns='urn:t'><a>1</a><b>2</b><a>3</a></AllABC>", &unknown, "no exception"},
        {&all, "<AllABC xmlns='urn:t'/>", &plain, "Failed to find the mandatory element [a]"},
        // Choice walk: unknown elements are passed over when ignored, and then nothing is
        // found either; with a missing choice ignored an unknown element is the leftover.
        {&choice, "<ChoiceAB xmlns='urn:t'/>", &plain, noChoice},
        {&choice, "<ChoiceAB xmlns='urn:t'><x/></ChoiceAB>", &unknown, noChoice},
        {&choice, "<ChoiceAB xmlns='urn:t'/>", &missingChoice, "no exception"},
        {&choice, "<ChoiceAB xmlns='urn:t'><x/></ChoiceAB>", &missingChoice, FormatString(kLeftover, "ChoiceAB", "x")},
        {&choice, "<ChoiceAB xmlns='urn:t'><a>1</a><b>2</b></ChoiceAB>", &plain,
         FormatString(kLeftover, "ChoiceAB", "b")},
        {&choice, "<ChoiceAB xmlns='urn:t'><x/><b>4</b></ChoiceAB>", &plain, noChoice},
        // By itself a class that may hold an empty choice as a child is strict.
        {&inner, "<Inner xmlns='urn:t'/>", &plain, FormatString(kNoChoice, "Inner")},
        // A choice group does not skip by itself.
        {&cg, "<CG xmlns='urn:t'><x/><p>P</p></CG>", &plain, FormatString(kLeftover, "CG", "x")},
    };
    for (const Row& row : rows) {
        const std::string expected =
            row.expected == "no exception"
                ? row.expected
                : "Failed to process the element [" + row.object->GetElementName() + "]\n" + row.expected;
        EXPECT_EQ(expected, WrappedFailureOf([&] { row.object->FromXml(row.text.c_str(), *row.context); })) << row.text;
    }
}

TEST(GeneratedClassReading, SequenceReadsElementsAttributesAndTextAndStartsAgainFromInit) {
    CSeqAB object;
    object.SetElementName("Other");
    object.FromXml("<SeqAB xmlns='urn:t' id=' 5 '><a>x y</a><b>7</b></SeqAB>");
    EXPECT_EQ("SeqAB", object.GetElementName());
    EXPECT_EQ("x y", object.Property(CSeqAB::P_a).GetString());
    EXPECT_EQ(7, object.Property(CSeqAB::P_b).GetI4());
    EXPECT_EQ(5, object.Property(CSeqAB::P_id).GetI4());
    object.FromXml("<SeqAB xmlns='urn:t'><x/><a>z</a><y/><b>8</b></SeqAB>", IgnoringUnknown());
    EXPECT_EQ("z", object.Property(CSeqAB::P_a).GetString());
    EXPECT_EQ(8, object.Property(CSeqAB::P_b).GetI4());
    EXPECT_FALSE(object.Property(CSeqAB::P_id).IsValid());

    CNillableText text;
    text.FromXml("<NT xmlns='urn:t'>4<x>s</x>2</NT>");
    EXPECT_EQ(42, text.Property(CNillableText::P_text).GetI4());
    EXPECT_EQ("s", text.Property(CNillableText::P_x).GetString());

    CEmpty empty;
    CXmlDocument document;
    document.LoadXml("<Empty xmlns='urn:t'><a/><b/><c/></Empty>");
    EXPECT_EQ(nullptr, empty.FromXmlElement(document.GetDocumentElement(), IgnoringUnknown()));
}

TEST(GeneratedClassReading, ElementUnderAnotherNameKeepsThatNameAndCollectionsGoOnBehindUnknowns) {
    COrder order;
    order.FromXml("<Order xmlns='urn:t' code='c'><name>n</name><Item n='1'><label>a</label></Item><x/>"
                  "<Item n='2'><label>b</label></Item><Extra n='2'><label>e</label></Extra><tag>t</tag></Order>",
                  IgnoringUnknown());
    ASSERT_EQ(2, order.Collection<CObjectCol>(COrder::P_items)->GetCount());
    EXPECT_EQ("b", static_cast<CItem*>(order.Collection<CObjectCol>(COrder::P_items)->Item(1))
                       ->Property(CItem::P_label)
                       .GetString());
    EXPECT_EQ((std::vector<std::string>{"t"}), order.Collection<CStringCol>(COrder::P_tags)->Values());
    const CSmartPtr<CXmlObjectBase> extra = order.Property(COrder::P_Extra).GetXmlObject();
    ASSERT_TRUE(extra);
    EXPECT_EQ("Extra", extra->GetElementName());
    EXPECT_EQ("e", static_cast<CItem*>(extra.Get())->Property(CItem::P_label).GetString());
}

TEST(GeneratedClassReading, NilElementSkipsChildrenAndTextUntilTheNextRead) {
    const char* const nil = "<NT xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='%s'>";
    CNillableText object;
    for (const char* value : {"true", "1", "TRUE", "True"}) {
        // Neither the unknown child nor the bad text is looked at.
        EXPECT_NO_THROW(object.FromXml((FormatString(nil, value) + "<y/>bad</NT>").c_str())) << value;
        EXPECT_TRUE(object.GetIsNil()) << value;
        EXPECT_FALSE(object.Property(CNillableText::P_text).IsValid());
    }
    for (const char* value : {"false", "0", "FALSE"}) {
        object.FromXml((FormatString(nil, value) + "<x>s</x>3</NT>").c_str());
        EXPECT_FALSE(object.GetIsNil()) << value;
        EXPECT_EQ(3, object.Property(CNillableText::P_text).GetI4());
    }
}

TEST(GeneratedClassReading, PseudoGroupsReadAmongTheParentsChildrenOrHandBackTheirCursor) {
    CWithGroup object;
    object.FromXml("<G xmlns='urn:t' g='1' ga='2'><a>A</a><x>X</x><y>Y</y><z>Z</z></G>");
    CGroupXY* const group = object.Object<CGroupXY>(CWithGroup::P_group);
    EXPECT_EQ("A", object.Property(CWithGroup::P_a).GetString());
    EXPECT_EQ("X", group->Property(CGroupXY::P_x).GetString());
    EXPECT_EQ("Y", group->Property(CGroupXY::P_y).GetString());
    EXPECT_EQ("Z", object.Property(CWithGroup::P_z).GetString());
    EXPECT_EQ("1", object.Property(CWithGroup::P_g).GetString());
    EXPECT_EQ("2", group->Property(CGroupXY::P_ga).GetString());
    // A pseudo element has no element of its own and keeps its name.
    EXPECT_EQ("GroupXY", group->GetElementName());
    object.FromXml("<G xmlns='urn:t'><a>A</a><z>Z</z></G>");
    EXPECT_EQ("Z", object.Property(CWithGroup::P_z).GetString());
    EXPECT_FALSE(object.Object<CGroupXY>(CWithGroup::P_group)->Property(CGroupXY::P_x).IsValid());
    object.FromXml("<G xmlns='urn:t'><z>Z</z></G>");
    EXPECT_EQ("<none>", Text(object.Property(CWithGroup::P_a)));

    CWithChoiceGroup choice;
    choice.FromXml("<CG xmlns='urn:t'><q>Q</q><r>R</r></CG>");
    EXPECT_EQ("Q", choice.Object<CChoiceGroupPQ>(CWithChoiceGroup::P_group)->Property(CChoiceGroupPQ::P_q).GetString());
    EXPECT_EQ("R", choice.Property(CWithChoiceGroup::P_r).GetString());
    // A choice group that matches nothing is no error.
    choice.FromXml("<CG xmlns='urn:t'><r>R</r></CG>");
    EXPECT_FALSE(choice.Object<CChoiceGroupPQ>(CWithChoiceGroup::P_group)->Property(CChoiceGroupPQ::P_q).IsValid());
    EXPECT_EQ("R", choice.Property(CWithChoiceGroup::P_r).GetString());
    // The enclosing sequence passes over x and offers p to the group again.
    choice.FromXml("<CG xmlns='urn:t'><x/><p>P</p></CG>", IgnoringUnknown());
    EXPECT_EQ("P", choice.Object<CChoiceGroupPQ>(CWithChoiceGroup::P_group)->Property(CChoiceGroupPQ::P_p).GetString());
}

TEST(GeneratedClassReading, AllReadsInAnyOrderAndChoiceTakesTheFirstMemberThatFits) {
    CAllABC all;
    all.FromXml("<AllABC xmlns='urn:t'><c>3</c><b>2</b><a>1</a></AllABC>");
    EXPECT_EQ("1", all.Property(CAllABC::P_a).GetString());
    EXPECT_EQ("2", all.Property(CAllABC::P_b).GetString());
    EXPECT_EQ("3", all.Property(CAllABC::P_c).GetString());
    all.FromXml("<AllABC xmlns='urn:t'><b>2</b><a>1</a></AllABC>");
    EXPECT_EQ("<none>", Text(all.Property(CAllABC::P_c)));
    // After a failure the values read so far stay.
    EXPECT_NE("no exception", WrappedFailureOf([&] {
                  all.FromXml("<AllABC xmlns='urn:t'><a>5</a><x/><b>2</b></AllABC>", IgnoringUnknown());
              }));
    EXPECT_EQ("5", all.Property(CAllABC::P_a).GetString());
    all.FromXml("<AllABC xmlns='urn:t'><a>1</a><b>2</b><a>3</a></AllABC>", IgnoringUnknown());
    EXPECT_EQ("1", all.Property(CAllABC::P_a).GetString());

    CChoiceAB choice;
    choice.FromXml("<ChoiceAB xmlns='urn:t'><b>3</b></ChoiceAB>");
    EXPECT_EQ(3, choice.Property(CChoiceAB::P_b).GetI4());
    EXPECT_FALSE(choice.Property(CChoiceAB::P_a).IsValid());
    choice.FromXml("<ChoiceAB xmlns='urn:t'><a>1</a><b>2</b></ChoiceAB>", IgnoringUnknown());
    EXPECT_EQ("1", choice.Property(CChoiceAB::P_a).GetString());
    EXPECT_FALSE(choice.Property(CChoiceAB::P_b).IsValid());
    choice.FromXml("<ChoiceAB xmlns='urn:t'><x/><y/><b>4</b></ChoiceAB>", IgnoringUnknown());
    EXPECT_EQ(4, choice.Property(CChoiceAB::P_b).GetI4());

    // A chosen class may hold an empty choice.
    CChooser chooser;
    chooser.FromXml("<Ch xmlns='urn:t'><Inner/></Ch>");
    ASSERT_TRUE(chooser.Property(CChooser::P_Inner).GetXmlObject());
    EXPECT_EQ("Inner", chooser.Property(CChooser::P_Inner).GetXmlObject()->GetElementName());
    chooser.FromXml("<Ch xmlns='urn:t'><Inner><q>Q</q></Inner></Ch>");
    EXPECT_EQ("Q",
              ObjectIn<CInnerChoice>(chooser.Property(CChooser::P_Inner))->Property(CInnerChoice::P_q).GetString());
}

TEST(GeneratedClassReading, FailureThreeLevelsDownGivesFourLinesOutermostFirst) {
    CLevel1 object;
    try {
        object.FromXml("<L1 xmlns='urn:t'><L2><L3><v>x</v></L3></L2></L1>");
        FAIL() << "no exception";
    } catch (const CQvException& e) {
        EXPECT_EQ(typeid(CQvValidationException), typeid(e));
        EXPECT_EQ("Failed to process the element [L1]\nFailed to process the element [L2]\n"
                  "Failed to process the element [L3]\nThe value [x] can not be converted to a i4",
                  e.GetFullMessage());
        // The type of the first failure survives as the innermost exception.
        const CQvException* innermost = &e;
        while (innermost->GetInnerException() != nullptr)
            innermost = innermost->GetInnerException();
        EXPECT_EQ(typeid(CQvInvalidValueException), typeid(*innermost));
    }
    // Values read before a failure stay.
    EXPECT_NE("no exception",
              WrappedFailureOf([&] { object.FromXml("<L1 xmlns='urn:t'><L2><L3><v>4</v><w/></L3></L2></L1>"); }));
    EXPECT_EQ(4, object.Object<CLevel2>(CLevel1::P_L2)->Object<CLevel3>(CLevel2::P_L3)->Property(CLevel3::P_v).GetI4());
}

// A class whose header names no walk.
struct BadGroupTables : CTableDefaults {
    enum { P_unused, kProperties };
    static constexpr const char* kName = "Bad";
    static void Build(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                      QvXmlLib10Data::CAttributeInfo**& attributes) {
        parent = new QvXmlLib10Data::CParentElementInfo(static_cast<QvXmlLib10Data::XmlElementGroupType>(7),
                                                        QvXmlLib10Data::XmlElementType_Element, "Bad", kNs, true, false,
                                                        -1, ItemType_Invalid, nullptr, false);
        elements = new QvXmlLib10Data::CElementInfo* [1] { nullptr };
        attributes = new QvXmlLib10Data::CAttributeInfo* [1] { nullptr };
    }
};
using CBadGroup = CTableClass<BadGroupTables>;

TEST(GeneratedClassReading, UnknownGroupTypeOnReadingAndWriting) {
    CBadGroup object;
    try {
        object.FromXml("<Bad/>");
        FAIL() << "no exception";
    } catch (const CQvValidationException& e) {
        EXPECT_EQ("Failed to process the element [Bad]\nUnknow Group Type", e.GetFullMessage());
        ASSERT_NE(nullptr, e.GetInnerException());
        EXPECT_EQ(typeid(CQvException), typeid(*e.GetInnerException()));
    }
    EXPECT_EQ("Failed to convert the element [Bad] to XML\nUnknown XML Group Type",
              WrappedFailureOf([&] { RecordXml(object); }));
}

} // namespace
