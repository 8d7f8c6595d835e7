#!/bin/bash
# package.sh [--win64] - makes dist/VrxCommon-VERSION-win32.zip (or -win64): what users of the component install, with
# samples, documentation, licences and checksums; and the installer of the same name, an MSI file.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/installer/make_installer.sh"

bits=$(bits_of "$@")
architecture=win$bits
products=$build/$architecture/bin
name=VrxCommon-$(project_version)-$architecture
zip=$repo/dist/$name.zip

# copy_licences TO - of everything that is linked into the DLLs.
copy_licences() {
    local jpeg
    jpeg=$("$tools/source_package.sh" libjpeg-turbo)
    cp -r "$repo/licences" "$1"
    cp "$jpeg/LICENSE.md" "$1/libjpeg-turbo.md"
    cp "$jpeg/README.ijg" "$1/libjpeg-turbo-ijg.txt"
    cp "$jpeg/debian/copyright" "$1/libjpeg-turbo-files.txt"
    cp /usr/share/common-licenses/GPL-3 "$1/gpl-3.txt"
    cp /usr/share/doc/mingw-w64-common/copyright "$1/mingw-w64.txt"
    cp /usr/share/doc/gcc-mingw-w64-base/copyright "$1/gcc-runtime.txt"
}

# write_help TO - the documentation as pages, and compiled into the help file of the component.
write_help() {
    local chm
    chm=$(mktemp -d "$work/chm.XXXXXX")
    "$tools/help/build_help.py" pages "$1"
    "$tools/help/build_help.py" chm "$chm"
    fpc -v0 -FU"$chm" -o"$chm/compile_chm" "$tools/help/compile_chm.pas" >/dev/null
    "$chm/compile_chm" "$chm" "$1/VrxCommon.chm"
}

build_beside_wine "$@" package installer

# make_picture TO - writes the picture that the samples are tried with, by the packaged component.
make_picture() {
    in_wine 60 regsvr32 /s "$(windows_path "$content/VrxCommon.dll")"
    in_wine 60 "$content/samples/bin/make_sky.exe" "$(windows_path "$1")"
    in_wine 60 regsvr32 /u /s "$(windows_path "$content/VrxCommon.dll")"
}

say "Making $zip"
start_throwaway_session "$bits"
work=$throwaway_folder
content=$work/$name
mkdir -p "$content" "$repo/dist"
cp "$products"/{VrxCommon.dll,VrxSettings.dll,ijl10.dll,VrxCommon.tlb,VrxTypeLib.tlb,VrxSettings.tlb} "$content"
cp "$products"/{VrxCommon,VrxSettings}.X.manifest "$content"
mkdir "$content/include"
cp "$build/$architecture/src/product/idl/generated"/{VrxCommon.h,BmpInfo.h,VrxCommon_i.c} "$content/include"
cp -r "$repo"/{LICENSE,samples} "$content"
rm "$content"/samples/{README.md,cpp/CMakeLists.txt}
write_help "$content"
mkdir "$content/samples/bin"
cp "$products"/{black_and_white,contact_sheet,make_sky,preview_form,preview_with_cancel,registration_free,tour}.exe \
    "$products/registration_free.exe.manifest" \
    "$content/samples/bin"
find "$content" \( -name '*.dll' -o -name '*.exe' \) -exec strip {} +
copy_licences "$content/licences"
mkdir "$content/samples/pictures"
make_picture "$content/samples/pictures/sky.hdr"
(cd "$content" && find . -type f ! -name SHA256SUMS -printf '%P\0' | sort -z | xargs -0 sha256sum >SHA256SUMS)
rm -f "$zip"
(cd "$work" && zip -q -X -r "$zip" "$name")
say "Making ${zip%.zip}.msi"
make_installer "$content" "$(project_version)" "$bits" "${zip%.zip}.msi"
ls -l "${zip%.zip}".* >&2
