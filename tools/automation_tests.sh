#!/bin/bash
# Tests the built component through COM in a fresh Wine prefix; adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/tally.sh"

component=$(windows_path "$build/win32/bin/VrxCommon.dll")
settings=$(windows_path "$build/win32/bin/VrxSettings.dll")
logs=$build/automation_logs

# run_script SCRIPT - the script host ends with status 0 even after an error, so the last line must be OK.
run_script() {
    local log=$logs/${1##*/}.log
    in_wine 60 cscript //nologo "$(windows_path "$1")" >"$log" 2>&1 || true
    [[ $(tail -n 1 "$log" | tr -d '\r') == OK ]] || { tr -d '\r' <"$log" && return 1; }
}

start_throwaway_session
mkdir -p "$logs"
cd "$throwaway_folder"
say "Automation tests"
check "the component registers" in_wine 60 regsvr32 /s "$component"
check "the settings component registers" in_wine 60 regsvr32 /s "$settings"

for script in "$repo"/tests/automation/scripts/*.{vbs,js}; do
    check "${script##*/}" run_script "$script"
done

# Its output goes to a file: a process left behind by a hung test would keep a pipe open for ever.
status=0
in_wine 600 "$build/win32/bin/automation_tests.exe" >"$logs/automation_tests.log" 2>&1 || status=$?
tr -d '\r' <"$logs/automation_tests.log"
tally_googletest "$logs/automation_tests.log" "$status"

check "the settings component unregisters" in_wine 60 regsvr32 /u /s "$settings"
check "the component unregisters" in_wine 60 regsvr32 /u /s "$component"
