#!/bin/bash
# What the documentation calls CLASS.MEMBER, or by a name of the form Verb_Something, is published.
# Prints every other name and fails if there is one.

set -euo pipefail
cd "$(dirname "$0")/../.."

members=$(awk -f tools/idl_members.awk src/product/idl/VrxCommon.idl companions/settings/VrxSettings.idl | cut -f 1,2 | tr '\t' '.' | sed 's,/events,,')
names=$(cut -d . -f 2 <<<"$members")
classes=$(cut -d . -f 1 <<<"$members" | sort -u | paste -sd '|')
mapfile -t pages < <(find README.md docs samples -name '*.md')

failed=0
while IFS=: read -r page name; do
    if [[ $name == *.* ]]; then
        grep -qxF "$name" <<<"$members" && continue
    else
        grep -qxF "$name" <<<"$names" && continue
    fi
    echo "$page: there is no $name"
    failed=1
done < <(
    grep -HoE "\b($classes)\.[A-Z][A-Za-z_]+" "${pages[@]}"
    grep -HoE '\b(Get|Set|Load|Save|Convert|Blur|MedianCut|Show|Hide)_[A-Za-z_]+' "${pages[@]}"
)
exit "$failed"
