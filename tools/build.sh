#!/bin/bash
# build.sh [--product] [--win64] - builds the component, its tests and samples for 32-bit Windows into build/win32/bin, or
# for 64-bit Windows into build/win64/bin. With --product only what users get: the component and the samples.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

target=all
if [[ ${1:-} == --product ]]; then
    target=product
    shift
fi
bits=$(bits_of "$@")
install_packages build windows "windows$bits"
build_preset "win$bits" "$target"
