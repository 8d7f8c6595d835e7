#!/bin/bash
# Each argument of a published member is described, in `backquotes`, below the member's heading in the reference.
# Prints what is missing and fails if something is.

set -euo pipefail
cd "$(dirname "$0")/../.."

# section PAGE MEMBER - prints what stands below the member's heading, without the declaration.
section() {
    awk -v heading="### $2" '
        /^#/ { inside = $0 == heading }
        /^```/ { code = !code }
        inside && !code' "$1"
}

failed=0
checked=0
while IFS=$'\t' read -r class member _ arguments; do
    page=docs/reference/$class.md
    [[ $class != */enum ]] || continue
    [[ $class != */events ]] || page=docs/reference/events.md
    for argument in $arguments; do
        checked=$((checked + 1))
        if ! section "$page" "$member" | grep -qF "\`$argument\`"; then
            echo "$page: $member: $argument is not described"
            failed=1
        fi
    done
done < <(awk -f tools/idl_members.awk src/product/idl/VrxCommon.idl companions/settings/VrxSettings.idl)
((checked > 0)) || { echo "there are no arguments" && exit 1; }
exit "$failed"
