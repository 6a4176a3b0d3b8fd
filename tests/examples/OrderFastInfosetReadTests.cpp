// The purchase-order example reads its own Fast Infoset output through every reading
// entry point, and writes the same XML text as after its text round trip.

#include "OrderTestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <unistd.h>

#include "foundation/BinaryData.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {
namespace {

using OrderFastInfosetReadTest = OrderTest;

TEST_F(OrderFastInfosetReadTest, ReadsItsOwnFastInfosetIntoTheSameText) {
    CPurchaseOrder sample;
    sample.FromXml(SampleText().c_str());
    const std::string text = sample.ToXml(true, true, EOLType_LF);

    CXmlSerializationContext suggested;
    suggested.GetFIContext().SetSuggestedValues();
    const CXmlSerializationContext contexts[] = {CXmlSerializationContext(), suggested};
    const std::string path = testing::TempDir() + "qvxml_order_" + std::to_string(::getpid()) + ".fi";
    for (const CXmlSerializationContext& context : contexts) {
        const CBinaryData bytes = sample.ToFastInfosetStream(static_cast<FInfoDecl>(4), context);

        CPurchaseOrder fromStream;
        fromStream.FromXmlStream(bytes, context);
        EXPECT_EQ(text, fromStream.ToXml(true, true, EOLType_LF));

        sample.ToFastInfosetFile(path.c_str(), FInfoDecl_None, context);
        CPurchaseOrder fromFile;
        fromFile.FromXmlFile(path.c_str(), context);
        EXPECT_EQ(text, fromFile.ToXml(true, true, EOLType_LF));
        std::remove(path.c_str());
    }
}

} // namespace
} // namespace OrderTests
