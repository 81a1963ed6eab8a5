# What checks have in common: `check NAME COMMAND...` in a folder $work, counted in $passed and $failed.
passed=0
failed=0

check() {
    name=$1
    shift
    if "$@" >"$work/log" 2>&1; then
        passed=$((passed + 1))
        echo "ok      $name"
    else
        failed=$((failed + 1))
        echo "FAILED  $name"
        tail -n 40 "$work/log"
    fi
}
