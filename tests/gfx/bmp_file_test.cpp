#include <cstdint>

#include <gtest/gtest.h>

#include "core/last_error.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

using Pixels = std::vector<unsigned char>;

// A palette written as red, green, blue triplets, stored blue, green, red, 0.
Bytes Palette(std::initializer_list<uint32_t> rgb) {
    Bytes bytes;
    for (uint32_t c : rgb) bytes.insert(bytes.end(), {Bytes::value_type(c), Bytes::value_type(c >> 8), Bytes::value_type(c >> 16), 0});
    return bytes;
}

const Bytes kColourTail = Palette({0x000050, 0x005050, 0x00A050, 0x00FF50, 0x005000, 0x505000, 0xA05000, 0xFF5000,
                                   0x500000, 0x500050, 0x5000A0, 0x5000FF});

Bytes Concat(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

const Bytes kGrey = Palette({0x000000, 0x181818, 0x303030, 0x404040, 0x505050, 0x606060, 0x707070, 0x808080,
                             0x909090, 0xA0A0A0, 0xB0B0B0, 0xC0C0C0, 0xD0D0D0, 0xE0E0E0, 0xF0F0F0, 0xFFFFFF});
const Bytes kFourGrey = Concat(Palette({0x000000, 0x505050, 0xA0A0A0, 0xFFFFFF}), kColourTail);
const Bytes kTwoTone = Concat(Palette({0x000000, 0xFFFFFF, 0x505050, 0xA0A0A0}), kColourTail);

class BmpFileTest : public ::testing::Test {
protected:
    TempDir dir;
    std::string path = dir / "sheet.bmp";
};

TEST_F(BmpFileTest, WritesHeaderPaletteAndBottomUpRows) {
    Pixels pixels(8 * 2);
    for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(i);
    ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 8, 2), -1);
    const Bytes header{'B', 'M', 126, 0, 0, 0, 0, 0, 0, 0, 118, 0, 0, 0, 40, 0, 0, 0, 8, 0, 0, 0, 2, 0, 0, 0, 1, 0,
                       4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(ReadFile(path), Concat(Concat(header, kGrey), {0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67}));

    // An odd width keeps width / 2 bytes a row: its last column is dropped.
    ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 3, 1), -1);
    const Bytes odd = ReadFile(path);
    EXPECT_EQ(Bytes(odd.begin() + 117, odd.end()), (Bytes{0, 0x01}));
}

TEST_F(BmpFileTest, PaletteFollowsTheLargestValueAndFilesReadBack) {
    struct Case { unsigned char largest; const Bytes& palette; };
    for (Case c : {Case{0, kTwoTone}, Case{2, kTwoTone}, Case{3, kFourGrey}, Case{4, kFourGrey}, Case{5, kGrey},
                   Case{9, kGrey}}) {
        SCOPED_TRACE(int(c.largest));
        Pixels pixels(128 * 128);
        for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(i * 7 % (c.largest + 1));
        ASSERT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 128, 128), -1);
        Bytes file = ReadFile(path);
        ASSERT_EQ(file.size(), 118u + 64 * 128);
        EXPECT_EQ(Bytes(file.begin() + 2, file.begin() + 6), (Bytes{0x76, 0x20, 0, 0}));
        EXPECT_EQ(Bytes(file.begin() + 54, file.begin() + 118), c.palette);
        Pixels read(TRELVANE_BMP_MAX_PIXELS, 0xEE);
        long width = 0, height = 0;
        ASSERT_EQ(Trelvane_LoadBMP(path.c_str(), read.data(), &width, &height), -1);
        EXPECT_EQ(read, pixels);
        EXPECT_EQ(width * 1000 + height, 128128);
    }
}

TEST_F(BmpFileTest, WriteRefusals) {
    Pixels pixels(64, 15);
    pixels[63] = 16;
    WriteFile(path, std::string("old contents"));
    EXPECT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), 8, 8), 0);
    EXPECT_EQ(LastError().code, TLERR_UNSUPPORTED);
    EXPECT_EQ(LastError().data[0], "256 color bmp");
    EXPECT_EQ(ReadFile(path), Bytes());

    for (const std::string& bad : {dir / "no/such/dir.bmp", std::string("/dev/full")}) {
        EXPECT_EQ(Trelvane_WriteBMP(bad.c_str(), pixels.data(), 8, 7), 0);
        EXPECT_EQ(LastError().code, TLERR_FILE_NOCREATE);
        EXPECT_EQ(LastError().file, bad);
    }
    EXPECT_EQ(Trelvane_WriteBMP(path.c_str(), pixels.data(), -8, 8), 0);
    EXPECT_EQ(LastError().data[0], "-8 x 8 bmp");
}

// A 4-bit file as paint programs write it: image size, resolution and a
// colour palette filled in, all 16 colours important.
Bytes ForeignBitmap(int32_t width, int32_t height, uint16_t coloursUsed, size_t pixelBytes) {
    Bytes file{'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 118, 0, 0, 0, 40, 0, 0, 0};
    for (uint32_t value : {uint32_t(width), uint32_t(height), 0x00040001u, 0u, uint32_t(pixelBytes), 2835u, 2835u,
                           uint32_t(coloursUsed), 16u})
        file.insert(file.end(), {Bytes::value_type(value), Bytes::value_type(value >> 8),
                                 Bytes::value_type(value >> 16), Bytes::value_type(value >> 24)});
    for (int i = 0; i < 64; ++i) file.push_back(static_cast<unsigned char>(i * 13));
    for (size_t i = 0; i < pixelBytes; ++i) file.push_back(static_cast<unsigned char>(i * 0x35));
    return file;
}

TEST_F(BmpFileTest, ReadsOtherProgramsFilesAndRefusesWhatDoesNotFit) {
    Pixels pixels(TRELVANE_BMP_MAX_PIXELS, 0xEE);
    long width = -5, height = -5;
    WriteFile(path, ForeignBitmap(8, 2, 16, 8));
    ASSERT_EQ(Trelvane_LoadBMP(path.c_str(), pixels.data(), &width, &height), -1);
    EXPECT_EQ(Pixels(pixels.begin(), pixels.begin() + 17),
              (Pixels{0xD, 0x4, 0x0, 0x9, 0x3, 0xE, 0x7, 0x3, 0x0, 0x0, 0x3, 0x5, 0x6, 0xA, 0x9, 0xF, 0xEE}));
    EXPECT_EQ(width * 1000 + height, 8002);

    struct Refusal { Bytes file; int code; const char* text; };
    Bytes shortHeader = ForeignBitmap(8, 2, 16, 8);
    shortHeader.resize(53);
    const Refusal refusals[] = {
        {Bytes{'B', 'A', 0, 0}, TLERR_FILE_INVALID, "bitmap file"},
        {shortHeader, TLERR_FILE_INVALID, "bitmap file"},
        {ForeignBitmap(8, 2, 0, 8), TLERR_UNSUPPORTED, "256 color bmp"},
        {ForeignBitmap(8, 2, 16, 7), TLERR_FILE_INVALID, "bitmap file"},
        {ForeignBitmap(256, 128, 16, 16384), TLERR_UNSUPPORTED, "256 x 128 bmp"},
        {ForeignBitmap(128, -128, 16, 8192), TLERR_UNSUPPORTED, "128 x -128 bmp"},
        {ForeignBitmap(16386, 0, 16, 0), TLERR_UNSUPPORTED, "16386 x 0 bmp"},
        {ForeignBitmap(INT32_MIN, INT32_MIN, 16, 0), TLERR_UNSUPPORTED, "-2147483648 x -2147483648 bmp"},
    };
    for (const Refusal& r : refusals) {
        SCOPED_TRACE(r.text);
        WriteFile(path, r.file);
        Pixels untouched(TRELVANE_BMP_MAX_PIXELS, 0x77);
        EXPECT_EQ(Trelvane_LoadBMP(path.c_str(), untouched.data(), &width, &height), 0);
        EXPECT_EQ(LastError().code, r.code);
        EXPECT_EQ(LastError().data[0], r.text);
        EXPECT_EQ(untouched, Pixels(TRELVANE_BMP_MAX_PIXELS, 0x77));
        EXPECT_EQ(width * 1000 + height, 8002);
    }
    for (const std::string& unreadable : {dir / "missing.bmp", dir.path().string()}) {
        EXPECT_EQ(Trelvane_LoadBMP(unreadable.c_str(), pixels.data(), &width, &height), 0);
        EXPECT_EQ(LastError().code, TLERR_FILE_NOREAD);
        EXPECT_EQ(LastError().file, unreadable);
    }
}

}  // namespace
