// The features of the purchase-order classes on reading and writing: the payment class
// chosen by xsi:type, nil, the choice, the all group, the base type and the model group,
// defaults on output, open content, facets on output, and the failure chains.

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

TEST_F(OrderFeatureTest, TypeAttributeCanBeLeftOutOfTheOutput) {
    Read(COrderText());
    CXmlSerializationContext context = Readable();
    context.SetWriteTypeAttribute(false);
    const std::string written = Written(m_order, context);
    EXPECT_NE(std::string::npos, written.find("<payment><amountCents>300</amountCents><dueDays>30</dueDays></payment>"))
        << written;
    // Without its type the payment cannot be read back.
    CPurchaseOrder other;
    EXPECT_EQ("Failed to process the element [purchaseOrder]\n"
              "Failed to find a suitable substitution element for [payment]",
              FailureOf([&] { other.FromXml(written.c_str()); }));
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

TEST_F(OrderFeatureTest, NilIsWrittenAsTheAttributeAlone) {
    Read(COrderText());
    m_order.SetCommentNil();
    m_order.GetLines()->Item(0)->SetGiftNoteNil();
    const std::string written = Written(m_order);
    EXPECT_NE(std::string::npos, written.find("<unitPriceCents>150</unitPriceCents><giftNote xsi:nil=\"true\"/></line>"
                                              "<comment xsi:nil=\"true\"/><payment"))
        << written;
}

// ---------------------------------------------------------------------------------------------
// The choice between shipTo and pickupPoint

TEST_F(OrderFeatureTest, ChoiceReadsOneMemberAndWritesOnlyThatOne) {
    COrderText text;
    text.delivery = "<shipTo><street>Main St 1</street><city>Bern</city><postcode>3011</postcode>"
                    "<email>a@b.c</email><phone>031</phone></shipTo>";
    Read(text);
    const CPurchaseOrderChoice& choice = *m_order.GetPurchaseOrderChoice();
    EXPECT_EQ("shipTo", choice.GetSelected());
    EXPECT_FALSE(choice.HasPickupPoint());
    ASSERT_NE(nullptr, choice.GetShipTo());
    EXPECT_EQ("3011", choice.GetShipTo()->GetPostcode());
    EXPECT_EQ("031", choice.GetShipTo()->GetContact()->GetPhone());
    std::string written = Written(m_order);
    EXPECT_NE(std::string::npos, written.find(std::string("</customer>") + text.delivery + "<line ")) << written;

    // Reading again resets the choice: the other member is taken.
    Read(COrderText());
    EXPECT_EQ("pickupPoint", choice.GetSelected());
    EXPECT_EQ(nullptr, choice.GetShipTo());
    written = Written(m_order);
    EXPECT_NE(std::string::npos, written.find("</customer><pickupPoint>Kiosk 4</pickupPoint><line ")) << written;
}

// ---------------------------------------------------------------------------------------------
// The all group, the base type and the model group

TEST_F(OrderFeatureTest, AllGroupReadsItsElementsInAnyOrder) {
    COrderText text;
    text.customer = "<customer><vip>true</vip><account>42</account><name>Bo</name></customer>";
    Read(text);
    const CCustomer& customer = *m_order.GetCustomer();
    EXPECT_EQ("Bo", customer.GetName());
    EXPECT_EQ(42, customer.GetAccount());
    EXPECT_TRUE(customer.HasVip() && customer.GetVip());
    // Written in schema order.
    const std::string written = Written(m_order);
    EXPECT_NE(std::string::npos,
              written.find("<customer><name>Bo</name><account>42</account><vip>true</vip></customer>"))
        << written;
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
        // abstract), an unknown type, the right name in another namespace, no payment at all.
        {&COrderText::payment, "<payment><amountCents>5</amountCents></payment>", noPayment},
        {&COrderText::payment, "<payment xsi:type=\"CashPayment\"><amountCents>5</amountCents></payment>", noPayment},
        {&COrderText::payment,
         "<payment xmlns:o=\"urn:other\" xsi:type=\"o:CardPayment\"><amountCents>5</amountCents>"
         "<cardHolder>A</cardHolder><last4>1815</last4></payment>",
         noPayment},
        {&COrderText::payment, "", noPayment},
        // The choice group reads from the order's element, and names it once more.
        {&COrderText::delivery, "<shipTo><street>s</street><city xsi:nil=\"true\"/><email>e</email></shipTo>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [shipTo]\n"
         "Invalid use of 'nil' attibute in non-nillable element [city]"},
        {&COrderText::comment, "<comment xsi:nil=\"yes\"/>",
         "Failed to process the element [purchaseOrder]\n"
         "Unexpected Value [yes] for 'nil' Attribute found."},
        {&COrderText::attributes, " id=\"A-1\" xsi:nil=\"true\"",
         "Failed to process the element [purchaseOrder]\n"
         "Invalid use of 'nil' attibute in non-nillable element [purchaseOrder]"},
        {&COrderText::delivery, "",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to find a required element [PurchaseOrderChoice]"},
        {&COrderText::customer, "<customer><name>Bo</name></customer>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [customer]\n"
         "Failed to find the mandatory element [account]"},
        {&COrderText::customer, "<customer><name>Bo</name><account>1</account><name>Bo</name></customer>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [customer]\n"
         "Failed read all the elements held within the element [customer]. The unexpected element [name] remains "
         "un processed"},
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
        {&COrderText::lines, "",
         "Failed to process the element [purchaseOrder]\n"
         "The Minimum number of [line] elements allowed in this collection is 1"},
        {&COrderText::lines,
         "<line><sku>AB-0001</sku><description>d</description><quantity>1</quantity>"
         "<unitPriceCents>1</unitPriceCents></line>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [line]\n"
         "Failed to find the required Attribute [number]"},
        {&COrderText::comment, "",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to find a required element [comment]"},
        {&COrderText::lines,
         "<line number=\"1\"><sku>AB-0001</sku><description>d</description><quantity>four</quantity>"
         "<unitPriceCents>1</unitPriceCents></line>",
         "Failed to process the element [purchaseOrder]\n"
         "Failed to process the element [line]\n"
         "The value [four] can not be converted to a i4"},
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
// Attributes with defaults, facets, open content

TEST_F(OrderFeatureTest, DefaultsAreWrittenUnlessTheContextLeavesThemOut) {
    Read(COrderText());
    EXPECT_EQ(OrderStatus_open, m_order.GetStatus());
    EXPECT_EQ(3, m_order.GetPriority());
    EXPECT_FALSE(m_order.GetExpress());
    EXPECT_EQ(1, m_order.GetBusinessDocument()->GetVersion());
    const std::string root = std::string(ROOT_WRITTEN) + " version=\"1\" id=\"A-1\" status=\"open\" priority=\"3\" "
                                                         "express=\"false\"><issuedBy>";
    EXPECT_EQ(root, Written(m_order).substr(0, root.size()));

    CXmlSerializationContext context = Readable();
    context.SetNoOptionalAttributeDefaultOutput(true);
    std::string expected = std::string(ROOT_WRITTEN) + " id=\"A-1\"><issuedBy>";
    EXPECT_EQ(expected, Written(m_order, context).substr(0, expected.size()));

    // Values other than the defaults stay.
    m_order.SetStatus(OrderStatus_cancelled);
    m_order.SetPriority(30);
    m_order.SetExpress(true);
    m_order.GetBusinessDocument()->SetVersion(2);
    expected = std::string(ROOT_WRITTEN) +
               " version=\"2\" id=\"A-1\" status=\"cancelled\" priority=\"30\" express=\"true\"><issuedBy>";
    EXPECT_EQ(expected, Written(m_order, context).substr(0, expected.size()));
}

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
// Objects built in code, reading twice, the tables

TEST_F(OrderFeatureTest, OrderBuiltInCodeIsWrittenAndReadBack) {
    CPurchaseOrder order;
    order.SetId("N-1");
    order.GetBusinessDocument()->SetIssuedBy("shop");
    order.GetCustomer()->SetName("Cy");
    order.GetCustomer()->SetAccount(12345678901LL);
    CAddress* address = new CAddress();
    address->SetStreet("Rue 1");
    address->SetCity("Gen\xC3\xA8ve");
    address->GetContact()->SetEmail("c@d.e");
    order.GetPurchaseOrderChoice()->SetShipTo(address);
    CLine* line = new CLine();
    line->SetNumber(1);
    line->SetSku("XY-0042");
    line->SetDescription("<bolt>");
    line->SetQuantity(9999);
    line->SetUnitPriceCents(-5);
    line->SetGiftNote("for you");
    order.GetLines()->Add(line);
    order.SetComment("");
    CCardPayment* payment = new CCardPayment();
    payment->SetAmountCents(1);
    payment->SetCardHolder("Cy");
    payment->SetLast4("0000");
    order.SetPayment(payment);
    order.GetAnyAttributes()->Add("source", "app", TRACKING_NAMESPACE);
    order.GetAnyElements()->Add("parcel", TRACKING_NAMESPACE)->SetText("P-1");

    const std::string expected =
        std::string(ROOT_WRITTEN) +
        " version=\"1\" id=\"N-1\" status=\"open\" priority=\"3\" express=\"false\" trk:source=\"app\">"
        "<issuedBy>shop</issuedBy><customer><name>Cy</name><account>12345678901</account></customer>"
        "<shipTo><street>Rue 1</street><city>Gen\xC3\xA8ve</city><email>c@d.e</email></shipTo>"
        "<line number=\"1\"><sku>XY-0042</sku><description>&lt;bolt&gt;</description><quantity>9999</quantity>"
        "<unitPriceCents>-5</unitPriceCents><giftNote>for you</giftNote></line>"
        "<comment/>"
        "<payment xsi:type=\"CardPayment\"><amountCents>1</amountCents><cardHolder>Cy</cardHolder>"
        "<last4>0000</last4></payment>"
        "<trk:parcel>P-1</trk:parcel></purchaseOrder>";
    EXPECT_EQ(expected, Written(order));

    m_order.FromXml(expected.c_str());
    EXPECT_EQ(expected, Written(m_order));
}

TEST_F(OrderFeatureTest, SettersRefuseObjectsThatCannotStandThere) {
    EXPECT_EQ("The Property [payment] is mandatory, it may node be NULL",
              FailureOf([&] { m_order.SetPayment(nullptr); }));
    const CSmartPtr<CCustomer> customer(new CCustomer());
    customer->SetElementName("client");
    EXPECT_EQ("This property requrires an element with the name customer the element being set has the element name "
              "client",
              FailureOf([&] { m_order.SetCustomer(customer.Get()); }));
}

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
