#include "gfx/bmp_pixel_rows.h"

#include <algorithm>

namespace {

unsigned StoredPixel(const unsigned char* row, int64_t x, unsigned bitsPerPixel) {
    if (bitsPerPixel == 8) return row[x];
    return x % 2 == 0 ? row[x / 2] >> 4 : row[x / 2] & 0x0F;
}

}  // namespace

uint64_t PaddedBmpRowBytes(int64_t width, unsigned bitsPerPixel) {
    return (static_cast<uint64_t>(width) * bitsPerPixel + 31) / 32 * 4;
}

bool UnpackBmpRows(const BmpPixelRows& rows, int64_t width, int64_t height, unsigned char* pixels) {
    std::fill(pixels, pixels + width * height, 0);
    const unsigned char* stored = rows.bottomRow;
    for (int64_t y = height - 1; y >= 0; --y, stored += rows.rowBytes) {
        unsigned char* row = pixels + y * width;
        for (int64_t x = 0; x < rows.storedWidth; ++x) {
            unsigned value = StoredPixel(stored, x, rows.bitsPerPixel);
            if (value > BMP_LARGEST_PIXEL_VALUE) return false;
            row[x] = static_cast<unsigned char>(value);
        }
    }
    return true;
}
