#!/bin/bash
# Front door of the project: sets the machine up where needed, builds, tests, demonstrates.

. "$(dirname "$(realpath "$0")")/tools/common.sh"

usage() {
    cat <<'TEXT'
VrxCommon: a COM automation component for HDR pictures (Windows), built and tested on Debian 12.

  ./vrx demo [PICTURE.hdr] [OUTDIR]  write exposures of a picture as BMP and JPEG, through a script host in Wine;
                                     without a picture, one is made (OUTDIR: build/demo)
  ./vrx demo --see [PICTURE.hdr]     show a picture in the zoom window; without a display, in build/demo/see.png
  ./vrx demo --dialog [PICTURE.hdr]  open the dialog that loads HDR pictures; without a display, build/demo/dialog.png
  ./vrx demo --control [PICTURE.hdr] show a picture in the preview control on a form, with sliders for exposure and gamma;
                                     without a display, in build/demo/control.png
  ./vrx test [--win64]               run every test: engine, component and samples in Wine, package, fuzz corpus
  ./vrx test --checked               run the component's tests with traps for undefined behaviour
  ./vrx test --faults                let every call of the system fail in every call and dialog of the component, call members
                                     at random and over and over; ./vrx test runs a fast selection of this
  ./vrx test --wine PATH             run the component's tests in another Wine, whose wineserver stands beside it
  ./vrx build [--win64]              build the component, its tests and samples into build/win32/bin
  ./vrx package [--win64]            make dist/VrxCommon-VERSION-win32.zip and .msi, what users of the component install
  ./vrx bench [--win32] [--json FILE] [--only WORK] [PICTURE.hdr...]
                                     run the benchmarks on this machine, or those for Windows in Wine; the HDR works
                                     on the pictures given; ends with one table, which FILE gets as a list as well
  ./vrx fuzz [SECONDS [TARGET]]      run each fuzz target, or one, for SECONDS (60); crashes go to build/fuzz/crashes
  ./vrx wine COMMAND...              run a Windows command in Wine, with the component registered
  ./vrx clean                        delete build/ and dist/

With --win64 it is the component for 64-bit Windows, in build/win64/bin, and test runs its tests only.

Debian packages are installed as needed (as root or by sudo). A 32-bit Wine is unpacked into
~/.cache/vrxcommon once, when none is installed. The first run takes some minutes for this.
TEXT
}

command=${1:-help}
shift || true
case $command in
    demo | test | build | package | bench | fuzz | wine) exec "$tools/$command.sh" "$@" ;;
    clean) rm -rf "$build" "$repo/dist" ;;
    help | -h | --help) usage ;;
    *)
        usage >&2
        die "unknown subcommand: $command"
        ;;
esac
