#!/bin/sh
# size_report.sh STRIPPED UNSTRIPPED RECORDED: sizes of the library as a whole, per directory and of its largest
# symbols, beside the recorded ones. With RECORD=1 the new figures take their place.
set -eu
stripped=$1
library=$2
recorded=$3

report() {
    aarch64-linux-gnu-size "$stripped" | awk 'NR == 2 { printf "text %d\ndata %d\nbss %d\n", $1, $2, $3 }'
    aarch64-linux-gnu-readelf -rW "$stripped" |
        sed -n "s/^Relocation section '\(.*\)' .* contains \([0-9]*\) entr.*/relocations\1 \2/p"
    for dir in src/*/; do
        objects_dir=build/arm64/CMakeFiles/zrlsw.dir/$dir
        [ -d "$objects_dir" ] || continue # headers only
        objects=$(find "$objects_dir" -name '*.o')
        # shellcheck disable=SC2086
        aarch64-linux-gnu-size $objects |
            awk -v name="${dir%/}" 'NR > 1 { text += $1; data += $2; bss += $3 }
                                    END { printf "%s.text %d\n%s.data %d\n%s.bss %d\n", name, text, name, data, name, bss }'
    done
    aarch64-linux-gnu-nm -S --size-sort --defined-only "$library" | grep -v localalias | tail -n 10 |
        while read -r _ size _ name; do echo "symbol.$name $((0x$size))"; done
}

report >build/arm64/size.txt
awk -v recorded="$recorded" 'FILENAME == recorded { was[$1] = $2; next }
     { printf "%-48s %8d", $1, $2
       if ($1 in was) { d = $2 - was[$1]; printf "  was %8d  %+d", was[$1], d } else printf "  new"
       print "" }' "$recorded" build/arm64/size.txt
[ -z "${RECORD:-}" ] || cp build/arm64/size.txt "$recorded"
