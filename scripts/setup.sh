# Sourced by the other scripts: installs the Debian packages that the build,
# the tests, the benchmarks, the fuzz targets and the sample need, skipping
# the installation when all of them are present.
# python3-pil serves the tests that draw and check bitmaps; MinGW-w64 builds
# the Windows programs, wine64 runs their tests and zip packs them.
TRELVANE_PACKAGES=(cmake ninja-build g++ clang libclang-rt-14-dev libgtest-dev libbenchmark-dev python3 python3-pil
                   g++-mingw-w64-x86-64-posix mingw-w64 wine64 zip)

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
