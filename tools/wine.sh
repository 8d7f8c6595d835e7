#!/bin/bash
# wine.sh COMMAND... - runs a Windows command in the project's Wine prefix, with the component registered.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

(($#)) || die "usage: ./vrx wine COMMAND..."
"$tools/build.sh" --product
start_project_session
in_wine 0 "$@"
