// 16-colour BMP files. Written: 118 bytes of headers and palette, then rows
// of two pixels a byte, bottom row first, without padding. Read: that layout,
// and the uncompressed 4-bit and 8-bit files other programs write, whose
// pixels start where the file says and whose rows are padded to 32 bits.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "core/file_bytes.h"
#include "core/last_error.h"
#include "core/little_endian.h"
#include "core/output_file.h"
#include "gfx/bmp_pixel_rows.h"
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

constexpr size_t kPixelDataOffsetAt = 10, kInfoHeaderSizeAt = 14, kWidthAt = 18, kHeightAt = 22, kBitsPerPixelAt = 28,
                 kCompressionAt = 30, kColoursUsedAt = 46;
// The file header in front of the information header.
constexpr size_t kFileHeaderSize = 14;
// The smallest information header that has the fields read here.
constexpr uint32_t kSmallestInfoHeaderSize = 40;
constexpr uint32_t kNoCompression = 0;
constexpr unsigned kColours = 16;

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
    WriteLittleEndian(header + kPixelDataOffsetAt, BMP_PIXEL_DATA_OFFSET, 4);
    WriteLittleEndian(header + kInfoHeaderSizeAt, kSmallestInfoHeaderSize, 4);
    WriteLittleEndian(header + kWidthAt, static_cast<uint32_t>(width), 4);
    WriteLittleEndian(header + kHeightAt, static_cast<uint32_t>(height), 4);
    WriteLittleEndian(header + 26, 1, 2);
    WriteLittleEndian(header + kBitsPerPixelAt, 4, 2);
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

// Refuses the file named file as no bitmap.
bool RefuseAsInvalid(const char* file) { return SetError(TLERR_FILE_INVALID, file, 0, 0, "bitmap file"); }

// Refuses a form of bitmap this module does not read, named by what.
bool RefuseForm(const std::string& what) { return SetError(TLERR_UNSUPPORTED, "", 0, 0, what.c_str()); }

// Checks that the headers describe a form of bitmap that is read: 4 or 8
// bits a pixel, uncompressed, 16 colours used.
bool CheckForm(const std::vector<unsigned char>& bytes) {
    const uint32_t infoSize = ReadLittleEndian(bytes.data() + kInfoHeaderSizeAt, 4);
    if (infoSize < kSmallestInfoHeaderSize) return RefuseForm(std::to_string(infoSize) + "-byte bmp header");
    const uint32_t bits = ReadLittleEndian(bytes.data() + kBitsPerPixelAt, 2);
    if (bits != 4 && bits != 8) return RefuseForm(std::to_string(bits) + "-bit bmp");
    if (ReadLittleEndian(bytes.data() + kCompressionAt, 4) != kNoCompression) return RefuseForm("compressed bmp");
    if (ReadLittleEndian(bytes.data() + kColoursUsedAt, 2) != kColours) return RefuseForm("256 color bmp");
    return true;
}

// Finds the pixel rows of a file whose form CheckForm accepted. Rows are
// padded to 32 bits, except in files as this module writes them: 4-bit rows
// of width / 2 bytes, the file ending right behind them. False when the
// rows lie outside the file.
bool FindPixelRows(const std::vector<unsigned char>& bytes, int64_t width, int64_t height, BmpPixelRows& rows) {
    const uint64_t start = ReadLittleEndian(bytes.data() + kPixelDataOffsetAt, 4);
    const uint64_t headersEnd = kFileHeaderSize + ReadLittleEndian(bytes.data() + kInfoHeaderSizeAt, 4);
    if (start < headersEnd || start > bytes.size()) return false;
    const uint64_t available = bytes.size() - start;
    rows.bottomRow = bytes.data() + start;
    rows.bitsPerPixel = ReadLittleEndian(bytes.data() + kBitsPerPixelAt, 2);
    rows.rowBytes = PaddedBmpRowBytes(width, rows.bitsPerPixel);
    rows.storedWidth = width;
    if (rows.rowBytes * static_cast<uint64_t>(height) <= available) return true;
    rows.rowBytes = RowBytes(static_cast<long>(width));
    rows.storedWidth = 2 * static_cast<int64_t>(rows.rowBytes);
    return rows.bitsPerPixel == 4 && rows.rowBytes * static_cast<uint64_t>(height) == available;
}

// Checks a bitmap file's bytes: its form must be one that is read, its
// pixels must fit the caller's array and all be in the file. False after
// reporting why the file named file is refused.
bool CheckBitmap(const std::vector<unsigned char>& bytes, const char* file, int64_t& width, int64_t& height,
                 BmpPixelRows& rows) {
    if (bytes.size() < BMP_HEADER_SIZE || bytes[0] != 'B' || bytes[1] != 'M') return RefuseAsInvalid(file);
    if (!CheckForm(bytes)) return false;
    width = static_cast<int32_t>(ReadLittleEndian(bytes.data() + kWidthAt, 4));
    height = static_cast<int32_t>(ReadLittleEndian(bytes.data() + kHeightAt, 4));
    if (!FitsPixelArray(width, height)) return RefuseSize(width, height);
    if (!FindPixelRows(bytes, width, height, rows)) return RefuseAsInvalid(file);
    return true;
}

}  // namespace

extern "C" {

long Trelvane_WriteBMP(const char* file, const unsigned char* pixels, long width, long height) {
    if (!file) file = "";
    if (!pixels) return RefuseNullArgument("Trelvane_WriteBMP", "pixels");
    if (!FitsFileFields(width, height)) return RefuseSize(width, height);
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    const unsigned largest = count ? *std::max_element(pixels, pixels + count) : 0;
    if (largest > BMP_LARGEST_PIXEL_VALUE) return SetError(TLERR_UNSUPPORTED, "", 0, 0, "256 color bmp");
    OutputFile out(file);
    unsigned char header[BMP_HEADER_SIZE];
    WriteHeader(header, width, height);
    bool ok = out.Write(header, sizeof header) && out.Write(PaletteFor(largest), BMP_PALETTE_SIZE) &&
              WritePixelRows(out, pixels, width, height) && out.Commit();
    return ok ? -1 : SetError(TLERR_FILE_NOCREATE, file, 0, 0);
}

long Trelvane_LoadBMP(const char* file, unsigned char* pixels, long* width, long* height) {
    if (!file) file = "";
    if (!pixels || !width || !height)
        return RefuseNullArgument("Trelvane_LoadBMP", !pixels ? "pixels" : !width ? "width" : "height");
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(file, bytes)) return SetError(TLERR_FILE_NOREAD, file, 0, 0);
    int64_t fileWidth = 0, fileHeight = 0;
    BmpPixelRows rows{};
    if (!CheckBitmap(bytes, file, fileWidth, fileHeight, rows)) return 0;
    // Unpacked apart from the caller's array, which a refused file leaves as it was.
    std::vector<unsigned char> unpacked(static_cast<size_t>(fileWidth * fileHeight));
    if (!UnpackBmpRows(rows, fileWidth, fileHeight, unpacked.data())) return RefuseForm("256 color bmp");
    std::copy(unpacked.begin(), unpacked.end(), pixels);
    *width = static_cast<long>(fileWidth);
    *height = static_cast<long>(fileHeight);
    return -1;
}
}
