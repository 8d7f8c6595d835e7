#!/bin/bash
# The ground floor and the engines on it may include the C++ standard library, the processor's intrinsics and each other
# only. Prints every line that includes something else and fails if there is one.

set -euo pipefail
cd "$(dirname "$0")/../../src"

# C++ standard headers have no extension.
allowed='#include (<[a-z_]+>|<(cpuid|[a-z]mmintrin)\.h>|"(ground|[a-z]+/engine)/[A-Za-z0-9_]+\.(h|inc)")'

mapfile -t files < <(find . \( -path './ground/*' -o -path '*/engine/*' \) -type f)
((${#files[@]} > 0)) || { echo "there is no engine" && exit 1; }
if grep -nE '^\s*#\s*include' "${files[@]}" | grep -vE ":$allowed"; then
    exit 1
fi
