// Runs every benchmark, then prints the ratios against the baselines of the same run.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <string>
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

// Passes everything on to the console and keeps each benchmark's time per iteration:
// the median of the repetitions when there are several, otherwise the single run.
class RecordingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const double seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                QvXmlBench::Timings()[run.run_name.str()] = seconds;
            else if (run.run_type == Run::RT_Iteration && run.iterations > 0 && run.repetitions <= 1)
                QvXmlBench::Timings()[run.benchmark_name()] = seconds;
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

} // namespace

int main(int argc, char** argv) {
    QvXmlLib10::SetGeneratorVersion(10, 1);
    // The machine's timings vary from run to run: unless told otherwise, each benchmark
    // runs five times and the ratios use the medians.
    std::vector<char*> args(argv, argv + argc);
    bool repetitionsGiven = false;
    for (int i = 1; i < argc; ++i)
        if (std::string(argv[i]).rfind("--benchmark_repetitions", 0) == 0) repetitionsGiven = true;
    static char repetitions[] = "--benchmark_repetitions=5";
    static char aggregatesOnly[] = "--benchmark_report_aggregates_only=true";
    if (!repetitionsGiven) {
        args.push_back(repetitions);
        args.push_back(aggregatesOnly);
    }
    args.push_back(nullptr);
    argc = static_cast<int>(args.size()) - 1;
    argv = args.data();
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
