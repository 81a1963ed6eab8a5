#!/bin/sh
# abi.sh [--record]: tells in words how the binary interface differs from the recorded one (cmake/*.abi.xz): what the
# library exports, and what it and the stand-in's users share with a platform, records with their layouts included.
# With --record the interface as it is becomes the recorded one.
set -eu
library=build/release/lib/libzrlsw.so
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The platform's interface has no file of its own: a variable of each function's or record's type stands for it.
{
    echo '#include "sim/zrsim.h"'
    for header in src/platform/*.h; do echo "#include \"${header#src/}\""; done
    {
        nm -D --undefined-only "$library" | awk '$1 == "U" && $2 !~ /@/ { print $2 }'
        nm -D --defined-only build/release/lib/libzrsim.so | awk '$3 ~ /^zrsim_/ { print $3 }'
    } | sort | sed 's/.*/__typeof__(\&&) platform_&;/'
} >"$work/platform.c"
cc -g -shared -fPIC -I src -I . "$work/platform.c" -o "$work/platform.so"

written() {
    abidw --no-show-locs --no-corpus-path --no-comp-dir-path --no-elf-needed --no-architecture \
        --type-id-style hash "$1"
}

written "$library" >"$work/libzrlsw.abi"
written "$work/platform.so" >"$work/platform.abi"
status=0
for name in libzrlsw platform; do
    if [ "${1:-}" = --record ]; then
        xz -9e <"$work/$name.abi" >"cmake/$name.abi.xz"
    else
        xz -dc <"cmake/$name.abi.xz" >"$work/recorded.abi"
        abidiff --no-architecture "$work/recorded.abi" "$work/$name.abi" || status=1
    fi
done
exit "$status"
