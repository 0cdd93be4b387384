#include "app/tile_commands.h"

#include <gtest/gtest.h>

#include "support/test_support.h"
#include "trelvane.h"

namespace {

class TileCommandsTest : public ::testing::Test {
protected:
    TempDir dir;
};

TEST_F(TileCommandsTest, DumpThenInsertRoundTripsCarriesEditsAndRefusesWithoutChanges) {
    // 512 header bytes, then 0x1020 bytes: the sheet at 0x28 runs past the end.
    Bytes rom(512 + 0x1020);
    for (size_t i = 0; i < rom.size(); ++i) rom[i] = static_cast<unsigned char>(i * 53 + 11);
    rom[512 + 0x28] = 0xF0;
    rom[512 + 0x29] = 0xCC;
    WriteFile(dir / "game.smc", rom);
    EXPECT_EQ(RunTrelvane(dir.path(), {"game.smc", "b", "28h", "sheet.bmp"}).status, 0);
    Bytes sheet = ReadFile(dir / "sheet.bmp");
    ASSERT_EQ(sheet.size(), 118u + 64 * 128);
    const size_t topRow = 118 + 127 * 64, bottomRight = 118 + 56;  // rows are stored bottom-up
    EXPECT_EQ(Bytes(sheet.begin() + topRow, sheet.begin() + topRow + 4), (Bytes{0x33, 0x11, 0x22, 0x00}));
    EXPECT_EQ(Bytes(sheet.begin() + bottomRight, sheet.begin() + bottomRight + 8),
              (Bytes{0x32, 0x01, 0x32, 0x21, 0, 0, 0, 0}));

    RunResult insert = RunTrelvane(dir.path(), {"game.smc", "F", "40", "sheet.bmp"});
    EXPECT_EQ(insert.output, "sheet.bmp: Graphics updated\n");
    EXPECT_EQ(insert.status, 0);
    EXPECT_EQ(ReadFile(dir / "game.smc"), rom);
    sheet[topRow] = 0x03;  // the top-left pixel becomes 0
    WriteFile(dir / "sheet.bmp", sheet);
    ASSERT_EQ(RunTrelvane(dir.path(), {"game.smc", "f", "28H", "sheet.bmp", "snes2"}).status, 0);
    rom[512 + 0x28] = 0x70;
    rom[512 + 0x29] = 0x4C;

    // Failures print the error, write no sheet and leave the image as it was.
    std::filesystem::create_directory(dir / "sheets");
    WriteFile(dir / "tiles.smc", rom);
    const std::pair<std::vector<std::string>, const char*> failures[] = {
        // The command line refuses exactly the formats the codecs do not know.
        {{"game.smc", "b", "0", "out.bmp", "SNES1"}, "usage: trelvane <rom> b <address> <bmpfile> [format] \n"},
        {{"missing.smc", "b", "0", "out.bmp"}, "Error opening missing.smc.\n"},
        {{"game.smc", "b", "0", "no/out.bmp"}, "Error creating no/out.bmp.\n"},
        {{"game.smc", "f", "0", "sheets"}, "Error opening sheets.\n"},
        {{"game.smc", "f", "0", "tiles.smc"}, "tiles.smc does not seem to be a valid bitmap file.\n"},
        {{"game.smc", "f", "0", "sheet.bmp", "NES1"}, "usage: trelvane <rom> f <address> <bmpfile> [format] \n"},
    };
    for (const auto& [args, output] : failures) {
        RunResult result = RunTrelvane(dir.path(), args);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.status, 255);
    }
    EXPECT_FALSE(FileExists(dir / "out.bmp"));
    EXPECT_EQ(ReadFile(dir / "game.smc"), rom);
    EXPECT_STREQ(TileFormatForRomName("a.b/GAME.Gbc"), "GB");
    EXPECT_STREQ(TileFormatForRomName("nes"), "???");
}

TEST_F(TileCommandsTest, SheetsTravelThroughAnOrdinaryImageLibrary) {
    const std::string python = "/usr/bin/python3", script = TRELVANE_SOURCE_DIR "/tests/app/bmp_pattern.py";
    if (RunProgram(dir.path(), python, {"-c", "import PIL"}).status != 0) GTEST_SKIP() << "PIL is not installed";
    WriteFile(dir / "game.smc", Bytes(512 + 4096));
    ASSERT_EQ(RunProgram(dir.path(), python, {script, "make", "drawn.bmp"}).status, 0);
    ASSERT_EQ(RunTrelvane(dir.path(), {"game.smc", "f", "0", "drawn.bmp"}).status, 0);
    ASSERT_EQ(RunTrelvane(dir.path(), {"game.smc", "b", "0", "dumped.bmp"}).status, 0);
    EXPECT_EQ(RunProgram(dir.path(), python, {script, "check", "dumped.bmp"}).status, 0);
}

// Sheets saved by an image library and by a converter in each layout they
// write: f puts the indices the file holds into the image, tile by tile, or
// refuses the file and leaves the image as it was.
TEST_F(TileCommandsTest, InsertsWhatOtherProgramsSaveAndRefusesTheFormsNotRead) {
    const std::string python = "/usr/bin/python3", script = TRELVANE_SOURCE_DIR "/tests/app/bmp_pattern.py";
    if (RunProgram(dir.path(), python, {"-c", "import PIL"}).status != 0) GTEST_SKIP() << "PIL is not installed";
    if (!FileExists("/usr/bin/convert")) GTEST_SKIP() << "ImageMagick is not installed";
    const Bytes rom(512 + 8192, 0x5A);  // room for a 128 x 128 sheet of 4-bit tiles
    for (const char* layout : {"pil-8bit", "magick-4bit", "magick-124-byte-header"}) {
        // 18 pixels make padded rows in both 4-bit and 8-bit files.
        for (const char* width : {"128", "18"}) {
            SCOPED_TRACE(std::string(layout) + " " + width);
            WriteFile(dir / "game.smc", rom);
            ASSERT_EQ(RunProgram(dir.path(), python, {script, "save", layout, width, "16", "drawn.bmp"}).status, 0);
            EXPECT_EQ(RunTrelvane(dir.path(), {"game.smc", "f", "0", "drawn.bmp", "SNES"}),
                      (RunResult{0, "drawn.bmp: Graphics updated\n"}));
            ASSERT_EQ(RunTrelvane(dir.path(), {"game.smc", "b", "0", "dumped.bmp", "SNES"}).status, 0);
            EXPECT_EQ(RunProgram(dir.path(), python, {script, "tiles", "drawn.bmp", "dumped.bmp"}).status, 0);
        }
    }
    const std::pair<const char*, const char*> refused[] = {
        {"magick-24bit", "24-bit bmp not supported.\n"},
        {"magick-1bit", "1-bit bmp not supported.\n"},
        {"magick-rle8", "compressed bmp not supported.\n"},
    };
    WriteFile(dir / "game.smc", rom);
    for (const auto& [layout, output] : refused) {
        ASSERT_EQ(RunProgram(dir.path(), python, {script, "save", layout, "128", "16", "drawn.bmp"}).status, 0);
        EXPECT_EQ(RunTrelvane(dir.path(), {"game.smc", "f", "0", "drawn.bmp", "SNES"}), (RunResult{255, output}));
    }
    EXPECT_EQ(ReadFile(dir / "game.smc"), rom);
}

}  // namespace
