// The stored pixel rows of a palette bitmap: 4 or 8 bits a pixel, rows a
// fixed number of bytes apart, the bottom row first.
#pragma once

#include <cstdint>

// Pixels are palette indices of a 16-colour palette.
constexpr unsigned BMP_LARGEST_PIXEL_VALUE = 15;

struct BmpPixelRows {
    const unsigned char* bottomRow;
    uint64_t rowBytes;     // distance between rows, padding included
    unsigned bitsPerPixel;  // 4 (left pixel in the high nibble) or 8
    int64_t storedWidth;   // pixels each row holds; columns beyond read as 0
};

// Bytes a row of width pixels takes when padded to whole 32-bit words, as
// bitmap files store them.
uint64_t PaddedBmpRowBytes(int64_t width, unsigned bitsPerPixel);

// Unpacks height rows into pixels (width bytes a row, top row first). False,
// with pixels partly filled, when a pixel's value is above 15.
bool UnpackBmpRows(const BmpPixelRows& rows, int64_t width, int64_t height, unsigned char* pixels);
