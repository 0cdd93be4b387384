#!/usr/bin/env bash
# Builds the Windows programs and packs them for Windows users into
# build/trelvane-<version>-win64.zip: trelvane.exe, trelvane.dll, its import
# library libtrelvane.dll.a and module definition trelvane.def, the header
# trelvane.h and the README. Everything the programs need is linked in.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
ensure_packages

VERSION=$(sed -n 's/^project(trelvane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
NAME="trelvane-$VERSION-win64"
BUILD=build/windows
STAGE="build/package/$NAME"
ZIP="$PWD/build/$NAME.zip"

echo "== windows build"
cmake --preset windows >/dev/null
cmake --build --preset windows -j2 --target trelvane_cli trelvane

echo "== packing $ZIP"
rm -rf "$STAGE" "$ZIP"
mkdir -p "$STAGE"
cp "$BUILD/trelvane.exe" "$BUILD/trelvane.dll" "$BUILD/libtrelvane.dll.a" "$BUILD/trelvane.def" \
   include/trelvane.h README.md "$STAGE/"
x86_64-w64-mingw32-strip --strip-unneeded "$STAGE/trelvane.exe" "$STAGE/trelvane.dll"
(cd build/package && zip -q -X -r "$ZIP" "$NAME")
zip -sf "$ZIP"
