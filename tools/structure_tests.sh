#!/bin/bash
# structure_tests.sh [--win64 | --checked] - tests rules that the sources and the built files keep; each script's name is its rule.
# Adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/tally.sh"

bin=$build/$(preset_of "$@")/bin
say "Structure tests"
for script in "$repo"/tests/structure/*.sh; do
    name=${script##*/}
    check "${name%.sh}" bash "$script" "$bin"
done
