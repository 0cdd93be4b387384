// Uncompressed 16-colour BMP files: 118 bytes of headers and palette, then
// rows of two pixels a byte, bottom row first, without padding.
#pragma once

#include <cstddef>

constexpr size_t BMP_HEADER_SIZE = 54;
constexpr size_t BMP_PALETTE_SIZE = 64;
constexpr size_t BMP_PIXEL_DATA_OFFSET = BMP_HEADER_SIZE + BMP_PALETTE_SIZE;

// The palette, 16 entries of blue, green, red and 0, that suits pixel values
// up to largestValue.
const unsigned char* BmpPaletteFor(unsigned largestValue);
