#!/usr/bin/env bash
# Builds the library and its tests with coverage instrumentation in build/coverage,
# runs the suite and prints the line and branch coverage of the library sources
# (QvXml10/ only: tests, examples and benchmarks are left out).
# Usage: scripts/coverage.sh [jobs]   (default 2; extra gcovr reports: GCOVR_ARGS="--json-summary f.json")
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh

jobs=${1:-2}
dir=build/coverage

# -O0 keeps one counter per source branch, atomic updates keep the counters of threaded
# tests exact; the install test is left out, since its
# consumer build does not link the coverage runtime.
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=Coverage -DCMAKE_CXX_FLAGS_COVERAGE="-O0 -g --coverage -fprofile-update=atomic" \
      -DCMAKE_EXE_LINKER_FLAGS_COVERAGE="--coverage" -DCMAKE_SHARED_LINKER_FLAGS_COVERAGE="--coverage" \
      -DQVXML_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$dir" -j"$jobs"

# Counters from an earlier run would add up with this one.
find "$dir" -name '*.gcda' -delete
(cd "$dir" && ctest --output-on-failure -j"$jobs" -E '^install\.consumer$')

# Branches the compiler adds for exception clean-up are not branches of the source; a
# counter that gcov cannot read is reported on stderr and skipped.
# Per-file lines on stdout, then gcovr's summary (lines, functions, branches).
gcovr --root . --object-directory "$dir" --filter 'QvXml10/' \
      --exclude-throw-branches --exclude-unreachable-branches --gcov-ignore-parse-errors \
      --print-summary ${GCOVR_ARGS:-} "$dir"
