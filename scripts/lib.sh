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

# choose_preset [--preset NAME]: sets `preset`, release if not given. Anything else ends the script.
choose_preset() {
    preset=release
    if [ "${1:-}" = --preset ] && [ -n "${2:-}" ] && [ $# -eq 2 ]; then
        preset=$2
    elif [ $# -gt 0 ]; then
        echo "usage: scripts/$(basename "$0") [--preset NAME]" >&2
        exit 2
    fi
}

BUILD_PACKAGES=(g++ cmake ninja-build ccache libopencv-dev libopengv-dev libeigen3-dev)
TEST_PACKAGES=(pkg-config libgtest-dev libgmock-dev libboost-dev xvfb xauth xdotool libxcb1-dev)
BENCHMARK_PACKAGES=(libbenchmark-dev libboost-dev)

# configure PRESET [cmake options]: configures the build in build/PRESET.
configure() {
    local preset=$1
    shift
    say "configuring ($preset)"
    cmake -S "$SOURCE" --preset "$preset" "$@" >"$SOURCE/build/$preset-configure.log" 2>&1 ||
        { cat "$SOURCE/build/$preset-configure.log" >&2; return 1; }
}

# build PRESET [cmake options]: configures and builds below build/PRESET.
build() {
    configure "$@"
    say "building ($1; the first time takes some minutes)"
    cmake --build "$SOURCE/build/$1" -j"$(nproc)"
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

# run_demos BIN OUT: runs the example programs of the folder BIN on real input. Results go below OUT.
run_demos() {
    local BIN=$1 OUT=$2 PHOTOS name
    PHOTOS=$(fetch_photos)
    export SOURCE PHOTOS BIN OUT
    for name in stereo_warp segment board_pose subtitle_track config_check; do
        say "$name"
        mkdir -p "$OUT/$name"
        bash "$SOURCE/examples/$name/demo.sh"
    done
}
