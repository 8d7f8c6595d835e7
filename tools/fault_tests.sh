#!/bin/bash
# fault_tests.sh [--all] [--win64 | --checked] - tests the built component with failing calls of the system, with members
# called at random, with members and dialogs used again and again, and in processes without memory, each part in a fresh Wine
# prefix; adds the results to the tally. Without --all a fast selection of the faults and of the times.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/tally.sh"

selection=fast limit=600
if [[ ${1:-} == --all ]]; then
    selection=all limit=7200
    shift
fi
bits=$(bits_of "$@")
bin=$build/$(preset_of "$@")/bin
logs=$build/automation_logs/$(preset_of "$@")
parts=3

# shard INDEX - runs one part of the tests in a session of its own, with copies of the libraries.
shard() (
    start_throwaway_session "$bits"
    cp "$bin"/{*.dll,*.tlb,cold_host.exe,fault_tests.exe} "$throwaway_folder"
    cd "$throwaway_folder"
    for library in VrxCommon VrxSettings; do
        in_wine 60 regsvr32 /s "$(windows_path "$library.dll")"
    done
    export VRX_FAULTS=$selection GTEST_SHARD_INDEX=$1 GTEST_TOTAL_SHARDS=$parts
    in_wine "$limit" "$throwaway_folder/fault_tests.exe" || echo "exit status $?"
) >"$logs/fault_tests.$1.log" 2>&1

mkdir -p "$logs"
choose_wine "$bits"
make_template || die "Wine does not run a script"
say "Fault tests ($selection)"
pids=()
for ((part = 0; part < parts; part++)); do
    shard "$part" &
    pids+=($!)
done
wait "${pids[@]}" || true
for ((part = 0; part < parts; part++)); do
    log=$logs/fault_tests.$part.log
    # Wine tells of drives whose names it cannot read.
    tr -d '\r' <"$log" | grep -v '^\[\( RUN  \|   .* OK \|--*\)\|^wine: Read access denied' || true
    ! grep -q '^exit status' "$log"
    tally_googletest "$log" $?
done
cat "$logs"/fault_tests.*.log | tr -d '\r' |
    awk '$3 == "faults" { count[$1] += $2; all += $2 } END { for (kind in count) print kind, count[kind]; print "Faults injected in all:", all }'
