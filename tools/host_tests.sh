#!/bin/bash
# host_tests.sh [--win64] - the samples in languages whose hosts do not exist in Wine, as far as their compilers do: Pascal
# runs in an empty Wine prefix, C# and Python are compiled only. Adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/package_session.sh"
. "$tools/sample_checks.sh"
. "$tools/tally.sh"

bits=$(bits_of "$@")
[[ $bits == 64 ]] || install_packages csharp python
pascal=$("$tools/free_pascal.sh" "$bits")
start_package_session "$bits"
work=$throwaway_folder/pascal
mkdir "$work"

compile_pascal() { quietly "$pascal" "-FE$work" "-Fu$work" "-Fu$repo/tests/pascal" "$@"; }

# import LIBRARY - makes the unit that declares it, as hosts' users do. Under a name with the version the importer thinks
# of the library's own types as another unit's and declares every one; otherwise it leaves out records that hold arrays.
import() {
    local unit=$work/$1_TLB.pas
    quietly in_wine 60 "$work/import_type_library.exe" "$(windows_path "$installed/$1.tlb")" "$(windows_path "$unit")" &&
        sed -i -E "s/,$1_1_0_TLB//; s/_1_0_TLB/_TLB/g" "$unit"
}

imports() { compile_pascal "$repo/tests/pascal/import_type_library.pas" && import VrxTypeLib && import VrxCommon; }

# pascal_program NAME ARGUMENT... - what it prints goes to the file "printed", and is shown when the program fails.
pascal_program() {
    local name=$1 status=0
    shift
    in_wine 120 "$work/$name.exe" "$@" >printed 2>&1 || status=$?
    sed -i 's/\r$//' printed
    ((status == 0)) || { cat printed && return "$status"; }
}

# The sample is Delphi's, whose importer makes a component too. Ended in its third refresh, the load raises one at its end.
tour_dpr() {
    in_folder tour_dpr
    compile_pascal -Mdelphi -Fadelphi_wrappers "$installed/samples/delphi/Tour.dpr" &&
        pascal_program Tour sky.hdr . &&
        prints '768 x 384' '0 $0000FF' '1 $4000BF' '2 $800080' '3 $BF0040' '4 $FF0000' \
            'error 53 from CVrxHDR: File not found' 'header: 768 x 384' 'finished after 4 refreshes' &&
        are_bitmaps sky_tour.bmp && are_jpegs sky_tour.jpg && cmp sky.hdr sky_tour.hdr
}

raising_sink() {
    in_folder raising_sink
    compile_pascal "$repo/tests/pascal/raising_sink.pas" && pascal_program raising_sink sky.hdr "$1" && prints sound
}

tour_cs() {
    local declarations=$throwaway_folder/VrxCommon.cs
    awk -f "$tools/idl_members.awk" "$repo"/src/product/idl/*.idl |
        awk -f "$repo/tests/samples/csharp_declarations.awk" >"$declarations"
    quietly mcs -out:"$throwaway_folder/Tour.exe" "$installed"/samples/csharp/*.cs "$declarations"
}

python_samples() {
    local sample compile='import sys; compile(open(sys.argv[1], encoding="utf-8").read(), sys.argv[1], "exec")'
    for sample in "$installed"/samples/python/*.py; do
        quietly python3 -W error -c "$compile" "$sample" || return
    done
}

say "Samples for other hosts, $bits bits"
run_regsvr32
cp "$installed/samples/pictures/sky.hdr" "$throwaway_folder"

check "Free Pascal imports the type libraries" imports
check "Tour.dpr, compiled by Free Pascal" tour_dpr
check "exceptions of Free Pascal's event handlers arrive and leave a sound object" raising_sink 1000
if [[ $bits == 32 ]]; then
    check "Tour.cs compiles" tour_cs
    check "the samples in Python compile" python_samples
fi
