#!/bin/bash
# in_wine.sh PREFIX COMMAND... - runs a Windows command in a Wine prefix, which is created when it is absent.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

start_session "$(realpath -m -- "$1")"
shift
in_wine 600 "$@"
