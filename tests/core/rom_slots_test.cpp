#include "core/rom_slots.h"

#include <gtest/gtest.h>

#include "core/last_error.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

class RomSlotsTest : public ::testing::Test {
protected:
    void TearDown() override { Trelvane_FreeROM(-1); }
    TempDir dir;
};

Bytes Sequence(size_t length) {
    Bytes bytes(length);
    for (size_t i = 0; i < length; ++i) bytes[i] = static_cast<unsigned char>(i * 7 + 3);
    return bytes;
}

TEST_F(RomSlotsTest, LoadDropsTheHeaderFixedByTheExtension) {
    Bytes file = Sequence(512 + 64);
    WriteFile(dir / "GAME.SMC", file);
    ASSERT_EQ(Trelvane_LoadROM((dir / "GAME.SMC").c_str()), 1);
    EXPECT_EQ(CurrentRom.size, 64);
    EXPECT_EQ(CurrentRom.headerLength, 512);
    EXPECT_EQ(CurrentRom.type, ROM_SNES);
    EXPECT_EQ(Bytes(CurrentRom.data, CurrentRom.data + 64), Bytes(file.begin() + 512, file.end()));
    Trelvane_FreeROM(-1);

    WriteFile(dir / "game.nes", Sequence(16 + 8));
    ASSERT_EQ(Trelvane_LoadROM((dir / "game.nes").c_str()), 1);
    EXPECT_EQ(CurrentRom.size, 8);
    EXPECT_EQ(CurrentRom.type, ROM_NES);
}

TEST_F(RomSlotsTest, LoadRefusesUnknownOrMissingExtensions) {
    EXPECT_EQ(Trelvane_LoadROM("game.sfc"), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_BADEXT);
    EXPECT_EQ(LastError().data[0], ".sfc");
    EXPECT_EQ(Trelvane_LoadROM("dir.v2/game"), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_NOEXT);
    EXPECT_EQ(LastError().file, "dir.v2/game");
    EXPECT_EQ(Trelvane_LoadROM("game.fr.smc"), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_BADEXT);
    EXPECT_EQ(LastError().data[0], ".fr.smc");
    EXPECT_EQ(Trelvane_LoadROM("missing.gb"), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_NOREAD);
}

TEST_F(RomSlotsTest, OneSlotOnlyUntilFreed) {
    WriteFile(dir / "a.gb", Sequence(32));
    ASSERT_EQ(Trelvane_LoadROM((dir / "a.gb").c_str()), 1);
    EXPECT_EQ(Trelvane_LoadROM((dir / "a.gb").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_TOOMANY);
    EXPECT_EQ(LastError().data[0], "ROMs");
    Trelvane_FreeROM(-1);
    EXPECT_EQ(CurrentRom.data, nullptr);
    EXPECT_FALSE(RequireCurrentRom());
    EXPECT_EQ(Trelvane_LoadROM((dir / "a.gb").c_str()), 1);
}

TEST_F(RomSlotsTest, UseAcceptsOnlyLoadedHandles) {
    EXPECT_EQ(Trelvane_UseROM(1), 0);
    EXPECT_EQ(LastError().code, TLERR_ID_BAD);
    EXPECT_EQ(LastError().data[1], "1");
    WriteFile(dir / "a.gb", Sequence(32));
    ASSERT_EQ(Trelvane_LoadROM((dir / "a.gb").c_str()), 1);
    EXPECT_EQ(Trelvane_UseROM(1), 1);
    for (long bad : {0L, 2L, -1L}) {
        EXPECT_EQ(Trelvane_UseROM(bad), 0);
        EXPECT_EQ(LastError().data[0], "ROM");
        EXPECT_EQ(LastError().data[1], std::to_string(bad));
    }
}

TEST_F(RomSlotsTest, FileShorterThanItsHeaderIsRefused) {
    WriteFile(dir / "short.smc", Sequence(100));
    EXPECT_EQ(Trelvane_LoadROM((dir / "short.smc").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_INVALID);
    EXPECT_EQ(LastError().data[0], "ROM image");
    EXPECT_FALSE(RequireCurrentRom());
}

TEST_F(RomSlotsTest, SaveKeepsTheFilesHeaderAndTail) {
    Bytes file = Sequence(512 + 32);
    WriteFile(dir / "a.smc", file);
    ASSERT_EQ(Trelvane_LoadROM((dir / "a.smc").c_str()), 1);
    CurrentRom.data[0] = 0xEE;
    Bytes other = Sequence(512 + 40);
    for (size_t i = 0; i < 512; ++i) other[i] = 0x55;
    WriteFile(dir / "b.smc", other);
    ASSERT_EQ(Trelvane_SaveROM((dir / "b.smc").c_str()), 1);
    Bytes expected = other;
    std::copy(file.begin() + 512, file.end(), expected.begin() + 512);
    expected[512] = 0xEE;
    EXPECT_EQ(ReadFile(dir / "b.smc"), expected);

    EXPECT_EQ(Trelvane_SaveROM((dir / "missing.smc").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_NOWRITE);
    EXPECT_FALSE(FileExists(dir / "missing.smc"));
}

TEST_F(RomSlotsTest, SaveCorrectsTheGameBoyGlobalChecksum) {
    Bytes file = Sequence(0x400);
    file[0x14E] = 0xAB;
    file[0x14F] = 0xCD;
    WriteFile(dir / "a.gb", file);
    ASSERT_EQ(Trelvane_LoadROM((dir / "a.gb").c_str()), 1);
    ASSERT_EQ(Trelvane_SaveROM((dir / "a.gb").c_str()), 1);
    Bytes saved = ReadFile(dir / "a.gb");
    unsigned sum = 0;
    for (size_t i = 0; i < saved.size(); ++i)
        if (i != 0x14E && i != 0x14F) sum += saved[i];
    EXPECT_EQ((saved[0x14E] << 8 | saved[0x14F]), static_cast<int>(sum & 0xFFFF));

    // An image too short for a cartridge header is saved unchanged.
    Trelvane_FreeROM(-1);
    WriteFile(dir / "tiny.gb", Sequence(0x14F));
    ASSERT_EQ(Trelvane_LoadROM((dir / "tiny.gb").c_str()), 1);
    ASSERT_EQ(Trelvane_SaveROM((dir / "tiny.gb").c_str()), 1);
    EXPECT_EQ(ReadFile(dir / "tiny.gb"), Sequence(0x14F));
}

}  // namespace
