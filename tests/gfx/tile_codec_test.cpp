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

    // Makes bytes the current image (a Game Boy file has no copier header).
    void UseImage(const Bytes& bytes) {
        WriteFile(dir / "image.gb", bytes);
        ASSERT_EQ(Trelvane_LoadROM((dir / "image.gb").c_str()), 1);
    }
    Bytes Image() const { return Bytes(CurrentRom.data, CurrentRom.data + CurrentRom.size); }

    TempDir dir;
};

// One tile whose row 5 carries a pattern and whose other rows are 0.
struct TileCase {
    const char* format;
    Bytes tile;                 // the tile's bytes
    std::vector<int> row5;      // the decoded pixels of row 5
};

Bytes TileWith(size_t size, std::initializer_list<std::pair<size_t, unsigned char>> bytes) {
    Bytes tile(size, 0);
    for (auto [at, value] : bytes) tile[at] = value;
    return tile;
}

const TileCase kTileCases[] = {
    // The first eight bytes carry the high bit.
    {"NES", TileWith(16, {{5, 0xF0}, {13, 0xCC}}), {3, 3, 2, 2, 1, 1, 0, 0}},
    {"SNES2", TileWith(16, {{10, 0xCC}, {11, 0xF0}}), {3, 3, 2, 2, 1, 1, 0, 0}},
    {"SNES", TileWith(32, {{10, 0xAA}, {11, 0xCC}, {26, 0xF0}, {27, 0x80}}), {15, 6, 5, 4, 3, 2, 1, 0}},
    {"GB1", TileWith(8, {{5, 0xA5}}), {1, 0, 1, 0, 0, 1, 0, 1}},
    // Pairs (p0, p1) of (1, 1) give 1, (0, 1) give 2 and (1, 0) give 3.
    {"GB", TileWith(16, {{10, 0xCC}, {11, 0xF0}}), {1, 1, 2, 2, 3, 3, 0, 0}},
};

Pixels TilePixels(const std::vector<int>& row5) {
    Pixels pixels(64, 0);
    for (int x = 0; x < 8; ++x) pixels[5 * 8 + x] = static_cast<unsigned char>(row5[x]);
    return pixels;
}

TEST_F(TileCodecTest, EachFormatDecodesAndEncodesItsBitPlanes) {
    for (const TileCase& c : kTileCases) {
        SCOPED_TRACE(c.format);
        Bytes image(4 + c.tile.size(), 0x77);
        std::copy(c.tile.begin(), c.tile.end(), image.begin() + 4);
        UseImage(image);
        Pixels pixels(64, 0x55);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 4, c.format), -1);
        EXPECT_EQ(pixels, TilePixels(c.row5));

        // Every stored bit is rewritten, and the bytes around the tile stay.
        std::fill(CurrentRom.data + 4, CurrentRom.data + CurrentRom.size, 0xFF);
        ASSERT_EQ(Trelvane_EncodeTiles(pixels.data(), 8, 8, 4, 1, c.format), -1);
        EXPECT_EQ(Image(), image);
        Trelvane_FreeROM(-1);
    }
}

TEST_F(TileCodecTest, SinglePixelsOfTheUnusualBitOrders) {
    UseImage(TileWith(16, {{0, 0x80}}));
    Pixels pixels(64);
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, "NES"), -1);
    EXPECT_EQ(pixels[0], 2);
    CurrentRom.data[0] = 0x00;
    CurrentRom.data[8] = 0x80;
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, "NES"), -1);
    EXPECT_EQ(pixels[0], 1);
    CurrentRom.data[0] = 0x80;
    CurrentRom.data[1] = 0x80;
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, "GB"), -1);
    EXPECT_EQ(pixels[0], 1);
}

TEST_F(TileCodecTest, TilesRunRowMajorAndPartialTilesAreLeftOut) {
    // Tile t of a 2 x 2 sheet of "GB1" tiles sets its pixel (t, 0).
    UseImage(Bytes{0x80, 0, 0, 0, 0, 0, 0, 0, 0x40, 0, 0, 0, 0, 0, 0, 0,
                   0x20, 0, 0, 0, 0, 0, 0, 0, 0x10, 0, 0, 0, 0, 0, 0, 0, 0xFF});
    Pixels pixels(16 * 16, 9);
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 16, 16, 0, "gb1"), -1);
    Pixels expected(16 * 16, 0);
    expected[0] = expected[8 + 1] = expected[8 * 16 + 2] = expected[8 * 16 + 8 + 3] = 1;
    EXPECT_EQ(pixels, expected);

    // A 12 x 12 array holds one whole tile; the rest decodes as 0.
    Pixels partial(12 * 12, 9);
    ASSERT_EQ(Trelvane_DecodeTiles(partial.data(), 12, 12, 8, "GB1"), -1);
    Pixels expectedPartial(12 * 12, 0);
    expectedPartial[1] = 1;
    EXPECT_EQ(partial, expectedPartial);

    // A 16 x 8 "SNES" array covers two tiles: 64 bytes.
    Trelvane_FreeROM(-1);
    UseImage(Bytes(96, 0));
    Pixels full(16 * 8, 15);
    ASSERT_EQ(Trelvane_EncodeTiles(full.data(), 16, 8, 0, 2, "SNES"), -1);
    Bytes image(96, 0);
    std::fill(image.begin(), image.begin() + 64, 0xFF);
    EXPECT_EQ(Image(), image);
}

TEST_F(TileCodecTest, FormatNamesIgnoreCaseAndUnknownNamesTouchNothing) {
    UseImage(TileWith(32, {{0, 0x80}, {1, 0x80}, {16, 0x80}, {17, 0x80}}));
    for (const char* name : {"snes", "Snes", "SNES"}) {
        Pixels pixels(64);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, name), -1);
        EXPECT_EQ(pixels[0], 15) << name;
    }
    for (const char* name : {"SNES1", "NES1", "???", ""}) {
        Pixels pixels(64, 0x55);
        EXPECT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, name), 0);
        EXPECT_EQ(LastError().code, TLERR_FORMAT_BAD);
        EXPECT_EQ(LastError().data[0], name);
        EXPECT_EQ(pixels, Pixels(64, 0x55));
        Bytes before = Image();
        EXPECT_EQ(Trelvane_EncodeTiles(Pixels(64, 0).data(), 8, 8, 0, 1, name), 0);
        EXPECT_EQ(Image(), before);
    }
}

TEST_F(TileCodecTest, ValueBitsAboveTheDepthAreIgnored) {
    UseImage(Bytes(16, 0));
    Pixels fives(64, 5);
    ASSERT_EQ(Trelvane_EncodeTiles(fives.data(), 8, 8, 0, 1, "SNES2"), -1);
    Pixels decoded(64);
    ASSERT_EQ(Trelvane_DecodeTiles(decoded.data(), 8, 8, 0, "SNES2"), -1);
    EXPECT_EQ(decoded, Pixels(64, 1));
    Pixels high(64, 0xF2);
    ASSERT_EQ(Trelvane_EncodeTiles(high.data(), 8, 8, 0, 1, "GB1"), -1);
    ASSERT_EQ(Trelvane_DecodeTiles(decoded.data(), 8, 8, 0, "GB1"), -1);
    EXPECT_EQ(decoded, Pixels(64, 0));
}

// The left and right 8 x 8 halves of a 16 x 8 array.
std::pair<Pixels, Pixels> Halves(const Pixels& pixels) {
    Pixels left, right;
    for (int y = 0; y < 8; ++y) {
        left.insert(left.end(), pixels.begin() + y * 16, pixels.begin() + y * 16 + 8);
        right.insert(right.end(), pixels.begin() + y * 16 + 8, pixels.begin() + y * 16 + 16);
    }
    return {left, right};
}

TEST_F(TileCodecTest, TilesBeyondTheImageAreNeitherReadNorWritten) {
    Bytes image(40);
    for (size_t i = 0; i < image.size(); ++i) image[i] = static_cast<unsigned char>(i * 37 + 1);
    UseImage(image);
    Pixels firstTile(64);
    ASSERT_EQ(Trelvane_DecodeTiles(firstTile.data(), 8, 8, 0, "SNES"), -1);
    ASSERT_NE(firstTile, Pixels(64, 0));

    // Tile 0 lies inside, tile 1 (bytes 32 to 63) reaches past the end.
    Pixels pixels(16 * 8, 9);
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 16, 8, 0, "SNES"), -1);
    EXPECT_EQ(Halves(pixels), std::make_pair(firstTile, Pixels(64, 0)));
    Pixels ones(16 * 8, 1);
    ASSERT_EQ(Trelvane_EncodeTiles(ones.data(), 16, 8, 0, 2, "SNES"), -1);
    EXPECT_EQ(Image().size(), 40u);
    EXPECT_EQ(Bytes(CurrentRom.data + 32, CurrentRom.data + 40), Bytes(image.begin() + 32, image.end()));

    // A tile before the image start is skipped, the next one converted.
    std::copy(image.begin(), image.end(), CurrentRom.data);
    ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 16, 8, -32, "SNES"), -1);
    EXPECT_EQ(Halves(pixels), std::make_pair(Pixels(64, 0), firstTile));
    for (long address : {-64L, -1L, 9L, 40L, LONG_MAX - 8, LONG_MIN}) {
        SCOPED_TRACE(address);
        ASSERT_EQ(Trelvane_EncodeTiles(ones.data(), 16, 8, address, 2, "SNES"), -1);
        EXPECT_EQ(Image(), image);
    }
}

TEST_F(TileCodecTest, NeedsACurrentImage) {
    Pixels pixels(64, 3);
    EXPECT_EQ(Trelvane_DecodeTiles(pixels.data(), 8, 8, 0, "NES"), 0);
    EXPECT_EQ(LastError().code, TLERR_ID_BAD);
    EXPECT_EQ(pixels, Pixels(64, 3));
    EXPECT_EQ(Trelvane_EncodeTiles(pixels.data(), 8, 8, 0, 1, "NES"), 0);
    EXPECT_EQ(LastError().code, TLERR_ID_BAD);
}

TEST_F(TileCodecTest, DecodeThenEncodeLeavesRandomImagesUnchanged) {
    std::mt19937 random(2024);
    Bytes image(128 * 128 / 2 + 100);
    for (unsigned char& byte : image) byte = static_cast<unsigned char>(random());
    UseImage(image);
    for (const char* format : {"NES", "SNES2", "SNES", "GB1", "GB"}) {
        SCOPED_TRACE(format);
        Pixels pixels(128 * 128);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 128, 128, 7, format), -1);
        ASSERT_EQ(Trelvane_EncodeTiles(pixels.data(), 128, 128, 7, 256, format), -1);
        EXPECT_EQ(Image(), image);

        // And the other way: pixels of the format's depth survive encoding.
        const unsigned mask = (1u << FindTileFormat(format)->planeCount) - 1;
        Pixels drawn(128 * 128);
        for (unsigned char& pixel : drawn) pixel = static_cast<unsigned char>(random() & mask);
        ASSERT_EQ(Trelvane_EncodeTiles(drawn.data(), 128, 128, 0, 256, format), -1);
        ASSERT_EQ(Trelvane_DecodeTiles(pixels.data(), 128, 128, 0, format), -1);
        EXPECT_EQ(pixels, drawn);
        std::copy(image.begin(), image.end(), CurrentRom.data);
    }
}

}  // namespace
