#!/bin/bash
# the_component_imports_only_system_libraries.sh [FOLDER] - every DLL built into the folder (build/win32/bin) names
# nothing but system libraries in its import table. Prints the others and fails if there is one.

set -euo pipefail
shopt -s failglob
cd "${1:-$(dirname "$0")/../../build/win32/bin}"

system='^(advapi32|comctl32|comdlg32|gdi32|kernel32|msvcrt|ole32|oleaut32|shell32|shlwapi|user32|version)\.dll$'

failed=0
for library in *.dll; do
    while read -r imported; do
        if ! grep -qiE "$system" <<<"$imported"; then
            echo "$library imports $imported"
            failed=1
        fi
    done < <(i686-w64-mingw32-objdump -p "$library" | sed -n 's/.*DLL Name: //p')
done
exit "$failed"
