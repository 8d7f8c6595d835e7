#!/bin/bash
# avx2_objects_share_no_function_with_the_baseline.sh FOLDER - what is compiled for AVX2 defines functions of its own
# namespace only. The linker keeps one of several copies of an inline function: one compiled for AVX2 would stop every
# other processor. Prints the others and fails if there is one.

set -euo pipefail

objects=$1/../src
mapfile -t files < <(find "$objects" -path '*_rows_avx2.dir/*.obj')
((${#files[@]})) || { echo "no objects in $objects" && exit 1; }

# The mangled names begin with vrx::avx2; the 32-bit ones have one more underscore.
symbols=$(nm --extern-only --defined-only --format=posix "${files[@]}" | grep -v ':$')
grep -q 'vrx4avx2' <<<"$symbols" || { echo "no function of vrx::avx2 in $objects" && exit 1; }
if grep -vE '^_{1,2}ZN3vrx4avx2' <<<"$symbols"; then
    exit 1
fi
