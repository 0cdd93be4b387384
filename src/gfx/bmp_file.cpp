// Uncompressed 16-colour BMP files: 118 bytes of headers and palette, then
// rows of two pixels a byte, bottom row first, without padding.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "core/file_bytes.h"
#include "core/last_error.h"
#include "core/little_endian.h"
#include "core/output_file.h"
#include "trelvane.h"

namespace {

constexpr size_t BMP_HEADER_SIZE = 54;
constexpr size_t BMP_PALETTE_SIZE = 64;
constexpr size_t BMP_PIXEL_DATA_OFFSET = BMP_HEADER_SIZE + BMP_PALETTE_SIZE;

// Palettes as blue, green, red, 0: grey steps for many colours, four greys
// for 2-bit graphics, black and white first for 1-bit graphics.
constexpr unsigned char kGreyPalette[BMP_PALETTE_SIZE] = {
    0x00, 0x00, 0x00, 0, 0x18, 0x18, 0x18, 0, 0x30, 0x30, 0x30, 0, 0x40, 0x40, 0x40, 0,
    0x50, 0x50, 0x50, 0, 0x60, 0x60, 0x60, 0, 0x70, 0x70, 0x70, 0, 0x80, 0x80, 0x80, 0,
    0x90, 0x90, 0x90, 0, 0xA0, 0xA0, 0xA0, 0, 0xB0, 0xB0, 0xB0, 0, 0xC0, 0xC0, 0xC0, 0,
    0xD0, 0xD0, 0xD0, 0, 0xE0, 0xE0, 0xE0, 0, 0xF0, 0xF0, 0xF0, 0, 0xFF, 0xFF, 0xFF, 0,
};
constexpr unsigned char kFourGreyPalette[BMP_PALETTE_SIZE] = {
    0x00, 0x00, 0x00, 0, 0x50, 0x50, 0x50, 0, 0xA0, 0xA0, 0xA0, 0, 0xFF, 0xFF, 0xFF, 0,
    0x50, 0x00, 0x00, 0, 0x50, 0x50, 0x00, 0, 0x50, 0xA0, 0x00, 0, 0x50, 0xFF, 0x00, 0,
    0x00, 0x50, 0x00, 0, 0x00, 0x50, 0x50, 0, 0x00, 0x50, 0xA0, 0, 0x00, 0x50, 0xFF, 0,
    0x00, 0x00, 0x50, 0, 0x50, 0x00, 0x50, 0, 0xA0, 0x00, 0x50, 0, 0xFF, 0x00, 0x50, 0,
};
constexpr unsigned char kTwoTonePalette[BMP_PALETTE_SIZE] = {
    0x00, 0x00, 0x00, 0, 0xFF, 0xFF, 0xFF, 0, 0x50, 0x50, 0x50, 0, 0xA0, 0xA0, 0xA0, 0,
    0x50, 0x00, 0x00, 0, 0x50, 0x50, 0x00, 0, 0x50, 0xA0, 0x00, 0, 0x50, 0xFF, 0x00, 0,
    0x00, 0x50, 0x00, 0, 0x00, 0x50, 0x50, 0, 0x00, 0x50, 0xA0, 0, 0x00, 0x50, 0xFF, 0,
    0x00, 0x00, 0x50, 0, 0x50, 0x00, 0x50, 0, 0xA0, 0x00, 0x50, 0, 0xFF, 0x00, 0x50, 0,
};

constexpr size_t kWidthAt = 18, kHeightAt = 22, kColoursUsedAt = 46;
constexpr unsigned kColours = 16;
constexpr long kLargestPixelValue = 15;

uint64_t RowBytes(long width) { return static_cast<uint64_t>(width / 2); }

// The palette that suits pixel values up to largestValue.
const unsigned char* PaletteFor(unsigned largestValue) {
    if (largestValue > 4) return kGreyPalette;
    if (largestValue > 2) return kFourGreyPalette;
    return kTwoTonePalette;
}

// Refuses a bitmap of a size this module does not handle.
long RefuseSize(int64_t width, int64_t height) {
    std::string size = std::to_string(width) + " x " + std::to_string(height) + " bmp";
    return SetError(TLERR_UNSUPPORTED, "", 0, 0, size.c_str());
}

bool FitsFileFields(long width, long height) {
    return width >= 0 && height >= 0 && width <= INT32_MAX && height <= INT32_MAX &&
           BMP_PIXEL_DATA_OFFSET + RowBytes(width) * static_cast<uint64_t>(height) <= UINT32_MAX;
}

// Whether a bitmap of this size unpacks into the caller's pixel array.
bool FitsPixelArray(int64_t width, int64_t height) {
    return width >= 0 && height >= 0 && width <= TRELVANE_BMP_MAX_PIXELS && height <= TRELVANE_BMP_MAX_PIXELS &&
           width * height <= TRELVANE_BMP_MAX_PIXELS;
}

void WriteHeader(unsigned char* header, long width, long height) {
    std::fill(header, header + BMP_HEADER_SIZE, 0);
    header[0] = 'B';
    header[1] = 'M';
    WriteLittleEndian(header + 2, static_cast<uint32_t>(BMP_PIXEL_DATA_OFFSET + RowBytes(width) * height), 4);
    WriteLittleEndian(header + 10, BMP_PIXEL_DATA_OFFSET, 4);
    WriteLittleEndian(header + 14, 40, 4);
    WriteLittleEndian(header + kWidthAt, static_cast<uint32_t>(width), 4);
    WriteLittleEndian(header + kHeightAt, static_cast<uint32_t>(height), 4);
    WriteLittleEndian(header + 26, 1, 2);
    WriteLittleEndian(header + 28, 4, 2);
    WriteLittleEndian(header + kColoursUsedAt, kColours, 4);
}

// Writes the pixel rows bottom row first, two pixels a byte, through a
// fixed buffer. False when the file refuses a write.
bool WritePixelRows(OutputFile& file, const unsigned char* pixels, long width, long height) {
    unsigned char buffer[4096];
    size_t used = 0;
    bool ok = true;
    for (long y = height - 1; y >= 0 && ok; --y) {
        const unsigned char* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(width);
        for (uint64_t k = 0; k < RowBytes(width) && ok; ++k) {
            buffer[used++] = static_cast<unsigned char>(row[2 * k] << 4 | row[2 * k + 1]);
            if (used == sizeof buffer) {
                ok = file.Write(buffer, used);
                used = 0;
            }
        }
    }
    return ok && file.Write(buffer, used);
}

// Unpacks rows of two pixels a byte, bottom row first, into the array.
void UnpackPixelRows(const unsigned char* packed, unsigned char* pixels, long width, long height) {
    std::fill(pixels, pixels + width * height, 0);  // an odd width leaves its last column unstored
    for (long y = height - 1; y >= 0; --y) {
        unsigned char* row = pixels + y * width;
        for (uint64_t k = 0; k < RowBytes(width); ++k, ++packed) {
            row[2 * k] = *packed >> 4;
            row[2 * k + 1] = *packed & 0x0F;
        }
    }
}

// Checks the headers of a bitmap file's bytes: its pixels must fit the
// caller's array and all be there. False after reporting why the file named
// file is refused.
bool CheckBitmap(const std::vector<unsigned char>& bytes, const char* file, int64_t& width, int64_t& height) {
    if (bytes.size() < BMP_HEADER_SIZE || bytes[0] != 'B' || bytes[1] != 'M')
        return SetError(TLERR_FILE_INVALID, file, 0, 0, "bitmap file");
    if (ReadLittleEndian(bytes.data() + kColoursUsedAt, 2) != kColours)
        return SetError(TLERR_UNSUPPORTED, "", 0, 0, "256 color bmp");
    width = static_cast<int32_t>(ReadLittleEndian(bytes.data() + kWidthAt, 4));
    height = static_cast<int32_t>(ReadLittleEndian(bytes.data() + kHeightAt, 4));
    if (!FitsPixelArray(width, height)) return RefuseSize(width, height);
    if (bytes.size() < BMP_PIXEL_DATA_OFFSET + RowBytes(static_cast<long>(width)) * height)
        return SetError(TLERR_FILE_INVALID, file, 0, 0, "bitmap file");
    return true;
}

}  // namespace

extern "C" {

long Trelvane_WriteBMP(const char* file, const unsigned char* pixels, long width, long height) {
    if (!file) file = "";
    if (!FitsFileFields(width, height)) return RefuseSize(width, height);
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    const unsigned largest = count ? *std::max_element(pixels, pixels + count) : 0;
    if (largest > kLargestPixelValue) return SetError(TLERR_UNSUPPORTED, "", 0, 0, "256 color bmp");
    OutputFile out(file);
    unsigned char header[BMP_HEADER_SIZE];
    WriteHeader(header, width, height);
    bool ok = out.Write(header, sizeof header) && out.Write(PaletteFor(largest), BMP_PALETTE_SIZE) &&
              WritePixelRows(out, pixels, width, height) && out.Commit();
    return ok ? -1 : SetError(TLERR_FILE_NOCREATE, file, 0, 0);
}

long Trelvane_LoadBMP(const char* file, unsigned char* pixels, long* width, long* height) {
    if (!file) file = "";
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(file, bytes)) return SetError(TLERR_FILE_NOREAD, file, 0, 0);
    int64_t fileWidth = 0, fileHeight = 0;
    if (!CheckBitmap(bytes, file, fileWidth, fileHeight)) return 0;
    UnpackPixelRows(bytes.data() + BMP_PIXEL_DATA_OFFSET, pixels, static_cast<long>(fileWidth),
                    static_cast<long>(fileHeight));
    *width = static_cast<long>(fileWidth);
    *height = static_cast<long>(fileHeight);
    return -1;
}
}
