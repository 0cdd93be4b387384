#!/usr/bin/env bash
# Runs the README's walkthrough on a freshly generated sample game and checks
# that every command prints what the README shows.
# Usage: readme_walkthrough.sh SOURCE_DIR MAKE_SAMPLE BIN_DIR
set -euo pipefail
source_dir=$1 make_sample=$2 bin_dir=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$make_sample" "$work" >/dev/null
cp "$source_dir/sample/hook.asm" "$work/"
python3 "$source_dir/scripts/readme_walkthrough.py" "$source_dir/README.md" "$work" "$bin_dir" >"$work/walkthrough.log" ||
    { cat "$work/walkthrough.log"; exit 1; }
tail -n 1 "$work/walkthrough.log"
