#!/bin/bash
# package_test.sh [--win64] - installs the zip file for users in an empty Wine prefix, in each way there is, and uses it
# from there; adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/package_session.sh"
. "$tools/tally.sh"

bits=$(bits_of "$@")
install_packages package-test
start_package_session "$bits"

checksums_are_right() { (cd "$installed" && sha256sum --quiet -c SHA256SUMS); }

# Each text by a sentence of it that those who pass the files on must keep.
licences_are_there() {
    (cd "$installed" &&
        grep -q 'Copyright (c) 2026 The VrxCommon authors' LICENSE &&
        grep -q 'Modified (3-clause) BSD License' licences/libjpeg-turbo.md &&
        grep -q "Independent JPEG Group's free JPEG" licences/libjpeg-turbo-ijg.txt &&
        grep -qi 'must not be misrepresented' licences/libjpeg-turbo-files.txt &&
        grep -q 'Runtime Library Exception' licences/gcc-runtime.txt &&
        grep -q 'Version 3, 29 June 2007' licences/gpl-3.txt &&
        grep -q 'ZPL-2.1' licences/mingw-w64.txt &&
        grep -q 'winpthreads' licences/mingw-w64.txt &&
        grep -q 'Unicode, Inc. All rights reserved' licences/unicode.txt)
}

links_lead_somewhere() { "$repo/tests/package/links_lead_somewhere.py" "$installed"; }

pages_are_titled_as_their_sources() { grep -q '<title>C#</title>' "$installed/docs/getting-started/csharp.html"; }

contexts_lead_to_pages() {
    local listing=$throwaway_folder/contexts
    in_wine 60 "$build/win$bits/bin/help_contexts.exe" "$(windows_path "$installed/VrxCommon.dll")" \
        "$(windows_path "$installed/VrxCommon.dll")\\2" "$(windows_path "$installed/VrxSettings.dll")" |
        tr -d '\r' >"$listing" &&
        "$repo/tests/package/contexts_lead_to_pages.py" "$installed/VrxCommon.chm" "$listing" "$repo/docs/errors.md"
}

# Without registration, containers read it here.
the_manifest_tells_the_status_of_the_control() {
    grep -qF 'miscStatusContent="recomposeonresize,cantlinkinside,insideout,activatewhenvisible,setclientsitefirst"' \
        "$installed/VrxCommon.X.manifest"
}

creates_every_class_without_registration() {
    local program="$throwaway_folder/program"
    mkdir "$program"
    cp "$installed"/*.{dll,X.manifest} "$installed"/samples/bin/registration_free.exe* "$program"
    in_wine 60 "$program/registration_free.exe"
}

# As the documentation says.
builds_a_program() {
    local object=$throwaway_folder/VrxCommon_i.o target=i686-w64-mingw32
    [[ $bits == 32 ]] || target=x86_64-w64-mingw32
    "$target-gcc" -c "$installed/include/VrxCommon_i.c" -o "$object" &&
        "$target-g++" -std=c++20 -Werror=write-strings -municode -static -I"$installed/include" "$installed/samples/cpp/tour.cpp" \
            "$object" -lole32 -loleaut32 -luuid -o "$throwaway_folder/tour.exe"
}

# Windows shows hosts the user's classes among the machine's; Wine has only the machine's, so they are copied.
user_classes_serve_hosts() {
    in_wine 60 reg copy 'HKCU\Software\Classes' 'HKLM\Software\Classes' /s /f && writes_exposures user && run_regsvr32 /u
}

has_user_classes() { in_wine 60 reg query 'HKCU\Software\Classes\VrxCommon.CVrxHDR\CLSID'; }

# writes_exposures FOLDER - the main job: a picture made by one sample, and its exposures written by another.
writes_exposures() {
    local folder=$throwaway_folder/$1
    mkdir "$folder"
    in_wine 60 "$installed/samples/bin/make_sky.exe" "$(windows_path "$folder/sky.hdr")" &&
        in_wine 60 cscript //nologo "$(windows_path "$installed/samples/vbscript/exposures.vbs")" \
            "$(windows_path "$folder/sky.hdr")" "$(windows_path "$folder")" &&
        [[ -s $folder/sky_auto.jpg ]]
}

say "Package"
check "the package's checksums are right" quietly checksums_are_right
check "the package has the licences of everything linked in" quietly licences_are_there
check "links in the package lead somewhere" quietly links_lead_somewhere
check "pages are titled as their sources, C# too" quietly pages_are_titled_as_their_sources
check "every help context leads to its page in the help file" quietly contexts_lead_to_pages
check "the manifest tells the status of the control" the_manifest_tells_the_status_of_the_control
check "without registration a program with a manifest creates every class" quietly creates_every_class_without_registration
check "a program in C++ builds with what is in the package" quietly builds_a_program
check "the package registers for one user" quietly run_regsvr32 /n /i:user
check "registered for one user the classes stand in the user's registry" quietly has_user_classes
check "a host runs with the classes of one user, where the system finds them" quietly user_classes_serve_hosts
check "the package unregisters for one user" quietly run_regsvr32 /u /n /i:user
check "unregistered the user's registry has no classes" quietly eval '! has_user_classes'
check "unregistered the main job does not run" quietly eval '! writes_exposures none'
check "the package registers" quietly run_regsvr32
check "registered the main job runs" quietly writes_exposures machine
check "the package unregisters" quietly run_regsvr32 /u
