#!/bin/sh
# fuzz.sh SECONDS: every fuzz target over its corpus for that long, side by side. What a target learns stays in
# build/fuzz/corpus and helps its next run; what it finds is left in build/fuzz/findings.
set -u
seconds=$1
passed=0
failed=0
mkdir -p build/fuzz/findings

targets=
for target in build/debug/bin/*_fuzz; do
    [ -x "$target" ] || { echo "there is no fuzz target"; exit 1; }
    name=$(basename "$target" _fuzz)
    learnt=$PWD/build/fuzz/corpus/$name
    mkdir -p "$learnt"
    echo "$name: $seconds seconds"
    "$target" -max_total_time="$seconds" -timeout=60 -close_fd_mask=3 -artifact_prefix="$PWD/build/fuzz/findings/$name-" \
        "$learnt" "$PWD/tests/fuzz/corpus/$name" >"build/fuzz/$name.log" 2>&1 &
    targets="$targets $name:$!"
done
for target in $targets; do
    log=build/fuzz/${target%:*}.log
    if wait "${target#*:}"; then
        passed=$((passed + 1))
        echo "${target%:*}: $(grep -a DONE "$log")"
    else
        failed=$((failed + 1))
        grep -a -A 40 -m 1 -e 'ERROR' -e 'runtime error' "$log" || tail -n 40 "$log"
        grep -a 'Test unit written' "$log"
    fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
