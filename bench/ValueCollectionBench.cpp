// A collection of primitive values filled, written and cleared at 10,000 and 100,000
// values: the cost per value must not grow with the size.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

using namespace QvXmlLib10;
using namespace QvXmlBench;

namespace {

const int COUNTS[] = {10000, 100000};

void BM_ValueCollectionFillWriteClear(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Ci4Col values("v", "", 0, -1, nullptr, -1, -1, "0", nullptr, nullptr, nullptr, -1,
                      CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
        for (int n = 0; n < count; ++n)
            values.Add(n);
        CTextStream stream;
        CXmlTextWriter writer(stream);
        writer.SetFormat(false);
        writer.WriteStartElement("list", "");
        CXmlObjectBase::ToXml_Int(&values, &writer, false, "", CXmlSerializationContext::m_defaultContext, false);
        writer.WriteEndElement();
        benchmark::DoNotOptimize(stream.GetLength());
        values.Clear();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK(BM_ValueCollectionFillWriteClear)->Arg(COUNTS[0])->Arg(COUNTS[1])->Unit(benchmark::kMillisecond);

const bool registered = (AddReport([] {
                             auto& t = Timings();
                             const std::string name = "BM_ValueCollectionFillWriteClear/";
                             const std::string small = name + std::to_string(COUNTS[0]);
                             const std::string large = name + std::to_string(COUNTS[1]);
                             if (!t.count(small) || !t.count(large)) return;
                             const double perSmall = t[small] / COUNTS[0];
                             const double perLarge = t[large] / COUNTS[1];
                             std::printf("A collection of i4 values filled, written and cleared: %.0f ns per value at "
                                         "10,000, %.0f ns at 100,000; ratio %.2f (target at least 0.67)\n",
                                         perSmall * 1e9, perLarge * 1e9, perSmall / perLarge);
                         }),
                         true);

} // namespace
