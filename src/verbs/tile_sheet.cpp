#include "verbs/tile_sheet.h"

#include <algorithm>

#include "core/file_bytes.h"
#include "core/path_names.h"
#include "core/text_compare.h"
#include "gfx/png_codec.h"
#include "trelvane.h"

namespace {

constexpr long TILES_PER_ROW = 16;
constexpr long TILE_SIDE = 8;
constexpr size_t MAX_PALETTE_BYTES = 16 * 3;

enum class SheetKind { Png, Bmp, Other };

SheetKind KindOf(const std::string& path) {
    const char* dot = LastDotOfBaseName(path.c_str());
    if (dot && SameTextIgnoringCase(dot, ".png")) return SheetKind::Png;
    if (dot && SameTextIgnoringCase(dot, ".bmp")) return SheetKind::Bmp;
    return SheetKind::Other;
}

bool RefuseKind(const CLI::App& verb, const std::string& path) {
    return VerbError(verb, path + ": tile sheets are .png or .bmp files"), false;
}

long ColoursOf(const TileFormat& format, const SheetPalette& palette) {
    return palette.rgb.empty() ? 1L << format.planeCount : static_cast<long>(palette.rgb.size() / 3);
}

const unsigned char* EntriesOf(const SheetPalette& palette) { return palette.rgb.empty() ? nullptr : palette.rgb.data(); }

// Where row y of tile k starts in the sheet's pixels.
size_t TileRowAt(const TileSheet& sheet, long k, long y) {
    const long columns = sheet.width / TILE_SIDE;
    return static_cast<size_t>(((k / columns) * TILE_SIDE + y) * sheet.width + (k % columns) * TILE_SIDE);
}

}  // namespace

TileSheet SheetFor(long count) {
    long columns = std::min(count, TILES_PER_ROW);
    while (count % columns != 0) --columns;
    const long rows = count / columns;
    TileSheet sheet{columns * TILE_SIDE, rows * TILE_SIDE, {}};
    sheet.pixels.assign(static_cast<size_t>(sheet.width * sheet.height), 0);
    return sheet;
}

void DecodeTileRun(const TileRun& run, TileSheet& sheet) {
    unsigned char tile[TILE_SIDE * TILE_SIDE];
    for (long k = 0; k < run.count; ++k) {
        Trelvane_DecodeTiles(tile, TILE_SIDE, TILE_SIDE, static_cast<long>(run.address + k * run.format->BytesPerTile()),
                             run.format->name);
        for (long y = 0; y < TILE_SIDE; ++y)
            std::copy(tile + y * TILE_SIDE, tile + (y + 1) * TILE_SIDE, sheet.pixels.begin() + TileRowAt(sheet, k, y));
    }
}

void EncodeTileRun(const TileRun& run, const TileSheet& sheet) {
    unsigned char tile[TILE_SIDE * TILE_SIDE];
    for (long k = 0; k < run.count; ++k) {
        for (long y = 0; y < TILE_SIDE; ++y) {
            const auto row = sheet.pixels.begin() + TileRowAt(sheet, k, y);
            std::copy(row, row + TILE_SIDE, tile + y * TILE_SIDE);
        }
        Trelvane_EncodeTiles(tile, TILE_SIDE, TILE_SIDE, static_cast<long>(run.address + k * run.format->BytesPerTile()),
                             1, run.format->name);
    }
}

bool ReadSheetPalette(const CLI::App& verb, const std::string& path, const std::string& sheetPath,
                      SheetPalette& palette) {
    if (path.empty()) return true;
    if (KindOf(sheetPath) != SheetKind::Png) return VerbError(verb, "--palette goes with .png sheets"), false;
    if (!ReadFileBytes(path.c_str(), palette.rgb)) return VerbError(verb, "cannot read the palette " + path), false;
    if (palette.rgb.empty() || palette.rgb.size() % 3 != 0 || palette.rgb.size() > MAX_PALETTE_BYTES)
        return VerbError(verb, path + ": a palette is 1 to 16 RGB triplets (3 to 48 bytes), not " +
                                   std::to_string(palette.rgb.size()) + " bytes"),
               false;
    return true;
}

bool WriteTileSheet(const CLI::App& verb, const std::string& path, const TileSheet& sheet, const SheetPalette& palette,
                    const TileRun& run) {
    long written = 0;
    switch (KindOf(path)) {
        case SheetKind::Png:
            written = Trelvane_WritePNG(path.c_str(), sheet.pixels.data(), sheet.width, sheet.height,
                                        EntriesOf(palette), ColoursOf(*run.format, palette));
            break;
        case SheetKind::Bmp: written = Trelvane_WriteBMP(path.c_str(), sheet.pixels.data(), sheet.width, sheet.height); break;
        case SheetKind::Other: return RefuseKind(verb, path);
    }
    return written ? true : (VerbEngineError(verb), false);
}

bool ReadTileSheet(const CLI::App& verb, const std::string& path, const TileFormat& format,
                   const SheetPalette& palette, TileSheet& sheet) {
    long read = 0;
    switch (KindOf(path)) {
        case SheetKind::Png:
            sheet.pixels.resize(PNG_MAX_PIXELS);
            read = Trelvane_LoadPNG(path.c_str(), sheet.pixels.data(), static_cast<long>(sheet.pixels.size()),
                                    &sheet.width, &sheet.height, EntriesOf(palette), ColoursOf(format, palette));
            break;
        case SheetKind::Bmp:
            sheet.pixels.resize(TRELVANE_BMP_MAX_PIXELS);
            read = Trelvane_LoadBMP(path.c_str(), sheet.pixels.data(), &sheet.width, &sheet.height);
            break;
        case SheetKind::Other: return RefuseKind(verb, path);
    }
    if (!read) return VerbEngineError(verb), false;
    sheet.pixels.resize(static_cast<size_t>(sheet.width * sheet.height));
    if (sheet.TileCount() == 0) return VerbError(verb, path + " holds no whole 8 x 8 tile"), false;
    return true;
}
