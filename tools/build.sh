#!/bin/bash
# Builds the component, its tests and samples for 32-bit Windows into build/win32/bin.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

install_packages native windows
build_preset win32
