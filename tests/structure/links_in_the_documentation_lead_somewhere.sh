#!/bin/bash
# Every relative link in README.md, docs and samples leads to a file or folder that exists and, where it names a heading,
# to that heading. Prints the others and fails if there is one. The second argument is another folder that has these.

# shellcheck disable=SC2016  # Markdown has backquotes, awk has dollars.
set -euo pipefail
cd "${2:-$(dirname "$0")/../..}"

# anchors PAGE - prints the names that links use for the page's headings.
anchors() {
    sed -nE '/^```/,/^```/!s/^#+ +//p' "$1" | tr '[:upper:]' '[:lower:]' | sed -E 's/[^a-z0-9 _-]//g; s/ /-/g'
}

failed=0
checked=0
while IFS=$'\t' read -r page link; do
    [[ $link != *://* && $link != mailto:* ]] || continue
    checked=$((checked + 1))
    file=${link%%#*}
    target=$page
    [[ -z $file ]] || target=$(dirname "$page")/$file
    if [[ ! -e $target ]]; then
        echo "$page: there is no $link"
        failed=1
    elif [[ $link == *#* ]] && ! anchors "$target" | grep -qxF "${link#*#}"; then
        echo "$page: no heading for $link"
        failed=1
    fi
done < <(find README.md CHANGELOG.md docs samples -name '*.md' -print0 |
    xargs -0 awk '/^```/ { code = !code }
        !code { while (match($0, /\]\([^)]+\)/)) {
            print FILENAME "\t" substr($0, RSTART + 2, RLENGTH - 3)
            $0 = substr($0, RSTART + RLENGTH) } }')
((checked > 0)) || { echo "there are no links" && exit 1; }
exit "$failed"
