#!/bin/bash
# build.sh [--win64] - builds the component, its tests and samples for 32-bit Windows into build/win32/bin, or for 64-bit
# Windows into build/win64/bin.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

bits=$(bits_of "$@")
install_packages native windows "windows$bits"
build_preset "win$bits"
