#pragma once

// Shared pieces of the benchmark program: generated documents, a record of each
// benchmark's time for the ratio report, and a heap meter.

#include <cstddef>
#include <functional>
#include <map>
#include <string>

namespace QvXmlBench {

// A purchase-order document of about `bytes` bytes, namespaced, with attributes and text.
const std::string& OrderDocument(size_t bytes);

// Peak growth of the heap (every allocation of the process through malloc and its
// family) between the two calls.
void StartHeapMeter();
size_t StopHeapMeter();

// Lines printed after the benchmarks have run (ratios against baselines of the same run).
void AddReport(std::function<void()> report);

// Mean real time per iteration, in seconds, of each benchmark run, by its full name.
std::map<std::string, double>& Timings();

} // namespace QvXmlBench
