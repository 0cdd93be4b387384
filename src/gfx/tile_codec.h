// Planar 8 x 8 tile formats and their conversion to one byte per pixel.
#pragma once

#include <cstdint>

constexpr int TILE_MAX_PLANES = 4;

// A format stores bit k of each pixel value in bit plane k: tile row y of
// plane k is the byte at planeOffset[k] + rowStride * y, leftmost pixel in
// bit 7. Formats with negatedValues store (-value) mod 4 instead of value.
struct TileFormat {
    const char* name;
    int planeCount;
    int planeOffset[TILE_MAX_PLANES];
    int rowStride;
    bool negatedValues;

    int BytesPerTile() const { return planeCount * 8; }
};

// The format with this name, compared without regard to case; null if none.
const TileFormat* FindTileFormat(const char* name);


// The format a system's graphics are usually stored in (by ROM type: ROM_NES,
// ROM_SNES, ROM_GB); null for any other type.
const char* TileFormatForRomType(int32_t type);
