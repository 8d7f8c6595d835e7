#!/bin/bash
# fault_tests.sh [--all] [--win64 | --checked] - tests the built component with failing calls of the system, with members
# called at random and with members called again and again, in a fresh Wine prefix; adds the results to the tally. Without
# --all a fast selection of the faults and of the times.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/tally.sh"

selection=fast limit=300
if [[ ${1:-} == --all ]]; then
    selection=all limit=7200
    shift
fi
bits=$(bits_of "$@")
bin=$build/$(preset_of "$@")/bin
log=$build/automation_logs/$(preset_of "$@")/fault_tests.log

start_throwaway_session "$bits"
mkdir -p "$(dirname "$log")"
cp "$bin"/{*.dll,*.tlb,fault_tests.exe} "$throwaway_folder"
cd "$throwaway_folder"
say "Fault tests ($selection)"
for library in VrxCommon VrxSettings; do
    in_wine 60 regsvr32 /s "$(windows_path "$library.dll")"
done
status=0
VRX_FAULTS=$selection in_wine "$limit" "$throwaway_folder/fault_tests.exe" >"$log" 2>&1 || status=$?
tr -d '\r' <"$log" | grep -v '^\[\( RUN  \|   .* OK \|--*\)' || true
tally_googletest "$log" "$status"
