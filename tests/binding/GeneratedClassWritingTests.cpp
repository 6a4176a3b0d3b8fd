
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlTest;

namespace {

CSmartPtr<CItem> NewItem(long n, const char* label) {
    CSmartPtr<CItem> item = new CItem();
    item->Property(CItem::P_n).SetI4(n);
    item->Property(CItem::P_label).SetString(label);
    return item;
}

TEST(GeneratedClassWriting, RootAdditionsComeInTheirOrder) {
    CSeqAB object;
    object.Property(CSeqAB::P_a).SetString("x");
    CXmlSerializationContext context;
    context.GetProcessingInstructions().push_back("one");
    context.GetProcessingInstructions().push_back("two");
    context.GetNamespaceAliases().Add("q", "urn:q");
    context.GetNamespaceAliases().Add("p", "urn:p");
    context.SetDefaultNamespaceURI("urn:d");
    context.SetInLineSchema("<xs:schema/>");
    EXPECT_EQ("pi(one) pi(two) xmlns:p=urn:p xmlns:q=urn:q xmlns=urn:d <SeqAB{urn:t} schema(<xs:schema/>) "
              "<a{urn:t} \"x\" /> />",
              RecordXml(object, context));

    // Below the root none of them is written again.
    CLevel1 levels;
    levels.Object<CLevel2>(CLevel1::P_L2)->Object<CLevel3>(CLevel2::P_L3)->Property(CLevel3::P_v).SetI4(1);
    EXPECT_EQ("pi(one) pi(two) xmlns:p=urn:p xmlns:q=urn:q xmlns=urn:d <L1{urn:t} schema(<xs:schema/>) "
              "<L2{urn:t} <L3{urn:t} <v{urn:t} \"1\" /> /> /> />",
              RecordXml(levels, context));
}

TEST(GeneratedClassWriting, NilObjectWritesTheNilAttributeInsteadOfItsContentAndNilTextComesLast) {
    CNillableText object;
    object.Property(CNillableText::P_x).SetString("s");
    object.Property(CNillableText::P_text).SetI4(3);
    EXPECT_EQ("<NT{urn:t} <x{urn:t} \"s\" /> \"3\" />", RecordXml(object));
    object.SetIsNil(true);
    EXPECT_EQ("<NT{urn:t} @nil />", RecordXml(object));
    EXPECT_EQ("<NT xmlns=\"urn:t\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>",
              WriteXml(object, InT()));
    // A nil text comes behind the children.
    object.SetIsNil(false);
    object.Property(CNillableText::P_text).SetNil();
    EXPECT_EQ("<NT{urn:t} <x{urn:t} \"s\" /> @nil />", RecordXml(object));
}

TEST(GeneratedClassWriting, TypeAttributeUnderAnotherName) {
    CSmartPtr<CItem> item = NewItem(1, "l");
    EXPECT_EQ("<Item{urn:t} @n{}=1 <label{urn:t} \"l\" /> />", RecordXml(*item));
    item->SetElementName("Extra");
    EXPECT_EQ("<Extra{urn:t} @type{urn:t}Item @n{}=1 <label{urn:t} \"l\" /> />", RecordXml(*item));
    CXmlSerializationContext context;
    context.SetWriteTypeAttribute(false);
    EXPECT_EQ("<Extra{urn:t} @n{}=1 <label{urn:t} \"l\" /> />", RecordXml(*item, context));
    // A class that does not ask for it writes none.
    CSeqAB seq;
    seq.SetElementName("Renamed");
    EXPECT_EQ("<Renamed{urn:t} />", RecordXml(seq));
}

TEST(GeneratedClassWriting, PseudoChildAttributesLandBehindTheClassesOwn) {
    CWithGroup object;
    object.Property(CWithGroup::P_g).SetString("1");
    object.Property(CWithGroup::P_a).SetString("A");
    object.Property(CWithGroup::P_z).SetString("Z");
    CGroupXY* const group = object.Object<CGroupXY>(CWithGroup::P_group);
    group->Property(CGroupXY::P_ga).SetString("2");
    group->Property(CGroupXY::P_x).SetString("X");
    EXPECT_EQ("<G{urn:t} @g{}=1 @ga{}=2 <a{urn:t} \"A\" /> <x{urn:t} \"X\" /> <z{urn:t} \"Z\" /> />",
              RecordXml(object));
    EXPECT_EQ("<G xmlns=\"urn:t\" g=\"1\" ga=\"2\"><a>A</a><x>X</x><z>Z</z></G>", WriteXml(object, InT()));
}

TEST(GeneratedClassWriting, ChoiceWritesTheFirstMemberThatIsSetAndAnEmptyChoiceFailsUnlessIgnoredOrChosen) {
    CChoiceAB object;
    object.Property(CChoiceAB::P_b).SetI4(2);
    EXPECT_EQ("<ChoiceAB{urn:t} <b{urn:t} \"2\" /> />", RecordXml(object));
    object.Property(CChoiceAB::P_a).SetString("1");
    EXPECT_EQ("<ChoiceAB{urn:t} <a{urn:t} \"1\" /> />", RecordXml(object));
    object.Property(CChoiceAB::P_a).SetInvalid();
    object.Property(CChoiceAB::P_b).SetInvalid();
    EXPECT_EQ("Failed to convert the element [ChoiceAB] to XML\nThis element is a choice, and as such must have at "
              "one (and only one) valid item, currently there are none set",
              WrappedFailureOf([&] { RecordXml(object); }));
    CXmlSerializationContext context;
    context.SetIgnoreMissingChoice(true);
    EXPECT_EQ("<ChoiceAB{urn:t} />", RecordXml(object, context));

    CChooser chooser;
    chooser.Property(CChooser::P_Inner).SetXmlObject(new CInnerChoice());
    EXPECT_EQ("<Ch{urn:t} <Inner{urn:t} /> />", RecordXml(chooser));
}

TEST(GeneratedClassWriting, CollectionCountIsCheckedUnlessIgnoredAndAttributeFailuresAreWrappedTwice) {
    COrder order;
    order.Property(COrder::P_code).SetString("c");
    EXPECT_EQ("Failed to convert the element [Order] to XML\nThe Minimum number of [Item] elements allowed in this "
              "collection is 1",
              WrappedFailureOf([&] { WriteXml(order); }));
    EXPECT_EQ("<Order{urn:t} @code{}=c />", RecordXml(order, IgnoringCounts()));

    // Attribute failures are wrapped twice.
    order.Property(COrder::P_code).SetInvalid();
    order.Collection<CObjectCol>(COrder::P_items)->AppendItem(NewItem(1, "a"));
    EXPECT_EQ("Failed to convert the element [Order] to XML\nFailed to convert attributes to XML\nInvalid Type 0 to "
              "convert to string",
              WrappedFailureOf([&] { RecordXml(order); }));
    try {
        RecordXml(order);
    } catch (const CQvException& e) {
        ASSERT_NE(nullptr, e.GetInnerException());
        EXPECT_EQ(typeid(CQvException), typeid(*e.GetInnerException()));
    }
}

TEST(GeneratedClassWriting, FailureThreeLevelsDownGivesFourLinesOutermostFirst) {
    CLevel1 levels;
    levels.Object<CLevel2>(CLevel1::P_L2)->Object<CLevel3>(CLevel2::P_L3)->Property(CLevel3::P_v).SetI4(11);
    EXPECT_EQ("Failed to convert the element [L1] to XML\nFailed to convert the element [L2] to XML\n"
              "Failed to convert the element [L3] to XML\nInvalid Value for v [11]",
              WrappedFailureOf([&] { WriteXml(levels); }));
    levels.Object<CLevel2>(CLevel1::P_L2)->Object<CLevel3>(CLevel2::P_L3)->Property(CLevel3::P_v).SetI4(10);
    EXPECT_EQ("<L1 xmlns=\"urn:t\"><L2><L3><v>10</v></L3></L2></L1>", WriteXml(levels, InT()));
}

} // namespace
