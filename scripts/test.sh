#!/usr/bin/env bash
# Builds and runs every test: the fuzz targets for a few seconds each, then
# the whole suite in the release build (which also builds the benchmarks) and
# under AddressSanitizer and UndefinedBehaviorSanitizer, then the Windows
# build under wine: the C client against trelvane.dll, and the suite once more
# with its end-to-end tests running trelvane.exe. Exits non-zero on any
# failure.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
ensure_packages test

FUZZ_SECONDS=${FUZZ_SECONDS:-8}

echo "== fuzz targets (${FUZZ_SECONDS} s each, from their seed corpora)"
TRELVANE_FUZZ_SEED=${TRELVANE_FUZZ_SEED:-1} bash scripts/fuzz.sh "$FUZZ_SECONDS"

echo "== release build (tests and benchmarks)"
cmake --preset release >/dev/null
cmake --build --preset release -j2
echo "== sanitize build"
cmake --preset sanitize >/dev/null
cmake --build --preset sanitize -j2

echo "== release tests"
ctest --preset release -j2
echo "== sanitize tests"
ctest --preset sanitize -j2

echo "== windows build"
cmake --preset windows >/dev/null
cmake --build --preset windows -j2
echo "== windows tests under wine"
ctest --preset windows
TRELVANE_TEST_RUNNER="$PWD/scripts/wine-run.sh" TRELVANE_TEST_EXE="$PWD/build/windows/trelvane.exe" \
    ctest --preset release -j2 --exclude-regex "^c_client$"
