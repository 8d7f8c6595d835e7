#!/bin/bash
# the_component_imports_only_system_libraries.sh FOLDER - every DLL built into the folder names nothing but system
# libraries in its import table. Prints the others and fails if there is one.

set -euo pipefail
shopt -s failglob
cd "$1"

system='^(advapi32|comctl32|comdlg32|gdi32|kernel32|msvcrt|ole32|oleacc|oleaut32|shell32|shlwapi|user32|version)\.dll$'

failed=0
for library in *.dll; do
    mapfile -t names < <(objdump -p "$library" | sed -n 's/.*DLL Name: //p')
    ((${#names[@]})) || { echo "$library has no import table" && failed=1; }
    for imported in "${names[@]}"; do
        if ! grep -qiE "$system" <<<"$imported"; then
            echo "$library imports $imported"
            failed=1
        fi
    done
done
exit "$failed"
