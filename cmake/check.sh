#!/bin/sh
# What no test program can see: format, static analysis, what the library exports and needs, whether the
# installed package can be built against. Expects build/release to be built.
set -u
build=build/release
library=$build/lib/libzrlsw.so
platform=$build/lib/libzrsim.so
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
. cmake/check_lib.sh

format() {
    find bench cmake sim src tests tools -name '*.h' -o -name '*.cpp' -o -name '*.c' |
        xargs clang-format --dry-run -Werror
}

# Includes run one way. In src/ each folder sees those before it in the list, and none that stands beside it;
# sim/ sees what it stands in for.
includes() {
    find src sim -name '*.h' -o -name '*.cpp' | xargs awk -F '["<>]' '
        BEGIN {
            split("platform base records chip,l2,acl,qos port frame src,sim,tools,tests,bench,..", floors, " ")
            for (floor in floors) {
                split(floors[floor], folders, ",")
                for (i in folders) rank[folders[i]] = floor + 0
            }
        }
        /^[ \t]*#[ \t]*include[ \t]*["<]/ {
            split(FILENAME, from, "/")
            split($2, to, "/")
            if (/</ && !(to[1] in rank)) next # the language or a package
            if (from[1] == "sim") ok = $2 ~ /^(sim\/|platform\/|frame\/op_tables\.h$)/
            else ok = to[1] == from[2] || (to[1] in rank && rank[to[1]] < rank[from[2]])
            if (!ok) { print FILENAME ":" FNR ": " $0; bad = 1 }
        }
        END { exit bad }'
}

tidy() {
    find src -name '*.cpp' | xargs -P 2 -n 4 clang-tidy --quiet -p "$build"
}

cpp_check() {
    cppcheck --quiet --std=c++20 --language=c++ --enable=warning,portability,performance --inline-suppr \
        --suppress=missingInclude --error-exitcode=1 -j 2 -I src -I . src sim tools
}

exported_names() {
    nm -D --defined-only "$library" | awk '{ print $3 }' | sort >"$work/have"
    sort cmake/exports.txt | diff - "$work/have"
}

# The library needs the C library, and nothing from the platform that the stand-in would lack.
needs() {
    readelf -d "$library" | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p' >"$work/needed"
    echo libc.so.6 | diff - "$work/needed" || return 1
    nm -D --undefined-only "$library" | awk '$1 == "U" { sub(/@.*/, "", $2); print $2 }' | sort >"$work/undefined"
    { nm -D --defined-only "$platform" | awk '{ print $3 }'; printf '%s\n' strncmp memset memcpy memmove; } |
        sort -u >"$work/provided"
    comm -23 "$work/undefined" "$work/provided" >"$work/missing"
    cat "$work/missing"
    [ ! -s "$work/missing" ]
}

# Only the start-up code's own entry: no static constructor of ours.
no_constructors() {
    size=$(readelf -SW "$library" | sed -n 's/.* \.init_array *INIT_ARRAY *[0-9a-f]* [0-9a-f]* \([0-9a-f]*\).*/\1/p')
    [ "$((0x$size))" -le 8 ]
}

# The installed examples, built in a folder that holds nothing else: over the stand-in as they start, and with it
# given at run time as a device gives its platform.
package() {
    cmake --install "$build" --prefix "$work/prefix" || return 1
    libdir=$(dirname "$(find "$work/prefix" -name libzrlsw.so)")
    sh cmake/examples_check.sh "$work/prefix" "$libdir" &&
        "$work/prefix/bin/zrbench" --quiet run "$work/prefix/share/zrlsw/examples/gateway.json" &&
        cmp "$libdir/libzrlsw.so" "$library"
}

# Every public header alone, as C11 and as C++20.
headers() {
    (cd "$work/prefix/include/zrlsw" && find . -name '*.h') | while read -r header; do
        echo "#include \"$header\"" >"$work/header.c"
        cp "$work/header.c" "$work/header.cpp"
        cc -std=c11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$work/prefix/include/zrlsw" "$work/header.c" || exit 1
        c++ -std=c++20 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$work/prefix/include/zrlsw" "$work/header.cpp" || exit 1
    done
}

check "format" format
check "includes run one way" includes
check "links of the documents" python3 cmake/links.py README.md
check "clang-tidy" tidy
check "cppcheck" cpp_check
check "exported names" exported_names
check "binary interface as recorded" sh cmake/abi.sh
check "what protects programs and libraries" sh cmake/hardening.sh "$library" "$platform" $build/bin/zrbench
check "what the library needs" needs
check "no static constructors" no_constructors
check "installed package, by CMake and by pkg-config" package
check "public headers in C11 and C++20" headers
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
