#!/bin/bash
# free_pascal.sh BITS - makes Free Pascal's run-time for Windows of 32 or 64 bits, and its compiler for 32 bits, of Debian's
# sources in the cache folder, once, and prints the path of a compiler that makes programs for that Windows.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

version=3.2.2
sources=/usr/share/fpcsrc/$version

# pascal OPTION... - the machine's compiler, quietly; what it says is shown when it fails.
pascal() { quietly "ppcx64-$version" -n -v0 -O1 "$@"; }

# make_compiler - for 32 bits, into "work". Its messages are made of the installed ones.
make_compiler() {
    local native folder=$sources/compiler objects=$work/compiler
    native=(/usr/lib/*/fpc/"$version")
    mkdir "$objects"
    pascal -Fu"${native[0]}/units/x86_64-linux/*" -FE"$objects" "$folder/utils/msg2inc.pp"
    (cd "$objects" && quietly ./msg2inc "${native[0]}/msg/errore.msg" msg msg)
    pascal -di386 -dRELEASE -Fu"${native[0]}/units/x86_64-linux/*" -Fu"$folder" -Fi"$folder" -Fi"$objects" \
        -Fu"$folder"/{i386,x86,systems} -Fi"$folder"/{i386,x86} -FU"$objects" -FE"$objects" -oppc386 "$folder/pp.pas"
    mv "$objects/ppc386" "$work"
    rm -r "$objects"
}

# folders OPTION FOLDER... - prints the option once for each folder.
folders() { printf -- "$1%s\n" "${@:2}"; }

# make_run_time COMPILER... - the units of the language, then those for COM and type libraries, into "work/units".
make_run_time() {
    local rtl=$sources/rtl packages=$sources/packages processor=i386 places options
    [[ $bits == 32 ]] || processor=x86_64
    mkdir "$work/units"
    places=("$rtl"/{inc,"$processor",objpas,objpas/sysutils,objpas/classes,win,win/wininc,"win$bits"})
    mapfile -t options < <(folders -Fu "$work/units" "${places[@]}" && folders -Fi "${places[@]}")
    quietly "$@" -Us -Sg "${options[@]}" "$rtl/win$bits/system.pp"
    [[ $bits == 64 ]] || for unit in sysinitpas sysinitcyg sysinitgprof; do
        quietly "$@" "${options[@]}" "$rtl/win32/$unit.pp"
    done
    quietly "$@" "${options[@]}" "$rtl/win$bits/buildrtl.pp"

    places=("$packages"/rtl-objpas/src/{inc,win,common,"$processor"} "$packages"/{fcl-base,fcl-registry,winunits-base}/src)
    mapfile -t options < <(folders -Fu "$work/units" "${places[@]}" && folders -Fi "${places[@]}")
    printf '%s\n' 'unit packages; interface' 'uses Variants, StrUtils, DateUtils, ComObj, EventSink, StdOle2, TypeLib;' \
        'implementation end.' >"$work/units/packages.pp"
    quietly "$@" "${options[@]}" "$work/units/packages.pp"
}

# make_command - a compiler that knows its units. The folder is moved when it is done, so it looks for itself.
make_command() {
    local compiler='ppc386'
    # shellcheck disable=SC2016  # for the command
    [[ $bits == 32 ]] && compiler='$here/ppc386' || compiler=ppcx64-$version
    # shellcheck disable=SC2016
    printf '%s\n' '#!/bin/sh' 'here=$(dirname "$0")' \
        "exec \"$compiler\" -n -v0 -Twin$bits -Fu\"\$here/units\" \"\$@\"" >"$work/fpc"
    chmod +x "$work/fpc"
}

bits=$1
install_packages pascal
folder=$cache/free-pascal-$(dpkg-query -W -f '${Version}' fp-compiler-$version)-win$bits
if [[ ! -d $folder ]]; then
    say "Making Free Pascal for $bits-bit Windows in $folder (once, about 20 seconds)"
    mkdir -p "$cache"
    work=$(mktemp -d "$folder.XXXXXX")
    chmod 755 "$work"
    trap 'rm -rf "$work"' EXIT
    compiler=("ppcx64-$version")
    if [[ $bits == 32 ]]; then
        make_compiler
        compiler=("$work/ppc386")
    fi
    make_run_time "${compiler[@]}" -n -v0 -O1 "-Twin$bits" "-FU$work/units"
    make_command
    mv -T "$work" "$folder" || [[ -d $folder ]]
fi
echo "$folder/fpc"
