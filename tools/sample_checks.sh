# shellcheck shell=bash
# Sourced after package_session.sh: what tests of samples look at.

# in_folder NAME - an empty folder for a sample, with a picture in it, becomes the current one.
in_folder() {
    mkdir -p "$throwaway_folder/$1"
    cd "$throwaway_folder/$1" || return
    cp "$throwaway_folder/sky.hdr" .
}

# prints LINE... - whether the sample printed each of these lines; shows what it printed where not.
prints() {
    local line
    for line in "$@"; do
        grep -qxF -- "$line" printed || { echo "not printed: $line" && cat printed && return 1; }
    done
}

# begins FILE BYTES - whether the file begins with these bytes, in hexadecimal.
begins() {
    [[ $(head -c $((${#2} / 2)) "$1" 2>/dev/null | od -An -tx1 | tr -d ' \n') == "$2" ]] ||
        { echo "$1 does not begin with $2" && return 1; }
}

are_bitmaps() {
    local file
    for file in "$@"; do begins "$file" 424d || return; done
}

are_jpegs() {
    local file
    for file in "$@"; do begins "$file" ffd8ff || return; done
}
