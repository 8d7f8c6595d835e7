# shellcheck shell=bash
# Sourced: adds up the results of test programs for one closing line.

tally_file=$build/tally

# tally PASSED FAILED - adds a result.
tally() { echo "$1 $2" >>"$tally_file"; }

# check NAME COMMAND... - runs one test, prints its outcome, counts it.
check() {
    local name=$1
    shift
    if "$@"; then
        echo "passed: $name"
        tally 1 0
    else
        echo "FAILED: $name"
        tally 0 1
    fi
}

# tally_googletest LOG STATUS - counts a GoogleTest program's output; a test that never ended counts as failed.
tally_googletest() {
    local log=$1 status=$2 started passed skipped failed
    started=$(grep -c '\[ RUN ' "$log" || true)
    passed=$(grep -c '\[       OK \]' "$log" || true)
    skipped=$(grep -c '\[  SKIPPED \].*(' "$log" || true)
    failed=$((started - passed - skipped))
    if ((failed == 0 && (status != 0 || started == 0))); then
        failed=1
    fi
    tally "$passed" "$failed"
}

# tally_ctest LOG - counts by ctest's summary line.
tally_ctest() {
    local failed total
    if read -r failed total < <(sed -nE 's/.* ([0-9]+) tests? failed out of ([0-9]+).*/\1 \2/p' "$1"); then
        tally $((total - failed)) "$failed"
    else
        tally 0 1
    fi
}

# report_tally - prints the closing line; fails unless something passed and nothing failed.
report_tally() {
    awk '{ passed += $1; failed += $2 }
         END { printf "%d passed, %d failed\n", passed, failed; exit !(passed > 0 && failed == 0) }' "$tally_file"
}
