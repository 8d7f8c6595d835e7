#!/bin/bash
# unpacked_package.sh NAME - unpacks a Debian package into the cache folder, once, without installing it or what it depends
# on, and prints where it is.

. "$(dirname "$0")/common.sh"
. "$tools/packages.sh"

name=$1
folder=$cache/unpacked/$name
if [[ ! -d $folder ]]; then
    mkdir -p "$cache/unpacked"
    work=$(mktemp -d "$folder.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    apt-cache show "$name" >/dev/null 2>&1 || update_package_lists
    say "Fetching $name into $folder (once): $(download_size download "$name") to download"
    (cd "$work" && retry apt-get -qq -o APT::Sandbox::User=root download "$name" >&2) || die "could not fetch $name"
    dpkg -x "$work"/*.deb "$work/unpacked"
    mv -T "$work/unpacked" "$folder" || [[ -d $folder ]]
fi
echo "$folder"
