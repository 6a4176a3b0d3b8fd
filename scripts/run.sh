#!/usr/bin/env bash
# Sets up the machine, builds the library with its example and runs the example
# on the bundled sample document.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2" >/dev/null
cmake --build build/release -j"$(nproc)" --target qvxml_example
./build/release/examples/qvxml_example "$@"
