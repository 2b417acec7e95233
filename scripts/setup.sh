# The set-up that the commands do by themselves: Debian packages that are missing, and the source of the one library that
# Debian has no Windows build of. To be sourced after common.sh.
# shellcheck shell=bash disable=SC2034,SC2154

# Compilers and libraries for both systems; Wine and a display without a screen; what shows its windows' texts.
build_packages=(cmake ninja-build g++ libpugixml-dev zlib1g-dev googletest dpkg-dev xz-utils
    g++-mingw-w64-x86-64-posix libz-mingw-w64-dev)
window_packages=(wine wine64 xvfb imagemagick xdotool fonts-wine fonts-dejavu-core libxrender1 libxcursor1 libxi6
    libxrandr2)
# The letters of the languages whose scripts those fonts lack.
font_packages=(fonts-wqy-microhei fonts-lohit-deva)
test_packages=(clang libclang-rt-dev libbenchmark-dev libevtx-utils python3-evtx)

AsRoot() {
    if ((EUID == 0)); then
        env "$@"
    else
        sudo -n env "$@"
    fi
}

AptGet() {
    AsRoot DEBIAN_FRONTEND=noninteractive apt-get -y -o Acquire::Retries=3 -o DPkg::Lock::Timeout=120 "$@"
}

InstallWithApt() {
    AptGet update && AptGet install --no-install-recommends "$@"
}

IsInstalled() {
    [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null) == ii* ]]
}

# Installs those of the given packages that are missing.
InstallPackages() {
    local package missing=()
    for package in "$@"; do
        IsInstalled "$package" || missing+=("$package")
    done
    if ((${#missing[@]} == 0)); then
        return
    fi
    if ! command -v apt-get >/dev/null; then
        Fail "these packages are needed and there is no apt-get to install them with: ${missing[*]}"
    fi
    if ((EUID != 0)) && ! sudo -n true 2>/dev/null; then
        Fail "please install these packages first: ${missing[*]}"
    fi
    # Not under RunBounded: ending a half-done installation would leave the machine's packages broken.
    Say "Installing packages: ${missing[*]}"
    if ! InstallWithApt "${missing[@]}" >"$logs/packages.log" 2>&1 </dev/null; then
        tail -n 40 "$logs/packages.log" >&2
        Fail "installing packages failed; the whole output is in $logs/packages.log"
    fi
}

# Writes this machine's own package sources, asking for source packages instead, into a folder.
DeriveSourceEntries() {
    local folder=$1 file
    mkdir -p "$folder"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        if [[ -f $file ]]; then
            sed -n -E 's/^[[:space:]]*deb[[:space:]]/deb-src /p' "$file" >"$folder/$(basename -- "$file" .list).list"
        fi
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        if [[ -f $file ]]; then
            sed -E 's/^[Tt]ypes:.*/Types: deb-src/' "$file" >"$folder/$(basename -- "$file")"
        fi
    done
}

# Fetches and unpacks pugixml's source with a private configuration of apt, so that the machine's own stays as it is.
DownloadPugixml() {
    local folder=$1 options
    DeriveSourceEntries "$folder/entries"
    mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial" "$folder/source"
    options=(-o "Dir::Etc::sourcelist=/dev/null" -o "Dir::Etc::sourceparts=$folder/entries"
        -o "Dir::State::lists=$folder/lists" -o "Dir::Cache=$folder/cache" -o "APT::Sandbox::User=$(id -un)"
        -o "Acquire::Languages=none" -o "Acquire::Retries=3")
    # A source that offers no source packages makes the update fail; what counts is whether the package is found.
    apt-get "${options[@]}" update || true
    cd "$folder/source" || return
    apt-get "${options[@]}" source --download-only pugixml
    dpkg-source --no-check -x pugixml_*.dsc "$folder/pugixml"
}

FetchPugixml() {
    local target=$build/third_party/pugixml
    if [[ -f $target/src/pugixml.cpp ]]; then
        return
    fi
    mkdir -p "$build/third_party"
    pugixml_folder=$(mktemp -d "$build/third_party/fetch.XXXXXX")
    AtExit RemovePugixmlFolder
    export -f DownloadPugixml DeriveSourceEntries
    RunOrFail "Fetching pugixml's source" 300 "$logs/pugixml.log" \
        bash -euo pipefail -c "DownloadPugixml '$pugixml_folder'"
    rm -rf "$target"
    mv "$pugixml_folder/pugixml" "$target"
}

RemovePugixmlFolder() {
    rm -rf "$pugixml_folder"
}
