#!/bin/bash
# Every file of src and companions stands in a room of rooms.txt and includes only rooms that the table gives its room; the
# table gives each room only rooms that stand before it, so there is no way round in a circle; docs/architecture.md shows
# the same table. Prints what is against it and fails if there is something.

set -euo pipefail
cd "$(dirname "$0")/../.."

table=tests/structure/rooms.txt
failed=0

# shellcheck disable=SC2016  # awk has dollars.
against_the_table='
    # The innermost room that a path lies in.
    function room_of(path) {
        sub(/^src\//, "", path)
        while (sub(/\/[^\/]*$/, "", path)) if (path in known) return path
        return ""
    }
    FILENAME == table {
        if ($0 ~ /^(#|$)/) next
        for (i = 2; i <= NF; ++i) {
            if (!($i in known)) { print table ": " $i " does not stand before " $1; failed = 1 }
            allowed[$1, $i] = 1
        }
        known[$1] = 1
        next
    }
    /^[ \t]*#[ \t]*include[ \t]*"/ {
        split($0, parts, "\"")
        target = parts[2]
        if (target !~ /\//) target = "product/idl/" target
        if (target ~ /^(jpeg|settings)\//) target = "companions/" target
        from = room_of(FILENAME)
        to = room_of(target)
        ++checked
        if (from == "" || to == "" || (from != to && !((from, to) in allowed))) {
            print FILENAME ": includes " parts[2]
            failed = 1
        }
    }
    END {
        if (!checked) { print "there are no includes"; failed = 1 }
        exit failed
    }'
mapfile -t files < <(find src companions -name '*.cpp' -o -name '*.h' -o -name '*.inc' -o -name '*.rc')
awk -v table="$table" "$against_the_table" "$table" "${files[@]}" || failed=1

# In the page: | `room` | what is in it | rooms |
# shellcheck disable=SC2016  # Markdown has backquotes.
shown=$(sed -nE '/^## Rooms/,/^## [^R]/s/^\| `([a-z/]+)` \|.*\| ([a-z/, ]*) \|$/\1 \2/p' docs/architecture.md | tr -d ,)
held=$(grep -vE '^(#|$)' "$table")
diff <(tr -s ' ' <<<"$shown" | sed 's/ $//') <(tr -s ' ' <<<"$held") || { echo "docs/architecture.md shows another table" && failed=1; }
exit "$failed"
