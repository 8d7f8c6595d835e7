# shellcheck shell=bash
# Sourced: installs the Debian packages of tools/packages.txt.

# packages_of GROUP... - prints the packages of the groups, one per line.
packages_of() {
    local group
    for group in "$@"; do
        sed -n "s/^$group: *//p" "$tools/packages.txt" | tr ' ' '\n'
    done | sort -u
}

# missing_packages GROUP... - prints those that are not installed.
missing_packages() {
    local package native
    native=$(dpkg --print-architecture)
    packages_of "$@" | while read -r package; do
        dpkg-query -W -f '${Architecture} ${db:Status-Status}\n' "$package" 2>/dev/null |
            grep -Eqx "($native|all) installed" || echo "$package"
    done
}

# retry COMMAND... - mirrors fail now and then; tries three times.
retry() {
    local attempt
    for attempt in 1 2 3; do
        "$@" && return
        [[ $attempt == 3 ]] || sleep $((attempt * 5))
    done
    return 1
}

# install_packages GROUP... - installs what is missing; asks nothing of apt when nothing is.
install_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    if ((EUID != 0)); then
        command -v sudo >/dev/null || die "please install as root: apt-get install ${missing[*]}"
        as_root=(sudo "DEBIAN_FRONTEND=$DEBIAN_FRONTEND")
    fi
    say "Installing Debian packages (a few minutes): ${missing[*]}"
    retry "${as_root[@]}" apt-get update -qq >&2 || die "apt-get update failed"
    retry "${as_root[@]}" apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 \
        "${missing[@]}" >/dev/null </dev/null || die "apt-get could not install: ${missing[*]}"
}
