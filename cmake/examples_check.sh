#!/bin/sh
# examples_check.sh PREFIX LIBDIR: builds the installed managers in C against what is installed there, by CMake and by
# pkg-config, in a folder that holds nothing else, and runs them.
set -eu
prefix=$1
export LD_LIBRARY_PATH="$2" PKG_CONFIG_PATH="$2/pkgconfig"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$prefix"/share/zrlsw/examples/manager/* "$folder"
cd "$folder"
cmake -S . -B cmake -DCMAKE_PREFIX_PATH="$prefix"
cmake --build cmake
mkdir pkg-config
for of in device:zrlsw desktop:zrsim; do
    # The paths of an installation that was moved hold no blank here.
    # shellcheck disable=SC2046
    cc -std=c11 -Wall -Wextra -Werror manager.c -o "pkg-config/manager-${of%:*}" \
        $(pkg-config --cflags --libs "${of#*:}")
done
for made in cmake pkg-config; do
    "$made/manager-desktop"
    LD_PRELOAD=libzrsim.so "$made/manager-device"
    # Without a platform it does not start at all, rather than fail later.
    if "$made/manager-device" 2>/dev/null; then exit 1; fi
done
