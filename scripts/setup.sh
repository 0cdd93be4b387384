# Sourced by the other scripts: installs the Debian packages that the build,
# the tests, the benchmarks, the fuzz targets and the sample need, skipping
# the installation when all of them are present.
# python3-pil and imagemagick serve the tests that draw and check bitmaps;
# pkg-config the test that builds a program against the installed library;
# zlib1g-dev the CRC-32 of BPS and UPS patches; libdivsufsort-dev the suffix
# arrays of BPS creation on Linux; cc65 (ca65, ld65) the test that
# checks the 65816 opcodes against an independent assembler; MinGW-w64 builds
# the Windows programs, wine64 runs
# their tests and zip packs them (libz-mingw-w64-dev is their zlib).
TRELVANE_PACKAGES=(cmake ninja-build g++ clang libclang-rt-14-dev libgtest-dev libbenchmark-dev python3 python3-pil
    imagemagick pkg-config zlib1g-dev libdivsufsort-dev cc65 g++-mingw-w64-x86-64-posix mingw-w64 libz-mingw-w64-dev wine64 zip)

package_installed() {
    dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}

ensure_packages() {
    local missing=() package
    for package in "${TRELVANE_PACKAGES[@]}"; do
        package_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    echo "== installing ${missing[*]}"
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}
