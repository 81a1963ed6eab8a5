#!/bin/sh
# reference.sh ZRBENCH: writes the command reference of docs/device-files.md anew, as the program tells it.
set -eu
page=docs/device-files.md
new=$(mktemp)
trap 'rm -f "$new"' EXIT
{
    sed '/^<!-- commands -->$/q' "$page"
    "$1" commands --markdown
    sed -n '/^<!-- end of commands -->$/,$p' "$page"
} >"$new"
cmp -s "$new" "$page" || cat "$new" >"$page"
