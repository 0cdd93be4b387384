// Trelvane_WritePNG and Trelvane_LoadPNG: palettes, the mapping by colour
// and by index, and every refusal leaving the caller's array and the file.
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "trelvane.h"

namespace {

class PngTilesTest : public ::testing::Test {
protected:
    static std::string Error() { return Trelvane_GetLastError(); }
    TempDir dir;
    unsigned char pixels[16 * 8];
    long width = 0, height = 0;
};

TEST_F(PngTilesTest, WritesAndReadsBackByColourWithAnyPalette) {
    for (int i = 0; i < 128; ++i) pixels[i] = static_cast<unsigned char>(i % 4);
    const unsigned char palette[] = {9, 9, 9, 200, 0, 0, 0, 200, 0, 0, 0, 200};
    const std::string greys = dir / "greys.png", coloured = dir / "coloured.png";
    ASSERT_EQ(Trelvane_WritePNG(greys.c_str(), pixels, 16, 8, nullptr, 4), -1);
    ASSERT_EQ(Trelvane_WritePNG(coloured.c_str(), pixels, 16, 8, palette, 4), -1);
    unsigned char back[128] = {};
    ASSERT_EQ(Trelvane_LoadPNG(greys.c_str(), back, 128, &width, &height, nullptr, 4), -1);
    EXPECT_EQ(Bytes(back, back + 128), Bytes(pixels, pixels + 128));
    EXPECT_EQ(std::pair(width, height), std::pair(16L, 8L));
    // Read with the greys of 16 colours: 0x55 is grey 5, 0xAA grey 10, 0xFF grey 15.
    ASSERT_EQ(Trelvane_LoadPNG(greys.c_str(), back, 128, &width, &height, nullptr, 16), -1);
    EXPECT_EQ((Bytes{back[0], back[1], back[2], back[3]}), (Bytes{0, 5, 10, 15}));
    // Colours outside the greys: read by the file's own indices.
    ASSERT_EQ(Trelvane_LoadPNG(coloured.c_str(), back, 128, &width, &height, nullptr, 4), -1);
    EXPECT_EQ(Bytes(back, back + 128), Bytes(pixels, pixels + 128));
}

TEST_F(PngTilesTest, Refusals) {
    for (int i = 0; i < 128; ++i) pixels[i] = static_cast<unsigned char>(i % 16);
    const std::string file = dir / "a.png";
    EXPECT_EQ(Trelvane_WritePNG(file.c_str(), pixels, 16, 8, nullptr, 4), 0);
    EXPECT_EQ(Error(), file + ": pixel value 15 is beyond the 4 colours of the palette.");
    EXPECT_EQ(Trelvane_WritePNG(file.c_str(), pixels, 16, 8, nullptr, 17), 0);
    EXPECT_EQ(Error(), "17 colour palette not supported.");
    EXPECT_EQ(Trelvane_WritePNG(file.c_str(), pixels, 0, 8, nullptr, 16), 0);
    EXPECT_EQ(Error(), "0 x 8 png not supported.");
    EXPECT_EQ(Trelvane_WritePNG(nullptr, pixels, 16, 8, nullptr, 16), 0);
    EXPECT_EQ(Error(), "Trelvane_WritePNG: file is a null pointer.");
    EXPECT_FALSE(FileExists(file));
    ASSERT_EQ(Trelvane_WritePNG(file.c_str(), pixels, 16, 8, nullptr, 16), -1);
    unsigned char back[128];
    std::fill(back, back + 128, 0xEE);
    EXPECT_EQ(Trelvane_LoadPNG(file.c_str(), back, 127, &width, &height, nullptr, 16), 0);
    EXPECT_EQ(Error(), "16 x 8 png not supported.");
    EXPECT_EQ(Trelvane_LoadPNG(file.c_str(), back, 128, &width, &height, nullptr, 4), 0);
    EXPECT_EQ(Error(), file + ": pixel value 4 is beyond the 4 colours of the palette.");
    EXPECT_EQ(Trelvane_LoadPNG(file.c_str(), back, 128, nullptr, &height, nullptr, 4), 0);
    EXPECT_EQ(Error(), "Trelvane_LoadPNG: width is a null pointer.");
    WriteFile(dir / "b.png", std::string("\x89PNG not really"));
    EXPECT_EQ(Trelvane_LoadPNG((dir / "b.png").c_str(), back, 128, &width, &height, nullptr, 4), 0);
    EXPECT_EQ(Error(), dir / "b.png" + " does not seem to be a valid PNG file.");
    EXPECT_EQ(Trelvane_LoadPNG((dir / "none.png").c_str(), back, 128, &width, &height, nullptr, 4), 0);
    EXPECT_EQ(Error(), "Error opening " + dir / "none.png" + ".");
    EXPECT_EQ(Bytes(back, back + 128), Bytes(128, 0xEE));
    EXPECT_EQ(std::pair(width, height), std::pair(0L, 0L));
}

}  // namespace
