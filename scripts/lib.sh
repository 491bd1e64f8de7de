# What the scripts share; sourced by them, with SOURCE set to the repository's root.

say() {
    printf '== %s\n' "$*"
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Installs the Debian packages that are missing.
need_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    if [ "${#missing[@]}" -gt 0 ]; then
        say "installing ${missing[*]} (this takes a while)"
        as_root apt-get update -qq
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
    fi
}

BUILD_PACKAGES=(g++ cmake ninja-build ccache libopencv-dev libopengv-dev libeigen3-dev)
TEST_PACKAGES=(pkg-config libgtest-dev libgmock-dev libboost-dev xvfb xauth xdotool libxcb1-dev)
BENCHMARK_PACKAGES=(libbenchmark-dev libboost-dev)

# build PRESET [cmake options]: configures and builds below build/PRESET.
build() {
    local preset=$1
    shift
    say "configuring ($preset)"
    cmake -S "$SOURCE" --preset "$preset" "$@" >"$SOURCE/build/$preset-configure.log" 2>&1 ||
        { cat "$SOURCE/build/$preset-configure.log" >&2; return 1; }
    say "building ($preset; the first time takes some minutes)"
    cmake --build "$SOURCE/build/$preset" -j"$(nproc)"
}

# Prints the folder of the photographs that Debian's package opencv-doc holds. The package is unpacked below the
# build folder rather than installed: many systems are set up to leave out documentation on installation.
fetch_photos() {
    local folder=$SOURCE/build/opencv-doc
    if [ ! -e "$folder/done" ]; then
        say "fetching the photographs (Debian package opencv-doc)" >&2
        rm -rf "$folder"
        mkdir -p "$folder"
        (
            cd "$folder"
            # Root's downloads would otherwise be handed to a user who may not write here.
            download() { apt-get -o APT::Sandbox::User="$(id -un)" -qq download opencv-doc >&2; }
            download || { as_root apt-get update -qq && download; }
            dpkg -x opencv-doc_*.deb .
            rm opencv-doc_*.deb
            find . -path '*examples/data/*.gz' -exec gunzip -f {} +
            touch done
        )
    fi
    find "$folder" -type d -path '*examples/data' | head -n 1
}
