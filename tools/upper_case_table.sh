#!/bin/bash
# upper_case_table.sh - writes the engine's table of capital letters anew from Unicode's character data.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

install_packages unicode
table=$repo/src/ground/upper_case_table.inc

# One row per run of characters with the same distance (up or down) to their capital letter: first, last, step, distance.
awk -F';' '
function hex(text,    i, value) {
    for (i = 1; i <= length(text); ++i)
        value = value * 16 + index("0123456789ABCDEF", substr(text, i, 1)) - 1
    return value
}
function emit() {
    printf "%s{0x%04X, 0x%04X, %d, %d},", rows++ % 4 ? " " : "\n", first, last, step ? step : 1, distance
}
BEGIN { printf "// Made by tools/upper_case_table.sh from the simple upper-case mappings of UnicodeData.txt; not edited by hand." }
length($1) == 4 && length($13) == 4 {
    code = hex($1)
    gap = code - last
    moved = hex($13) - code
    if (first && moved == distance && (step ? gap == step : gap <= 2)) {
        step = gap
    } else {
        if (first)
            emit()
        first = code
        distance = moved
        step = 0
    }
    last = code
}
END {
    emit()
    print ""
}' /usr/share/unicode/UnicodeData.txt >"$table"
