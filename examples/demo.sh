#!/bin/sh
# demo.sh ZRBENCH: what the library does, over the stand-in.
set -eu
zrbench=$1
here=$(dirname "$0")

echo "--- Bring-up of three units, their registers, and three ways for it to fail ($here/bring-up.json)"
"$zrbench" run "$here/bring-up.json"
echo
echo "--- A whole gateway, from bring-up to tear-down ($here/gateway.json)"
"$zrbench" run "$here/gateway.json"
echo
echo "--- The gateway in service: what becomes of frames ($here/switching.json)"
"$zrbench" run "$here/switching.json"
