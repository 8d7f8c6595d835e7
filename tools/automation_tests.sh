#!/bin/bash
# automation_tests.sh [--win64 | --checked] - tests the built component through COM and by its windows in a fresh Wine
# prefix; adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/tally.sh"

bits=$(bits_of "$@")
preset=$(preset_of "$@")
bin=$build/$preset/bin
component=$(windows_path "$bin/VrxCommon.dll")
settings=$(windows_path "$bin/VrxSettings.dll")
logs=$build/automation_logs/$preset

# run_script SCRIPT - the script host ends with status 0 even after an error, so the last line must be OK.
run_script() {
    local log=$logs/${1##*/}.log
    in_wine 60 cscript //nologo "$(windows_path "$1")" >"$log" 2>&1 || true
    [[ $(tail -n 1 "$log" | tr -d '\r') == OK ]] || { tr -d '\r' <"$log" && return 1; }
}

# shard PROGRAM INDEX COUNT - runs one part of a program's tests in a session of its own, with copies of the libraries:
# they write files beside themselves. Its output goes to a file: a process left behind by a hung test would keep a pipe
# open for ever.
shard() (
    start_throwaway_session "$bits"
    cp -r "$bin"/{*.dll,*.tlb,*_codec,fake_unwinder,"$1.exe"} "$throwaway_folder"
    cd "$throwaway_folder"
    export GTEST_SHARD_INDEX=$2 GTEST_TOTAL_SHARDS=$3
    for library in VrxCommon VrxSettings; do
        in_wine 60 regsvr32 /s "$(windows_path "$library.dll")"
    done
    in_wine 600 "$throwaway_folder/$1.exe" || echo "exit status $?"
) >"$logs/$1.$2.log" 2>&1

# resolution DPI - runs the tests of what depends on the screen's resolution at another one.
resolution() (
    start_throwaway_session "$bits"
    cp -r "$bin"/{*.dll,*.tlb,dialog_tests.exe} "$throwaway_folder"
    cd "$throwaway_folder"
    in_wine 60 reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f
    in_wine 600 "$throwaway_folder/dialog_tests.exe" '--gtest_filter=*AtEveryResolution*' || echo "exit status $?"
) >"$logs/dialog_tests.dpi$1.log" 2>&1

# run_tests - all parts at the same time: they wait most of the time.
run_tests() {
    local part pids=()
    shard automation_tests 0 1 &
    pids+=($!)
    for part in {0..3}; do
        shard dialog_tests "$part" 4 &
        pids+=($!)
    done
    for part in 144 192; do
        resolution "$part" &
        pids+=($!)
    done
    wait "${pids[@]}" || true
    for part in automation_tests.0 dialog_tests.{0..3} dialog_tests.dpi{144,192}; do
        tr -d '\r' <"$logs/$part.log"
        ! grep -q '^exit status' "$logs/$part.log"
        tally_googletest "$logs/$part.log" $?
    done
}

start_throwaway_session "$bits"
mkdir -p "$logs"
cd "$throwaway_folder"
say "Automation tests of $preset"
check "the component registers" in_wine 60 regsvr32 /s "$component"
check "the settings component registers" in_wine 60 regsvr32 /s "$settings"
for script in "$repo"/tests/automation/scripts/*.{vbs,js}; do
    check "${script##*/}" run_script "$script"
done
check "the settings component unregisters" in_wine 60 regsvr32 /u /s "$settings"
check "the component unregisters" in_wine 60 regsvr32 /u /s "$component"

run_tests
