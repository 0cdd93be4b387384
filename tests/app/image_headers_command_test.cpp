// Which copier header the letter commands assume: by the file size for
// Super NES images, the extension deciding only sizes that are no multiple
// of 512 bytes; NES trainers go with the iNES header.
#include <gtest/gtest.h>

#include "support/test_support.h"

namespace {

// An image of size bytes holding "HI" (48 49) at offset at, behind header
// bytes of 0x48 0x49 that a wrong header length would find instead.
Bytes ImageWithText(size_t header, size_t size, size_t at) {
    Bytes file(header + size, 0);
    for (size_t i = 0; i + 1 < header; i += 2) file[i] = 0x48, file[i + 1] = 0x49;
    file[header + at] = 0x48;
    file[header + at + 1] = 0x49;
    return file;
}

TEST(ImageHeadersCommand, LocateFindsTheTextAtItsImageOffset) {
    TempDir dir;
    WriteFile(dir / "t.tbl", std::string("48=H\n49=I\n/FF\n"));
    const struct {
        const char* name;
        size_t header, size;
    } cases[] = {
        {"plain.sfc", 0, 0x8000},    {"copier.sfc", 512, 0x8000}, {"plain.smc", 0, 0x8000},
        {"copier.smc", 512, 0x8000}, {"copier.swc", 512, 0x8000}, {"plain.fig", 0, 0x8000},
        // Sizes that are no multiple of 512: the extension's default.
        {"odd.sfc", 0, 0x8000 + 100}, {"odd.smc", 512, 0x8000 + 100}, {"ODD.SWC", 512, 0x8000 + 300},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        WriteFile(dir / c.name, ImageWithText(c.header, c.size, 0x4000));
        EXPECT_EQ(RunTrelvane(dir.path(), {c.name, "l", "t.tbl", "HI"}), (RunResult{0, "   1 004000h\n*  2 004000h\n"}));
    }
}

TEST(ImageHeadersCommand, NesTrainerIsSkippedWithTheHeader) {
    TempDir dir;
    WriteFile(dir / "t.tbl", std::string("48=H\n49=I\n/FF\n"));
    Bytes file = ImageWithText(16 + 512, 0x8000, 0x100);
    const unsigned char header[16] = {'N', 'E', 'S', 0x1A, 2, 0, 0x04};
    std::copy(header, header + 16, file.begin());
    WriteFile(dir / "trainer.nes", file);
    EXPECT_EQ(RunTrelvane(dir.path(), {"trainer.nes", "l", "t.tbl", "HI"}), (RunResult{0, "   1 000100h\n*  2 000100h\n"}));
}

TEST(ImageHeadersCommand, SavingKeepsTheHeaderTheSizeGave) {
    TempDir dir;
    WriteFile(dir / "t.tbl", std::string("48=H\n49=I\n/FF\n"));
    WriteFile(dir / "s.txt", std::string("load \"t.tbl\"\ntextaddress 10h\n[0000]\nIH\n"));
    for (const size_t header : {size_t{0}, size_t{512}}) {
        SCOPED_TRACE(header);
        const Bytes before = ImageWithText(header, 0x8000, 0x4000);
        WriteFile(dir / "game.smc", before);
        EXPECT_EQ(RunTrelvane(dir.path(), {"game.smc", "t", "s.txt"}).status, 0);
        Bytes expected = before;
        expected[header + 0x10] = 0x49, expected[header + 0x11] = 0x48, expected[header + 0x12] = 0xFF;
        EXPECT_EQ(ReadFile(dir / "game.smc"), expected);
    }
}

}  // namespace
