# Sourced by the other scripts: installs the Debian packages a purpose needs,
# skipping the installation when all of them are present.
#
# Building the program (and so running the sample): the compiler, CMake,
# Ninja, zlib (the CRC-32 of BPS and UPS patches), CLI11 (the verbs'
# command line), nettle (MD5 and SHA-1 of images), libspng (PNG tiles) and
# libdivsufsort (the suffix arrays of BPS creation on Linux).
# Libraries the program links go here.
TRELVANE_BUILD_PACKAGES=(cmake ninja-build g++ python3 zlib1g-dev libcli11-dev nettle-dev libspng-dev libdivsufsort-dev)
# Testing everything on top of that: GoogleTest and Google Benchmark; clang
# with its runtime for the fuzz targets; python3-pil and imagemagick for the
# tests that draw and check bitmaps; pkg-config for the test that builds a
# program against the installed library; cc65 (ca65, ld65) for the test that
# checks the 65816 opcodes against an independent assembler; MinGW-w64 builds
# the Windows programs, wine64 runs their tests and zip packs them
# (libz-mingw-w64-dev is their zlib).
TRELVANE_TEST_PACKAGES=(clang libclang-rt-14-dev libgtest-dev libbenchmark-dev python3 python3-pil imagemagick
    pkg-config cc65 g++-mingw-w64-x86-64-posix mingw-w64 libz-mingw-w64-dev wine64 zip)

package_installed() {
    dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}

# ensure_packages build: what building the program needs; ensure_packages
# test: that and everything the tests, benchmarks and fuzz targets need.
ensure_packages() {
    local wanted=("${TRELVANE_BUILD_PACKAGES[@]}") missing=() package
    [ "${1:-test}" = test ] && wanted+=("${TRELVANE_TEST_PACKAGES[@]}")
    for package in "${wanted[@]}"; do
        package_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    echo "== installing ${missing[*]}"
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}
