#!/bin/bash
# build.sh [--product] [--win64 | --checked] - builds the component, its tests and samples: for 32-bit Windows into
# build/win32/bin, for 64-bit Windows into build/win64/bin, or for 32 bits with traps for undefined behaviour into
# build/checked/bin. With --product only what users get: the component and the samples.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

target=all
if [[ ${1:-} == --product ]]; then
    target=product
    shift
fi
preset=$(preset_of "$@")
install_packages build windows "windows$(bits_of "$@")" source
build_preset "$preset" "$target"
