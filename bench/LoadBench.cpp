// Loading text into the document tree, against expat's raw parse of the same buffer.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstdio>
#include <malloc.h>
#include <vector>

using namespace QvXmlLib10;
using namespace QvXmlBench;

namespace {

const size_t SIZES[] = {1 << 20, 10 << 20};

void XMLCALL NoStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL NoEnd(void*, const XML_Char*) {}
void XMLCALL NoText(void*, const XML_Char*, int) {}
void XMLCALL NoNamespaceStart(void*, const XML_Char*, const XML_Char*) {}
void XMLCALL NoNamespaceEnd(void*, const XML_Char*) {}

void BM_ExpatRawParse(benchmark::State& state) {
    const std::string& text = OrderDocument(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
        XML_SetElementHandler(parser, NoStart, NoEnd);
        XML_SetNamespaceDeclHandler(parser, NoNamespaceStart, NoNamespaceEnd);
        XML_SetCharacterDataHandler(parser, NoText);
        if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK)
            state.SkipWithError("expat failed");
        XML_ParserFree(parser);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_LoadXmlStream(benchmark::State& state) {
    const std::string& text = OrderDocument(static_cast<size_t>(state.range(0)));
    std::vector<unsigned char> bytes(text.begin(), text.end());
    for (auto _ : state) {
        CXmlDocument document;
        document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

// The same, with the memory of one load kept in the process for the next, as a service
// that loads large documents repeatedly would set its allocator: glibc gives back the
// top of the heap only beyond 1 GB, and maps blocks of its own only from 64 MB on. The
// library sets no allocator option itself. The glibc defaults are set again afterwards
// (the dynamic adjustment of the thresholds stays off for the rest of the run).
void BM_LoadXmlStreamHeapKept(benchmark::State& state) {
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 64 << 20);
    BM_LoadXmlStream(state);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
}

BENCHMARK(BM_ExpatRawParse)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadXmlStream)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadXmlStreamHeapKept)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);

// Peak heap of one load of the 10 MB document: the document's own copy of the input,
// the tree and expat's state. The caller's buffer is not counted.
double LoadPeakRatio() {
    const std::string& text = OrderDocument(SIZES[1]);
    std::vector<unsigned char> bytes(text.begin(), text.end());
    StartHeapMeter();
    {
        CXmlDocument document;
        document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
    }
    return static_cast<double>(StopHeapMeter()) / static_cast<double>(text.size());
}

const bool registered =
    (AddReport([] {
         if (!Timings().count("BM_LoadXmlStream/" + std::to_string(SIZES[0]))) return;
         std::printf("Loading text (LoadXmlStream) against expat's raw parse, same run:\n");
         for (size_t size : SIZES) {
             const std::string suffix = "/" + std::to_string(size);
             auto& t = Timings();
             if (!t.count("BM_ExpatRawParse" + suffix) || !t.count("BM_LoadXmlStream" + suffix)) continue;
             const double raw = t["BM_ExpatRawParse" + suffix];
             std::printf("  %5.1f MB: throughput ratio %.2f with the heap kept (target at least 0.60), "
                         "%.2f with the default allocator\n",
                         size / 1048576.0,
                         t.count("BM_LoadXmlStreamHeapKept" + suffix) ? raw / t["BM_LoadXmlStreamHeapKept" + suffix]
                                                                      : 0.0,
                         raw / t["BM_LoadXmlStream" + suffix]);
         }
         std::printf("  peak heap of a 10 MB load: %.2f x the document (target at most 4)\n", LoadPeakRatio());
     }),
     true);

} // namespace
