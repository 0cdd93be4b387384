"""Writes or checks a 128 x 128 16-colour BMP holding a fixed pattern of indices.

"make PATH" writes the file the way ordinary paint programs do; "check PATH"
opens it with PIL and exits non-zero unless its size and indices match.
"""
import struct
import sys

from PIL import Image

SIDE = 128


def pattern(x, y):
    return (x + 2 * y) % 4


def make(path):
    rows = b"".join(bytes(pattern(x, y) << 4 | pattern(x + 1, y) for x in range(0, SIDE, 2))
                    for y in reversed(range(SIDE)))
    palette = b"".join(bytes((i * 16, 255 - i * 16, i * 8, 0)) for i in range(16))
    info = struct.pack("<IiiHHIIiiII", 40, SIDE, SIDE, 1, 4, 0, len(rows), 2835, 2835, 16, 16)
    offset = 14 + len(info) + len(palette)
    header = struct.pack("<2sIHHI", b"BM", offset + len(rows), 0, 0, offset)
    with open(path, "wb") as out:
        out.write(header + info + palette + rows)


def check(path):
    image = Image.open(path)
    assert image.size == (SIDE, SIDE) and image.mode == "P", (image.size, image.mode)
    assert all(image.getpixel((x, y)) == pattern(x, y) for y in range(SIDE) for x in range(SIDE))


{"make": make, "check": check}[sys.argv[1]](sys.argv[2])
