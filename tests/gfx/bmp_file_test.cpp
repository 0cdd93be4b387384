#include <cstdint>

#include <gtest/gtest.h>

#include "core/last_error.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

using Pixels = std::vector<unsigned char>;

Bytes operator+(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

// Little-endian 32-bit values; a palette is such values written 0xRRGGBB.
Bytes Le32(std::initializer_list<uint32_t> values) {
    Bytes bytes;
    for (uint32_t v : values)
        for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<unsigned char>(v >> shift));
    return bytes;
}

// A 4-bit file as paint programs write it: image size, resolution and
// colours important filled in, a colourful palette, pixelBytes of pixels.
Bytes ForeignBitmap(int32_t width, int32_t height, uint16_t coloursUsed, size_t pixelBytes) {
    Bytes file = Bytes{'B', 'M'} + Le32({0, 0, 118, 40, uint32_t(width), uint32_t(height), 0x00040001u, 0u,
                                        uint32_t(pixelBytes), 2835u, 2835u, coloursUsed, 16u});
    for (int i = 0; i < 64; ++i) file.push_back(static_cast<unsigned char>(i * 13));
    for (size_t i = 0; i < pixelBytes; ++i) file.push_back(static_cast<unsigned char>(i * 0x35));
    return file;
}

// A bitmap file with an information header of infoSize bytes (zero behind
// its first 40), 16 palette entries, gap bytes and then rows, bottom row
// first. The pixel data offset says where the rows start.
Bytes BitmapFile(uint32_t infoSize, uint32_t bitsAndCompression, int32_t width, int32_t height, const Bytes& rows,
                 size_t gap = 0) {
    const uint32_t start = 14 + infoSize + 64 + static_cast<uint32_t>(gap);
    Bytes file = Bytes{'B', 'M'} + Le32({start + static_cast<uint32_t>(rows.size()), 0, start, infoSize,
                                        uint32_t(width), uint32_t(height), 1 | (bitsAndCompression & 0xFFFF) << 16,
                                        bitsAndCompression >> 16, uint32_t(rows.size()), 2835u, 2835u, 16u, 16u});
    file.resize(14 + infoSize, 0);
    for (int i = 0; i < 64; ++i) file.push_back(static_cast<unsigned char>(0xC0 + i));
    file.resize(start, 0xEE);
    return file + rows;
}

constexpr uint32_t k4Bit = 4, k8Bit = 8, kRle8 = 8 | 1 << 16, kRle4 = 4 | 2 << 16;

class BmpFileTest : public ::testing::Test {
protected:
    TempDir dir;
    std::string path = dir / "sheet.bmp";
    long width = -5, height = -5;
};

TEST_F(BmpFileTest, WritesHeaderPaletteForTheLargestValueAndBottomUpRowsOrRefuses) {
    Pixels pixels(8 * 2);
    for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(i);
    ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 8, 2), -1);
    const Bytes header = Bytes{'B', 'M'} + Le32({126, 0, 118, 40, 8, 2, 0x00040001, 0, 0, 0, 0, 16, 0});
    const Bytes greys = Le32({0x000000, 0x181818, 0x303030, 0x404040, 0x505050, 0x606060, 0x707070, 0x808080,
                              0x909090, 0xA0A0A0, 0xB0B0B0, 0xC0C0C0, 0xD0D0D0, 0xE0E0E0, 0xF0F0F0, 0xFFFFFF});
    EXPECT_EQ(ReadFile(path), header + greys + Bytes({0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67}));
    ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 3, 1), -1);  // a row keeps width / 2 bytes
    EXPECT_EQ(ReadFile(path).back(), 0x01);

    // Black and white come first up to value 2, four greys up to value 4.
    const std::pair<unsigned char, Bytes> palettes[] = {
        {2, {0xFF, 0x50}}, {3, {0x50, 0xA0}}, {4, {0x50, 0xA0}}, {5, {0x18, 0x30}}};
    for (const auto& [largest, secondAndThird] : palettes) {
        pixels.assign(16, 0);
        pixels[9] = largest;
        ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 8, 2), -1);
        const Bytes file = ReadFile(path);
        EXPECT_EQ((Bytes{file[58], file[62]}), secondAndThird) << int(largest);
    }

    pixels.assign(64, 15);
    pixels[63] = 16;
    WriteFile(path, std::string("old contents"));
    EXPECT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 8, 8), 0);
    EXPECT_EQ(LastError().data[0], "256 color bmp");
    EXPECT_EQ(ReadFile(path), Bytes());  // the file is created before the pixels are checked
    EXPECT_EQ(Trelvane_WriteBMP("/dev/full", pixels.data(), 8, 7), 0);  // opens, then refuses the bytes
    EXPECT_EQ(LastError().code, TLERR_FILE_NOCREATE);
    EXPECT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), -8, 8), 0);
    EXPECT_EQ(LastError().data[0], "-8 x 8 bmp");
}

TEST_F(BmpFileTest, ReadsOtherProgramsFilesAndRefusesWhatDoesNotFit) {
    Pixels pixels(TRELVANE_BMP_MAX_PIXELS, 0xEE);
    const Bytes foreign = ForeignBitmap(8, 2, 16, 8);
    WriteFile(path, foreign);
    ASSERT_EQ(Trelvane_LoadBMP(path.c_str(), pixels.data(), &width, &height), -1);
    EXPECT_EQ(Pixels(pixels.begin(), pixels.begin() + 17),
              (Pixels{0xD, 0x4, 0x0, 0x9, 0x3, 0xE, 0x7, 0x3, 0x0, 0x0, 0x3, 0x5, 0x6, 0xA, 0x9, 0xF, 0xEE}));
    EXPECT_EQ(width * 1000 + height, 8002);

    struct Refusal { Bytes file; int code; const char* text; };
    const Refusal refusals[] = {
        {Bytes{'B', 'A'} + Bytes(200), TLERR_FILE_INVALID, "bitmap file"},
        {Bytes(foreign.begin(), foreign.begin() + 53), TLERR_FILE_INVALID, "bitmap file"},
        {ForeignBitmap(8, 2, 0, 8), TLERR_UNSUPPORTED, "256 color bmp"},
        {ForeignBitmap(8, 2, 16, 7), TLERR_FILE_INVALID, "bitmap file"},
        {ForeignBitmap(256, 128, 16, 16384), TLERR_UNSUPPORTED, "256 x 128 bmp"},
        {ForeignBitmap(128, -128, 16, 8192), TLERR_UNSUPPORTED, "128 x -128 bmp"},
        {ForeignBitmap(16386, 0, 16, 0), TLERR_UNSUPPORTED, "16386 x 0 bmp"},
        {ForeignBitmap(INT32_MIN, INT32_MIN, 16, 0), TLERR_UNSUPPORTED, "-2147483648 x -2147483648 bmp"},
    };
    Pixels untouched(TRELVANE_BMP_MAX_PIXELS, 0x77);
    for (const Refusal& r : refusals) {
        WriteFile(path, r.file);
        EXPECT_EQ(Trelvane_LoadBMP(path.c_str(), untouched.data(), &width, &height), 0);
        EXPECT_EQ(LastError().code, r.code) << r.text;
        EXPECT_EQ(LastError().data[0], r.text);
    }
    EXPECT_EQ(Trelvane_LoadBMP((dir / "missing.bmp").c_str(), untouched.data(), &width, &height), 0);
    EXPECT_EQ(LastError().file, dir / "missing.bmp");
    EXPECT_EQ(untouched, Pixels(TRELVANE_BMP_MAX_PIXELS, 0x77));
    EXPECT_EQ(width * 1000 + height, 8002);
}

TEST_F(BmpFileTest, ReadsEachLayoutFromItsOwnPixelOffsetWithRowPadding) {
    struct Layout { const char* name; Bytes file; long width, height; Pixels pixels; };
    const Layout layouts[] = {
        // Rows padded to 32 bits: the padding and the unused low nibble are skipped.
        {"4-bit, odd width", BitmapFile(40, k4Bit, 5, 2, {0x12, 0x34, 0x5F, 0xFF, 0xAB, 0xCD, 0xEF, 0xFF}), 5, 2,
         {0xA, 0xB, 0xC, 0xD, 0xE, 0x1, 0x2, 0x3, 0x4, 0x5}},
        {"8-bit", BitmapFile(40, k8Bit, 3, 2, {1, 2, 3, 0xFF, 4, 5, 15, 0x99}), 3, 2, {4, 5, 15, 1, 2, 3}},
        {"124-byte header", BitmapFile(124, k4Bit, 8, 1, {0x01, 0x23, 0x45, 0x67}), 8, 1, {0, 1, 2, 3, 4, 5, 6, 7}},
        {"bytes between palette and pixels", BitmapFile(40, k8Bit, 4, 1, {9, 8, 7, 6}, 10), 4, 1, {9, 8, 7, 6}},
        // As written here: 4-bit rows of width / 2 bytes without padding,
        // the file ending behind them; an odd width leaves its last column 0.
        {"own, width 4", BitmapFile(40, k4Bit, 4, 2, {0x12, 0x34, 0x56, 0x78}), 4, 2, {5, 6, 7, 8, 1, 2, 3, 4}},
        {"own, width 3", BitmapFile(40, k4Bit, 3, 2, {0x12, 0x34}), 3, 2, {3, 4, 0, 1, 2, 0}},
    };
    for (const Layout& layout : layouts) {
        SCOPED_TRACE(layout.name);
        WriteFile(path, layout.file);
        Pixels pixels(TRELVANE_BMP_MAX_PIXELS, 0x77);
        ASSERT_EQ(Trelvane_LoadBMP(path.c_str(), pixels.data(), &width, &height), -1);
        EXPECT_EQ(width * 1000 + height, layout.width * 1000 + layout.height);
        const size_t count = layout.pixels.size();
        EXPECT_EQ(Pixels(pixels.begin(), pixels.begin() + count), layout.pixels);
        EXPECT_EQ(pixels[count], 0x77);
    }

    // What this module writes reads back unchanged, whatever the width.
    for (long sheetWidth : {1, 2, 6, 8, 12, 128}) {
        Pixels written(static_cast<size_t>(sheetWidth) * 3), read(TRELVANE_BMP_MAX_PIXELS);
        for (size_t i = 0; i < written.size(); ++i) written[i] = static_cast<unsigned char>((i * 7 + 3) % 16);
        ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), written.data(), sheetWidth, 3), -1);
        ASSERT_EQ(Trelvane_LoadBMP(path.c_str(), read.data(), &width, &height), -1);
        for (long y = 0; y < 3; ++y)
            for (long x = 0; x < sheetWidth - sheetWidth % 2; ++x)
                EXPECT_EQ(read[y * sheetWidth + x], written[y * sheetWidth + x]) << sheetWidth << " " << x << "," << y;
    }
}

TEST_F(BmpFileTest, RefusesOtherFormsBeforeFillingThePixels) {
    Bytes pastTheEnd = BitmapFile(40, k4Bit, 8, 1, {0x01, 0x23, 0x45, 0x67});
    pastTheEnd[10] = 200;
    Bytes insideTheHeaders = BitmapFile(40, k4Bit, 8, 1, {0x01, 0x23, 0x45, 0x67});
    insideTheHeaders[10] = 53;
    struct Refusal { const char* name; Bytes file; int code; const char* text; };
    const Refusal refusals[] = {
        {"24-bit", BitmapFile(40, 24, 2, 1, Bytes(8)), TLERR_UNSUPPORTED, "24-bit bmp"},
        {"1-bit", BitmapFile(40, 1, 8, 1, Bytes(4)), TLERR_UNSUPPORTED, "1-bit bmp"},
        {"RLE8", BitmapFile(40, kRle8, 8, 1, {8, 1, 0, 1}), TLERR_UNSUPPORTED, "compressed bmp"},
        {"RLE4", BitmapFile(40, kRle4, 8, 1, {8, 0x12, 0, 1}), TLERR_UNSUPPORTED, "compressed bmp"},
        {"12-byte header", BitmapFile(12, k4Bit, 8, 1, Bytes(48)), TLERR_UNSUPPORTED, "12-byte bmp header"},
        {"8-bit index above 15", BitmapFile(40, k8Bit, 4, 2, {1, 2, 3, 4, 5, 6, 16, 7}), TLERR_UNSUPPORTED,
         "256 color bmp"},
        {"8-bit rows without padding", BitmapFile(40, k8Bit, 3, 2, {1, 2, 3, 4, 5, 6}), TLERR_FILE_INVALID,
         "bitmap file"},
        {"4-bit rows cut short", BitmapFile(40, k4Bit, 6, 2, {0x12, 0x34, 0x56, 0, 0x12, 0x34, 0x56}), TLERR_FILE_INVALID,
         "bitmap file"},
        {"pixels past the end", pastTheEnd, TLERR_FILE_INVALID, "bitmap file"},
        {"pixels inside the headers", insideTheHeaders, TLERR_FILE_INVALID, "bitmap file"},
    };
    Pixels untouched(TRELVANE_BMP_MAX_PIXELS, 0x77);
    for (const Refusal& r : refusals) {
        SCOPED_TRACE(r.name);
        WriteFile(path, r.file);
        EXPECT_EQ(Trelvane_LoadBMP(path.c_str(), untouched.data(), &width, &height), 0);
        EXPECT_EQ(LastError().code, r.code);
        EXPECT_EQ(LastError().data[0], r.text);
    }
    EXPECT_EQ(untouched, Pixels(TRELVANE_BMP_MAX_PIXELS, 0x77));
    EXPECT_EQ(width * 1000 + height, -5005);
    EXPECT_STREQ(Trelvane_GetLastError(), (path + " does not seem to be a valid bitmap file.").c_str());
    WriteFile(path, BitmapFile(40, 24, 2, 1, Bytes(8)));
    Trelvane_LoadBMP(path.c_str(), untouched.data(), &width, &height);
    EXPECT_STREQ(Trelvane_GetLastError(), "24-bit bmp not supported.");
}

}  // namespace
