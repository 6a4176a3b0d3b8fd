#include <thread>

#include "support/TestClasses.h"

using namespace QvXmlLib10;
using namespace QvXmlTest;

namespace {

// An order with `items` items (1 to 3 are valid), an Extra and two tags.
std::string OrderText(int seed, int items) {
    std::string text =
        "<Order xmlns=\"urn:t\" code=\"c" + std::to_string(seed) + "\"><name>n" + std::to_string(seed) + "</name>";
    for (int i = 0; i < items; ++i)
        text += "<Item n=\"" + std::to_string(seed * 10 + i) + "\"><label>l" + std::to_string(i) + "</label></Item>";
    text += "<Extra xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"Item\" n=\"" +
            std::to_string(seed) + "\"><label>e</label></Extra><tag>a</tag><tag>b</tag></Order>";
    return text;
}

// Reads the text into a new order and writes it back; failures come back as their
// message chain.
std::string Convert(const std::string& text, const CXmlSerializationContext& context) {
    try {
        CSmartPtr<COrder> order = new COrder();
        order->FromXml(text.c_str(), context);
        return WriteXml(*order, context);
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
}

const std::string kTooMany =
    "Failed to process the element [Order]\nThe Maximum number of [Item] elements allowed in this collection is 3";

void ReleaseAllMetaData() {
    COrder::ReleaseMetaData();
    CItem::ReleaseMetaData();
}

// Failures on the way, in reading and in writing, release what they built.
TEST(Lifetime, FailedConversionsReleaseEveryObject) {
    const CXmlSerializationContext context = InT();
    const int orders = COrder::GetLiveCount();
    const int items = CItem::GetLiveCount();
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(kTooMany, Convert(OrderText(i, 4), context));
        CSmartPtr<COrder> order = new COrder();
        order->Collection<CObjectCol>(COrder::P_items)->AppendItem(new CItem());
        order->Property(COrder::P_code).SetString("c");
        order->Property(COrder::P_Extra).SetXmlObject(new CItem());
        EXPECT_THROW(WriteXml(*order, context), CQvValidationException);
    }
    EXPECT_EQ(orders, COrder::GetLiveCount());
    EXPECT_EQ(items, CItem::GetLiveCount());
}

// The tables are built once per class, by whichever thread comes first, shared by all
// objects and built again after a release; every object is released.
TEST(Lifetime, SharedTablesGiveTheSameResultsOnTwoThreads) {
    const CXmlSerializationContext context = InT();
    const int count = 100;
    std::vector<std::string> inputs;
    for (int i = 0; i < count; ++i) {
        // Every fifth document has too many items and fails; the others come back unchanged.
        inputs.push_back(OrderText(i, i % 5 == 4 ? 4 : 1 + i % 3));
        if (i % 5 != 4) ASSERT_EQ(inputs.back(), Convert(inputs.back(), context));
    }
    const int orders = COrder::GetLiveCount();
    const int items = CItem::GetLiveCount();
    ReleaseAllMetaData();
    const int built = COrder::GetBuildCount();

    std::vector<std::string> results[2];
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < count; ++i)
                results[t].push_back(Convert(inputs[(i + t * 7) % count], context));
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(built + 1, COrder::GetBuildCount());
    for (int t = 0; t < 2; ++t) {
        ASSERT_EQ(static_cast<size_t>(count), results[t].size());
        for (int i = 0; i < count; ++i) {
            const int k = (i + t * 7) % count;
            EXPECT_EQ(k % 5 == 4 ? kTooMany : inputs[k], results[t][i]) << t << ":" << i;
        }
    }
    EXPECT_EQ(orders, COrder::GetLiveCount());
    EXPECT_EQ(items, CItem::GetLiveCount());
    ReleaseAllMetaData();
    COrder again;
    again.FromXml(inputs[0].c_str());
    EXPECT_EQ(built + 2, COrder::GetBuildCount());
}

} // namespace
