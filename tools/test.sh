#!/bin/bash
# test.sh [--win64] - runs every test, or those of the component for 64-bit Windows; ends with one line, "N passed, N failed".

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"
. "$tools/tally.sh"

engine_tests() {
    build_preset native
    say "Engine tests"
    ctest --test-dir "$build/native" --output-on-failure --no-tests=error --timeout 120 -j "$(nproc)" |
        tee "$build/engine_tests.log" || true
    tally_ctest "$build/engine_tests.log"
}

component_tests() {
    "$tools/build.sh" "$@"
    "$tools/structure_tests.sh" "$@"
    "$tools/automation_tests.sh" "$@"
    "$tools/package.sh" "$@"
    "$tools/package_test.sh" "$@"
    "$tools/sample_tests.sh" "$@"
}

mkdir -p "$build"
rm -f "$tally_file"
case ${1:-} in
    '')
        install_packages build native windows windows32 wine32 fuzz
        engine_tests
        component_tests
        "$tools/fuzz_replay.sh"
        ;;
    --win64)
        install_packages build windows windows64 wine64
        component_tests --win64
        ;;
    *) die "usage: ./vrx test [--win64]" ;;
esac

echo
report_tally
