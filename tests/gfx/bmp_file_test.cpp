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
    EXPECT_EQ(ReadText(path), "old contents");  // the pixels are checked before anything is written
    EXPECT_EQ(Trelvane_WriteBMP("/dev/full", pixels.data(), 8, 7), 0);  // a device is never replaced
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

}  // namespace
