#!/usr/bin/env python3
"""Writes the seed corpora of the fuzz targets: fuzz/corpus/<target>/, a few
small valid inputs each, so that every target starts from inputs that pass
its first checks. Usage: make_corpus.py [CORPUS_FOLDER]."""
import os
import struct
import sys
import zlib


def bmp(width, height, pixels):
    """A 16-colour bitmap, rows bottom-up, two pixels a byte, rows padded to 4 bytes."""
    row_bytes = ((width + 1) // 2 + 3) // 4 * 4
    rows = b""
    for y in reversed(range(height)):
        row = bytearray(row_bytes)
        for x in range(width):
            value = pixels[y * width + x] & 15
            row[x // 2] |= value << 4 if x % 2 == 0 else value
        rows += bytes(row)
    palette = b"".join(struct.pack("<BBBB", i * 17, i * 17, i * 17, 0) for i in range(16))
    offset = 14 + 40 + len(palette)
    header = b"BM" + struct.pack("<IHHI", offset + len(rows), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 4, 0, len(rows), 2835, 2835, 16, 0)
    return header + info + palette + rows


def png_chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, colour_type, samples, palette=b""):
    """An 8-bit PNG file: colour type 0 (grey), 2 (RGB) or 3 (indexed, with palette), samples row by row."""
    row = len(samples) // height
    raw = b"".join(b"\0" + samples[y * row:(y + 1) * row] for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, colour_type, 0, 0, 0)
    chunks = png_chunk(b"IHDR", header) + (png_chunk(b"PLTE", palette) if palette else b"")
    return b"\x89PNG\r\n\x1a\n" + chunks + png_chunk(b"IDAT", zlib.compress(raw)) + png_chunk(b"IEND", b"")


def number(value):
    """A BPS/UPS number: seven bits a byte, the last byte's top bit set."""
    out = bytearray()
    while True:
        low = value & 0x7F
        value >>= 7
        if value == 0:
            out.append(0x80 | low)
            return bytes(out)
        out.append(low)
        value -= 1


def delta(magic, body, source, target):
    patch = magic + body + struct.pack("<II", zlib.crc32(source), zlib.crc32(target))
    return patch + struct.pack("<I", zlib.crc32(patch))


def bps(source, target):
    """SourceRead of the common start, TargetRead of the rest."""
    same = 0
    while same < min(len(source), len(target)) and source[same] == target[same]:
        same += 1
    actions = b""
    if same:
        actions += number((same - 1) << 2 | 0)
    if len(target) > same:
        actions += number((len(target) - same - 1) << 2 | 1) + target[same:]
    return delta(b"BPS1", number(len(source)) + number(len(target)) + number(0) + actions, source, target)


def ups(source, target):
    """One hunk over the differing bytes, which must hold no equal byte between them."""
    differing = [i for i in range(len(target)) if i >= len(source) or source[i] != target[i]]
    hunks = b""
    if differing:
        first, last = differing[0], differing[-1]
        hunks = number(first) + bytes(target[i] ^ (source[i] if i < len(source) else 0)
                                      for i in range(first, last + 1)) + b"\0"
    return delta(b"UPS1", number(len(source)) + number(len(target)) + hunks, source, target)


def ips(records):
    return b"PATCH" + b"".join(struct.pack(">I", at)[1:] + struct.pack(">H", len(data)) + data
                               for at, data in records) + b"EOF"


def pair(original, modified):
    """An original/modified pair as the patch targets read one: its first half and second half."""
    return original + modified


def image_with_table():
    """A small image: two-byte pointers at 10h to three strings at 40h, each ending in FFh."""
    image = bytearray(0x100)
    strings = [b"\x41\x42\xFF", b"\x42\x41\x41\xFF", b"\x41\xFF"]
    at = 0x40
    for k, text in enumerate(strings):
        image[0x10 + 2 * k:0x12 + 2 * k] = struct.pack("<H", at)
        image[at:at + len(text)] = text
        at += len(text)
    return bytes(image)


THINGY = b"41=A\n42=B\n20= \n/FF\n*FE\n"
TABLE = b'; Trelvane table\r\n\r\n[20]   " "\r\n[41]   "A"\r\n[42]   "B"\r\n[FE]   newline\r\n[FF]   terminal\r\n'
SCRIPT = (b'load "game.tbl"\ntextaddress 100h (80)\npointertable 10h\npointersize 2\n'
          b"[0000]\nHello\n[0001]\nWorld\n")
PATCH_SCRIPT = b".ADDRESS 808000h\nstart: lda #$12\nsta $7E0000\njsl start\nrtl\n.PATCH 808100h: EA EA 60\n"
MACRO_SCRIPT = b"m1 .MACRO value\nlda #value\n.ENDM\n.ADDRESS 818000h\nm1 5\nrts\nc0 .EQL 10h\n.DB c0, 1, 2\n"

CORPORA = {
    "asm_source_fuzz": {"hook.asm": b"lorom\norg $808000\nMain:\n  lda #$0F\n  sta $12\n  jsl Sub\n  bra Main\n"
                        b"Sub:\n  rep #$20 : lda.w #$1234 : rtl\n",
                        "data.asm": b"!value = $10\nmacro store(a)\n  lda #<a>\nendmacro\norg $808100\n%store(!value)\n"
                        b"db 1,2,\"AB\" : dw Label : dl Label\nLabel: incbin \"data.bin\"\n",
                        # A macro that calls itself twice, each time after an error.
                        "macro-bomb.asm": b"!value = $10\nmacro store(a)\n\xaf ld$808100\n%store(!value)\n\n"
                        b"%store(!value)\ndb\" ,21,AB<a>\nendmacro\no2g value808100\n%store(!value)\ndb\"dw La\n"},
    "bmp_fuzz": {"sheet.bmp": bmp(8, 8, list(range(64))), "wide.bmp": bmp(16, 8, [i % 16 for i in range(128)]),
                 "one.bmp": bmp(1, 1, [15])},
    "bps_apply_fuzz": {"small.bps": bps(b"ABCDEFGH", b"ABCXYZGHIJ"), "grow.bps": bps(b"", b"new bytes"),
                       "pair": pair(b"original bytes", b"modified bytes")},
    "ups_apply_fuzz": {"small.ups": ups(b"ABCDEFGH", b"ABCxEFGH"), "grow.ups": ups(b"AB", b"ABCD")},
    "ips_apply_fuzz": {"two.ips": ips([(0, b"AB"), (0x10, b"\x01\x02\x03")]), "empty.ips": ips([]),
                       "pair": pair(b"\x00\x11\x22\x33", b"\x00\xAA\x22\x33")},
    "codec_fuzz": {"text": b"AB A\nBA[41][FF]", "bytes": b"\x41\x42\x20\x41\xFE\x42\xFF"},
    "command_line_fuzz": {"patch": b"game.smc\np\npatch.ips", "tiles": b"game.smc\nb\n0\nout.bmp\nSNES",
                          "dump": b"game.nes\nd\ngame.tbl\nout.txt\n100h\n2", "insert": b"game.nes\nt\nscript.txt",
                          "words": b"\x01\x16\x06"},
    "finder_fuzz": {"table": image_with_table(), "plain": b"\x10\x00\x00\x00" + b"\x41\x42\xFF" * 20},
    "insert_fuzz": {"script.txt": SCRIPT, "pointers.txt": SCRIPT.replace(b"pointersize 2", b"pointersize 3")},
    "message_file_fuzz": {"trelvane.msg": b'TRELVANE_MESSAGE(TLERR_NONE, "All fine.")\n'
                                          b'TRELVANE_MESSAGE(TLERR_FILE_NOREAD, "Kann [file] nicht lesen")\n'},
    "png_fuzz": {"indexed.png": png(8, 8, 3, bytes(i % 4 for i in range(64)), bytes(range(12))),
                 "grey.png": png(4, 2, 0, b"\x00\xFF\x00\xFF\xFF\x00\xFF\x00"),
                 "rgb.png": png(2, 2, 2, b"\x00\x00\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00\x00\x00")},
    "patch_stack_fuzz": {"ips-ips": b"\x00" + b"ABCDEFGH" + b"\n--\n" + ips([(1, b"xy")]) + b"\n--\n"
                         + ips([(1, b"xz"), (6, b"!")]),
                         "bps-ups": b"\x01" + b"ABCDEFGH" + b"\n--\n" + bps(b"ABCDEFGH", b"ABCxyz")
                         + b"\n--\n" + ups(b"ABCxyz", b"ABCxyZ"),
                         "header": b"\x02" + bytes(1024) + b"\n--\n" + ips([(0x200, b"AB")])},
    "patch_script_fuzz": {"code.txt": PATCH_SCRIPT, "macro.txt": MACRO_SCRIPT,
                          "include.txt": b'.INCLUDE "library.txt"\n.ADDRESS 808000h\nrtl\n'},
    "pattern_fuzz": {"words": b"\x00abc\n[0-9]+\nlda\n", "lexicon": b"\x02[A-Z]+h\n\"[^\"]*\"\n"},
    "reader_fuzz": {"script.txt": SCRIPT, "table.txt": TABLE, "patch.txt": PATCH_SCRIPT},
    "rom_image_fuzz": {"image": bytes(range(256)) * 4, "short": b"\x01\x02\x03"},
    "script_document_fuzz": {"dump.txt": b"load \"game.tbl\"\ntextlines literal\npointertable 000010h\npointersize 2\n"
                             b"pointercount 2\npointerfrequency 1\npointerbase 0h\ntextregion 000040h (16)\n"
                             b"padbyte FFh\n\n[0000] ; 000040 (4)\n; abc\nabc\n\n[0001] ; 000044 (4)\n; <$05>x\n<$05>x\n"},
    "script_dump_fuzz": {"found": b"\x00" + struct.pack("<i", 0x40) + b"\x00\x00" + b"\x00" * 4 + b"\x03"
                                  + image_with_table(),
                         "by-hand": b"\x01" + struct.pack("<i", 0x10) + b"\x02\x01" + b"\x00" * 4 + b"\x03"
                                    + image_with_table()},
    "table_fuzz": {"game.txt": TABLE, "alternatives.txt": b'[41] "A" {a}\n[FF] terminal\n'},
    "thingy_fuzz": {"game.tbl": THINGY, "pairs.tbl": b"8140=AB\n41=A\n/00\n"},
    "verb_command_line_fuzz": {"info": b"info\ngame.smc", "dump": b"dump\ngame.nes\n--table\ngame.tbl\n--at\n100h",
                               "tiles": b"tiles\ngame.smc\n--format\nSNES2\ntiles.png",
                               "apply": b"apply\ngame.smc\npatch.ips", "words": b"\x04\x09\x0a\x00"},
    "tile_codec_fuzz": {"nes": b"\x00\x10\x10\x00\x00" + bytes(range(64)), "snes": b"\x02\x18\x08\x10\x00"
                        + bytes(range(128))},
}


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus")
    for target, files in CORPORA.items():
        folder = os.path.join(root, target)
        os.makedirs(folder, exist_ok=True)
        for name, data in files.items():
            with open(os.path.join(folder, name), "wb") as out:
                out.write(data)


if __name__ == "__main__":
    main()
