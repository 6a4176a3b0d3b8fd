// The features of the purchase-order classes on reading and writing: the payment class
// chosen by xsi:type, nil, the choice, the base type and the model group, open content,
// facets on output, and the failure chains. Defaults and the all group are checked by
// the whole output of the sample and by the binding's own tests.

#include "OrderTestSupport.h"

#include <string>

#include "collections/Element.h"
#include "foundation/QvException.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

// What Written() gives for an order read from COrderText's parts, up to the payment.
const char ROOT_WRITTEN[] =
    "<purchaseOrder xmlns=\"urn:example:purchase-orders\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:trk=\"urn:example:tracking\"";

class OrderFeatureTest : public OrderTest {
protected:
    // Reads the text into m_order.
    void Read(const COrderText& text) { m_order.FromXml(text.Text().c_str()); }
    std::string ReadFailure(const COrderText& text) {
        return FailureOf([&] { Read(text); });
    }

    CPurchaseOrder m_order;
};

TEST_F(OrderFeatureTest, WritesWhatItReadInSchemaOrder) {
    COrderText text;
    text.attributes = " id=\"A-1\" status=\"shipped\" priority=\"1\" express=\"true\" version=\"2\"";
    text.base = "<issuedBy>desk</issuedBy><reference>R-9</reference>";
    Read(text);
    EXPECT_EQ(std::string(ROOT_WRITTEN) +
                  " version=\"2\" id=\"A-1\" status=\"shipped\" priority=\"1\" express=\"true\">"
                  "<issuedBy>desk</issuedBy><reference>R-9</reference>"
                  "<customer><name>Ada</name><account>7</account></customer>"
                  "<pickupPoint>Kiosk 4</pickupPoint>"
                  "<line number=\"1\"><sku>AB-0001</sku><description>gear</description><quantity>2</quantity>"
                  "<unitPriceCents>150</unitPriceCents></line>"
                  "<comment>none</comment>"
                  "<payment xsi:type=\"InvoicePayment\"><amountCents>300</amountCents><dueDays>30</dueDays></payment>"
                  "</purchaseOrder>",
              Written(m_order));
    EXPECT_EQ(OrderStatus_shipped, m_order.GetStatus());
    EXPECT_EQ(2, m_order.GetBusinessDocument()->GetVersion());
    EXPECT_EQ("R-9", m_order.GetBusinessDocument()->GetReference());
}

// ---------------------------------------------------------------------------------------------
// The payment: an abstract type whose class the factory finds from xsi:type

TEST_F(OrderFeatureTest, PaymentClassComesFromTheTypeAndIsWrittenBack) {
    const struct {
        const char* payment;
        const char* written; // as Written() gives it back
        const char* describe;
    } cases[] = {
        {"<payment xsi:type=\"CardPayment\"><amountCents>5</amountCents><cardHolder>A</cardHolder>"
         "<last4>1815</last4></payment>",
         "<payment xsi:type=\"CardPayment\"><amountCents>5</amountCents><cardHolder>A</cardHolder>"
         "<last4>1815</last4></payment>",
         "card 5 A 1815"},
        // A prefix of its own for the type's namespace.
        {"<payment xmlns:p=\"urn:example:purchase-orders\" xsi:type=\"p:InvoicePayment\">"
         "<amountCents>9</amountCents><dueDays>14</dueDays></payment>",
         "<payment xsi:type=\"InvoicePayment\"><amountCents>9</amountCents><dueDays>14</dueDays></payment>",
         "invoice 9 14"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.payment);
        COrderText text;
        text.payment = c.payment;
        Read(text);
        std::string describe = "none";
        if (const auto* card = dynamic_cast<const CCardPayment*>(m_order.GetPayment()))
            describe =
                "card " + std::to_string(card->GetAmountCents()) + " " + card->GetCardHolder() + " " + card->GetLast4();
        else if (const auto* invoice = dynamic_cast<const CInvoicePayment*>(m_order.GetPayment()))
            describe =
                "invoice " + std::to_string(invoice->GetAmountCents()) + " " + std::to_string(invoice->GetDueDays());
        EXPECT_EQ(c.describe, describe);
        const std::string written = Written(m_order);
        EXPECT_NE(std::string::npos,
                  written.find(std::string("<comment>none</comment>") + c.written + "</purchaseOrder>"))
            << written;
    }
}

// ---------------------------------------------------------------------------------------------
// Nil

TEST_F(OrderFeatureTest, NillableElementsKeepNilApartFromAbsentAndEmpty) {
    const struct {
        const char* comment;
        const char* giftNote;
        const char* describe;
    } cases[] = {
        {"<comment xsi:nil=\"true\"/>", "<giftNote xsi:nil=\"1\">ignored</giftNote>", "nil, nil"},
        {"<comment xsi:nil=\"TRUE\"></comment>", "", "nil, absent"},
        {"<comment/>", "<giftNote/>", "text [], text []"},
        {"<comment xsi:nil=\"false\">c</comment>", "<giftNote xsi:nil=\"0\">wrapped</giftNote>",
         "text [c], text [wrapped]"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.describe);
        COrderText text;
        text.comment = c.comment;
        text.lines = std::string("<line number=\"1\"><sku>AB-0001</sku><description>gear</description>"
                                 "<quantity>2</quantity><unitPriceCents>150</unitPriceCents>") +
                     c.giftNote + "</line>";
        Read(text);
        const CLine& line = *m_order.GetLines()->Item(0);
        const std::string comment = m_order.IsCommentNil() ? "nil" : "text [" + m_order.GetComment() + "]";
        const std::string giftNote = line.IsGiftNoteNil() ? "nil"
                                     : line.HasGiftNote() ? "text [" + line.GetGiftNote() + "]"
                                                          : "absent";
        EXPECT_EQ(c.describe, comment + ", " + giftNote);

        // The same three states come back after writing.
        CPurchaseOrder other;
        other.FromXml(Written(m_order).c_str());
        EXPECT_EQ(Written(m_order), Written(other));
    }
}

// ---------------------------------------------------------------------------------------------
// The choice between shipTo and pickupPoint

TEST_F(OrderFeatureTest, ChoiceReadsOneMemberAndReadingAgainResetsIt) {
    // Which member is written is checked by the whole outputs of both.
    COrderText text;
    text.delivery = "<shipTo><street>Main St 1</street><city>Bern</city><email>a@b.c</email><phone>031</phone></shipTo>";
    Read(text);
    const CPurchaseOrderChoice& choice = *m_order.GetPurchaseOrderChoice();
    EXPECT_EQ("shipTo", choice.GetSelected());
    EXPECT_FALSE(choice.HasPickupPoint());
    EXPECT_EQ("031", choice.GetShipTo()->GetContact()->GetPhone());
    Read(COrderText());
    EXPECT_EQ("pickupPoint", choice.GetSelected());
    EXPECT_EQ(nullptr, choice.GetShipTo());
}

// ---------------------------------------------------------------------------------------------
// Failures on reading, each named with its path

TEST_F(OrderFeatureTest, ReadFailuresAreNamedWithTheirPath) {
    const char* const noPayment = "Failed to process the element [purchaseOrder]\n"
                                  "Failed to find a suitable substitution element for [payment]";
    const struct {
        std::string COrderText::*part;
        const char* text;
        const char* failure;
    } cases[] = {
        // A payment without a type the factory knows is not read: no type (Payment itself is
        // abstract), an unknown type, no payment at all. The other messages' own paths are
        // checked with the binding's test classes; these are the example's groups and types.
        {&COrderText::payment, "<payment><amountCents>5</amountCents></payment>", noPayment},
        {&COrderText::payment, "<payment xsi:type=\"CashPayment\"><amountCents>5</amountCents></payment>", noPayment},
        {&COrderText::payment, "", noPayment},
        // The choice group reads from the order's element, and names it once more.
        {&COrderText::delivery, "<shipTo><street>s</street><city xsi:nil=\"true\"/><email>e</email></shipTo>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [shipTo]\n"
         "Invalid use of 'nil' attibute in non-nillable element [city]"},
        {&COrderText::delivery, "",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to find a required element [PurchaseOrderChoice]"},
        {&COrderText::customer, "<customer><name>Bo</name></customer>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [customer]\n"
         "Failed to find the mandatory element [account]"},
        // The base type's and the model group's mandatory elements are missed as the group.
        {&COrderText::base, "<reference>R</reference>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to find a required element [BusinessDocument]"},
        // The choice group reads from the order's element, and names it once more.
        {&COrderText::delivery, "<shipTo><street>s</street><city>c</city><phone>1</phone></shipTo>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [shipTo]\n"
         "Failed to find a required element [Contact]"},
        {&COrderText::comment, "",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to find a required element [comment]"},
        {&COrderText::attributes, " id=\"A-1\" status=\"lost\"",
         "Failed to process the element [purchaseOrder]\n"
         "Invalid value [lost] for the enumeration OrderStatus"},
        // An attribute of the schema's own namespace is no open content.
        {&COrderText::attributes, " xmlns:po=\"urn:example:purchase-orders\" id=\"A-1\" po:id=\"B\"",
         "Failed to process the element [purchaseOrder]\n"
         "Unexpected Attribute [id] found."},
    };
    for (const auto& c : cases) {
        COrderText text;
        text.*c.part = c.text;
        EXPECT_EQ(c.failure, ReadFailure(text)) << c.text;
    }
}

// ---------------------------------------------------------------------------------------------
// Facets, open content

TEST_F(OrderFeatureTest, FacetsAreCheckedOnOutput) {
    const struct {
        void (*change)(CLine&);
        const char* failure;
    } cases[] = {
        {[](CLine& line) { line.SetQuantity(0); }, "Invalid Value for quantity [0]"},
        {[](CLine& line) { line.SetQuantity(10000); }, "Invalid Value for quantity [10000]"},
        {[](CLine& line) { line.SetSku("ab-0001"); }, "Invalid Value for sku [ab-0001]"},
    };
    for (const auto& c : cases) {
        Read(COrderText());
        c.change(*m_order.GetLines()->Item(0));
        EXPECT_EQ(std::string("Failed to convert the element [purchaseOrder] to XML\n"
                              "Failed to convert the element [line] to XML\n") +
                      c.failure,
                  FailureOf([&] { Written(m_order); }));
    }
}

TEST_F(OrderFeatureTest, OpenContentIsKept) {
    COrderText text;
    text.attributes = " id=\"A-1\" trk:source=\"web\" xmlns:o=\"urn:o\" o:flag=\"1\"";
    text.open = "<trk:parcel carrier=\"RM\"><trk:leg n=\"1\">London</trk:leg><trk:leg>Paris</trk:leg></trk:parcel>"
                "<o:note>n</o:note>";
    Read(text);
    ASSERT_EQ(2, m_order.GetAnyAttributes()->GetCount());
    EXPECT_EQ("flag", m_order.GetAnyAttributes()->Item(1)->GetName());
    ASSERT_EQ(2, m_order.GetAnyElements()->GetCount());
    EXPECT_EQ(2, m_order.GetAnyElements()->Item(0)->GetElements()->GetCount());

    const std::string written = Written(m_order);
    EXPECT_EQ(std::string(ROOT_WRITTEN) +
                  " version=\"1\" id=\"A-1\" status=\"open\" priority=\"3\" express=\"false\" trk:source=\"web\" "
                  "xmlns:AA=\"urn:o\" AA:flag=\"1\">",
              written.substr(0, written.find('>') + 1));
    EXPECT_EQ("<trk:parcel carrier=\"RM\"><trk:leg n=\"1\">London</trk:leg><trk:leg>Paris</trk:leg></trk:parcel>"
              "<AA:note>n</AA:note></purchaseOrder>",
              written.substr(written.find("</payment>") + 10));
}

// ---------------------------------------------------------------------------------------------
// Reading twice, the tables

TEST_F(OrderFeatureTest, ReadingAgainKeepsNothingOfTheFirstDocument) {
    COrderText first;
    first.attributes = " id=\"A-1\" status=\"shipped\" trk:source=\"web\"";
    first.base = "<issuedBy>desk</issuedBy><reference>R</reference>";
    first.customer = "<customer><name>Ada</name><account>7</account><vip>false</vip></customer>";
    first.lines += first.lines;
    first.open = "<trk:parcel>P</trk:parcel>";
    Read(first);
    ASSERT_EQ(2, m_order.GetLines()->GetCount());

    COrderText second;
    second.base = "<issuedBy>desk</issuedBy>";
    Read(second);
    CPurchaseOrder fresh;
    fresh.FromXml(second.Text().c_str());
    EXPECT_EQ(Written(fresh), Written(m_order));
    EXPECT_EQ(1, m_order.GetLines()->GetCount());
    EXPECT_FALSE(m_order.GetBusinessDocument()->HasReference());
    EXPECT_FALSE(m_order.GetCustomer()->HasVip());
}

TEST_F(OrderFeatureTest, TablesAreBuiltAgainAfterTheyWereGivenBack) {
    Read(COrderText());
    const std::string written = Written(m_order);
    CleanOrdersMetaData();
    CPurchaseOrder other;
    other.FromXml(written.c_str());
    EXPECT_EQ(written, Written(other));
}

} // namespace
} // namespace OrderTests
