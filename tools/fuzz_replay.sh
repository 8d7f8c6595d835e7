#!/bin/bash
# Runs every fuzz target once over its corpus; adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/fuzz_targets.sh"
. "$tools/tally.sh"

build_fuzz_targets
say "Fuzz corpus"
for target in "${fuzz_targets[@]}"; do
    if run_fuzz_target "$target" -runs=0; then
        tally 1 0
    else
        tally 0 1
    fi
done
