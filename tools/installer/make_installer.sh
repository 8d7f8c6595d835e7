# shellcheck shell=bash
# Sourced after wine_session.sh: makes installers, in an open session of their kind.

# make_installer CONTENT VERSION BITS OUT - makes the installer of what the folder holds.
make_installer() {
    local content=$1 version=$2 bits=$3 out=$4 rows description library platform=x86
    rows=$(mktemp -d "$WINEPREFIX/rows.XXXXXX")
    description=$rows/installer.wxs
    for library in VrxCommon VrxSettings; do
        in_wine 60 "$build/win$bits/bin/registration_rows.exe" "$(windows_path "$content/$library.dll")" |
            tr -d '\r' >"$rows/$library.dll"
    done
    "$tools/installer/build_wxs.py" "$content" "$rows" "$version" "$bits" >"$description"
    [[ $bits == 32 ]] || platform=x64
    # It takes sources by their path from the current folder.
    (cd "$content" && wixl --arch "$platform" --output "$out" "$description")
}
