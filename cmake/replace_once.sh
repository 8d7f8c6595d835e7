#!/bin/bash
# replace_once.sh FILE OLD NEW - replaces bytes in a file, given as \xNN each; fails, and leaves no file, unless they stand
# in it exactly once.

set -euo pipefail
export LC_ALL=C

file=$1 old=$2 new=$3
count=$(grep -obaP "$old" "$file" | wc -l)
if ((count != 1)); then
    echo "$file has the bytes $old $count times" >&2
    rm "$file"
    exit 1
fi
sed -i "s/$old/$new/" "$file"
