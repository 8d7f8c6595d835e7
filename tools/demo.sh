#!/bin/bash
# demo.sh --see|--dialog|--control [PICTURE.hdr] - shows a picture, the dialog that loads one, or the preview control on a
# form (demo_window.sh).
# demo.sh [PICTURE.hdr] [OUTDIR] - writes exposures of a picture as BMP and JPEG files, through a script host in Wine.

. "$(dirname "$0")/common.sh"
[[ ${1:-} != --see && ${1:-} != --dialog && ${1:-} != --control ]] || exec "$tools/demo_window.sh" "$@"
. "$tools/wine_session.sh"

picture=${1:-}
outdir=$(realpath -m -- "${2:-$build/demo}")
[[ -z $picture || -f $picture ]] || die "no such picture: $picture"
(LC_ALL=C && [[ $picture$outdir != *[^\ -~]* ]]) ||
    die "please give names in ASCII: JPEG files can have names of the 8-bit code page only"

build_beside_wine
start_project_session
mkdir -p "$outdir"

if [[ -z $picture ]]; then
    picture=$outdir/sky.hdr
    say "Making a picture: $picture"
    in_wine 120 "$build/win32/bin/make_sky.exe" "$(windows_path "$picture")"
fi

say "Writing exposures of $picture"
started=$build/demo-started
touch "$started"
in_wine 300 cscript //nologo "$(windows_path "$repo/samples/vbscript/exposures.vbs")" \
    "$(windows_path "$picture")" "$(windows_path "$outdir")"

# The script host ends with status 0 even after an error, so the picture that the script writes last is the proof.
name=${picture##*/}
last=$outdir/${name%.*}_auto.jpg
[[ $last -nt $started ]] || die "the script did not get as far as $last"
say "Written:"
find "$outdir" -maxdepth 1 \( -name '*.bmp' -o -name '*.jpg' \) -newer "$started" | sort
