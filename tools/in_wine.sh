#!/bin/bash
# in_wine.sh [--win64] PREFIX COMMAND... - runs a Windows command in a Wine prefix, which is created when it is absent.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

bits=32
if [[ ${1:-} == --win64 ]]; then
    bits=64
    shift
fi
start_session "$(realpath -m -- "$1")" "$bits"
shift
in_wine 600 "$@"
