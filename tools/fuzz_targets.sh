# shellcheck shell=bash
# Sourced: builds the fuzz targets and runs them over their corpus of generated seeds.

. "$tools/packages.sh"

fuzz_corpus=$build/fuzz/corpus
fuzz_crashes=$build/fuzz/crashes
fuzz_logs=$build/fuzz/logs

# build_fuzz_targets - builds them, makes their seeds and sets fuzz_targets to their paths.
build_fuzz_targets() {
    install_packages build native fuzz
    build_preset fuzz
    fuzz_targets=("$build"/fuzz/bin/fuzz_*)
    mkdir -p "$fuzz_crashes" "$fuzz_logs"
    "$build/fuzz/bin/make_seeds" "$fuzz_corpus"
}

# dictionary_option NAME - prints libFuzzer's option for the dictionary of the targets whose names begin so, if there is one.
dictionary_option() {
    local dictionary name=$1
    for dictionary in "$repo"/tests/fuzz/*.dict; do
        [[ $name != "fuzz_$(basename "$dictionary" .dict)"* ]] || echo "-dict=$dictionary"
    done
}

# run_fuzz_target TARGET OPTION... - libFuzzer on the target's corpus; shows the end of its log when it fails.
run_fuzz_target() {
    local target=$1 name=${1##*/} dictionary
    shift
    mapfile -t dictionary < <(dictionary_option "$name")
    mkdir -p "$fuzz_corpus/$name"
    if "$target" -timeout=10 -rss_limit_mb=2048 "-artifact_prefix=$fuzz_crashes/$name-" \
        "${dictionary[@]}" "$@" "$fuzz_corpus/$name" >"$fuzz_logs/$name.log" 2>&1; then
        echo "passed: $name"
        return
    fi
    tail -n 40 "$fuzz_logs/$name.log"
    echo "FAILED: $name"
    return 1
}
