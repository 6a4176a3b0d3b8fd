
#include "collections/AttributeCollections.h"
#include "collections/Element.h"
#include "support/TestClasses.h"

using namespace QvXmlLib10;
using QvXmlTest::CSeqAB;

namespace {

CSmartPtr<CSeqAB> MakeSeqAB() {
    CSmartPtr<CSeqAB> object(new CSeqAB);
    object->Property(CSeqAB::P_a).SetString("x");
    object->Property(CSeqAB::P_b).SetI4(1);
    return object;
}

} // namespace

TEST(AdditionalRootAttributes, BuiltOnceOnDemandAndSharedByLaterCopies) {
    CXmlSerializationContext context;
    const CXmlSerializationContext early(context);

    const CSmartPtr<CAttributeCol> first = context.GetAdditionalRootAttributes();
    EXPECT_EQ(first.Get(), context.GetAdditionalRootAttributes().Get());
    EXPECT_EQ(first->GetNamespace(), "");
    EXPECT_EQ(first->GetNamespaceRestriction(), "##any");
    EXPECT_EQ(first->GetCount(), 0);

    // A copy made after the collection exists shares it; one made before builds its own.
    CXmlSerializationContext late(context);
    late.GetAdditionalRootAttributes()->Add("a", "1", "");
    EXPECT_EQ(late.GetAdditionalRootAttributes().Get(), first.Get());
    EXPECT_EQ(first->GetCount(), 1);
    EXPECT_NE(early.GetAdditionalRootAttributes().Get(), first.Get());
    EXPECT_EQ(early.GetAdditionalRootAttributes()->GetCount(), 0);
}

TEST(AdditionalRootAttributes, WrittenOnTheRootAheadOfItsOwnAttributes) {
    CSmartPtr<CSeqAB> object = MakeSeqAB();
    object->Property(CSeqAB::P_id).SetI4(5);

    CXmlSerializationContext context;
    EXPECT_EQ(object->ToXml(false, false, EOLType_LF, context),
              "<AA:SeqAB xmlns:AA=\"urn:t\" id=\"5\"><AA:a>x</AA:a><AA:b>1</AA:b></AA:SeqAB>");

    context.GetAdditionalRootAttributes()->Add("note", "a&b", "");
    context.GetAdditionalRootAttributes()->Add("loc", "here", "urn:extra");
    context.GetNamespaceAliases().Add("ex", "urn:extra");
    EXPECT_EQ(object->ToXml(false, false, EOLType_LF, context),
              "<AA:SeqAB xmlns:AA=\"urn:t\" xmlns:ex=\"urn:extra\" note=\"a&amp;b\" ex:loc=\"here\" id=\"5\">"
              "<AA:a>x</AA:a><AA:b>1</AA:b></AA:SeqAB>");
}

TEST(AdditionalRootAttributes, AnOpenContentRootDoesNotWriteThem) {
    CXmlSerializationContext context;
    context.GetAdditionalRootAttributes()->Add("note", "1", "");
    CSmartPtr<CElement> element(new CElement("e"));
    EXPECT_EQ(element->ToXml(false, false, EOLType_LF, context), "<e/>");
}

TEST(OpenContentEntryPoint, AGeneratedClassReadsFromAnElement) {
    CSmartPtr<CElement> element(new CElement("SeqAB", "urn:t"));
    element->GetElements()->Add("a")->SetText("y");
    element->GetElements()->Add("b")->SetText("7");
    element->GetAttributes()->Add("id", "3", "");

    CSmartPtr<CSeqAB> object(new CSeqAB);
    object->FromXmlElement(element.Get());
    EXPECT_EQ(object->ToXml(false, false),
              "<AA:SeqAB xmlns:AA=\"urn:t\" id=\"3\"><AA:a>y</AA:a><AA:b>7</AA:b></AA:SeqAB>");

    // The caller's context reads; the failure chain is the driver's.
    element->GetAttributes()->Add("extra", "1", "");
    CXmlSerializationContext lenient;
    lenient.SetIgnoreUnknownAttributes(true);
    object->FromXmlElement(element.Get(), lenient);
    try {
        object->FromXmlElement(element.Get());
        ADD_FAILURE() << "no exception";
    } catch (const CQvValidationException& e) {
        EXPECT_EQ(e.GetFullMessage(), "Failed to process the element [SeqAB]\nUnexpected Attribute [extra] found.");
    }
}
