// PNG files through the platform's codec: libspng on Linux, the Windows
// Imaging Component on Windows. Declared once here; png_codec_spng.cpp and
// png_codec_wic.cpp each build on their own platform only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// A decoded picture: the colour of every pixel and, for an indexed file, the
// palette index of every pixel too.
struct PngPicture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint32_t> colours;       // 0xRRGGBB, row after row, top row first
    std::vector<unsigned char> indices;  // palette indices in the same order; empty unless indexed
    size_t paletteSize = 0;              // entries of an indexed file's palette
};

// Pictures above this many pixels are refused before they are decoded.
inline constexpr uint64_t PNG_MAX_PIXELS = uint64_t{1} << 24;

// Decodes the PNG file held in bytes. False when the bytes are no PNG file
// the codec reads or the picture is too large (nothing reported: the caller
// names the file).
bool DecodePng(const std::vector<unsigned char>& bytes, PngPicture& picture);

// An 8-bit indexed PNG file of width x height palette indices (all below
// colours) and the palette of colours RGB triplets. False when the codec
// fails (nothing reported).
bool EncodeIndexedPng(const unsigned char* pixels, uint32_t width, uint32_t height, const unsigned char* palette,
                      size_t colours, std::vector<unsigned char>& png);
