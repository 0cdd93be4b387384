#!/usr/bin/env bash
# Builds the toolkit, generates the sample game and runs the toolkit on it,
# one step after the other. Each step is a function; add new ones to STEPS.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup.sh
ensure_packages build

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
    # The program only: the tests and benchmarks need what scripts/test.sh installs.
    cmake --preset release -DTRELVANE_TESTS=OFF -DTRELVANE_BENCH=OFF >/dev/null
    cmake --build --preset release -j2 --target trelvane_cli trelvane_make_sample
}

step_generate() {
    echo "== generating the sample game in build/sample"
    rm -rf "$WORK"
    mkdir -p "$WORK"
    "$ROOT/build/release/trelvane_make_sample" "$WORK"
    echo
}

step_readme() {
    echo "== the README's walkthrough: every command, checked against what the README shows"
    cp "$ROOT/sample/hook.asm" "$WORK/hook.asm"
    python3 "$ROOT/scripts/readme_walkthrough.py" "$ROOT/README.md" "$WORK" "$ROOT/build/release"
    echo
    echo "== the classic letter commands on the same game"
    echo
}

step_usage() {
    echo "== the usage screen"
    run
}

# Creates translation.EXT from the English to the French image with i.
create_translation() {
    run sample_fr.nes i sample.nes "translation.$1"
    echo "translation.$1: $(wc -c <"$WORK/translation.$1") bytes"
    echo
}

# Applies translation.EXT to COPY, a fresh copy of the English image, with p.
apply_translation() {
    cp "$WORK/sample.nes" "$WORK/$2"
    run "$2" p "translation.$1"
    cmp "$WORK/$2" "$WORK/sample_fr.nes" && echo "$2 is now identical to sample_fr.nes"
    echo
}

step_create_ips() {
    echo "== creating an IPS patch from the English to the French image"
    create_translation ips
}

step_apply_ips() {
    echo "== applying the patch to a copy of the English image"
    apply_translation ips patched.nes
}

step_create_bps() {
    echo "== creating the same translation as a BPS patch"
    create_translation bps
}

step_apply_bps() {
    echo "== applying the BPS patch to another copy of the English image"
    apply_translation bps patched_bps.nes
}

step_wrong_rom_bps() {
    echo "== applying the BPS patch to the wrong image: the already French one"
    cp "$WORK/sample_fr.nes" "$WORK/wrong.nes"
    run wrong.nes p translation.bps
    cmp "$WORK/wrong.nes" "$WORK/sample_fr.nes" && echo "wrong.nes is unchanged"
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

step_locate() {
    echo "== finding a word of the script"
    run sample.nes l sample.tbl lighthouse
}

step_dump() {
    echo "== dumping the script from its first string; the pointer table is found on the way"
    run sample.nes d sample.tbl script.txt 1D040h
    tr -d '\r' <"$WORK/script.txt" | head -n 16
    echo "..."
    tr -d '\r' <"$WORK/script.txt" | tail -n 4
    echo
}

# The German script: one entry per string, "|" where a line breaks.
GERMAN=(
    "Willkommen auf Trelvane!"
    "Der alte Leuchtturmwaerter|wartet am Strand."
    "Nimm diese Lampe. Sie|fuehrt dich heim."
    "Die Bruecke ist weg.|Geh durch die Hoehle."
    "Du hast 3 Schluessel!"
    "Die Tuer ist zu."
    "Ein kalter Wind weht|vom Meer."
    "Deine Wunden heilen."
    "Das Boot legt frueh ab."
    "Hier ist nichts."
    "Der Waerter laechelt.|Du bist daheim!"
    "Danke fuers Spielen."
    "Neues Spiel"
    "Weiter"
    "Kaufen"
    "Verkaufen"
    "Zu wenig Gold."
    "Spiel speichern?"
    "Ja"
    "Nein"
)

# Copies a dump from standard input, replacing each placeholder line M00,
# M01, ... (hex numbers) by the German text of that string.
translate_placeholders() {
    local line text
    while IFS= read -r line; do
        if [[ $line =~ ^M([0-9A-F]+)$ ]]; then
            text=${GERMAN[16#${BASH_REMATCH[1]}]}
            printf '%s\n' "${text//|/$'\n'}"
        else
            printf '%s\n' "$line"
        fi
    done
}

step_translate() {
    echo "== script_de.txt: the dump with its placeholders M00 to M13 (hex) replaced by German text"
    tr -d '\r' <"$WORK/script.txt" | translate_placeholders >"$WORK/script_de.txt"
    head -n 16 "$WORK/script_de.txt"
    echo "..."
    tail -n 3 "$WORK/script_de.txt"
    echo
}

step_insert() {
    echo "== putting the German script into a copy of the image"
    cp "$WORK/sample.nes" "$WORK/sample_de.nes"
    run sample_de.nes t script_de.txt
    local pointers
    pointers=$(od -An -tx1 -j $((16 + 0x1D000)) -N 12 "$WORK/sample_de.nes")
    echo "the first six pointers at 1D000h now, low byte first:${pointers}"
    echo
}

step_check() {
    echo "== dumping the German image to check it"
    run sample_de.nes d sample.tbl check.txt 1D040h
    tr -d '\r' <"$WORK/check.txt" | grep '^[a-z[;]' | head -n 14
    echo "..."
    tr -d '\r' <"$WORK/check.txt" | grep '^[[;]' | tail -n 4
    echo
}

# Shows count bytes of a .smc file from image offset (the file without its header).
show_image_bytes() {
    local what=$1 offset=$2 count=$3
    echo "$what:"
    od -An -tx1 -v -j $((512 + offset)) -N "$count" "$WORK/bonus.smc"
}

step_patch_script() {
    echo "== applying the patch script bonus.txt to a copy of the Super NES image"
    cp "$ROOT/sample/bonus.txt" "$WORK/bonus.txt"
    cp "$WORK/sample.smc" "$WORK/bonus.smc"
    run bonus.smc p bonus.txt
    show_image_bytes "the hook at 808010h (image offset 8010h), jsl 818000h" $((0x8010)) 4
    show_image_bytes "the message pointer at 808100h" $((0x8100)) 3
    show_image_bytes "the new routine and its message at 818000h" $((0x18000)) 35
    echo
}

# The hook of bonus.txt again, in the Super NES community's common syntax, with
# the image read as LoROM: image offset 8010h (the main loop) is address
# 818010h there, and the free space at 18000h is 838000h.
step_asm_hook() {
    echo "== assembling a LoROM hook in the common syntax into a BPS patch, then applying it"
    cp "$ROOT/sample/hook.asm" "$WORK/hook.asm"
    cat "$WORK/hook.asm"
    echo
    run asm sample.smc hook.asm --map lorom --bps hook.bps
    echo "hook.bps: $(wc -c <"$WORK/hook.bps") bytes"
    cp "$WORK/sample.smc" "$WORK/hooked.smc"
    run hooked.smc p hook.bps
    echo "the hook at image offset 8010h:"
    od -An -tx1 -v -j $((512 + 0x8010)) -N 4 "$WORK/hooked.smc"
    echo "the routine at image offset 18000h:"
    od -An -tx1 -v -j $((512 + 0x18000)) -N 20 "$WORK/hooked.smc"
    run asm sample.smc hook.asm --map lorom -o direct.smc
    cmp "$WORK/hooked.smc" "$WORK/direct.smc" && echo "hooked.smc is identical to the image assembled in place"
    echo
}

STEPS=(build generate readme usage create_ips apply_ips create_bps apply_bps wrong_rom_bps tiles convert_table locate dump translate insert check patch_script asm_hook)
for step in "${STEPS[@]}"; do "step_$step"; done
