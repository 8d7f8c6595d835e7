#!/bin/bash
# Front door of the project: sets the machine up where needed, builds, tests, demonstrates.

. "$(dirname "$(realpath "$0")")/tools/common.sh"

usage() {
    cat <<'TEXT'
VrxCommon: a COM automation component for HDR pictures (32-bit Windows), built and tested on Debian 12.

  ./vrx demo [PICTURE.hdr] [OUTDIR]  write exposures of a picture as BMP and JPEG, through a script host in Wine;
                                     without a picture, one is made (OUTDIR: build/demo)
  ./vrx test                         run every test: engine, component in Wine, fuzz corpus
  ./vrx build                        build the component, its tests and samples into build/win32/bin
  ./vrx bench [--win32]              run the benchmarks on this machine, or those for Windows in Wine
  ./vrx fuzz [SECONDS]               run each fuzz target for SECONDS (60); crashes go to build/fuzz/crashes
  ./vrx wine COMMAND...              run a Windows command in Wine, with the component registered
  ./vrx clean                        delete build/

Debian packages are installed as needed (as root or by sudo). A 32-bit Wine is unpacked into
~/.cache/vrxcommon once, when none is installed. The first run takes some minutes for this.
TEXT
}

command=${1:-help}
shift || true
case $command in
    demo | test | build | bench | fuzz | wine) exec "$tools/$command.sh" "$@" ;;
    clean) rm -rf "$build" ;;
    help | -h | --help) usage ;;
    *)
        usage >&2
        die "unknown subcommand: $command"
        ;;
esac
