#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>

#include "binding/XmlGeneratedClass.h"
#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "support/TestClasses.h"
#include "values/QvVariant.h"

using namespace QvXmlLib10;
using namespace QvXmlTest;

namespace {

// The whole message chain of the exception the call throws, with the outermost
// class checked: the driver always wraps in CQvValidationException.
std::string ReadFailure(const std::function<void()>& call) {
    try {
        call();
    } catch (const CQvException& e) {
        EXPECT_EQ(typeid(CQvValidationException), typeid(e)) << e.GetFullMessage();
        return e.GetFullMessage();
    }
    return "no exception";
}

CXmlSerializationContext IgnoringUnknownElements() {
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    return context;
}

std::string Text(const QvVariant& value) { return value.IsValid() ? value.ToString() : "<none>"; }

// ---------------------------------------------------------------------------------------------
// Element, attributes and text

TEST(GeneratedClassReading, SequenceReadsElementsAttributesAndName) {
    CSeqAB object;
    object.SetElementName("Other");
    object.FromXml("<SeqAB xmlns='urn:t' id=' 5 '><a>x y</a><b>7</b></SeqAB>");
    EXPECT_EQ("SeqAB", object.GetElementName());
    EXPECT_EQ("x y", object.Property(CSeqAB::P_a).GetString());
    EXPECT_EQ(7, object.Property(CSeqAB::P_b).GetI4());
    EXPECT_EQ(5, object.Property(CSeqAB::P_id).GetI4());
}

TEST(GeneratedClassReading, ReadingAgainStartsFromInit) {
    CSeqAB object;
    object.FromXml("<SeqAB xmlns='urn:t' id='5'><a>x</a><b>7</b></SeqAB>");
    object.FromXml("<SeqAB xmlns='urn:t'><a>z</a><b>8</b></SeqAB>");
    EXPECT_EQ("z", object.Property(CSeqAB::P_a).GetString());
    EXPECT_FALSE(object.Property(CSeqAB::P_id).IsValid());
}

TEST(GeneratedClassReading, ElementUnderAnotherNameKeepsThatName) {
    COrder order;
    order.FromXml("<Order xmlns='urn:t' code='c'><name>n</name><Item n='1'><label>l</label></Item>"
                  "<Extra n='2'><label>e</label></Extra></Order>");
    const CSmartPtr<CXmlObjectBase> extra = order.Property(COrder::P_Extra).GetXmlObject();
    ASSERT_TRUE(extra);
    EXPECT_EQ("Extra", extra->GetElementName());
    EXPECT_EQ("e", static_cast<CItem*>(extra.Get())->Property(CItem::P_label).GetString());
}

TEST(GeneratedClassReading, UnknownAttributesFailUnlessIgnored) {
    const char* const text = "<SeqAB xmlns='urn:t' zz='1'><a/><b>1</b></SeqAB>";
    CSeqAB object;
    EXPECT_EQ("Failed to process the element [SeqAB]\nUnexpected Attribute [zz] found.",
              ReadFailure([&] { object.FromXml(text); }));
    CXmlSerializationContext context;
    context.SetIgnoreUnknownAttributes(true);
    EXPECT_NO_THROW(object.FromXml(text, context));
    // Attributes of another namespace than the metadata's are unknown too.
    EXPECT_EQ("Failed to process the element [SeqAB]\nUnexpected Attribute [id] found.", ReadFailure([&] {
                  object.FromXml("<SeqAB xmlns='urn:t' xmlns:p='urn:p' p:id='1'><a/><b>1</b></SeqAB>");
              }));
}

TEST(GeneratedClassReading, NamespaceAttributesArePassedOver) {
    CSeqAB object;
    EXPECT_NO_THROW(
        object.FromXml("<SeqAB xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:q='urn:q' "
                       "xsi:type='SeqAB' xsi:schemaLocation='urn:t t.xsd' "
                       "xsi:noNamespaceSchemaLocation='t.xsd'><a/><b>1</b></SeqAB>"));
}

TEST(GeneratedClassReading, RequiredAttributeIsCheckedAfterAllAttributes) {
    CItem item;
    EXPECT_EQ("Failed to process the element [Item]\nFailed to find the required Attribute [n]",
              ReadFailure([&] { item.FromXml("<Item xmlns='urn:t'><label/></Item>"); }));
}

TEST(GeneratedClassReading, TextGoesIntoTheTextProperty) {
    CNillableText object;
    object.FromXml("<NT xmlns='urn:t'>4<x>s</x>2</NT>");
    EXPECT_EQ(42, object.Property(CNillableText::P_text).GetI4());
    EXPECT_EQ("s", object.Property(CNillableText::P_x).GetString());
    EXPECT_EQ("Failed to process the element [NT]\nThe value [4x] can not be converted to a i4",
              ReadFailure([&] { object.FromXml("<NT xmlns='urn:t'>4x</NT>"); }));
}

// ---------------------------------------------------------------------------------------------
// Nil

const char* const kNilNT = "<NT xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='%s'>";

std::string NilNT(const char* value, const char* content) { return FormatString(kNilNT, value) + content + "</NT>"; }

TEST(GeneratedClassReading, NilElementSkipsChildrenAndText) {
    for (const char* value : {"true", "1", "TRUE", "True"}) {
        CNillableText object;
        // Neither the unknown child nor the bad text is looked at.
        EXPECT_NO_THROW(object.FromXml(NilNT(value, "<y/>bad").c_str())) << value;
        EXPECT_TRUE(object.GetIsNil()) << value;
        EXPECT_FALSE(object.Property(CNillableText::P_text).IsValid());
    }
    for (const char* value : {"false", "0", "FALSE"}) {
        CNillableText object;
        object.FromXml(NilNT(value, "<x>s</x>3").c_str());
        EXPECT_FALSE(object.GetIsNil()) << value;
        EXPECT_EQ(3, object.Property(CNillableText::P_text).GetI4());
    }
}

TEST(GeneratedClassReading, NilIsResetByTheNextRead) {
    CNillableText object;
    object.FromXml(NilNT("true", "").c_str());
    object.FromXml("<NT xmlns='urn:t'>5</NT>");
    EXPECT_FALSE(object.GetIsNil());
    EXPECT_EQ(5, object.Property(CNillableText::P_text).GetI4());
}

TEST(GeneratedClassReading, BadNilValuesAndNilOnAClassThatIsNotNillable) {
    CNillableText object;
    EXPECT_EQ("Failed to process the element [NT]\nUnexpected Value [yes] for 'nil' Attribute found.",
              ReadFailure([&] { object.FromXml(NilNT("yes", "").c_str()); }));
    CSeqAB seq;
    EXPECT_EQ("Failed to process the element [SeqAB]\nInvalid use of 'nil' attibute in non-nillable element [SeqAB]",
              ReadFailure([&] {
                  seq.FromXml("<SeqAB xmlns='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                              "xsi:nil='false'><a/><b>1</b></SeqAB>");
              }));
}

// ---------------------------------------------------------------------------------------------
// The sequence walk

TEST(SequenceWalk, LeftoverElementIsReported) {
    CSeqAB object;
    EXPECT_EQ("Failed to process the element [SeqAB]\nFailed read all the elements held within the element [SeqAB]. "
              "The unexpected element [c] remains un processed",
              ReadFailure([&] { object.FromXml("<SeqAB xmlns='urn:t'><a/><b>1</b><c/></SeqAB>"); }));
}

TEST(SequenceWalk, OneTrailingUnknownElementPassesAndTwoDoNot) {
    const CXmlSerializationContext context = IgnoringUnknownElements();
    CSeqAB object;
    object.FromXml("<SeqAB xmlns='urn:t'><a>1</a><b>2</b><x/></SeqAB>", context);
    EXPECT_EQ("1", object.Property(CSeqAB::P_a).GetString());
    EXPECT_EQ(2, object.Property(CSeqAB::P_b).GetI4());
    // The second pass starts again at b, which passes over y and finds no b.
    EXPECT_EQ("Failed to process the element [SeqAB]\nFailed to find a required element [b]",
              ReadFailure([&] { object.FromXml("<SeqAB xmlns='urn:t'><a>1</a><b>2</b><x/><y/></SeqAB>", context); }));
}

TEST(SequenceWalk, UnknownElementsInFrontAreSkippedWhenIgnored) {
    CSeqAB object;
    object.FromXml("<SeqAB xmlns='urn:t'><x/><a>1</a><y/><b>2</b></SeqAB>", IgnoringUnknownElements());
    EXPECT_EQ("1", object.Property(CSeqAB::P_a).GetString());
    EXPECT_EQ(2, object.Property(CSeqAB::P_b).GetI4());
}

TEST(SequenceWalk, EmptyTableWithChildren) {
    CEmpty object;
    EXPECT_EQ("Failed to process the element [Empty]\nFailed read all the elements held within the element [Empty]. "
              "The unexpected element [a] remains un processed",
              ReadFailure([&] { object.FromXml("<Empty xmlns='urn:t'><a/><b/></Empty>"); }));
    CXmlDocument document;
    document.LoadXml("<Empty xmlns='urn:t'><a/><b/><c/></Empty>");
    EXPECT_EQ(nullptr, object.FromXmlElement(document.GetDocumentElement(), IgnoringUnknownElements()));
}

TEST(SequenceWalk, ACollectionGoesOnBehindAnUnknownElement) {
    COrder order;
    order.FromXml("<Order xmlns='urn:t' code='c'><name>n</name><Item n='1'><label>a</label></Item><x/>"
                  "<Item n='2'><label>b</label></Item><tag>t</tag></Order>",
                  IgnoringUnknownElements());
    ASSERT_EQ(2, order.GetItems()->GetCount());
    EXPECT_EQ("b", order.GetItems()->Item(1)->Property(CItem::P_label).GetString());
    EXPECT_EQ((std::vector<std::string>{"t"}), order.GetTags()->Values());
}

TEST(SequenceWalk, PseudoGroupReadsAmongTheParentsChildren) {
    CWithGroup object;
    object.FromXml("<G xmlns='urn:t' g='1' ga='2'><a>A</a><x>X</x><y>Y</y><z>Z</z></G>");
    CGroupXY* const group = object.GetGroup();
    EXPECT_EQ("A", object.Property(CWithGroup::P_a).GetString());
    EXPECT_EQ("X", group->Property(CGroupXY::P_x).GetString());
    EXPECT_EQ("Y", group->Property(CGroupXY::P_y).GetString());
    EXPECT_EQ("Z", object.Property(CWithGroup::P_z).GetString());
    EXPECT_EQ("1", object.Property(CWithGroup::P_g).GetString());
    EXPECT_EQ("2", group->Property(CGroupXY::P_ga).GetString());
    // A pseudo element has no element of its own and keeps its name.
    EXPECT_EQ("GroupXY", group->GetElementName());
}

TEST(SequenceWalk, AbsentPseudoGroupHandsBackItsCursor) {
    CWithGroup object;
    object.FromXml("<G xmlns='urn:t'><a>A</a><z>Z</z></G>");
    EXPECT_EQ("Z", object.Property(CWithGroup::P_z).GetString());
    EXPECT_FALSE(object.GetGroup()->Property(CGroupXY::P_x).IsValid());
    object.FromXml("<G xmlns='urn:t'><z>Z</z></G>");
    EXPECT_EQ("<none>", Text(object.Property(CWithGroup::P_a)));
}

// ---------------------------------------------------------------------------------------------
// The all walk

TEST(AllWalk, ReadsInAnyOrder) {
    CAllABC object;
    object.FromXml("<AllABC xmlns='urn:t'><c>3</c><b>2</b><a>1</a></AllABC>");
    EXPECT_EQ("1", object.Property(CAllABC::P_a).GetString());
    EXPECT_EQ("2", object.Property(CAllABC::P_b).GetString());
    EXPECT_EQ("3", object.Property(CAllABC::P_c).GetString());
    object.FromXml("<AllABC xmlns='urn:t'><b>2</b><a>1</a></AllABC>");
    EXPECT_EQ("<none>", Text(object.Property(CAllABC::P_c)));
}

TEST(AllWalk, StopsAtAnUnknownElementWithOrWithoutTheIgnoreSetting) {
    const char* const text = "<AllABC xmlns='urn:t'><a>1</a><x/><b>2</b></AllABC>";
    const std::string expected = "Failed to process the element [AllABC]\nFailed to find the mandatory element [b]";
    CAllABC object;
    EXPECT_EQ(expected, ReadFailure([&] { object.FromXml(text); }));
    EXPECT_EQ(expected, ReadFailure([&] { object.FromXml(text, IgnoringUnknownElements()); }));
    EXPECT_EQ("1", object.Property(CAllABC::P_a).GetString());
}

TEST(AllWalk, SecondOccurrenceIsLeftOver) {
    CAllABC object;
    EXPECT_EQ("Failed to process the element [AllABC]\nFailed read all the elements held within the element "
              "[AllABC]. The unexpected element [a] remains un processed",
              ReadFailure([&] { object.FromXml("<AllABC xmlns='urn:t'><a>1</a><b>2</b><a>3</a></AllABC>"); }));
    EXPECT_NO_THROW(
        object.FromXml("<AllABC xmlns='urn:t'><a>1</a><b>2</b><a>3</a></AllABC>", IgnoringUnknownElements()));
    EXPECT_EQ("1", object.Property(CAllABC::P_a).GetString());
}

TEST(AllWalk, NoChildrenReportsTheFirstMissingMember) {
    CAllABC object;
    EXPECT_EQ("Failed to process the element [AllABC]\nFailed to find the mandatory element [a]",
              ReadFailure([&] { object.FromXml("<AllABC xmlns='urn:t'/>"); }));
}

// ---------------------------------------------------------------------------------------------
// The choice walk

TEST(ChoiceWalk, FirstMemberThatTakesTheCursorIsTheChoice) {
    CChoiceAB object;
    object.FromXml("<ChoiceAB xmlns='urn:t'><b>3</b></ChoiceAB>");
    EXPECT_EQ(3, object.Property(CChoiceAB::P_b).GetI4());
    EXPECT_FALSE(object.Property(CChoiceAB::P_a).IsValid());
}

TEST(ChoiceWalk, EmptyChoiceFailsUnlessIgnored) {
    CChoiceAB object;
    const std::string expected =
        "Failed to process the element [ChoiceAB]\nNo child elements within the element [ChoiceAB] were populated. "
        "The element represents a choice, so one and only one element should be populated. The element contained "
        "no sutable child elements";
    EXPECT_EQ(expected, ReadFailure([&] { object.FromXml("<ChoiceAB xmlns='urn:t'/>"); }));
    // Unknown elements are passed over, and then nothing is found either.
    EXPECT_EQ(expected, ReadFailure([&] {
                  object.FromXml("<ChoiceAB xmlns='urn:t'><x/></ChoiceAB>", IgnoringUnknownElements());
              }));
    CXmlSerializationContext context;
    context.SetIgnoreMissingChoice(true);
    EXPECT_NO_THROW(object.FromXml("<ChoiceAB xmlns='urn:t'/>", context));
    // An unknown element is then the leftover.
    EXPECT_EQ("Failed to process the element [ChoiceAB]\nFailed read all the elements held within the element "
              "[ChoiceAB]. The unexpected element [x] remains un processed",
              ReadFailure([&] { object.FromXml("<ChoiceAB xmlns='urn:t'><x/></ChoiceAB>", context); }));
}

TEST(ChoiceWalk, SecondMemberIsLeftOverOrLeftUnread) {
    CChoiceAB object;
    EXPECT_EQ("Failed to process the element [ChoiceAB]\nFailed read all the elements held within the element "
              "[ChoiceAB]. The unexpected element [b] remains un processed",
              ReadFailure([&] { object.FromXml("<ChoiceAB xmlns='urn:t'><a>1</a><b>2</b></ChoiceAB>"); }));
    object.FromXml("<ChoiceAB xmlns='urn:t'><a>1</a><b>2</b></ChoiceAB>", IgnoringUnknownElements());
    EXPECT_EQ("1", object.Property(CChoiceAB::P_a).GetString());
    EXPECT_FALSE(object.Property(CChoiceAB::P_b).IsValid());
}

TEST(ChoiceWalk, UnknownElementsInFrontArePassedOverWhenIgnored) {
    CChoiceAB object;
    object.FromXml("<ChoiceAB xmlns='urn:t'><x/><y/><b>4</b></ChoiceAB>", IgnoringUnknownElements());
    EXPECT_EQ(4, object.Property(CChoiceAB::P_b).GetI4());
    EXPECT_EQ("Failed to process the element [ChoiceAB]\nNo child elements within the element [ChoiceAB] were "
              "populated. The element represents a choice, so one and only one element should be populated. The "
              "element contained no sutable child elements",
              ReadFailure([&] { object.FromXml("<ChoiceAB xmlns='urn:t'><x/><b>4</b></ChoiceAB>"); }));
}

TEST(ChoiceWalk, ChosenClassMayHoldAnEmptyChoice) {
    CChooser object;
    object.FromXml("<Ch xmlns='urn:t'><Inner/></Ch>");
    const CSmartPtr<CXmlObjectBase> inner = object.Property(CChooser::P_Inner).GetXmlObject();
    ASSERT_TRUE(inner);
    EXPECT_EQ("Inner", inner->GetElementName());

    object.FromXml("<Ch xmlns='urn:t'><Inner><q>Q</q></Inner></Ch>");
    EXPECT_EQ("Q", static_cast<CInnerChoice*>(object.Property(CChooser::P_Inner).GetXmlObject().Get())
                       ->Property(CInnerChoice::P_q)
                       .GetString());
    // By itself the same class is strict.
    CInnerChoice alone;
    EXPECT_EQ("Failed to process the element [Inner]\nNo child elements within the element [Inner] were populated. "
              "The element represents a choice, so one and only one element should be populated. The element "
              "contained no sutable child elements",
              ReadFailure([&] { alone.FromXml("<Inner xmlns='urn:t'/>"); }));
}

TEST(ChoiceWalk, PseudoChoiceGroupAmongTheParentsChildren) {
    CWithChoiceGroup object;
    object.FromXml("<CG xmlns='urn:t'><q>Q</q><r>R</r></CG>");
    EXPECT_EQ("Q", object.GetGroup()->Property(CChoiceGroupPQ::P_q).GetString());
    EXPECT_EQ("R", object.Property(CWithChoiceGroup::P_r).GetString());
    // A group that matches nothing is no error: it hands back the cursor unmoved.
    object.FromXml("<CG xmlns='urn:t'><r>R</r></CG>");
    EXPECT_FALSE(object.GetGroup()->Property(CChoiceGroupPQ::P_q).IsValid());
    EXPECT_EQ("R", object.Property(CWithChoiceGroup::P_r).GetString());
    EXPECT_EQ("Failed to process the element [CG]\nFailed read all the elements held within the element [CG]. The "
              "unexpected element [x] remains un processed",
              ReadFailure([&] { object.FromXml("<CG xmlns='urn:t'><x/><p>P</p></CG>"); }));
    // The group itself does not skip; the enclosing sequence passes over x and
    // offers p to the group again.
    object.FromXml("<CG xmlns='urn:t'><x/><p>P</p></CG>", IgnoringUnknownElements());
    EXPECT_EQ("P", object.GetGroup()->Property(CChoiceGroupPQ::P_p).GetString());
}

// ---------------------------------------------------------------------------------------------
// Failures name the path

TEST(ReadingFailures, ThreeLevelsDownGiveFourLinesOutermostFirst) {
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
}

TEST(ReadingFailures, ValuesReadBeforeAFailureStay) {
    CLevel1 object;
    EXPECT_NE("no exception",
              ReadFailure([&] { object.FromXml("<L1 xmlns='urn:t'><L2><L3><v>4</v><w/></L3></L2></L1>"); }));
    EXPECT_EQ(4, object.GetL2()->GetL3()->Property(CLevel3::P_v).GetI4());
}

// A class whose header names no walk.
class CBadGroup : public CTestGenerated<CBadGroup, 1> {
public:
    CBadGroup() { SetElementName("Bad"); }
    void Init() override {}
    static void BuildMetaData(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                              QvXmlLib10Data::CAttributeInfo**& attributes) {
        parent = new QvXmlLib10Data::CParentElementInfo(static_cast<QvXmlLib10Data::XmlElementGroupType>(7),
                                                        QvXmlLib10Data::XmlElementType_Element, "Bad", kNs, true, false,
                                                        -1, ItemType_Invalid, nullptr, false);
        elements = new QvXmlLib10Data::CElementInfo* [1] { nullptr };
        attributes = new QvXmlLib10Data::CAttributeInfo* [1] { nullptr };
    }
};

TEST(ReadingFailures, UnknownGroupType) {
    CBadGroup object;
    try {
        object.FromXml("<Bad/>");
        FAIL() << "no exception";
    } catch (const CQvValidationException& e) {
        EXPECT_EQ("Failed to process the element [Bad]\nUnknow Group Type", e.GetFullMessage());
        ASSERT_NE(nullptr, e.GetInnerException());
        EXPECT_EQ(typeid(CQvException), typeid(*e.GetInnerException()));
    }
}

} // namespace
