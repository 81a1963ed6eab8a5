#!/bin/sh
# live.sh ZRBENCH FILE: hosts in network namespaces talk through the virtual switch: ping and DHCP work within
# VLAN 10 (hosts a and b) and not into VLAN 20 (host c). Ends with 77 when the machine does not permit it.
set -eu

skip() {
    echo "skipped: $1"
    exit 77
}

if [ "${ZR_LIVE:-}" = "" ]; then
    for program in unshare nsenter ip busybox; do
        command -v "$program" >/dev/null || skip "there is no $program"
    done
    [ -r /dev/net/tun ] && [ -w /dev/net/tun ] || skip "/dev/net/tun cannot be opened"
    unshare -rn true 2>/dev/null || skip "namespaces are not permitted"
    ZR_LIVE=1 exec unshare -rn sh "$0" "$@"
fi

zrbench=$1
file=$2
folder=$(mktemp -d)
started=
trap 'for pid in $started; do kill "$pid" 2>/dev/null || true; done; rm -rf "$folder"' EXIT
fail() {
    echo "FAILED: $1"
    cat "$folder"/*.log
    exit 1
}

"$zrbench" --quiet live "$file" --port 1/0=a --port 1/1=b --port 1/2=c >"$folder/zrbench.log" 2>&1 &
live=$!
started=$live
tries=0
until grep -q 'until Ctrl-C' "$folder/zrbench.log"; do
    kill -0 "$live" 2>/dev/null || { grep -q 'cannot make the TAP' "$folder/zrbench.log" && skip "$(cat "$folder/zrbench.log")"; }
    tries=$((tries + 1))
    [ "$tries" -lt 100 ] || fail "zrbench does not start"
    sleep 0.1
done

# host NAME: a namespace whose one interface is the TAP of that name.
host() {
    unshare -n sleep 60 &
    eval "$1=$!"
    started="$started $!"
    until [ "$(readlink "/proc/$!/ns/net")" != "$(readlink /proc/self/ns/net)" ]; do sleep 0.01; done
    ip link set dev "$1" netns "$!"
    on "$1" ip link set dev "$1" up
}
# on NAME COMMAND...: runs a command on a host.
on() {
    eval "pid=\$$1"
    shift
    nsenter -t "$pid" -n "$@"
}
host a
host b
host c
on a ip address add 192.0.2.1/24 dev a
on b ip address add 192.0.2.2/24 dev b
on c ip address add 192.0.2.3/24 dev c

on a busybox ping -c 2 -W 2 192.0.2.2 >"$folder/ping.log" 2>&1 || fail "ping within VLAN 10"
! on a busybox ping -c 1 -W 1 192.0.2.3 >"$folder/ping.log" 2>&1 || fail "ping from VLAN 10 to VLAN 20"

cat >"$folder/udhcpd.conf" <<EOT
start 192.0.2.100
end 192.0.2.110
interface a
lease_file $folder/leases
pidfile $folder/udhcpd.pid
option subnet 255.255.255.0
EOT
: >"$folder/leases"
cat >"$folder/client" <<EOT
#!/bin/sh
[ "\$1" != bound ] || echo "\$interface got \$ip"
EOT
chmod +x "$folder/client"
on b ip address flush dev b
on c ip address flush dev c
on a busybox udhcpd -f -S "$folder/udhcpd.conf" >"$folder/server.log" 2>&1 &
started="$started $!"
ask() { on "$1" busybox udhcpc -i "$1" -f -n -q -t 3 -T 1 -s "$folder/client" >"$folder/client.log" 2>&1; }
ask b || fail "DHCP within VLAN 10"
grep -q 'b got 192.0.2.1' "$folder/client.log" || fail "DHCP gave no address"
! ask c || fail "DHCP from VLAN 10 into VLAN 20"

kill -INT "$live"
wait "$live" || fail "zrbench ended with $?"
grep -q '^1/0 *a  *[1-9]' "$folder/zrbench.log" || fail "no statistics"
sed 1,5d "$folder/zrbench.log"
echo "ping and DHCP work within a VLAN and not between two"
