#!/usr/bin/env bash
# Proves that an outside program builds, links and runs against an installed library:
# the example's purchase-order classes read the sample order and write it back.
#
#   check_install.sh shared BUILD_DIR CONSUMER_SRC EXAMPLES_DIR
#       installs BUILD_DIR into a scratch prefix and builds the consumer twice: with
#       CMake's find_package and with pkg-config.
#   check_install.sh static SOURCE_DIR CONSUMER_SRC EXAMPLES_DIR
#       configures and builds a static library from SOURCE_DIR (unoptimised, library
#       only), installs it and builds the consumer once with find_package.
set -euo pipefail
mode=$1
from=$2
consumer_src=$3
examples_dir=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if [ "$mode" = static ]; then
    cmake -S "$from" -B "$work/lib-build" -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE= -DQVXML_BUILD_TESTS=OFF \
        -DQVXML_BUILD_EXAMPLES=OFF -DQVXML_BUILD_BENCH=OFF >/dev/null
    cmake --build "$work/lib-build" -j2 >/dev/null
    from=$work/lib-build
fi
cmake --install "$from" --prefix "$work/prefix" >/dev/null

# The output every consumer must give: the round trip's text ends with the order's last
# element, and the exception chain follows.
check_output() {
    local name=$1 out=$2
    local tail
    tail=$(printf '%s\n' "$out" | tail -n 4)
    local expected="	<AB:parcel carrier=\"Royal Mail\">RM-000-1815</AB:parcel>
</AA:purchaseOrder>
consumer: Outer
Inner"
    if [ "$tail" != "$expected" ] || ! printf '%s' "$out" | grep -q 'Order desk, Zürich'; then
        echo "unexpected output of the $name consumer:" >&2
        printf '%s\n' "$out" >&2
        exit 1
    fi
}

cmake -S "$consumer_src" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DEXAMPLES_DIR="$examples_dir" >/dev/null
cmake --build "$work/cmake-build" -j2 >/dev/null
out_cmake=$("$work/cmake-build/consumer" "$examples_dir/orders/order.xml")
check_output find_package "$out_cmake"

if [ "$mode" = static ]; then
    if ldd "$work/cmake-build/consumer" | grep -q libQvXml10; then
        echo "the static consumer loads a shared libQvXml10" >&2
        exit 1
    fi
    echo "static library consumed through find_package"
    exit 0
fi

pcdir=$(dirname "$(find "$work/prefix" -name qvxml10.pc | head -n 1)")
libdir=$(PKG_CONFIG_PATH="$pcdir" pkg-config --variable=libdir qvxml10)
g++ $(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags qvxml10) -I"$examples_dir" "$consumer_src/consumer.cpp" \
    "$examples_dir"/orders/*.cpp -o "$work/consumer-pc" $(PKG_CONFIG_PATH="$pcdir" pkg-config --libs qvxml10) \
    -Wl,-rpath,"$libdir"
out_pc=$("$work/consumer-pc" "$examples_dir/orders/order.xml")
check_output pkg-config "$out_pc"
if [ "$out_cmake" != "$out_pc" ]; then
    echo "the find_package and pkg-config consumers differ" >&2
    exit 1
fi
echo "installed library consumed through find_package and pkg-config"
