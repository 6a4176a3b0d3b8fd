#pragma once

// Support for the tests of the purchase-order example's classes: documents built from
// parts, the bundled sample, the settings for readable output, and the whole message
// chain of a failure.
//
// Non-ASCII text: the fixture runs every test under ASCIIOnly(true), so that text
// passes as UTF-8 bytes whatever the process's locale, and restores the previous
// setting afterwards.

#include <gtest/gtest.h>

#include <string>

#include "binding/XmlSerializationContext.h"
#include "foundation/Encoder.h"
#include "orders/Orders.h"

#include "../support/TestSupport.h"

namespace OrderTests {

extern const char* const TRACKING_NAMESPACE; // "urn:example:tracking"
extern const char* const INSTANCE_NAMESPACE; // "http://www.w3.org/2001/XMLSchema-instance"

// A purchase order in the schema's namespace as the default namespace, with the
// prefixes xsi and trk declared, put together from its parts. Each part is the XML
// text of one member; a test replaces the one it is about.
struct COrderText {
    std::string attributes = " id=\"A-1\"";
    std::string base = "<issuedBy>desk</issuedBy>";
    std::string customer = "<customer><name>Ada</name><account>7</account></customer>";
    std::string delivery = "<pickupPoint>Kiosk 4</pickupPoint>";
    std::string lines = "<line number=\"1\"><sku>AB-0001</sku><description>gear</description>"
                        "<quantity>2</quantity><unitPriceCents>150</unitPriceCents></line>";
    std::string comment = "<comment>none</comment>";
    std::string payment = "<payment xsi:type=\"InvoicePayment\"><amountCents>300</amountCents>"
                          "<dueDays>30</dueDays></payment>";
    std::string open;

    std::string Text() const;
};

// The bundled sample document, examples/orders/order.xml.
std::string SampleText();

// Output with the schema's namespace as default namespace and xsi and trk declared on
// the root, as COrderText writes its documents.
QvXmlLib10::CXmlSerializationContext Readable();

// Writes the order without declaration and formatting, with Readable() or the given
// settings.
std::string Written(const PurchaseOrders::CPurchaseOrder& order);
std::string Written(const PurchaseOrders::CPurchaseOrder& order, const QvXmlLib10::CXmlSerializationContext& context);

// Runs each test with ASCIIOnly(true) and restores the previous setting.
class OrderTest : public ::testing::Test {
    const ScopedAsciiOnly m_asciiOnly{true};
};

} // namespace OrderTests
