#!/bin/bash
# Each member and event in docs/reference has an example that is part of a sample; tests run the samples.
# Prints those without and fails if there is one.

set -euo pipefail
cd "$(dirname "$0")/../../docs/reference"

mapfile -t pages < <(find . -name '*.md' | sort)
awk '
    function finish() {
        if (member != "" && !shown) { print page ": " member " has no example"; failed = 1 }
        member = ""
    }
    FNR == 1 { finish(); page = FILENAME }
    /^#/ { finish() }
    /^### / { member = substr($0, 5); shown = 0; ++count }
    /^<!-- samples\// { shown = 1 }
    END { finish(); if (count < 50) { print "only " count " members"; failed = 1 }; exit failed }
' "${pages[@]}"
