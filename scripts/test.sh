#!/usr/bin/env bash
# Sets up the machine, then builds and runs the whole test suite twice:
# optimised with assertions, then under AddressSanitizer and UndefinedBehaviorSanitizer.
# Stops at the first failure.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh

jobs=$(nproc)
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

run_config() {
    local name=$1; shift
    echo "=== ${name}: configure and build"
    cmake -S . -B "build/${name}" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2" "$@" >/dev/null
    cmake --build "build/${name}" -j"${jobs}"
    echo "=== ${name}: test"
    (cd "build/${name}" && ctest --output-on-failure --stop-on-failure -j"${jobs}")
}

# -O2 without NDEBUG keeps assertions on.
run_config release
run_config sanitize -DQVXML_SANITIZE=ON -DCMAKE_CXX_FLAGS_RELEASE="-O1 -g"
