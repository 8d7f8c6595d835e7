#!/bin/bash
# test.sh [--win64 | --checked] [--faults] [--wine PATH] - runs every test, or those of the component for 64-bit Windows, or
# those of a component in which undefined behaviour ends the program. With --faults all those in which calls of the system
# fail, and no others. With --wine only the tests that run in Wine, in that one.
# Ends with one line, "N passed, N failed".

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/tally.sh"

usage="usage: ./vrx test [--win64 | --checked] [--faults] [--wine PATH]"

# other_wine PATH - the tests run in this Wine, whose wineserver stands beside it.
other_wine() {
    [[ -x $1 && -x $(dirname "$1")/wineserver ]] || die "no Wine: $1"
    VRX_WINE=$(realpath "$1")
    export VRX_WINE
}

engine_tests() {
    build_preset native
    say "Engine tests"
    ctest --test-dir "$build/native" --output-on-failure --no-tests=error --timeout 120 -j "$(nproc)" |
        tee "$build/engine_tests.log" || true
    tally_ctest "$build/engine_tests.log"
}

# component_tests [OPTION] - the built component, seen from outside.
component_tests() {
    "$tools/build.sh" "$@"
    "$tools/automation_tests.sh" "$@"
    "$tools/fault_tests.sh" "$@"
}

# all_faults [OPTION] - each call of the system fails once, which takes its time.
all_faults() {
    "$tools/build.sh" "$@"
    "$tools/fault_tests.sh" --all "$@"
}

# package_tests [OPTION] - what users get.
package_tests() {
    "$tools/structure_tests.sh" "$@"
    "$tools/package.sh" "$@"
    "$tools/package_test.sh" "$@"
    "$tools/installer_test.sh" "$@"
    "$tools/sample_tests.sh" "$@"
    "$tools/host_tests.sh" "$@"
}

all_tests() {
    prepare_wine 32
    install_packages build native windows windows32 source wine32 package installer package-test pascal csharp python fuzz
    engine_tests
    wait_for_wine
    component_tests
    package_tests
    "$tools/fuzz_replay.sh"
}

component=()
faults=
VRX_WINE=
while (($#)); do
    case $1 in
        --win64 | --checked) component+=("$1") ;;
        --faults) faults=all ;;
        --wine)
            other_wine "${2:?$usage}"
            shift
            ;;
        *) die "$usage" ;;
    esac
    shift
done
preset=$(preset_of "${component[@]}")

mkdir -p "$build"
rm -f "$tally_file"
if [[ -n $faults ]]; then
    all_faults "${component[@]}"
elif [[ -n ${VRX_WINE:-} || $preset == checked ]]; then
    component_tests "${component[@]}"
elif [[ $preset == win64 ]]; then
    component_tests --win64
    package_tests --win64
else
    all_tests
fi

echo
report_tally
