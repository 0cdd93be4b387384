#include "gfx/tile_codec.h"

#include <cstdint>
#include <cstring>

#include "core/last_error.h"
#include "core/named_entry.h"
#include "core/rom_slots.h"
#include "trelvane.h"

namespace {

// "NES" keeps the high bit plane in the first eight bytes; "GB" pairs its
// planes row by row like "SNES2" but stores the values negated.
constexpr TileFormat kTileFormats[] = {
    {"NES", 2, {8, 0}, 1, false},         {"SNES2", 2, {0, 1}, 2, false}, {"SNES", 4, {0, 1, 16, 17}, 2, false},
    {"GB1", 1, {0}, 1, false},            {"GB", 2, {0, 1}, 2, true},
};

unsigned StoredValue(const TileFormat& format, unsigned value) {
    unsigned mask = (1u << format.planeCount) - 1;
    return (format.negatedValues ? 0u - value : value) & mask;
}

// Calls convert(tile bytes, first pixel of the tile) for every whole tile of
// a width x height array whose bytes lie inside the current image. Tiles are
// laid out row-major from address on; partial tiles at the right and bottom
// edges belong to no tile, and tiles reaching outside the image are skipped.
template <typename Pixel, typename Convert>
void ForEachTileInImage(const TileFormat& format, Pixel* pixels, long width, long height, long address,
                        Convert convert) {
    const int64_t columns = width / 8, rows = height / 8, bytesPerTile = format.BytesPerTile();
    int64_t offset = address;
    for (int64_t ty = 0; ty < rows; ++ty) {
        for (int64_t tx = 0; tx < columns; ++tx, offset += bytesPerTile) {
            if (offset > CurrentRom().size) return;  // so does every later tile
            if (RomRangeInside(offset, bytesPerTile)) convert(CurrentRom().data + offset, pixels + ty * 8 * width + tx * 8);
        }
    }
}

// The format named by name, or null after reporting TLERR_FORMAT_BAD.
const TileFormat* RequireTileFormat(const char* name) {
    const TileFormat* format = FindTileFormat(name);
    if (!format) SetError(TLERR_FORMAT_BAD, "", 0, 0, name);
    return format;
}

// One tile between the image and a pixel array whose rows are width bytes apart.
void DecodeTile(const TileFormat& format, const unsigned char* tile, unsigned char* pixels, long width) {
    for (int y = 0; y < 8; ++y, pixels += width) {
        for (int x = 0; x < 8; ++x) {
            unsigned stored = 0;
            for (int plane = 0; plane < format.planeCount; ++plane)
                if (tile[format.planeOffset[plane] + format.rowStride * y] & (0x80 >> x)) stored |= 1u << plane;
            pixels[x] = static_cast<unsigned char>(StoredValue(format, stored));
        }
    }
}

void EncodeTile(const TileFormat& format, const unsigned char* pixels, long width, unsigned char* tile) {
    for (int y = 0; y < 8; ++y, pixels += width) {
        unsigned char planeRows[TILE_MAX_PLANES] = {};
        for (int x = 0; x < 8; ++x) {
            const unsigned stored = StoredValue(format, pixels[x]);
            for (int plane = 0; plane < TILE_MAX_PLANES; ++plane)
                if (stored & (1u << plane)) planeRows[plane] |= static_cast<unsigned char>(0x80 >> x);
        }
        for (int plane = 0; plane < format.planeCount; ++plane)
            tile[format.planeOffset[plane] + format.rowStride * y] = planeRows[plane];
    }
}

}  // namespace

const TileFormat* FindTileFormat(const char* name) {
    return FindNamedEntry(kTileFormats, &TileFormat::name, name);
}

const char* TileFormatForRomType(int32_t type) {
    switch (type) {
        case ROM_NES: return "NES";
        case ROM_SNES: return "SNES2";
        case ROM_GB: return "GB";
    }
    return nullptr;
}

extern "C" {

long Trelvane_DecodeTiles(unsigned char* pixels, long width, long height, long address, const char* format) {
    if (!pixels) return RefuseNullArgument("Trelvane_DecodeTiles", "pixels");
    const TileFormat* tileFormat = RequireTileFormat(format);
    if (!tileFormat || !RequireCurrentRom()) return 0;
    if (width > 0 && height > 0) std::memset(pixels, 0, static_cast<size_t>(width) * static_cast<size_t>(height));
    ForEachTileInImage(*tileFormat, pixels, width, height, address,
                       [&](const unsigned char* tile, unsigned char* first) { DecodeTile(*tileFormat, tile, first, width); });
    return -1;
}

long Trelvane_EncodeTiles(const unsigned char* pixels, long width, long height, long address, long /*count*/,
                          const char* format) {
    if (!pixels) return RefuseNullArgument("Trelvane_EncodeTiles", "pixels");
    const TileFormat* tileFormat = RequireTileFormat(format);
    if (!tileFormat || !RequireCurrentRom()) return 0;
    ForEachTileInImage(*tileFormat, pixels, width, height, address,
                       [&](unsigned char* tile, const unsigned char* first) { EncodeTile(*tileFormat, first, width, tile); });
    return -1;
}
}
