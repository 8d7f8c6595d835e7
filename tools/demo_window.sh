#!/bin/bash
# demo_window.sh --see [PICTURE.hdr] - shows a picture in the zoom window, through a script host in Wine.
# demo_window.sh --dialog [PICTURE.hdr] - opens the dialog that loads HDR pictures, in the picture's folder.
# demo_window.sh --control [PICTURE.hdr] - shows a picture in the preview control on the form of a program.
# On a machine without a display it takes a screenshot of the window and closes it.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"

kind=${1#--}
case $kind in
    see) sample=(cscript //nologo "$(windows_path "$repo/samples/vbscript/see.vbs")") caption=Viewer ;;
    dialog) sample=(cscript //nologo "$(windows_path "$repo/samples/vbscript/load_dialog.vbs")") caption='Load HDR Picture' ;;
    control) sample=("$build/win32/bin/preview_form.exe") caption='Preview form' ;;
esac
picture=${2:-}
outdir=$build/demo
screenshot=$outdir/$kind.png
users_display=${DISPLAY:-}
[[ -z $picture || -f $picture ]] || die "no such picture: $picture"

# use_users_display - leaves the hidden display for the user's own, whose window manager then has the window.
use_users_display() {
    in_wine 60 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d Y /f >/dev/null
    stop_wine
    stop_display
    export DISPLAY=$users_display
}

# photograph - a picture of the window on the hidden display, once it is there and does not change any more.
photograph() {
    local attempt last='' now
    for attempt in {1..60}; do
        sleep 1
        kill -0 "$script" 2>/dev/null || return 1
        import -silent -window "$caption" "$screenshot" 2>/dev/null || continue
        now=$(identify -format '%#' "$screenshot")
        [[ $now != "$last" ]] || return 0
        last=$now
    done
    return 1
}

groups=()
[[ -n $users_display ]] || groups=(screenshot)
build_beside_wine "${groups[@]}"
start_throwaway_project_session
mkdir -p "$outdir"

if [[ -z $picture ]]; then
    picture=$outdir/sky.hdr
    say "Making a picture: $picture"
    in_wine 120 "$build/win32/bin/make_sky.exe" "$(windows_path "$picture")"
fi

show=("${sample[@]}" "$(windows_path "$picture")")
if [[ -n $users_display ]]; then
    use_users_display
    say "Showing the window \"$caption\" (Esc closes it)"
    in_wine 0 "${show[@]}"
    exit
fi

say "Showing the window \"$caption\""
rm -f "$screenshot"
in_wine 180 "${show[@]}" &
script=$!
photograph || die "the window did not come"
xdotool key Escape
wait "$script"
say "There is no display here; the window looked like this: $screenshot"
