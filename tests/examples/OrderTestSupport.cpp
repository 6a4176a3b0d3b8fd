#include "OrderTestSupport.h"

#include <fstream>
#include <sstream>

#include "foundation/QvException.h"

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace OrderTests {

const char* const TRACKING_NAMESPACE = "urn:example:tracking";
const char* const INSTANCE_NAMESPACE = "http://www.w3.org/2001/XMLSchema-instance";

namespace {

// The classes' tables are given back once all tests have run.
class CMetaDataCleanUp : public ::testing::Environment {
public:
    void TearDown() override { CleanOrdersMetaData(); }
};

::testing::Environment* const g_cleanUp = ::testing::AddGlobalTestEnvironment(new CMetaDataCleanUp);

} // namespace

std::string COrderText::Text() const {
    return std::string("<purchaseOrder xmlns=\"urn:example:purchase-orders\""
                       " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                       " xmlns:trk=\"urn:example:tracking\"") +
           attributes + ">" + base + customer + delivery + lines + comment + payment + open + "</purchaseOrder>";
}

std::string SampleText() {
    std::ifstream file(std::string(QVXML_EXAMPLE_DIR) + "/orders/order.xml", std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

CXmlSerializationContext Readable() {
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(TARGET_NAMESPACE);
    context.GetNamespaceAliases().Add("xsi", INSTANCE_NAMESPACE);
    context.GetNamespaceAliases().Add("trk", TRACKING_NAMESPACE);
    return context;
}

std::string Written(const CPurchaseOrder& order) { return Written(order, Readable()); }

std::string Written(const CPurchaseOrder& order, const CXmlSerializationContext& context) {
    return order.ToXml(false, false, EOLType_LF, context);
}

} // namespace OrderTests
