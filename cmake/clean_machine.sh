#!/bin/sh
# Within a machine with nothing but the base system: the packages beside this script are installed, used and purged.
set -eu
cd "$(dirname "$0")"
export DEBIAN_FRONTEND=noninteractive
files() {
    find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /packages -o -path /var/cache \
        -o -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg \) -prune -o -print | sort
}
began=$(date +%s)
told() { echo "$1: $(($(date +%s) - began)) s"; }

apt-get update -qq
files >before
apt-get install -y -qq --no-install-recommends ./libzrlsw_*.deb ./libzrlsw-dev_*.deb ./zrlsw-bench_*.deb >/dev/null
told installed
cd /tmp
zrbench --version
zrbench --quiet run /usr/share/zrlsw/examples/gateway.json
cd /packages
apt-get purge -y -qq libzrlsw libzrlsw-dev zrlsw-bench >/dev/null
apt-get autoremove --purge -y -qq >/dev/null
files >after
diff before after
! dpkg -l | grep zrlsw
told "purged, nothing left"

apt-get install -y -qq --no-install-recommends gcc libc6-dev pkgconf ./libzrlsw_*.deb ./libzrlsw-dev_*.deb \
    ./zrlsw-bench_*.deb >/dev/null
mkdir /tmp/manager
cd /tmp/manager
cp /usr/share/zrlsw/examples/manager/manager.c .
# shellcheck disable=SC2046
cc manager.c -o manager-desktop $(pkg-config --cflags --libs zrsim)
# shellcheck disable=SC2046
cc manager.c -o manager-device $(pkg-config --cflags --libs zrlsw)
./manager-desktop
LD_PRELOAD=libzrsim.so ./manager-device
told "managers in C"
