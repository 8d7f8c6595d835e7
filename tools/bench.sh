#!/bin/bash
# bench.sh [--win32] [--json FILE] [--only WORK] [PICTURE.hdr...] - runs the benchmarks on this machine, or those for
# Windows in Wine; the HDR works on the pictures instead of the built-in ones. Everything is checked before anything runs.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

usage='usage: ./vrx bench [--win32] [--json FILE] [--only WORK] [PICTURE.hdr...]'

windows=
json=
only=
pictures=()
while (($#)); do
    case $1 in
        --win32) windows=1 ;;
        --json | --only)
            (($# > 1)) || die "$1 wants a value; $usage"
            [[ $1 == --json ]] && json=$(realpath -m -- "$2") || only=$2
            shift
            ;;
        -*) die "not an option: $1; $usage" ;;
        *)
            [[ -f $1 && -r $1 ]] || die "not a file that can be read: $1; $usage"
            pictures+=("$(realpath -- "$1")")
            ;;
    esac
    shift
done
[[ -z $json || (-d ${json%/*} && ! -d $json) ]] || die "cannot be written: $json"

# program_path PATH - prints a path as the benchmark program knows it.
program_path() {
    if [[ $windows ]]; then windows_path "$1"; else echo "$1"; fi
}

# set_options - makes the program's options from ours.
set_options() {
    local picture
    options=(${only:+--only "$only"} ${json:+--json "$(program_path "$json")"})
    for picture in ${pictures[@]+"${pictures[@]}"}; do
        options+=("$(program_path "$picture")")
    done
}

# script_rows PICTURE FILE - late-bound calls from a script; its last line is OK when it ran to its end.
script_rows() {
    say "Late-bound calls from a script"
    in_wine 300 cscript //nologo "$(windows_path "$repo/bench/calls.vbs")" "$(windows_path "$1")" | tr -d '\r' >"$2"
    [[ $(tail -n 1 "$2") == OK ]] || die "the script failed: $(cat "$2")"
    sed -i '$d' "$2"
}

if [[ ! $windows ]]; then
    install_packages build native bench
    build_preset bench
    set_options
    exec "$build/bench/bin/vrx_bench" "${options[@]}"
fi

install_packages build windows windows32 bench
build_preset bench-win32 all "-DVRX_BENCHMARK_SOURCE=$("$tools/source_package.sh" benchmark)" \
    "-DVRX_LZ4_SOURCE=$("$tools/source_package.sh" lz4)"
start_throwaway_session
register_components "$build/bench-win32/bin"
set_options
if [[ -z $only || "late-bound call" == *$only* ]]; then
    sample=${pictures[0]:-}
    if [[ -z $sample ]]; then
        sample=$throwaway_folder/sample.hdr
        in_wine 60 "$build/bench-win32/bin/vrx_bench.exe" --sample "$(windows_path "$sample")"
    fi
    script_rows "$sample" "$throwaway_folder/rows"
    options+=(--rows "$(windows_path "$throwaway_folder/rows")")
fi
say "Benchmarks"
in_wine 900 "$build/bench-win32/bin/vrx_bench.exe" "${options[@]}"
