# shellcheck shell=bash
# Sourced: a Wine of 32 or 64 bits, a display for it, and sessions in a Wine prefix.
# The Wine that VRX_WINE names is used, or one on the PATH that runs 32-bit programs; otherwise Debian's i386 Wine is unpacked
# into the cache folder.
# The 64-bit Wine is the one that Debian installs.

. "$tools/packages.sh"
. "$tools/private_apt.sh"

wine_state=$build/wine
wine_root=$cache/wine-i386
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"

# fetch_wine - unpacks Debian's i386 Wine and the libraries it needs into wine_root, all or nothing.
fetch_wine() (
    [[ -d $wine_root ]] && return
    local packages=(wine32 libwine fonts-wine)
    mkdir -p "$cache"
    work=$(mktemp -d "$wine_root.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    private_apt "$work/apt" i386 deb
    say "Fetching a 32-bit Wine into $wine_root (once): $(download_size install "${packages[@]}") to download, 1 GB on the disk"
    retry with_progress Wine install -y -qq --download-only "${packages[@]}" || die "could not download Wine"
    mkdir "$work/root"
    say "Unpacking Wine"
    printf '%s\0' "$work"/apt/cache/archives/*.deb | xargs -0 -P "$(nproc)" -I{} dpkg -x {} "$work/root"
    adopt_zlib "$work/root"
    # Debian's wineserver is a wrapper that looks in the system's folders.
    ln -sf wineserver32 "$work/root/usr/lib/wine/wineserver"
    mv -T "$work/root" "$wine_root" || [[ -d $wine_root ]]
)

# adopt_zlib ROOT - puts zlib1.dll among Wine's own DLLs, with the mark in its DOS header that Wine looks for.
adopt_zlib() {
    local dll=$1/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll
    cp --remove-destination "$1/usr/i686-w64-mingw32/lib/zlib1.dll" "$dll"
    { printf 'Wine builtin DLL' && head -c 16 /dev/zero; } | dd of="$dll" bs=1 seek=64 conv=notrunc status=none
}

# choose_wine BITS - sets wine_template, wine, wineserver and wine_libraries for a Wine of 32 or 64 bits.
choose_wine() {
    export WINEARCH=win$1
    wine_template=$wine_state/template$1 wine_libraries=
    if [[ -n ${VRX_WINE:-} ]]; then
        wine=$VRX_WINE wineserver=$(dirname "$VRX_WINE")/wineserver
        wine_template=$wine_template-$(cksum <<<"$wine $("$wine" --version)" | cut -d ' ' -f 1)
    elif [[ $1 == 64 ]]; then
        wine=/usr/lib/wine/wine64 wineserver=/usr/lib/wine/wineserver64
        export WINELOADER=$wine WINESERVER=$wineserver
    elif path_wine_works; then
        wine=wine wineserver=wineserver
    else
        fetch_wine
        wine=$wine_root/usr/lib/wine/wine
        wineserver=$wine_root/usr/lib/wine/wineserver
        wine_libraries=$wine_root/usr/lib/i386-linux-gnu:$wine_root/lib/i386-linux-gnu
        export WINELOADER=$wine FONTCONFIG_PATH=$wine_root/etc/fonts
    fi
    install_packages "wine$1"
}

# path_wine_works - whether the Wine on the PATH runs a 32-bit program; the answer is kept until that Wine changes.
path_wine_works() {
    local path answer=$wine_state/path-wine identity
    path=$(command -v wine) && command -v wineserver >/dev/null || return 1
    identity="$path $(stat -L -c '%Y %s' "$path") $("$path" --version 2>/dev/null || true)"
    if ! { [[ -f $answer ]] && grep -qxF "$identity" "$answer"; }; then
        wine=wine wineserver=wineserver
        install_packages wine32
        mkdir -p "$wine_state"
        rm -rf "$wine_template"
        { echo "$identity" && (make_template >&2 && echo works || echo fails); } >"$answer"
    fi
    grep -qx works "$answer"
}

# make_template - a fresh prefix that sessions copy; fails when no script runs in it.
make_template() (
    [[ -d $wine_template ]] && return
    say "Creating a Wine prefix (once, about 20 seconds)"
    mkdir -p "$wine_state"
    work=$(mktemp -d "$wine_template.XXXXXX")
    export WINEPREFIX=$work
    trap 'stop_wine; stop_display; rm -rf "$work"' EXIT
    start_display
    # The unpacked Wine looks for its own fonts in the system's folders. With other fonts, texts have other sizes, and without
    # any, the prefix keeps a menu bar of no sensible height.
    if [[ $wine == "$wine_root"/* ]]; then
        mkdir -p "$work/drive_c/windows/Fonts" || exit 1
        ln -s "$wine_root"/usr/share/wine/fonts/* "$work/drive_c/windows/Fonts/" || exit 1
    fi
    in_wine 120 wineboot --init >/dev/null 2>&1 || exit 1
    # A crash prints its stack and ends the program; the debugger's dialog would wait for a click.
    in_wine 60 reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null || exit 1
    # There is no window manager to wait for when a window closes.
    in_wine 60 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null || exit 1
    echo 'WScript.Echo "runs"' >"$work/check.vbs"
    [[ $(in_wine 60 cscript //nologo "$(windows_path "$work/check.vbs")") == runs* ]] || exit 1
    rm "$work/check.vbs"
    stop_wine
    drop_server_folder
    mv -T "$work" "$wine_template" || [[ -d $wine_template ]]
)

# prepare_wine BITS - fetches Wine and makes its prefix in the background, beside what the script does next.
prepare_wine() {
    (
        choose_wine "$1"
        make_template
    ) &
    wine_preparation=$!
    trap 'kill "$wine_preparation" 2>/dev/null || true' EXIT
}

# wait_for_wine - until it is prepared.
wait_for_wine() {
    wait "$wine_preparation" || die "Wine does not run a script"
    trap - EXIT
}

# build_beside_wine [OPTION] [GROUP...] - builds what users get, while Wine is prepared; installs these packages as well.
build_beside_wine() {
    local option=() bits
    [[ ${1:-} != --* ]] || { option=("$1") && shift; }
    bits=$(bits_of "${option[@]}")
    prepare_wine "$bits"
    install_packages build windows "windows$bits" source "wine$bits" "$@"
    "$tools/build.sh" --product "${option[@]}"
    wait_for_wine
}

# in_wine SECONDS COMMAND... - runs a Windows command in WINEPREFIX; ends it after SECONDS (exit status 124).
# Without a home folder, Wine keeps the user's folders inside the prefix; the fixed locale is that of an English Windows.
in_wine() {
    local seconds=$1
    shift
    HOME=/dev/null LC_ALL=C.UTF-8 LD_LIBRARY_PATH=$wine_libraries timeout --kill-after=5 "$seconds" "$wine" "$@" </dev/null
}

stop_wine() {
    LD_LIBRARY_PATH=$wine_libraries timeout 30 "$wineserver" -k >/dev/null 2>&1 || true
    LD_LIBRARY_PATH=$wine_libraries timeout 30 "$wineserver" -w >/dev/null 2>&1 || true
}

# drop_server_folder - Debian's wineserver keeps a folder in /tmp for each prefix, named in the prefix.
drop_server_folder() {
    local folder
    folder=$(cat "$WINEPREFIX/wineserver" 2>/dev/null) || return 0
    [[ $folder != wine-* ]] || rm -rf "${TMPDIR:-/tmp}/$folder" "$WINEPREFIX/wineserver"
}

# windows_path PATH - prints the Z: form of a path of this machine.
windows_path() {
    local path
    path=$(realpath -m -- "$1")
    echo "Z:${path//\//\\}"
}

# start_display - an X server of our own on a free display, 24 bits deep. Without -noreset it starts anew when its last
# client leaves, and refuses the client that comes at that moment.
start_display() {
    local number
    exec {display_pipe}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp -noreset 2>/dev/null </dev/null)
    display_process=$!
    read -r -t 30 number <&"$display_pipe" || die "Xvfb did not start"
    export DISPLAY=:$number
}

stop_display() {
    [[ -n ${display_process:-} ]] || return 0
    kill "$display_process" 2>/dev/null || true
    display_process=
}

# start_session PREFIX [BITS] - opens a session in PREFIX, which is made from the template when it is absent.
# Everything started is ended again when the script exits.
start_session() {
    choose_wine "${2:-32}"
    make_template || die "Wine does not run a script"
    export WINEPREFIX=$1
    trap end_session EXIT
    if [[ ! -d $WINEPREFIX ]]; then
        mkdir -p "$(dirname "$WINEPREFIX")"
        cp -a "$wine_template" "$WINEPREFIX"
    fi
    start_display
}

# start_throwaway_session [BITS] - opens a session in a fresh prefix, which is deleted when the script exits.
start_throwaway_session() {
    mkdir -p "$wine_state"
    throwaway_folder=$(mktemp -d "$wine_state/throwaway.XXXXXX")
    start_session "$throwaway_folder/prefix" "$@"
}

# start_project_session - opens a session in the project's prefix and registers the built components in it.
start_project_session() {
    start_session "$build/wine-prefix"
    register_components
}

# start_throwaway_project_session - the same in a fresh prefix, which is deleted when the script exits.
start_throwaway_project_session() {
    start_throwaway_session
    register_components
}

# register_components [FOLDER] - those built for 32-bit Windows, or the ones in FOLDER.
register_components() {
    local library folder=${1:-$build/win32/bin}
    for library in "$folder"/{VrxCommon,VrxSettings}.dll; do
        in_wine 60 regsvr32 /s "$(windows_path "$library")" || die "could not register $library"
    done
}

end_session() {
    stop_wine
    stop_display
    [[ -n ${throwaway_folder:-} ]] || return 0
    drop_server_folder
    rm -rf "$throwaway_folder"
}
