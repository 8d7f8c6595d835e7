#!/bin/bash
# fuzz.sh [SECONDS [TARGET]] - runs each fuzz target, or the one of this name, for SECONDS (60); inputs that fail are kept and
# give exit status 1.

. "$(dirname "$0")/common.sh"
. "$tools/fuzz_targets.sh"

seconds=${1:-60}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || die "usage: ./vrx fuzz [SECONDS [TARGET]]"

build_fuzz_targets
if [[ -n ${2:-} ]]; then
    fuzz_targets=("$build/fuzz/bin/fuzz_${2#fuzz_}")
    [[ -x ${fuzz_targets[0]} ]] || die "no fuzz target: $2"
fi
status=0
for target in "${fuzz_targets[@]}"; do
    say "${target##*/}, $seconds seconds"
    run_fuzz_target "$target" "-max_total_time=$seconds" || status=1
    grep -h '^Done ' "$fuzz_logs/${target##*/}.log" || true
done
((status == 0)) || say "Failing inputs are in $fuzz_crashes"
exit $status
