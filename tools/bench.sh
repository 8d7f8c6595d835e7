#!/bin/bash
# bench.sh [--win32] - runs the benchmarks on this machine, or those for Windows in Wine.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

case ${1:-} in
    '')
        install_packages build native bench
        build_preset bench
        for program in "$build"/bench/bin/bench_*; do
            "$program"
        done
        ;;
    --win32)
        install_packages build windows windows32 bench
        build_preset bench-win32 all "-DVRX_BENCHMARK_SOURCE=$("$tools/source_package.sh" benchmark)"
        start_project_session
        for program in "$build"/bench-win32/bin/bench_*.exe; do
            in_wine 0 "$program"
        done
        ;;
    *) die "usage: ./vrx bench [--win32]" ;;
esac
