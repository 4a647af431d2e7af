# A private apt: fetches packages of any architecture without telling the machine. Sourced by recipes.

# private_apt FOLDER ARCHITECTURE TYPE [SUITE]: sets APT_CONFIG. TYPE is deb or deb-src. Only the main
# and the -updates suite are used, which are complete for every architecture at any time, and SUITE.
private_apt() {
    local folder=$1 architecture=$2 type=$3 extra=${4:-} codename uri keyring
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    # The mirror that the machine itself uses for its main suite.
    uri=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 2>/dev/null |
        awk -v suite="$codename" '$2 == suite && $3 == "main" { print $1; exit }')
    uri=${uri:-http://deb.debian.org/debian}
    keyring=/usr/share/keyrings/debian-archive-keyring.gpg
    mkdir -p "$folder"/{sources,state/lists/partial,cache/archives/partial}
    : >"$folder/status"
    cat >"$folder/sources/debian.sources" <<TEXT
Types: $type
URIs: $uri
Suites: $codename $codename-updates $extra
Components: main
Signed-By: $keyring
TEXT
    cat >"$folder/apt.conf" <<TEXT
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Install-Recommends "false";
APT::Sandbox::User "";
Acquire::Languages "none";
Acquire::Retries "3";
Dir::State "$folder/state";
Dir::State::status "$folder/status";
Dir::Cache "$folder/cache";
Dir::Etc::SourceList "/dev/null";
Dir::Etc::SourceParts "$folder/sources";
TEXT
    export APT_CONFIG="$folder/apt.conf"
}
