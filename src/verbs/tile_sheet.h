// Tile sheets of the tiles verb: a picture of 8 x 8 tiles, tile k at
// row-major position k, read from and written to PNG and BMP files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gfx/tile_codec.h"
#include "verbs/verb_support.h"

struct TileSheet {
    long width = 0;  // pixels
    long height = 0;
    std::vector<unsigned char> pixels;  // one palette index a pixel, row after row

    long TileCount() const { return (width / 8) * (height / 8); }
};

// A run of tiles in the current image.
struct TileRun {
    const TileFormat* format = nullptr;
    int64_t address = 0;
    long count = 0;
};

// The PNG palette: RGB triplets from --palette, or empty for greys.
struct SheetPalette {
    std::vector<unsigned char> rgb;
};

// An empty sheet that holds exactly count tiles: as many a row as the
// largest divisor of count up to 16 (20 tiles: 2 rows of 10), so that
// importing the sheet again writes the same tiles.
TileSheet SheetFor(long count);

// Decodes the run's tiles into sheet, and encodes them from it into the
// current image; tiles of the sheet beyond the run are not touched.
void DecodeTileRun(const TileRun& run, TileSheet& sheet);
void EncodeTileRun(const TileRun& run, const TileSheet& sheet);

// Reads --palette (path; nothing when empty) for the sheet at sheetPath. A
// palette holds 1 to 16 RGB triplets and goes with PNG sheets only.
bool ReadSheetPalette(const CLI::App& verb, const std::string& path, const std::string& sheetPath,
                      SheetPalette& palette);

// Writes sheet as the PNG or BMP file path; reads one back, its colours
// mapped to indices as Trelvane_LoadPNG does with palette or the greys of
// format's depth. False after reporting why.
bool WriteTileSheet(const CLI::App& verb, const std::string& path, const TileSheet& sheet, const SheetPalette& palette,
                    const TileRun& run);
bool ReadTileSheet(const CLI::App& verb, const std::string& path, const TileFormat& format,
                   const SheetPalette& palette, TileSheet& sheet);
