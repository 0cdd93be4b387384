#include "gfx/tile_codec.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

using Pixels = std::vector<unsigned char>;

class TileCodecTest : public ::testing::Test {
protected:
    void TearDown() override { Trelvane_FreeROM(-1); }
    void UseImage(const Bytes& bytes) {  // a Game Boy file has no copier header
        Trelvane_FreeROM(-1);
        WriteFile(dir / "image.gb", bytes);
        ASSERT_EQ(Trelvane_LoadROM((dir / "image.gb").c_str()), 1);
    }
    Bytes Image() const { return Bytes(CurrentRom.data, CurrentRom.data + CurrentRom.size); }
    TempDir dir;
};

TEST_F(TileCodecTest, EachFormatDecodesAndEncodesItsBitPlanes) {
    // Row 5 of a tile holds a pattern; four other bytes precede the tile.
    struct Case { const char* format; size_t size; std::vector<std::pair<size_t, unsigned char>> bytes; Pixels row5; };
    const Case cases[] = {
        {"NES", 16, {{5, 0xF0}, {13, 0xCC}}, {3, 3, 2, 2, 1, 1, 0, 0}},  // high bits first
        {"SNES2", 16, {{10, 0xCC}, {11, 0xF0}}, {3, 3, 2, 2, 1, 1, 0, 0}},
        {"SNES", 32, {{10, 0xAA}, {11, 0xCC}, {26, 0xF0}, {27, 0x80}}, {15, 6, 5, 4, 3, 2, 1, 0}},
        {"GB1", 8, {{5, 0xA5}}, {1, 0, 1, 0, 0, 1, 0, 1}},
        {"GB", 16, {{10, 0xCC}, {11, 0xF0}}, {1, 1, 2, 2, 3, 3, 0, 0}},  // (1,1) 1, (0,1) 2, (1,0) 3
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.format);
        Bytes image(4 + c.size, 0);
        std::fill(image.begin(), image.begin() + 4, 0x77);
        for (auto [at, value] : c.bytes) image[4 + at] = value;
        UseImage(image);
        Pixels pixels(64, 0x55), expected(64, 0);
        std::copy(c.row5.begin(), c.row5.end(), expected.begin() + 40);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 4, c.format), -1);
        EXPECT_EQ(pixels, expected);
        std::fill(CurrentRom.data + 4, CurrentRom.data + CurrentRom.size, 0xFF);  // every stored bit is rewritten
        ASSERT_EQ(Trelvane_EncodeTiles(pixels.data(), 8, 8, 4, 1, c.format), -1);
        EXPECT_EQ(Image(), image);
    }
}

TEST_F(TileCodecTest, TileOrderPartialTilesAndValueDepth) {
    Bytes image(33, 0);  // tile t of a 2 x 2 sheet of "GB1" tiles sets its pixel (t, 0)
    for (int t = 0; t < 4; ++t) image[8 * t] = static_cast<unsigned char>(0x80 >> t);
    UseImage(image);
    Pixels pixels(16 * 16, 9), expected(16 * 16, 0);
    expected[0] = expected[9] = expected[8 * 16 + 2] = expected[8 * 16 + 11] = 1;
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 16, 16, 0, "gb1"), -1);
    EXPECT_EQ(pixels, expected);
    Pixels partial(12 * 12, 9), expectedPartial(12 * 12, 0);  // one whole tile; the rest stays 0
    expectedPartial[1] = 1;
    ASSERT_EQ(Trelvane_DecodeTiles(partial.data(), 12, 12, 8, "GB1"), -1);
    EXPECT_EQ(partial, expectedPartial);

    // Value 5 sets planes 0 and 2 of two "SNES" tiles (64 bytes) and plane 0 only in "SNES2".
    UseImage(Bytes(96, 0));
    Pixels fives(16 * 8, 5);
    ASSERT_EQ(Trelvane_EncodeTiles(fives.data(), 16, 8, 0, 2, "Snes"), -1);
    ASSERT_EQ(Trelvane_EncodeTiles(fives.data(), 8, 8, 64, 1, "snes2"), -1);
    Bytes expectedImage(96, 0);
    for (size_t i = 0; i < 80; i += 2) expectedImage[i] = 0xFF;
    EXPECT_EQ(Image(), expectedImage);
}

TEST_F(TileCodecTest, RefusalsTouchNothing) {
    Pixels pixels(64, 0x55);
    EXPECT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, "NES"), 0);
    EXPECT_EQ(LastError().code, TLERR_ID_BAD);  // no current image
    UseImage(Bytes(32, 0x12));
    for (const char* name : {"SNES1", "NES1", "???", ""}) {
        EXPECT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, name), 0);
        EXPECT_EQ(LastError().code, TLERR_FORMAT_BAD);
        EXPECT_EQ(LastError().data[0], name);
        EXPECT_EQ(Trelvane_EncodeTiles(Pixels(64, 0).data(), 8, 8, 0, 1, name), 0);
    }
    EXPECT_EQ(pixels, Pixels(64, 0x55));
    EXPECT_EQ(Image(), Bytes(32, 0x12));
}

TEST_F(TileCodecTest, TilesBeyondTheImageAreNeitherReadNorWritten) {
    Bytes image(40);
    for (size_t i = 0; i < image.size(); ++i) image[i] = static_cast<unsigned char>(i * 37 + 1);
    UseImage(image);
    Pixels tile(64), pixels(16 * 8, 9), shifted(16 * 8, 9);
    ASSERT_EQ(Trelvane_DecodeTiles(tile.data(), 8, 8, 0, "SNES"), -1);
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 16, 8, 0, "SNES"), -1);     // tile 1 reaches past the end
    ASSERT_EQ(Trelvane_DecodeTiles(shifted.data(), 16, 8, -32, "SNES"), -1);  // tile 0 lies before the start
    Pixels expected(16 * 8, 0), expectedShifted(16 * 8, 0);
    for (int i = 0; i < 64; ++i) expected[i / 8 * 16 + i % 8] = expectedShifted[i / 8 * 16 + 8 + i % 8] = tile[i];
    EXPECT_EQ(pixels, expected);
    EXPECT_EQ(shifted, expectedShifted);
    Pixels ones(16 * 8, 1);
    for (long address : {-64L, -1L, 9L, 40L, LONG_MAX - 8, LONG_MIN}) {
        ASSERT_EQ(Trelvane_EncodeTiles(ones.data(), 16, 8, address, 2, "SNES"), -1);
        EXPECT_EQ(Image(), image) << address;
    }
}

TEST_F(TileCodecTest, DecodeThenEncodeLeavesRandomImagesUnchanged) {
    std::mt19937 random(2024);
    Bytes image(128 * 128 / 2 + 100);
    for (unsigned char& byte : image) byte = static_cast<unsigned char>(random());
    UseImage(image);
    for (const char* format : {"NES", "SNES2", "SNES", "GB1", "GB"}) {
        Pixels pixels(128 * 128), drawn(128 * 128);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 128, 128, 7, format), -1);
        ASSERT_EQ(Trelvane_EncodeTiles(pixels.data(), 128, 128, 7, 256, format), -1);
        EXPECT_EQ(Image(), image) << format;
        for (unsigned char& pixel : drawn) pixel = random() & ((1u << FindTileFormat(format)->planeCount) - 1);
        ASSERT_EQ(Trelvane_EncodeTiles(drawn.data(), 128, 128, 0, 256, format), -1);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 128, 128, 0, format), -1);
        EXPECT_EQ(pixels, drawn) << format;
        std::copy(image.begin(), image.end(), CurrentRom.data);
    }
}

}  // namespace
