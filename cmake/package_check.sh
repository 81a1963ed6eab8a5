#!/bin/sh
# package_check.sh FOLDER [--check]: whether the packages in FOLDER keep what they promise. With --check also a machine
# with nothing but the base system, and a second build elsewhere: minutes, and the network.
set -u
packages=$(realpath "$1")
version=$(cd "$packages" && echo libzrlsw_*_amd64.deb | cut -d_ -f2)
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
. cmake/check_lib.sh

names="libzrlsw libzrlsw-dev zrlsw-bench"
chmod 755 "$work"
for arch in amd64 arm64; do
    for name in $names; do
        dpkg-deb -x "$packages/${name}_${version}_$arch.deb" "$work/$arch"
    done
done

lint() {
    ! lintian --allow-root --fail-on error "$packages"/*.deb 2>&1 | grep '^E:'
}

# `where` runs a program of the unpacked packages.
gateway() {
    root=$1
    shift
    "$@" "$root/usr/bin/zrbench" --version >"$work/version" &&
        grep -qx "zrbench $version" "$work/version" && grep -q "^$root.*/libzrlsw.so $version\$" "$work/version" &&
        "$@" "$root/usr/bin/zrbench" --quiet run "$root/usr/share/zrlsw/examples/gateway.json"
}

protected() {
    find "$work" -name '*.so' -o -name zrbench -path '*/bin/*' | xargs sh cmake/hardening.sh
}

complete() {
    bash -euc ". $work/amd64/usr/share/bash-completion/completions/zrbench
        COMP_WORDS=(zrbench sh) COMP_CWORD=1
        _zrbench
        [ \"\${COMPREPLY[*]}\" = shell ]
        COMP_WORDS=(zrbench --lib x shell --u) COMP_CWORD=4
        _zrbench
        [ \"\${COMPREPLY[*]}\" = --up ]"
}

# Every file is in the bill with its sum, and every dependency.
bill() {
    for arch in amd64 arm64; do
        bill=$packages/zrlsw_${version}_$arch.spdx.json
        (cd "$work/$arch" && find . -type f -exec sha256sum {} + | sed 's/  /|/; s/\(.*\)|\(.*\)/\2 \1/' | sort) >"$work/have"
        jq -r '.files[] | .fileName + " " + (.checksums[] | select(.algorithm == "SHA256").checksumValue)' "$bill" |
            sort | diff - "$work/have" || return 1
        for name in $names; do
            dpkg-deb -f "$packages/${name}_${version}_$arch.deb" Depends | tr , '\n' | awk 'NF { print $1 }'
        done | sort -u >"$work/needed"
        jq -r '.packages[].name' "$bill" | sort -u | comm -13 - "$work/needed" | grep . && return 1
    done
    return 0
}

# Links of the installed documents lead somewhere, and from their first page to every other.
links() {
    python3 cmake/links.py "$work/amd64/usr/share/doc/zrlsw-bench/README.md" \
        "$work/amd64/usr/share/doc/libzrlsw-dev/html/index.html"
}

unstripped() {
    for file in $(find "$work"/a*64 -name '*.so' -o -path '*/bin/zrbench'); do
        id=$(readelf -n "$file" | sed -n 's/.*Build ID: //p')
        ! readelf -SW "$file" | grep -q ' \.debug_info' || return 1
        for debug in "$packages"/*-dbgsym_*.deb; do dpkg-deb -c "$debug"; done |
            grep -q "$(echo "$id" | sed 's|^..|&/|').debug" || return 1
    done
}

# A machine with nothing but the base system. What it mounts is gone with its last process.
clean_machine() {
    sudo=
    [ "$(id -u)" = 0 ] || sudo=sudo
    root=$PWD/build/clean
    $sudo rm -rf "$root"
    $sudo mmdebstrap --quiet --variant=minbase bookworm "$root" && $sudo cp /etc/resolv.conf "$root/etc/" &&
        $sudo mkdir "$root/packages" && $sudo cp "$packages"/*_amd64.deb "$root/packages" &&
        $sudo cp cmake/clean_machine.sh "$root/packages" &&
        $sudo unshare --mount sh -c 'mount -t proc proc "$1/proc" && chroot "$1" sh /packages/clean_machine.sh' sh "$root"
    status=$?
    $sudo rm -rf "$root"
    return "$status"
}

reproducible() {
    mkdir "$work/another-folder" || return 1
    git ls-files -z --cached --others --exclude-standard | xargs -0 tar -c | tar -x -C "$work/another-folder" &&
        CCACHE_DISABLE=1 "$work/another-folder/run" package --build || return 1
    for file in "$packages"/*; do
        cmp "$file" "$work/another-folder/build/packages/${file##*/}" || return 1
    done
}

check "lintian finds no error" lint
check "the gateway on amd64" gateway "$work/amd64"
check "the gateway on arm64, under emulation" gateway "$work/arm64" qemu-aarch64 -L build/arm64-root
check "managers in C from the packages alone" sh cmake/examples_check.sh "$work/amd64/usr" "$work/amd64/usr/lib/x86_64-linux-gnu"
check "what protects programs and libraries" protected
check "debug data is apart" unstripped
check "completion" complete
check "bills hold every file and dependency" bill
check "links of the documents" links
if [ "${2:-}" = --check ]; then
    check "a machine with nothing but the base system" clean_machine
    check "the same bytes from another folder" reproducible
fi
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
