#!/bin/bash
# installer_test.sh [--win64] - installs, upgrades, repairs and removes the component by its installer in an empty Wine
# prefix; adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/package_session.sh"
. "$tools/installer/make_installer.sh"
. "$tools/tally.sh"

bits=$(bits_of "$@")
install_packages package installer
start_package_session "$bits"
installer=$repo/dist/VrxCommon-$(project_version)-win$bits.msi
next=$throwaway_folder/next.msi
folder="$WINEPREFIX/drive_c/Program Files/VrxCommon"

# msi OPTION FILE... - runs the installer silently.
msi() { in_wine 120 msiexec "$1" "$(windows_path "$2")" /qn "${@:3}"; }

# snapshot NAME - notes all files, and what is registered, as they are now. The system's own lists of installed products
# are not those of the component.
snapshot() {
    (cd "$WINEPREFIX/drive_c" && find . -path ./windows -prune -o -path ./users -prune -o -print | sort) \
        >"$throwaway_folder/$1.files"
    in_wine 60 reg export 'HKLM\Software\Classes' "$(windows_path "$throwaway_folder/$1.reg")" /y >/dev/null
}

# difference BEFORE AFTER ROW... - whether the registries of two snapshots differ by these rows exactly.
difference() {
    local before=$1 after=$2
    shift 2
    "$repo/tests/package/registered_rows.py" "$throwaway_folder/$before.reg" "$throwaway_folder/$after.reg" "$@"
}

# By what regsvr32 would write for the installed libraries.
registers_what_regsvr32_does() {
    local library rows=()
    for library in VrxCommon VrxSettings; do
        rows+=("$throwaway_folder/$library.rows")
        in_wine 60 "$build/win$bits/bin/registration_rows.exe" "C:\\Program Files\\VrxCommon\\$library.dll" |
            tr -d '\r' >"${rows[-1]}" || return 1
    done
    difference before after "${rows[@]}"
}

# runs_a_sample NAME - by what is installed. Wine keeps the program ids that a 64-bit installer writes from 64-bit scripts,
# so there it is a program, which uses class ids.
runs_a_sample() {
    local out=$throwaway_folder/$1
    mkdir -p "$out"
    if [[ $bits == 64 ]]; then
        in_wine 60 'C:\Program Files\VrxCommon\samples\bin\tour.exe' \
            'C:\Program Files\VrxCommon\samples\pictures\sky.hdr' "$(windows_path "$out")" >/dev/null
        [[ -s $out/tour_cpp.jpg ]]
        return
    fi
    in_wine 60 cscript //nologo 'C:\Program Files\VrxCommon\samples\vbscript\exposures.vbs' \
        'C:\Program Files\VrxCommon\samples\pictures\sky.hdr' "$(windows_path "$out")" >/dev/null
    [[ -s $out/sky_auto.jpg ]]
}

installs() { msi /i "$installer" && snapshot after && [[ -f $folder/VrxCommon.dll && -f $folder/docs/index.html ]]; }

version_is() {
    local listed
    listed=$(in_wine 60 reg query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall' /s |
        tr -d '\r' | grep -A20 'VrxCommon (' | sed -nE 's/^ *DisplayVersion +REG_SZ +//p' | sort | tr '\n' ' ')
    [[ $listed == "$1 " ]] || { echo "listed: $listed" && return 1; }
}

upgrades() {
    make_installer "$installed" 9.9.9 "$bits" "$next" && msi /i "$next" && [[ -f $folder/VrxCommon.dll ]] && version_is 9.9.9
}

# What msiexec /fa means, which Wine's does not know.
repairs() {
    rm "$folder/ijl10.dll"
    in_wine 60 reg delete 'HKLM\Software\Classes\CLSID\{EB392251-79D7-47DB-A99F-C6DB793EE02B}\InprocServer32' /f >/dev/null
    msi /i "$next" REINSTALL=ALL REINSTALLMODE=amus && [[ -f $folder/ijl10.dll ]] && runs_a_sample repaired
}

refuses_an_older_version() { ! msi /i "$installer" && version_is 9.9.9; }

removes() {
    msi /x "$next" && snapshot removed && diff "$throwaway_folder"/{before,removed}.files && difference before removed
}

leaves_documentation_out() {
    msi /i "$installer" ADDLOCAL=Component && [[ -f $folder/VrxCommon.dll && ! -e $folder/docs && ! -e $folder/samples ]] &&
        msi /x "$installer"
}

# Where the installer for 32-bit hosts has been made too: either may go, and the other one still has all of its rows.
lives_beside_the_other_kind() {
    local other
    other=$repo/dist/VrxCommon-$(project_version)-win32.msi
    msi /i "$other" && msi /i "$installer" && snapshot both && msi /x "$other" && snapshot one &&
        runs_a_sample beside && msi /x "$installer" && snapshot none && difference before none
}

say "Installer, $bits bits"
snapshot before
check "the installer installs" installs
check "the installer registers what regsvr32 does" registers_what_regsvr32_does
check "installed a sample runs" runs_a_sample installed
check "the next version installs over it" upgrades
check "upgraded a sample runs" runs_a_sample upgraded
check "an older version is refused" refuses_an_older_version
check "a repair brings back what is missing" repairs
check "removed everything is as before" removes
check "documentation and samples may be left out" leaves_documentation_out
[[ $bits == 32 || ! -f $repo/dist/VrxCommon-$(project_version)-win32.msi ]] ||
    check "the installers for 32-bit and 64-bit hosts do not disturb each other" lives_beside_the_other_kind
