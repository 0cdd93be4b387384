#include "gfx/tile_codec.h"

#include <gtest/gtest.h>

#include <climits>

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
    Bytes Image() const { return Bytes(CurrentRom().data, CurrentRom().data + CurrentRom().size); }
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
        Bytes image(4, 0x77);
        image.resize(4 + c.size);
        for (auto [at, value] : c.bytes) image[4 + at] = value;
        UseImage(image);
        Pixels pixels(64, 0x55), expected(64, 0);
        std::copy(c.row5.begin(), c.row5.end(), expected.begin() + 40);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 4, c.format), -1);
        EXPECT_EQ(pixels, expected);
        // Every stored bit is rewritten; value bits above the format's depth are not stored.
        std::fill(CurrentRom().data + 4, CurrentRom().data + CurrentRom().size, 0xFF);
        const int depthBit = 1 << FindTileFormat(c.format)->planeCount;
        for (unsigned char& pixel : pixels) pixel = static_cast<unsigned char>(pixel + depthBit);
        ASSERT_EQ(Trelvane_EncodeTiles(pixels.data(), 8, 8, 4, 1, c.format), -1);
        EXPECT_EQ(Image(), image);
    }
}

// The one list of formats, which the command line checks against too, and
// the format each system's ROM type implies.
TEST(TileFormatNamesTest, FiveNamesInAnyCaseAndOnePerSystem) {
    for (const char* good : {"snes2", "Snes", "nes", "GB1", "gb"}) EXPECT_NE(FindTileFormat(good), nullptr) << good;
    for (const char* bad : {"SNES1", "NES1", "SNES3", "", "GBC", "NES "}) EXPECT_EQ(FindTileFormat(bad), nullptr) << bad;
    EXPECT_EQ(FindTileFormat(nullptr), nullptr);
    EXPECT_STREQ(TileFormatForRomType(ROM_NES), "NES");
    EXPECT_STREQ(TileFormatForRomType(ROM_SNES), "SNES2");
    EXPECT_STREQ(TileFormatForRomType(ROM_GB), "GB");
    EXPECT_EQ(TileFormatForRomType(0), nullptr);
}

TEST_F(TileCodecTest, RefusalsPartialTilesAndTilesBeyondTheImageTouchNothing) {
    Pixels pixels(20 * 12, 9), shifted(20 * 12, 9), tile(64);
    EXPECT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, "NES"), 0);
    EXPECT_EQ(LastError().code, TLERR_ID_BAD);  // no current image
    Bytes image(40);
    for (size_t i = 0; i < image.size(); ++i) image[i] = static_cast<unsigned char>(i * 37 + 1);
    UseImage(image);
    EXPECT_EQ(Trelvane_EncodeTiles(pixels.data(), 8, 8, 0, 1, ""), 0);
    EXPECT_EQ(LastError().code, TLERR_FORMAT_BAD);

    // A 20 x 12 array holds two whole tiles side by side; the rest stays 0.
    ASSERT_EQ(Trelvane_DecodeTiles(tile.data(), 8, 8, 0, "SNES"), -1);
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 20, 12, 0, "SNES"), -1);     // tile 1 reaches past the end
    ASSERT_EQ(Trelvane_DecodeTiles(shifted.data(), 20, 12, -32, "SNES"), -1);  // tile 0 lies before the start
    Pixels expected(20 * 12, 0), expectedShifted(20 * 12, 0);
    for (int i = 0; i < 64; ++i) expected[i / 8 * 20 + i % 8] = expectedShifted[i / 8 * 20 + 8 + i % 8] = tile[i];
    EXPECT_EQ(pixels, expected);
    EXPECT_EQ(shifted, expectedShifted);
    for (long address : {-64L, -1L, 9L, 40L, LONG_MAX - 8, LONG_MIN}) {
        ASSERT_EQ(Trelvane_EncodeTiles(Pixels(16 * 8, 1).data(), 16, 8, address, 2, "SNES"), -1);
        EXPECT_EQ(Image(), image) << address;
    }
}

}  // namespace
