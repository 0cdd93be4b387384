#!/usr/bin/env bash
# Installs the build into a fresh prefix, then builds the C client against
# it twice, with pkg-config and as a CMake package, and runs both.
# Arguments: build folder, source folder, C compiler, CMake generator, the
# library's version and soname version, and the sanitizers the build uses
# (may be empty).
set -euo pipefail
build=$1 source=$2 cc=$3 generator=$4 version=$5 soversion=$6 sanitize=${7:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
flags=()
if [ -n "$sanitize" ]; then flags=("-fsanitize=$sanitize"); fi

cmake --install "$build" --prefix "$prefix"
pc=$(find "$prefix" -name trelvane.pc)
libdir=$(dirname "$(dirname "$pc")")
test -x "$prefix/bin/trelvane"
test -f "$prefix/include/trelvane.h"
# libtrelvane.so -> libtrelvane.so.SOVERSION (the soname) -> libtrelvane.so.VERSION
test -f "$libdir/libtrelvane.so.$version"
test "$(readlink "$libdir/libtrelvane.so.$soversion")" = "libtrelvane.so.$version"
test "$(readlink "$libdir/libtrelvane.so")" = "libtrelvane.so.$soversion"
readelf -d "$libdir/libtrelvane.so" | grep -F "Library soname: [libtrelvane.so.$soversion]"
# The installed executable finds the library in the prefix on its own.
usage=$("$prefix/bin/trelvane" || true)
test -n "$usage"

echo "-- pkg-config"
export PKG_CONFIG_PATH=$(dirname "$pc")
test "$(pkg-config --modversion trelvane)" = "$version"
# shellcheck disable=SC2046
"$cc" -std=c99 -Wall -Wextra -Werror "${flags[@]}" "$source/tests/c_client/client.c" \
    $(pkg-config --cflags --libs trelvane) -o "$work/client"
mkdir "$work/run"
(cd "$work/run" && LD_LIBRARY_PATH=$libdir "$work/client")

echo "-- find_package"
cmake -S "$source/tests/install/consumer" -B "$work/consumer" -G "$generator" -DCMAKE_C_COMPILER="$cc" \
    -DCMAKE_C_FLAGS="${flags[*]}" -DCMAKE_PREFIX_PATH="$prefix" -DCLIENT_SOURCE="$source/tests/c_client/client.c"
cmake --build "$work/consumer"
(cd "$work/run" && "$work/consumer/consumer")
echo "installed library builds and runs"
