#!/bin/bash
# docs_copies.sh [--write] - compares what README.md and docs show of the samples and the published declarations with
# the samples and the IDL; with --write, renews it. Prints what differs and fails when something does.

. "$(dirname "$0")/common.sh"

cd "$repo"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk -f tools/idl_members.awk src/product/idl/VrxCommon.idl companions/settings/VrxSettings.idl >"$work/members"

failed=0
while read -r page; do
    awk -v members="$work/members" -f tools/docs_copies.awk "$page" >"$work/page" || failed=1
    if [[ ${1:-} == --write ]]; then
        cmp -s "$work/page" "$page" || cp "$work/page" "$page"
    else
        diff -u --label "$page" --label "$page, renewed" "$page" "$work/page" || failed=1
    fi
done < <(find README.md docs samples -name '*.md' | sort)
exit "$failed"
