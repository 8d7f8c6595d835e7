#!/bin/bash
# Runs every test and ends with one line, "N passed, N failed".

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"
. "$tools/tally.sh"

install_packages native windows wine fuzz
mkdir -p "$build"
rm -f "$tally_file"

build_preset native
say "Engine tests"
ctest --test-dir "$build/native" --output-on-failure --no-tests=error --timeout 120 -j "$(nproc)" |
    tee "$build/engine_tests.log" || true
tally_ctest "$build/engine_tests.log"

"$tools/build.sh"
"$tools/structure_tests.sh"
"$tools/automation_tests.sh"
"$tools/fuzz_replay.sh"

echo
report_tally
