// The rich kinds in the purchase-order example: prices as decimals, dates, a delivery
// window, lists of tags and quantities, binary data and a serial number beyond 64 bits.
#include <string>

#include "OrderTestSupport.h"
#include "foundation/QvException.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

using OrderRichKindTest = OrderTest;

TEST_F(OrderRichKindTest, SampleValuesArriveInTheirTypes) {
    CPurchaseOrder order;
    order.FromXml(SampleText().c_str());
    EXPECT_EQ(order.GetLines()->Item(0)->GetUnitPrice()->ToString(), "12.5");
    EXPECT_FALSE(order.GetLines()->Item(1)->GetUnitPrice().has_value());
    EXPECT_EQ(order.GetOrderDate()->GetType(), CDateTime::DTType_date);
    EXPECT_EQ(order.GetDeliverFrom()->GetZoneHour(), -5);
    EXPECT_EQ(order.GetDeliverWithin()->GetHours(), 4ul);
    ASSERT_EQ(order.GetTags()->GetCount(), 2);
    EXPECT_EQ(order.GetTags()->Item(1), "gift");
    EXPECT_EQ(order.GetBatchQuantities()->Item(0) + order.GetBatchQuantities()->Item(1), 5);
    const CBinaryData attachment = *order.GetAttachment();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(attachment.GetData()), attachment.GetLength()), "Order form");
    EXPECT_EQ(order.GetChecksum()->GetLength(), 4ul);
    EXPECT_TRUE(*order.GetSerialNumber() > CBigInteger("18446744073709551615"));

    // Reading again starts from nothing.
    order.FromXml(SampleText().c_str());
    EXPECT_EQ(order.GetTags()->GetCount(), 2);
}

TEST_F(OrderRichKindTest, FacetsOfTheRichKindsAreCheckedOnOutput) {
    const struct {
        void (*change)(CPurchaseOrder&);
        const char* failure;
    } cases[] = {
        {[](CPurchaseOrder& order) { order.GetLines()->Item(0)->SetUnitPrice(CDecimal("0")); },
         "Failed to convert the element [purchaseOrder] to XML\n"
         "Failed to convert the element [line] to XML\n"
         "Invalid Value for unitPrice [0]"},
        {[](CPurchaseOrder& order) { order.GetLines()->Item(0)->SetUnitPrice(CDecimal("1000000.01")); },
         "Failed to convert the element [purchaseOrder] to XML\n"
         "Failed to convert the element [line] to XML\n"
         "Invalid Value for unitPrice [1000000.01]"},
        {[](CPurchaseOrder& order) { order.SetChecksum(CBinaryData("abc")); },
         "Failed to convert the element [purchaseOrder] to XML\n"
         "Invalid Value for checksum [616263]"},
        {[](CPurchaseOrder& order) {
             CDateTimeSpan span;
             span.ParseXSDDuration("PT12H");
             order.SetDeliverWithin(span);
         },
         "Failed to convert the element [purchaseOrder] to XML\n"
         "Invalid Value for deliverWithin [PT12H]"},
    };
    for (const auto& c : cases) {
        CPurchaseOrder order;
        order.FromXml(SampleText().c_str());
        c.change(order);
        EXPECT_EQ(FailureOf([&] { order.ToXml(); }), c.failure);
    }

    // A list value is checked as it is added.
    CPurchaseOrder order;
    EXPECT_EQ(FailureOf([&] { order.GetBatchQuantities()->Add(0); }), "Invalid Value for batchQuantity [0]");
    EXPECT_EQ(order.GetBatchQuantities()->GetCount(), 0);
}

} // namespace
} // namespace OrderTests
