#!/usr/bin/env bash
# Builds the toolkit, generates the sample game and runs the toolkit on it,
# one step after the other. Each step is a function; add new ones to STEPS.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
ensure_packages

ROOT=$(pwd)
TRELVANE="$ROOT/build/release/trelvane"
WORK="$ROOT/build/sample"

# Shows a command line, runs it in the sample folder and shows its exit status.
run() {
    echo "\$ trelvane${*:+ $*}"
    local status=0
    (cd "$WORK" && "$TRELVANE" "$@") || status=$?
    echo "(exit status $status)"
    echo
}

step_build() {
    echo "== building"
    cmake --preset release >/dev/null
    cmake --build --preset release -j2 --target trelvane_cli trelvane_make_sample
}

step_generate() {
    echo "== generating the sample game in build/sample"
    rm -rf "$WORK"
    mkdir -p "$WORK"
    "$ROOT/build/release/trelvane_make_sample" "$WORK"
    echo
}

step_usage() {
    echo "== the usage screen"
    run
}

step_create_ips() {
    echo "== creating an IPS patch from the English to the French image"
    run sample_fr.nes i sample.nes translation.ips
    echo "translation.ips: $(wc -c <"$WORK/translation.ips") bytes"
    echo
}

step_apply_ips() {
    echo "== applying the patch to a copy of the English image"
    cp "$WORK/sample.nes" "$WORK/patched.nes"
    run patched.nes p translation.ips
    cmp "$WORK/patched.nes" "$WORK/sample_fr.nes" && echo "patched.nes is now identical to sample_fr.nes"
    echo
}

step_tiles() {
    echo "== dumping the font's tiles to a bitmap and putting them back"
    run sample.nes b 2000h font.bmp
    echo "font.bmp: $(wc -c <"$WORK/font.bmp") bytes, a 128 x 128 sheet of 16 x 16 tiles"
    echo
    cp "$WORK/sample.nes" "$WORK/tiles.nes"
    run tiles.nes f 2000h font.bmp
    cmp "$WORK/tiles.nes" "$WORK/sample.nes" && echo "tiles.nes is unchanged: dump and insert are exact inverses"
    echo
}

step_convert_table() {
    echo "== converting the thingy character table to a table file"
    run sample.tbl c sample.txt
    tr -d '\r' <"$WORK/sample.txt" | head -n 4
    echo "..."
    tr -d '\r' <"$WORK/sample.txt" | tail -n 4
    echo
}

# The German script: one entry per string, "|" where a line breaks.
GERMAN=(
    "Willkommen auf Trelvane!"
    "Der alte Leuchtturmwaerter|wartet am Strand."
    "Nimm diese Lampe. Sie|fuehrt dich heim."
    "Die Bruecke ist weg.|Geh durch die Hoehle."
    "Du hast 3 Silberschluessel!"
    "Danke fuers Spielen."
)

step_script() {
    echo "== finding a word, dumping the script, translating it and putting it back"
    run sample.nes l sample.tbl lighthouse
    run sample.nes d sample.tbl script.txt 1010h 6
    tr -d '\r' <"$WORK/script.txt" | head -n 12
    echo "..."
    echo
    # Six strings are too few for the pointer-table finder, which matches 16
    # pointers, so the header lines come from the translator: where the text
    # goes and how much room it has, the first pointer's value and the table.
    echo "== script_de.txt: the placeholders M00 to M05 replaced by the German text"
    {
        printf 'textaddress 1010h (208)\nfirstpointer 9010h\npointertable 1000h\npointersize 2\n'
        tr -d '\r' <"$WORK/script.txt" |
            awk -v texts="$(IFS=@; echo "${GERMAN[*]}")" '
                BEGIN { split(texts, german, "@") }
                /^M0[0-5]$/ { text = german[substr($0, 3) + 1]; gsub(/\|/, "\n", text); print text; next }
                { print }'
    } >"$WORK/script_de.txt"
    head -n 12 "$WORK/script_de.txt"
    echo "..."
    echo
    cp "$WORK/sample.nes" "$WORK/sample_de.nes"
    run sample_de.nes t script_de.txt
    echo "the pointers at 1000h now: $(od -An -tx1 -j $((16 + 0x1000)) -N 12 "$WORK/sample_de.nes")"
    echo
    run sample_de.nes d sample.tbl check.txt 1010h 6
    tr -d '\r' <"$WORK/check.txt" | grep '^[[;]'
    echo
}

STEPS=(build generate usage create_ips apply_ips tiles convert_table script)
for step in "${STEPS[@]}"; do "step_$step"; done
