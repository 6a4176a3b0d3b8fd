// Parsing and printing of decimals and big integers: a typical 18-digit decimal against
// strtod plus snprintf("%.17g") of the same text, and the cost per digit from 10 to
// 10,000 digits, which shows that both directions are linear.

#include "BenchSupport.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <QvXml10/values/BigInteger.h>
#include <QvXml10/values/Decimal.h>

using namespace QvXmlLib10;
using namespace QvXmlBench;

namespace {

const char* const kTypical[] = {"123456789.123456789",  "-98765432.10987654",   "4503599627.37049612",
                                "0.123456789012345678", "-271828182845.904523", "31415926.5358979323",
                                "100000000.000000001",  "-1.41421356237309504"};
constexpr size_t kTypicalCount = sizeof kTypical / sizeof kTypical[0];

void BM_StrtodSnprintf18(benchmark::State& state) {
    char buffer[64];
    size_t i = 0;
    for (auto _ : state) {
        const double value = std::strtod(kTypical[i++ % kTypicalCount], nullptr);
        const int length = std::snprintf(buffer, sizeof buffer, "%.17g", value);
        benchmark::DoNotOptimize(std::string(buffer, static_cast<size_t>(length)));
    }
}
BENCHMARK(BM_StrtodSnprintf18);

void BM_DecimalParsePrint18(benchmark::State& state) {
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(CDecimal(kTypical[i++ % kTypicalCount]).ToString());
}
BENCHMARK(BM_DecimalParsePrint18);

// n digits: up to 10 of them behind the point, the rest before it.
std::string DigitText(size_t n, bool point) {
    std::string text;
    const size_t fraction = point ? std::min<size_t>(10, n / 2) : 0;
    for (size_t i = 0; i < n; ++i) {
        if (i == n - fraction) text += '.';
        text += static_cast<char>('1' + i % 9);
    }
    return text;
}

void BM_DecimalParsePrintDigits(benchmark::State& state) {
    const std::string text = DigitText(static_cast<size_t>(state.range(0)), true);
    for (auto _ : state)
        benchmark::DoNotOptimize(CDecimal(text.c_str()).ToString());
}
BENCHMARK(BM_DecimalParsePrintDigits)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void BM_IntegerParsePrintDigits(benchmark::State& state) {
    const std::string text = DigitText(static_cast<size_t>(state.range(0)), false);
    for (auto _ : state)
        benchmark::DoNotOptimize(CBigInteger(text.c_str()).ToString());
}
BENCHMARK(BM_IntegerParsePrintDigits)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

const bool registered =
    (AddReport([] {
         auto& t = Timings();
         if (!t.count("BM_StrtodSnprintf18") || !t.count("BM_DecimalParsePrint18")) return;
         std::printf("Parsing and printing an 18-digit decimal against strtod plus "
                     "snprintf(\"%%.17g\") of the same text:\n");
         std::printf("  CDecimal costs %.2f x the baseline (target at most 3)\n",
                     t["BM_DecimalParsePrint18"] / t["BM_StrtodSnprintf18"]);
         for (const char* kind : {"Decimal", "Integer"}) {
             std::printf("%s parse and print by length (time per digit stays flat):\n", kind);
             for (int n : {10, 100, 1000, 10000}) {
                 const std::string name = std::string("BM_") + kind + "ParsePrintDigits/" + std::to_string(n);
                 if (!t.count(name)) continue;
                 std::printf("  %5d digits: %9.0f ns, %6.2f ns per digit\n", n, t[name] * 1e9, t[name] * 1e9 / n);
             }
         }
     }),
     true);

} // namespace
