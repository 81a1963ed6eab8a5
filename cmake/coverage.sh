#!/bin/sh
# What the tests reached since build/coverage was last cleared: lines and branches of every file, then what of src/
# they did not reach. A branch that only an exception takes does not count. What no argument can reach is marked
# GCOVR_EXCL_LINE or GCOVR_EXCL_BR_LINE in the code, with the reason.
set -eu
out=build/coverage
mkdir -p $out/html
gcovr --root . --object-directory $out --filter src/ --filter sim/ --exclude-throw-branches \
    --exclude-unreachable-branches -j 2 --html-details $out/html/index.html --sonarqube $out/lines.xml
sed 's/></>\n</g' $out/lines.xml | awk -F '"' '
    function row(name) {
        printf "%-40s %5d of %5d %4d%%  %5d of %5d %4d%%\n", name, hit[name], lines[name],
            lines[name] ? 100 * hit[name] / lines[name] : 100, taken[name], branches[name],
            branches[name] ? 100 * taken[name] / branches[name] : 100
    }
    BEGIN { printf "%-40s %20s  %20s\n", "", "lines reached", "branches taken" }
    /<file / { file = $2; folder = substr(file, 1, 4); number = 0 }
    /<lineToCover/ {
        for (name = file; name != ""; name = name == file ? folder : "") {
            lines[name]++; hit[name] += $4 == "true"
            branches[name] += $6; taken[name] += $8
        }
        if (folder == "src/" && ($4 == "false" || $6 > $8)) {
            while (number < $2 && (getline text < file) > 0) number++
            sub(/^ */, "", text)
            missed[++count] = file ":" $2 ($4 == "false" ? "" : " (" $8 " of " $6 " branches)") ": " text
        }
    }
    /<\/file>/ { row(file) }
    END {
        row("src/"); row("sim/")
        print count ? "\nNot reached in src/:" : "\nAll of src/ is reached."
        for (i = 1; i <= count; i++) print missed[i]
    }'
echo "$out/html/index.html"
