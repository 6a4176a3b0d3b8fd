#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "binding/XmlGeneratedClass.h"
#include "binding/XmlSerializationContext.h"
#include "foundation/QvException.h"
#include "support/TestClasses.h"
#include "support/TestSupport.h"

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

void ReleaseAllMetaData() {
    COrder::ReleaseMetaData();
    CItem::ReleaseMetaData();
}

TEST(Lifetime, TablesAreBuiltOncePerClassAndRebuiltAfterRelease) {
    ReleaseAllMetaData();
    const int built = COrder::GetBuildCount();
    {
        COrder first;
        COrder second;
        first.FromXml(OrderText(1, 1).c_str());
        second.FromXml(OrderText(2, 2).c_str());
        EXPECT_EQ(first.GetParentElementInfo(), second.GetParentElementInfo());
        EXPECT_EQ(first.GetClassElementInfo(), second.GetClassElementInfo());
    }
    EXPECT_EQ(built + 1, COrder::GetBuildCount());
    ReleaseAllMetaData();
    COrder third;
    third.FromXml(OrderText(3, 3).c_str());
    EXPECT_EQ(built + 2, COrder::GetBuildCount());
}

TEST(Lifetime, ManyConversionsReleaseEveryObject) {
    const CXmlSerializationContext context = InT();
    const int orders = COrder::GetLiveCount();
    const int items = CItem::GetLiveCount();
    for (int i = 0; i < 300; ++i) {
        const std::string text = OrderText(i, 1 + i % 3);
        ASSERT_EQ(text, Convert(text, context));
    }
    // Failures on the way, in reading and in writing, release what they built.
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ("Failed to process the element [Order]\nThe Maximum number of [Item] elements allowed in this "
                  "collection is 3",
                  Convert(OrderText(i, 4), context));
        CSmartPtr<COrder> order = new COrder();
        order->Collection<CObjectCol>(COrder::P_items)->AppendItem(new CItem());
        order->Property(COrder::P_code).SetString("c");
        order->Property(COrder::P_Extra).SetXmlObject(new CItem());
        EXPECT_THROW(WriteXml(*order, context), CQvValidationException);
    }
    EXPECT_EQ(orders, COrder::GetLiveCount());
    EXPECT_EQ(items, CItem::GetLiveCount());
}

TEST(Lifetime, SharedTablesGiveTheSameResultsOnTwoThreads) {
    const CXmlSerializationContext context = InT();
    const int count = 200;
    std::vector<std::string> inputs;
    std::vector<std::string> expected;
    for (int i = 0; i < count; ++i) {
        // Every fifth document has too many items and fails.
        inputs.push_back(OrderText(i, i % 5 == 4 ? 4 : 1 + i % 3));
        expected.push_back(Convert(inputs.back(), context));
    }
    // The threads race for building the tables, too.
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
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(expected[(i + t * 7) % count], results[t][i]) << t << ":" << i;
    }
}

} // namespace
