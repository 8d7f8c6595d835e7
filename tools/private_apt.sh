# shellcheck shell=bash
# Sourced: a private apt state, which fetches packages of another architecture, or sources, beside the system.
# It uses the machine's own mirror, keys and proxy settings, and changes nothing on the system.

# private_apt FOLDER ARCHITECTURE TYPE - makes the state in FOLDER (TYPE is deb or deb-src) and points APT_CONFIG at it.
private_apt() {
    local folder=$1 architecture=$2 type=$3 release
    release=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
    mkdir -p "$folder"/{lists,cache/archives}/partial
    : >"$folder/status"
    # shellcheck disable=SC2016  # apt fills in these names
    apt-get indextargets --format "$type "'$(REPO_URI) $(RELEASE) $(COMPONENT)' "Created-By: Packages" |
        grep " $release main\$" | sort -u >"$folder/sources.list" ||
        die "apt has no source for Debian '$release main'; please add one"
    cat >"$folder/apt.conf" <<CONF
Dir::Etc::sourcelist "$folder/sources.list";
Dir::Etc::sourceparts "-";
Dir::State::lists "$folder/lists";
Dir::State::status "$folder/status";
Dir::Cache "$folder/cache";
APT::Architecture "$architecture";
APT::Architectures "$architecture";
APT::Install-Recommends "false";
APT::Sandbox::User "root";
CONF
    export APT_CONFIG=$folder/apt.conf
    retry apt-get update -qq >&2 || die "apt-get update for $architecture failed"
}
