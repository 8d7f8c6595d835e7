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

# as_root COMMAND... - by sudo where need be.
as_root() {
    if ((EUID == 0)); then "$@"; else sudo "DEBIAN_FRONTEND=$DEBIAN_FRONTEND" "$@"; fi
}

# update_package_lists - asks the mirrors what there is.
update_package_lists() { retry as_root apt-get update -qq >&2 || die "apt-get update failed"; }

# show_progress [WHAT] - reads apt's status lines and prints a line for each tenth of WHAT that is done.
show_progress() {
    local kind percent step last='' names
    declare -A names=([dlstatus]=downloaded [pmstatus]=installed)
    while IFS=: read -r kind _ percent _; do
        [[ -n ${names[$kind]:-} && $percent == [0-9]* ]] || continue
        step="${names[$kind]} $((${percent%.*} / 10))0 %"
        [[ $step == "$last" || $step == *' 00 %' ]] || echo "   ${1:+$1: }$step" >&2
        last=$step
    done
}

# with_progress WHAT [as_root] APT-GET-ARGUMENT... - runs an apt-get that downloads or installs. Its status lines take the
# place of its output; behind sudo, which closes all other files, only the standard ones are there.
with_progress() {
    local what=$1 run=()
    shift
    [[ $1 != as_root ]] || { run=(as_root) && shift; }
    # shellcheck disable=SC2016  # for the inner shell
    "${run[@]}" sh -c 'exec apt-get -o APT::Status-Fd=3 "$@" 3>&1 >/dev/null' sh "$@" </dev/null | show_progress "$what"
}

# install_packages GROUP... - installs what is missing; asks nothing of apt when nothing is. One at a time: who comes
# meanwhile waits, and may find its packages installed.
install_packages() (
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    mkdir -p "$cache"
    exec {lock}>"$cache/packages.lock"
    flock "$lock"
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    ((EUID == 0)) || command -v sudo >/dev/null || die "please install as root: apt-get install ${missing[*]}"
    say "Asking for Debian packages: ${missing[*]}"
    update_package_lists
    say "Installing them: $(download_size install "${missing[@]}") to download"
    retry with_progress '' as_root install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 \
        "${missing[@]}" || die "apt-get could not install: ${missing[*]}"
)
