// Parsing and printing a dateTime with a zone, against sscanf and snprintf of the same
// text in the same run.

#include "BenchSupport.h"

#include <QvXml10/values/DateTime.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

using namespace QvXmlLib10;
using namespace QvXmlBench;

namespace {

const char kText[] = "2024-06-15T13:45:30.125+05:30";

void BM_DateTimeParsePrint(benchmark::State& state) {
    for (auto _ : state) {
        CDateTime value;
        value.ParseXSDDateTime(kText);
        const std::string text = value.ToString();
        benchmark::DoNotOptimize(text.data());
    }
}

// The floor: the same fields read by sscanf and written back by snprintf.
void BM_DateTimeScanfPrintf(benchmark::State& state) {
    for (auto _ : state) {
        int year, month, day, hour, minute, second, milli, zoneHour, zoneMinute;
        char sign;
        std::sscanf(kText, "%d-%d-%dT%d:%d:%d.%d%c%d:%d", &year, &month, &day, &hour, &minute, &second, &milli, &sign,
                    &zoneHour, &zoneMinute);
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02d:%02d", year, month, day, hour,
                      minute, second, milli, sign, zoneHour, zoneMinute);
        benchmark::DoNotOptimize(buffer);
    }
}

BENCHMARK(BM_DateTimeScanfPrintf);
BENCHMARK(BM_DateTimeParsePrint);

const bool registered =
    (AddReport([] {
         auto& t = Timings();
         if (!t.count("BM_DateTimeScanfPrintf") || !t.count("BM_DateTimeParsePrint")) return;
         std::printf("Parsing and printing a dateTime with zone (%s):\n", kText);
         std::printf("  ParseXSDDateTime and ToString cost %.2f x sscanf and snprintf (target at most 3)\n",
                     t["BM_DateTimeParsePrint"] / t["BM_DateTimeScanfPrintf"]);
     }),
     true);

} // namespace
