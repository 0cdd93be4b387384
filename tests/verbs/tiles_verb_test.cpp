// trelvane tiles: sheets saved by PIL and ImageMagick, round trips, and an
// import that changes only its own tiles.
#include <gtest/gtest.h>

#include "core/rom_slots.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

constexpr size_t kAt = 0x1000;       // where the tiles go
constexpr size_t kTileBytes = 32;    // SNES, 4 bits a pixel
constexpr int kTiles = 8;            // a sheet of 4 x 2 tiles, 32 x 16 pixels
const std::string kPython = "/usr/bin/python3";

// The pixel value the test sheets hold at (x, y): a different pattern in every tile.
const char* kPattern = "def value(x, y): return (x + 2 * y + (x // 8) * 3 + (y // 8) * 5) % 16\n";

class TilesVerb : public ::testing::Test {
protected:
    void SetUp() override {
        image.resize(0x8000);
        for (size_t i = 0; i < image.size(); ++i) image[i] = static_cast<unsigned char>(i * 5 + 1);
        WriteFile(dir / "game.sfc", image);
    }
    std::string Python(const std::string& code) {
        return RunProgram(dir.path(), kPython, {"-c", std::string("from PIL import Image\n") + kPattern + code}).output;
    }
    VerbResult Tiles(const std::vector<std::string>& args) {
        std::vector<std::string> line = {"tiles"};
        line.insert(line.end(), args.begin(), args.end());
        return RunVerb(dir.path(), line);
    }
    // True when file differs from the original image only in the tiles and
    // they decode to the test pattern.
    void ExpectPatternImported(const std::string& file) {
        const Bytes now = ReadFile(dir / file);
        ASSERT_EQ(now.size(), image.size());
        for (size_t i = 0; i < image.size(); ++i)
            if (i < kAt || i >= kAt + kTiles * kTileBytes) {
                ASSERT_EQ(now[i], image[i]) << "byte " << i;
            }
        ASSERT_EQ(Trelvane_LoadROM((dir / file).c_str()), 1);
        unsigned char pixels[32 * 16];
        ASSERT_EQ(Trelvane_DecodeTiles(pixels, 32, 16, kAt, "SNES"), -1);
        Trelvane_FreeROM(-1);
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 32; ++x)
                ASSERT_EQ(pixels[y * 32 + x], (x + 2 * y + (x / 8) * 3 + (y / 8) * 5) % 16) << x << "," << y;
    }
    TempDir dir;
    Bytes image;
};

TEST_F(TilesVerb, PilSheetWithAReorderedPaletteImportsByColour) {
    // Greys 00, 11, ... FF in reverse order: index i holds the grey of value 15 - i.
    Python("im = Image.new('P', (32, 16))\n"
           "im.putpalette([c for i in range(16) for c in [(15 - i) * 17] * 3])\n"
           "im.putdata([15 - value(x, y) for y in range(16) for x in range(32)])\n"
           "im.save('pil sheet \xC3\xA4.png')\n");
    EXPECT_EQ(Tiles({"import", "game.sfc", "pil sheet \xC3\xA4.png", "0x1000", "--format", "snes", "-o", "out.sfc"}),
              (VerbResult{0, "out.sfc: 8 tiles of SNES written at 001000h\n", "trelvane tiles: game.sfc: header: none\n"}));
    ExpectPatternImported("out.sfc");
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
}

TEST_F(TilesVerb, ImageMagickSheetImportsTheSame) {
    if (!FileExists("/usr/bin/convert")) GTEST_SKIP() << "ImageMagick is not installed";
    Python("im = Image.new('RGB', (32, 16))\n"
           "im.putdata([(value(x, y) * 17,) * 3 for y in range(16) for x in range(32)])\n"
           "im.save('truecolour.png')\n");
    // ImageMagick sorts and trims the palette as it likes.
    RunProgram(dir.path(), "/usr/bin/convert", {"truecolour.png", "-type", "Palette", "magick.png"});
    EXPECT_EQ(Tiles({"import", "game.sfc", "magick.png", "$1000", "--format", "SNES"}).status, 0);
    ExpectPatternImported("game.sfc");
    WriteFile(dir / "game.sfc", image);
    EXPECT_EQ(Tiles({"import", "game.sfc", "truecolour.png", "1000h", "--format", "SNES"}).status, 0);
    ExpectPatternImported("game.sfc");
}

TEST_F(TilesVerb, IndexedSheetOfOtherColoursImportsByIndex) {
    Python("im = Image.new('P', (32, 16))\n"
           "im.putpalette([c for i in range(16) for c in (i * 16, 0, 255 - i)])\n"
           "im.putdata([value(x, y) for y in range(16) for x in range(32)])\n"
           "im.save('red.png')\n");
    EXPECT_EQ(Tiles({"import", "game.sfc", "red.png", "4096", "--format", "SNES"}).status, 0);
    ExpectPatternImported("game.sfc");
}

TEST_F(TilesVerb, ExportWritesGreysThatPilReadsAndRoundTrips) {
    WriteFile(dir / "Spiel (E) [T+Fre] \xC3\xA4.sfc", image);
    const std::string name = "Spiel (E) [T+Fre] \xC3\xA4.sfc";
    EXPECT_EQ(Tiles({"export", name, "0x1000", "--count", "20", "--format", "SNES", "-o", "sheet \xC3\xA4.png"}),
              (VerbResult{0, "sheet \xC3\xA4.png: 20 tiles of SNES from 001000h\n",
                          "trelvane tiles: " + name + ": header: none\n"}));
    EXPECT_EQ(Python("im = Image.open('sheet \xC3\xA4.png')\n"
                     "print(im.mode, im.size, im.getpalette()[:48] == [c for i in range(16) for c in [i * 17] * 3])\n"),
              "P (80, 16) True\n");
    for (const char* sheet : {"sheet \xC3\xA4.png", "copy.bmp"}) {
        if (std::string(sheet) == "copy.bmp") {
            ASSERT_EQ(Tiles({"export", name, "0x1000", "--count", "20", "--format", "SNES", "-o", sheet}).status, 0);
        }
        WriteFile(dir / "zero.sfc", Bytes(0x8000, 0));
        ASSERT_EQ(Tiles({"import", "zero.sfc", sheet, "0x1000", "--format", "SNES"}).status, 0) << sheet;
        const Bytes back = ReadFile(dir / "zero.sfc");
        EXPECT_EQ(Bytes(back.begin() + kAt, back.begin() + kAt + 20 * kTileBytes),
                  Bytes(image.begin() + kAt, image.begin() + kAt + 20 * kTileBytes));
        EXPECT_EQ(Bytes(back.begin() + kAt + 20 * kTileBytes, back.end()), Bytes(back.size() - kAt - 20 * kTileBytes, 0));
    }
}

TEST_F(TilesVerb, PaletteFileAndCountAndCopierHeader) {
    WriteFile(dir / "four.pal", Bytes{0xFF, 0, 0, 0, 0xFF, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF});
    Bytes headered(512 + image.size(), 0x33);
    std::copy(image.begin(), image.end(), headered.begin() + 512);
    WriteFile(dir / "game.smc", headered);
    ASSERT_EQ(Tiles({"export", "game.smc", "0", "--count", "4", "-o", "gb.png", "--palette", "four.pal"}).status, 0);
    EXPECT_EQ(Python("im = Image.open('gb.png')\nprint(im.size, im.getpalette()[:12])\n"),
              "(32, 8) [255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255]\n");
    // Only the first two tiles go back, behind the header that stays.
    WriteFile(dir / "blank.smc", Bytes(512 + image.size(), 0));
    EXPECT_EQ(Tiles({"import", "blank.smc", "gb.png", "0", "--count", "2", "--palette", "four.pal"}),
              (VerbResult{0, "blank.smc: 2 tiles of SNES2 written at 000000h\n",
                          "trelvane tiles: blank.smc: header: 512-byte copier header\n"}));
    const Bytes back = ReadFile(dir / "blank.smc");
    Bytes expected(512 + 32, 0);
    std::copy(image.begin(), image.begin() + 32, expected.begin() + 512);
    EXPECT_EQ(Bytes(back.begin(), back.begin() + 512 + 32), expected);
    EXPECT_EQ(Bytes(back.begin() + 512 + 32, back.end()), Bytes(back.size() - 512 - 32, 0));
}

TEST_F(TilesVerb, RefusalsLeaveEveryFileAsItWas) {
    Python("im = Image.new('RGB', (16, 8), (200, 10, 10))\nim.save('red.png')\n"
           "im = Image.new('P', (16, 8))\nim.putpalette([c for i in range(32) for c in (i, 1, 2)])\n"
           "im.putdata([20] * 128)\nim.save('wide.png')\n");
    WriteFile(dir / "sheet.txt", std::string("not a sheet"));
    WriteFile(dir / "bad.pal", Bytes(4, 0));
    WriteFile(dir / "notpng.png", std::string("not a png"));
    ASSERT_EQ(Tiles({"export", "game.sfc", "0", "--count", "1", "-o", "one.png", "--format", "SNES"}).status, 0);
    const std::string note = "trelvane tiles: game.sfc: header: none\n";
    const struct {
        std::vector<std::string> args;
        std::string errors;
    } cases[] = {
        {{"import", "game.sfc", "red.png", "0", "--format", "SNES"},
         note + "trelvane tiles: red.png: the colour #C80A0A is not in the palette, and the picture has no palette of "
                "at most 16 colours to read it by.\n"},
        {{"import", "game.sfc", "wide.png", "0", "--format", "SNES"},
         note + "trelvane tiles: wide.png: the colour #140102 is not in the palette, and the picture has no palette "
                "of at most 16 colours to read it by.\n"},
        {{"import", "game.sfc", "notpng.png", "0", "--format", "SNES"},
         note + "trelvane tiles: notpng.png does not seem to be a valid PNG file.\n"},
        {{"import", "game.sfc", "missing.png", "0", "--format", "SNES"}, note + "trelvane tiles: Error opening missing.png.\n"},
        {{"import", "game.sfc", "one.png", "0x7FF0", "--format", "SNES"},
         note + "trelvane tiles: 1 tiles of SNES at 0x7FF0 do not lie inside the image (32768 bytes)\n"},
        {{"import", "game.sfc", "one.png", "0", "--format", "SNES", "--count", "2"},
         note + "trelvane tiles: one.png holds 1 tiles, not 2\n"},
        {{"import", "game.sfc", "one.png", "0", "--format", "SNES3"},
         note + "trelvane tiles: unknown tile format 'SNES3' (NES, SNES2, SNES, GB1, GB)\n"},
        {{"import", "game.sfc", "sheet.txt", "0"}, note + "trelvane tiles: sheet.txt: tile sheets are .png or .bmp files\n"},
        {{"export", "game.sfc", "0", "--count", "1", "-o", "x.bmp", "--palette", "bad.pal"},
         "trelvane tiles: --palette goes with .png sheets\n"},
        {{"export", "game.sfc", "0", "--count", "1", "-o", "x.png", "--palette", "bad.pal"},
         "trelvane tiles: bad.pal: a palette is 1 to 16 RGB triplets (3 to 48 bytes), not 4 bytes\n"},
        {{"export", "game.sfc", "0", "--count", "0", "-o", "x.png"},
         note + "trelvane tiles: 0 tiles of SNES2 at 0 do not lie inside the image (32768 bytes)\n"},
        {{"export", "game.sfc", "0", "--count", "1025", "-o", "x.png", "--format", "SNES"},
         note + "trelvane tiles: 1025 tiles of SNES at 0 do not lie inside the image (32768 bytes)\n"},
        {{"export", "game.sfc", "0", "--count", "1", "-o", "no/folder/x.png"},
         note + "trelvane tiles: Error creating no/folder/x.png.\n"},
    };
    const Bytes sheet = ReadFile(dir / "one.png");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[2] + " " + c.args[3]);
        EXPECT_EQ(Tiles(c.args), (VerbResult{1, "", c.errors}));
        EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
        EXPECT_EQ(ReadFile(dir / "one.png"), sheet);
        EXPECT_FALSE(FileExists(dir / "x.png") || FileExists(dir / "x.bmp"));
    }
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"export", "game.sfc", "2AE0", "--count", "1", "-o", "x.png"},
          {"export", "game.sfc", "0", "--count", "12q", "-o", "x.png"}, {"export", "game.sfc", "0", "-o", "x.png"},
          {"import", "game.sfc", "one.png"}, {"resize", "game.sfc"}, {}}) {
        ExpectRefusal(Tiles(args));
    }
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
}

}  // namespace
