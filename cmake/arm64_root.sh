#!/bin/sh
# arm64_root.sh FOLDER: Debian's arm64 libraries that the bench manager uses, unpacked, with the package database that
# says which package a library, as it lies there, is from. Installed beside this machine's own they would displace them.
set -eu
root=$(realpath -m "$1")
new=$root.new
mkdir -p "$(dirname "$root")"
rm -rf "$root" "$new"
mmdebstrap --quiet --variant=extract --arch=arm64 --skip=cleanup/apt --include=libtins-dev,libpcap-dev,libedit-dev \
    bookworm "$new"
info=$new/var/lib/dpkg/info
echo 1 >"$info/format"
for deb in "$new"/var/cache/apt/archives/*.deb; do
    name=$(dpkg-deb -f "$deb" Package)
    [ "$(dpkg-deb -f "$deb" Multi-Arch)" != same ] || name=$name:arm64
    dpkg-deb --fsys-tarfile "$deb" | tar -t | sed "s|^\.|$root|; s|/\$||" >"$info/$name.list"
    for file in shlibs symbols; do
        dpkg-deb -I "$deb" "$file" >"$info/$name.$file" 2>/dev/null || rm "$info/$name.$file"
    done
    dpkg-deb -f "$deb"
    echo "Status: install ok installed"
    echo
done >"$new/var/lib/dpkg/status"
rm -rf "$new"/var/cache/apt/archives/*.deb "$new"/var/lib/apt/lists/*
mv "$new" "$root"
