#!/bin/bash
# wine.sh COMMAND... - runs a Windows command in the project's Wine prefix, with the component registered.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

(($#)) || die "usage: ./vrx wine COMMAND..."
build_beside_wine
start_project_session
in_wine 0 "$@"
