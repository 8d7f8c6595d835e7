# shellcheck shell=bash
# Sourced by every script in tools/: the project's folders, and how it talks to the user.

set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
tools=$repo/tools
build=$repo/build
cache=${XDG_CACHE_HOME:-${HOME:-/root}/.cache}/vrxcommon
export DEBIAN_FRONTEND=noninteractive

say() { printf '\n== %s\n' "$*" >&2; }

die() {
    printf 'vrx: %s\n' "$*" >&2
    exit 1
}

# quietly COMMAND... - shows what the command says, and its exit status, only when it fails. What it says goes to a file:
# programs that it leaves behind would keep a pipe open.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    ((status == 0)) || { tr -d '\r' <"$log" && echo "exit status $status"; } >&2
    rm "$log"
    return "$status"
}

# preset_of [--win64 | --checked] - prints the preset that builds the component of this kind; its folder in build/ has the
# same name.
preset_of() {
    case $* in
        --win64) echo win64 ;;
        --checked) echo checked ;;
        '') echo win32 ;;
        *) die "not an option: $*" ;;
    esac
}

# bits_of [--win64 | --checked] - prints how wide the programs are for which this component is: 32 or 64.
bits_of() {
    local preset
    preset=$(preset_of "$@") || exit
    if [[ $preset == win64 ]]; then echo 64; else echo 32; fi
}

# project_version - prints the version of the product.
project_version() { sed -nE 's/^project\(VrxCommon VERSION ([0-9.]+) .*/\1/p' "$repo/CMakeLists.txt"; }

# build_preset PRESET [TARGET [CMAKE OPTION...]] - configures build/PRESET and builds all of it or one target.
build_preset() {
    local preset=$1 target=${2:-all}
    shift $(($# < 2 ? $# : 2))
    say "Building $preset"
    (cd "$repo" && cmake --preset "$preset" "$@" >/dev/null && cmake --build "build/$preset" --target "$target" >&2)
}
