// Loading the Fast Infoset form of the purchase orders against loading their XML text:
// the document alone through LoadXmlStream, and the example's classes through
// FromXmlStream.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include "orders/Orders.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace QvXmlBench {
const std::string& PurchaseOrderText(size_t bytes);
} // namespace QvXmlBench

namespace {

const size_t kSizes[] = {1 << 20, 10 << 20};

// The order's text as bytes, or its Fast Infoset form as the example writes it.
const CBinaryData& OrderBytes(size_t size, bool fastInfoset) {
    static std::map<std::pair<size_t, bool>, CBinaryData> forms;
    CBinaryData& bytes = forms[{size, fastInfoset}];
    if (bytes.GetLength() == 0) {
        const std::string& text = QvXmlBench::PurchaseOrderText(size);
        if (fastInfoset) {
            CPurchaseOrder order;
            order.FromXml(text.c_str());
            bytes = order.ToFastInfosetStream();
        } else {
            bytes = CBinaryData(reinterpret_cast<unsigned char*>(const_cast<char*>(text.data())),
                                static_cast<unsigned long>(text.size()), false);
        }
    }
    return bytes;
}

void Load(benchmark::State& state, bool fastInfoset) {
    const size_t size = static_cast<size_t>(state.range(0));
    const CBinaryData& bytes = OrderBytes(size, fastInfoset);
    CXmlDocument document;
    for (auto _ : state) {
        document.LoadXmlStream(bytes.GetData(), bytes.GetLength());
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * QvXmlBench::PurchaseOrderText(size).size()));
}

void FromStream(benchmark::State& state, bool fastInfoset) {
    const size_t size = static_cast<size_t>(state.range(0));
    const CBinaryData& bytes = OrderBytes(size, fastInfoset);
    CPurchaseOrder order;
    for (auto _ : state) {
        order.FromXmlStream(bytes);
        benchmark::DoNotOptimize(order.GetLines()->GetCount());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * QvXmlBench::PurchaseOrderText(size).size()));
}

void BM_OrderLoadText(benchmark::State& state) { Load(state, false); }
void BM_OrderLoadFastInfoset(benchmark::State& state) { Load(state, true); }
void BM_OrderFromXmlStreamText(benchmark::State& state) { FromStream(state, false); }
void BM_OrderFromXmlStreamFastInfoset(benchmark::State& state) { FromStream(state, true); }

BENCHMARK(BM_OrderLoadText)->Arg(kSizes[0])->Arg(kSizes[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderLoadFastInfoset)->Arg(kSizes[0])->Arg(kSizes[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderFromXmlStreamText)->Arg(kSizes[0])->Arg(kSizes[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderFromXmlStreamFastInfoset)->Arg(kSizes[0])->Arg(kSizes[1])->Unit(benchmark::kMillisecond);

const bool registered =
    (QvXmlBench::AddReport([] {
         auto& t = QvXmlBench::Timings();
         bool header = false;
         for (size_t size : kSizes) {
             const std::string suffix = "/" + std::to_string(size);
             const double mb = size / 1048576.0;
             auto ratio = [&](const char* what, const std::string& baseline, const std::string& measured,
                              const char* target) {
                 if (!t.count(baseline + suffix) || !t.count(measured + suffix)) return;
                 if (!header) {
                     std::printf("Purchase orders from Fast Infoset against their XML text, "
                                 "same run:\n");
                     header = true;
                 }
                 const double value = t[baseline + suffix] / t[measured + suffix];
                 if (target)
                     std::printf("  %5.1f MB: %s ratio %.2f (target at least %s)\n", mb, what, value, target);
                 else
                     std::printf("  %5.1f MB: %s ratio %.2f\n", mb, what, value);
             };
             ratio("Fast Infoset LoadXmlStream against text LoadXmlStream", "BM_OrderLoadText",
                   "BM_OrderLoadFastInfoset", "2.0");
             ratio("Fast Infoset LoadXmlStream against expat's raw parse of the text", "BM_OrderExpatRawParse",
                   "BM_OrderLoadFastInfoset", nullptr);
             ratio("Fast Infoset FromXmlStream against text FromXmlStream", "BM_OrderFromXmlStreamText",
                   "BM_OrderFromXmlStreamFastInfoset", "1.5");
         }
     }),
     true);

} // namespace
