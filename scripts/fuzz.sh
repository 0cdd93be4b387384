#!/usr/bin/env bash
# Builds the fuzz targets (clang, libFuzzer, ASan and UBSan) and runs each for
# SECONDS seconds (default 60), starting from its seed corpus in
# fuzz/corpus/<target>/. New inputs a run finds go to build/fuzz/corpus/<target>/,
# so the seeds in the repository stay as they are; a crash stops the script
# with the crashing input in build/fuzz/runs/.
set -euo pipefail
cd "$(dirname "$0")/.."
SECONDS_EACH=${1:-60}

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j2
mkdir -p build/fuzz/runs
# TRELVANE_FUZZ_SEED fixes libFuzzer's seed (the test command's short run
# uses one, so that its result is repeatable); unset, every run explores anew.
seed=()
[ -n "${TRELVANE_FUZZ_SEED:-}" ] && seed=(-seed="$TRELVANE_FUZZ_SEED")
for target in build/fuzz/fuzz/*_fuzz; do
    name=$(basename "$target")
    found="build/fuzz/corpus/$name"
    mkdir -p "$found"
    echo "-- $name"
    log="build/fuzz/runs/$name.log"
    if (cd build/fuzz/runs && "../../../$target" -max_total_time="$SECONDS_EACH" -print_final_stats=0 "${seed[@]}" \
        "../../../$found" "../../../fuzz/corpus/$name" >"../../../$log" 2>&1); then
        tail -n 1 "$log"
    else
        tail -n 40 "$log"
        exit 1
    fi
done
