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

# download_size APT-GET-ARGUMENT... - prints what that would fetch, in megabytes.
download_size() {
    apt-get --print-uris -qq --no-install-recommends "$@" </dev/null |
        awk '{ bytes += $3 } END { printf "%.0f MB\n", bytes / 1e6 }'
}

# show_progress - reads apt's status lines and prints a line for each tenth that is done.
show_progress() {
    local kind percent step last='' names
    declare -A names=([dlstatus]=downloaded [pmstatus]=installed)
    while IFS=: read -r kind _ percent _; do
        [[ -n ${names[$kind]:-} && $percent == [0-9]* ]] || continue
        step="${names[$kind]} $((${percent%.*} / 10))0 %"
        [[ $step == "$last" || $step == *' 00 %' ]] || echo "   $step" >&2
        last=$step
    done
}

# with_progress [sudo NAME=VALUE] APT-GET-ARGUMENT... - runs an apt-get that downloads or installs. Its status lines take
# the place of its output; behind sudo, which closes all other files, only the standard ones are there.
with_progress() {
    local as_root=()
    [[ $1 != sudo ]] || { as_root=("$1" "$2") && shift 2; }
    # shellcheck disable=SC2016  # for the inner shell
    "${as_root[@]}" sh -c 'exec apt-get -o APT::Status-Fd=3 "$@" 3>&1 >/dev/null' sh "$@" </dev/null | show_progress
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
    say "Asking for Debian packages: ${missing[*]}"
    retry "${as_root[@]}" apt-get update -qq >&2 || die "apt-get update failed"
    say "Installing them: $(download_size install "${missing[@]}") to download"
    retry with_progress "${as_root[@]}" install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 \
        "${missing[@]}" || die "apt-get could not install: ${missing[*]}"
}
