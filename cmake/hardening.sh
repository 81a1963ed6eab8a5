#!/bin/sh
# hardening.sh FILE...: what protects each ELF file. Fails when one lacks full RELRO with immediate binding, has an
# executable stack, or, being a program or the stand-in, lacks stack protection or checked copies.
set -u
status=0
for file in "$@"; do
    parts=
    readelf -lW "$file" | grep -q GNU_RELRO && readelf -dW "$file" | grep -qE 'BIND_NOW|Flags:.*NOW' || parts="$parts relro"
    ! readelf -lW "$file" | grep -q 'GNU_STACK.*RWE' || parts="$parts stack"
    readelf -hW "$file" | grep -q 'Type:.*DYN' || parts="$parts position"
    ! readelf -dW "$file" | grep -qE 'TEXTREL|RPATH|RUNPATH' || parts="$parts paths"
    case $file in
    *libzrlsw.so | *libzrrecord.so) ;; # copies through the platform's bounded functions, and holds no buffer that a caller's text fills
    *)
        readelf -W --dyn-syms "$file" | grep -q ' __stack_chk_fail' || parts="$parts protector"
        readelf -W --dyn-syms "$file" | grep -qE ' __[a-z]+_chk' || parts="$parts fortify"
        ;;
    esac
    echo "${file##*/}: ${parts:+lacks$parts}"
    [ -z "$parts" ] || status=1
done
exit "$status"
