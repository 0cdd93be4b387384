"""Writes and checks 16-colour BMP files holding fixed patterns of indices.

"make PATH" writes a 128 x 128 4-bit file the way ordinary paint programs do;
"check PATH" opens it with PIL and exits non-zero unless its size and indices
match. "save LAYOUT WIDTH HEIGHT PATH" saves a pattern of all 16 indices
through an image library or converter in one of the LAYOUTS below.
"tiles SOURCE SHEET" exits non-zero unless every whole 8 x 8 tile of SOURCE,
taken row by row, holds the same indices as the tile at the same position in
the 128-pixel-wide SHEET (the tiles as they were put into the image).
"""
import os
import struct
import subprocess
import sys
import tempfile

from PIL import Image

SIDE = 128
TILE = 8
CONVERT = "/usr/bin/convert"  # ImageMagick's own tool, by full path


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


def sixteen_colours(width, height):
    """A palette image using all 16 indices, each with its own colour."""
    image = Image.new("P", (width, height))
    image.putpalette([channel for i in range(16) for channel in (i * 17, 255 - i * 13, (i * 71) % 256)])
    for y in range(height):
        for x in range(width):
            image.putpixel((x, y), (3 * x + 5 * y + x * y // 16) % 16)
    return image


def converted(image, path, *options):
    with tempfile.TemporaryDirectory() as folder:
        source = os.path.join(folder, "source.png")
        image.save(source)
        subprocess.run([CONVERT, source, *options], check=True)


LAYOUTS = {
    # PIL saves a 16-colour palette image as 8 bits a pixel, 16 colours used.
    "pil-8bit": lambda image, path: image.save(path),
    "magick-4bit": lambda image, path: converted(image, path, "BMP3:" + path),
    "magick-124-byte-header": lambda image, path: converted(image, path, "BMP:" + path),
    "magick-24bit": lambda image, path: converted(image, path, "-type", "TrueColor", "BMP3:" + path),
    "magick-1bit": lambda image, path: converted(image, path, "-monochrome", "BMP3:" + path),
    "magick-rle8": lambda image, path: converted(image, path, "-compress", "RLE", "BMP3:" + path),
}


def save(layout, width, height, path):
    LAYOUTS[layout](sixteen_colours(int(width), int(height)), path)


def tiles(source, sheet):
    image, dumped = Image.open(source), Image.open(sheet)
    columns = image.size[0] // TILE
    for t in range(columns * (image.size[1] // TILE)):
        sx, sy = t % columns * TILE, t // columns * TILE
        dx, dy = t % (SIDE // TILE) * TILE, t // (SIDE // TILE) * TILE
        for y in range(TILE):
            for x in range(TILE):
                a, b = image.getpixel((sx + x, sy + y)), dumped.getpixel((dx + x, dy + y))
                assert a == b, (t, x, y, a, b)


{"make": make, "check": check, "save": save, "tiles": tiles}[sys.argv[1]](*sys.argv[2:])
