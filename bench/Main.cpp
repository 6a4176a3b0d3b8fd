// Runs every benchmark, then prints the ratios against the baselines of the same run.

#include "BenchSupport.h"

#include <QvXml10.h>
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <vector>

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void __libc_free(void*);
}

namespace {

// The meter counts only while a measurement runs, so that timed benchmarks pay nothing
// for it. Growth is net: a block freed during the measurement that was allocated
// before it counts as negative.
std::atomic<bool> g_metering{false};
std::atomic<long long> g_inUse{0};
std::atomic<long long> g_peak{0};

void Grew(void* p) {
    if (!p || !g_metering.load(std::memory_order_relaxed)) return;
    const long long size = static_cast<long long>(malloc_usable_size(p));
    const long long now = g_inUse.fetch_add(size) + size;
    long long peak = g_peak.load();
    while (now > peak && !g_peak.compare_exchange_weak(peak, now)) {
    }
}

void Shrank(void* p) {
    if (p && g_metering.load(std::memory_order_relaxed))
        g_inUse.fetch_sub(static_cast<long long>(malloc_usable_size(p)));
}

} // namespace

// The heap meter: every allocation of the process, the library's and expat's included,
// passes through these.
extern "C" {
void* malloc(size_t size) {
    void* p = __libc_malloc(size);
    Grew(p);
    return p;
}
void* calloc(size_t count, size_t size) {
    void* p = __libc_calloc(count, size);
    Grew(p);
    return p;
}
void* realloc(void* old, size_t size) {
    Shrank(old);
    void* p = __libc_realloc(old, size);
    if (p)
        Grew(p);
    else if (old && size != 0)
        Grew(old);
    return p;
}
void free(void* p) {
    Shrank(p);
    __libc_free(p);
}
}

namespace QvXmlBench {

void StartHeapMeter() {
    g_inUse.store(0);
    g_peak.store(0);
    g_metering.store(true);
}

size_t StopHeapMeter() {
    g_metering.store(false);
    return static_cast<size_t>(g_peak.load());
}

static std::vector<std::function<void()>>& Reports() {
    static std::vector<std::function<void()>> reports;
    return reports;
}

void AddReport(std::function<void()> report) { Reports().push_back(std::move(report)); }

std::map<std::string, double>& Timings() {
    static std::map<std::string, double> timings;
    return timings;
}

} // namespace QvXmlBench

namespace {

// Passes everything on to the console and keeps each run's time per iteration.
class RecordingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0)
                QvXmlBench::Timings()[run.benchmark_name()] =
                    run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

} // namespace

int main(int argc, char** argv) {
    QvXmlLib10::SetGeneratorVersion(10, 1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RecordingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    std::printf("\n");
    for (auto& report : QvXmlBench::Reports())
        report();
    return 0;
}
