#!/bin/bash
# source_package.sh NAME - unpacks a Debian source package into the cache folder, once, and prints where it is.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"
. "$tools/private_apt.sh"

name=$1
folder=$cache/source/$name
if [[ ! -d $folder ]]; then
    install_packages source
    mkdir -p "$cache/source"
    work=$(mktemp -d "$folder.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    private_apt "$work/apt" "$(dpkg --print-architecture)" deb-src
    say "Fetching the source of $name into $folder (once): $(download_size source "$name") to download"
    mkdir "$work/unpacked"
    (cd "$work/unpacked" && retry apt-get -qq source "$name" >/dev/null) || die "could not fetch the source of $name"
    mv -T "$work"/unpacked/*/ "$folder" || [[ -d $folder ]]
fi
echo "$folder"
