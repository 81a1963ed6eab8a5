#!/bin/sh
# package.sh FOLDER: the packages for amd64 and arm64, their debug symbols and their bills into FOLDER, from build/release
# and build/arm64. The same bytes wherever and whenever they are built: times are the version's date.
set -eu
folder=$(realpath -m "$1")
root=$PWD/build/arm64-root
umask 022
SOURCE_DATE_EPOCH=$(date -u -d "$(sed -n 's/^## .*(\(.*\))$/\1/p' docs/changes.md | head -n 1)" +%s)
export SOURCE_DATE_EPOCH
rm -rf "$folder"
for tree in release arm64; do
    (
        cd "build/$tree"
        # What a library of the other machine is from stands in the database beside that machine's libraries.
        [ "$tree" = release ] || export DEB_HOST_ARCH=arm64 DPKG_ADMINDIR="$root/var/lib/dpkg"
        cpack -B "$folder/$tree" >cpack.log 2>&1 || { cat cpack.log; exit 1; }
    )
    mv "$folder/$tree"/*deb "$folder"
    rm -rf "${folder:?}/$tree"
done
# CPack names the folder in the sums of debug symbols, and gives them no documents: theirs are their package's.
for debug in "$folder"/*.ddeb; do
    name=$(dpkg-deb -f "$debug" Package)
    dpkg-deb -R "$debug" "$folder/unpacked"
    sed -i 's|  .*/usr/|  usr/|' "$folder/unpacked/DEBIAN/md5sums"
    mkdir -p "$folder/unpacked/usr/share/doc"
    ln -s "${name%-dbgsym}" "$folder/unpacked/usr/share/doc/$name"
    chmod -R u+rwX,go+rX-w,a-s "$folder/unpacked"
    find "$folder/unpacked/usr/lib" -type f -exec chmod 644 {} +
    dpkg-deb --root-owner-group -Zxz -b "$folder/unpacked" "${debug%.ddeb}.deb" >/dev/null
    rm -rf "$debug" "$folder/unpacked"
done
version=$(cd "$folder" && echo libzrlsw_*_amd64.deb | cut -d_ -f2)
for arch in amd64 arm64; do
    set -- "$folder/libzrlsw_${version}_$arch.deb" "$folder/libzrlsw-dev_${version}_$arch.deb" \
        "$folder/zrlsw-bench_${version}_$arch.deb"
    python3 cmake/sbom.py "$@" >"$folder/zrlsw_${version}_$arch.spdx.json"
done
