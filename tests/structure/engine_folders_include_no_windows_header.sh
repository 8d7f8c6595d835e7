#!/bin/bash
# The portable engine may include the C++ standard library, the processor's intrinsics and other engine headers only.
# Prints every line that includes something else and fails if there is one.

set -euo pipefail
cd "$(dirname "$0")/../../src"

# C++ standard headers have no extension.
allowed='#include (<[a-z_]+>|<(cpuid|[a-z]mmintrin)\.h>|"[a-z]+/engine/[A-Za-z0-9_]+\.(h|inc)")'

mapfile -t files < <(find . -path '*/engine/*' -type f)
((${#files[@]} > 0)) || { echo "there is no engine" && exit 1; }
if grep -nE '^\s*#\s*include' "${files[@]}" | grep -vE ":$allowed"; then
    exit 1
fi
