#!/bin/bash
# docs/errors.md names the number and the text of every platform error and of the component's own errors.
# Prints what is missing and fails if something is.

# shellcheck disable=SC2016  # Markdown has backquotes, awk has dollars.
set -euo pipefail
cd "$(dirname "$0")/../.."

failed=0
checked=0
while read -r found; do
    checked=$((checked + 1))
    grep -qF -- "$found" docs/errors.md || { echo "docs/errors.md: missing: $found" && failed=1; }
done < <(
    sed -nE 's/^(    |inline constexpr std::int32_t )[A-Za-z]+ = ([0-9]+)[,;]$/| \2 |/p' src/ground/error.h
    sed -nE 's/^ +return u"(.*)";$/`\1`/p' src/ground/error.cpp
    grep -rhoE 'Error\{own_error::[A-Za-z]+, [^,]*, u"[^"]+"\}' src | sed -E 's/.*u"([^"]+)".*/\1/'
    sed -nE 's/.*return \{own_error::[A-Za-z]+, u"([^"]+)", u"([^"]+)"\};.*/`\1` | `\2`/p' src/hdr/engine/hdr_error.h
)
((checked > 0)) || { echo "there are no errors" && exit 1; }
exit "$failed"
