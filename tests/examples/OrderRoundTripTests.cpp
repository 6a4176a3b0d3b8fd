// The bundled sample makes the round trip: read, written, read and written again gives
// the same bytes, through ToXml and through ToXmlStream in UTF-8 and UTF-16.

#include "OrderTestSupport.h"

#include <string>

#include "foundation/BinaryData.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

// The sample as ToXml writes it with the default settings: invented prefixes, the
// attributes with defaults filled in, the payment's type named.
const char SAMPLE_WRITTEN[] =
    "<AA:purchaseOrder xmlns:AA=\"urn:example:purchase-orders\" version=\"1\" id=\"PO-2026-0042\" "
    "status=\"confirmed\" priority=\"3\" express=\"true\" xmlns:AB=\"urn:example:tracking\" AB:source=\"web-shop\">\n"
    "\t<AA:issuedBy>Order desk, Z\xC3\xBCrich</AA:issuedBy>\n"
    "\t<AA:customer>\n"
    "\t\t<AA:name>Ada Lovelace</AA:name>\n"
    "\t\t<AA:account>100234</AA:account>\n"
    "\t</AA:customer>\n"
    "\t<AA:shipTo>\n"
    "\t\t<AA:street>12 St James's Square</AA:street>\n"
    "\t\t<AA:city>London</AA:city>\n"
    "\t\t<AA:email>ada@example.org</AA:email>\n"
    "\t</AA:shipTo>\n"
    "\t<AA:line number=\"1\">\n"
    "\t\t<AA:sku>DE-1822</AA:sku>\n"
    "\t\t<AA:description>Difference engine gears &amp; cams</AA:description>\n"
    "\t\t<AA:quantity>4</AA:quantity>\n"
    "\t\t<AA:unitPriceCents>1250</AA:unitPriceCents>\n"
    "\t\t<AA:unitPrice>12.50</AA:unitPrice>\n"
    "\t</AA:line>\n"
    "\t<AA:line number=\"2\">\n"
    "\t\t<AA:sku>AE-1837</AA:sku>\n"
    "\t\t<AA:description>Analytical engine caf\xC3\xA9 table</AA:description>\n"
    "\t\t<AA:quantity>1</AA:quantity>\n"
    "\t\t<AA:unitPriceCents>99900</AA:unitPriceCents>\n"
    "\t\t<AA:giftNote xmlns:AC=\"http://www.w3.org/2001/XMLSchema-instance\" AC:nil=\"true\"/>\n"
    "\t</AA:line>\n"
    "\t<AA:comment xmlns:AC=\"http://www.w3.org/2001/XMLSchema-instance\" AC:nil=\"true\"/>\n"
    "\t<AA:payment xmlns:AC=\"http://www.w3.org/2001/XMLSchema-instance\" AC:type=\"AA:CardPayment\">\n"
    "\t\t<AA:amountCents>104900</AA:amountCents>\n"
    "\t\t<AA:cardHolder>A. Lovelace</AA:cardHolder>\n"
    "\t\t<AA:last4>1815</AA:last4>\n"
    "\t</AA:payment>\n"
    "\t<AA:orderDate>2026-11-23Z</AA:orderDate>\n"
    "\t<AA:deliverFrom>2026-12-01T08:00:00-05:00</AA:deliverFrom>\n"
    "\t<AA:deliverWithin>P2DT4H</AA:deliverWithin>\n"
    "\t<AA:tag>engines</AA:tag>\n"
    "\t<AA:tag>gift</AA:tag>\n"
    "\t<AA:batchQuantity>3</AA:batchQuantity>\n"
    "\t<AA:batchQuantity>2</AA:batchQuantity>\n"
    "\t<AA:attachment>T3JkZXIgZm9ybQ==</AA:attachment>\n"
    "\t<AA:checksum>1C291CA3</AA:checksum>\n"
    "\t<AA:serialNumber>1180591620717411303425</AA:serialNumber>\n"
    "\t<AB:parcel carrier=\"Royal Mail\">RM-000-1815</AB:parcel>\n"
    "</AA:purchaseOrder>\n";

// UTF-16 in little-endian byte order, from UTF-8 of the Basic Multilingual Plane.
std::string Utf16(const std::string& utf8) {
    std::string out;
    for (size_t i = 0; i < utf8.size();) {
        const unsigned char lead = static_cast<unsigned char>(utf8[i]);
        unsigned codePoint = lead;
        size_t length = 1;
        if (lead >= 0xE0) {
            codePoint = lead & 0x0F;
            length = 3;
        } else if (lead >= 0xC0) {
            codePoint = lead & 0x1F;
            length = 2;
        }
        for (size_t k = 1; k < length; ++k)
            codePoint = (codePoint << 6) | (utf8[i + k] & 0x3F);
        out += static_cast<char>(codePoint & 0xFF);
        out += static_cast<char>(codePoint >> 8);
        i += length;
    }
    return out;
}

using OrderRoundTripTest = OrderTest;

TEST_F(OrderRoundTripTest, ToXmlGivesTheSameTextAfterASecondRead) {
    CPurchaseOrder first;
    first.FromXml(SampleText().c_str());
    const std::string written = first.ToXml(true, true, EOLType_LF);
    EXPECT_EQ(std::string("<?xml version=\"1.0\"?>\n") + SAMPLE_WRITTEN, written);

    CPurchaseOrder second;
    second.FromXml(written.c_str());
    EXPECT_EQ(written, second.ToXml(true, true, EOLType_LF));
}

TEST_F(OrderRoundTripTest, ToXmlStreamGivesTheSameBytesAfterASecondRead) {
    const struct {
        XmlEncoding encoding;
        std::string expected;
    } cases[] = {
        {XmlEncoding_UTF8, std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") + SAMPLE_WRITTEN},
        {XmlEncoding_UTF16, Utf16(std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n") + SAMPLE_WRITTEN)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.encoding);
        CPurchaseOrder first;
        first.FromXml(SampleText().c_str());
        const CBinaryData written = first.ToXmlStream(true, true, c.encoding, EOLType_LF);
        EXPECT_EQ(c.expected, Bytes(written));

        CPurchaseOrder second;
        second.FromXmlStream(written);
        EXPECT_EQ(Bytes(written), Bytes(second.ToXmlStream(true, true, c.encoding, EOLType_LF)));
    }
}

} // namespace
} // namespace OrderTests
