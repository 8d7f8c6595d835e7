# shellcheck shell=bash
# Sourced after wine_session.sh: a session in a fresh Wine prefix with the zip file for users unpacked.

# start_package_session BITS - opens the session; the folder "installed" has the package.
start_package_session() {
    local version zip
    version=$(project_version)
    zip=$repo/dist/VrxCommon-$version-win$1.zip
    start_throwaway_session "$1"
    installed="$throwaway_folder/VrxCommon für alle"
    unzip -q -d "$throwaway_folder/zip" "$zip"
    mv "$throwaway_folder/zip/VrxCommon-$version-win$1" "$installed"
}

# run_regsvr32 OPTION... - for both components of the package.
run_regsvr32() {
    local library
    for library in VrxCommon VrxSettings; do
        in_wine 60 regsvr32 /s "$@" "$(windows_path "$installed/$library.dll")" || return 1
    done
}
