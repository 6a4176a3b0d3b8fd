#!/usr/bin/env bash
# Installs the built library into a scratch prefix and builds a small outside
# program against it twice: with CMake's find_package and with pkg-config.
set -euo pipefail
build_dir=$1
consumer_src=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null

cmake -S "$consumer_src" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
out_cmake=$("$work/cmake-build/consumer")

pcdir=$(dirname "$(find "$work/prefix" -name qvxml10.pc | head -n 1)")
libdir=$(PKG_CONFIG_PATH="$pcdir" pkg-config --variable=libdir qvxml10)
g++ $(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags qvxml10) "$consumer_src/consumer.cpp" \
    -o "$work/consumer-pc" $(PKG_CONFIG_PATH="$pcdir" pkg-config --libs qvxml10) -Wl,-rpath,"$libdir"
out_pc=$("$work/consumer-pc")

expected="consumer: Outer
Inner"
if [ "$out_cmake" != "$expected" ] || [ "$out_pc" != "$expected" ]; then
    echo "unexpected output: cmake [$out_cmake] pkg-config [$out_pc]" >&2
    exit 1
fi
echo "installed library consumed through find_package and pkg-config"
