#include "core/rom_slots.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <tuple>

#include "core/last_error.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

Bytes Sequence(size_t length) {
    Bytes bytes(length);
    for (size_t i = 0; i < length; ++i) bytes[i] = static_cast<unsigned char>(i * 7 + 3);
    return bytes;
}

class RomSlotsTest : public ::testing::Test {
protected:
    void TearDown() override { Trelvane_FreeROM(-1); }
    long Load(const std::string& name, size_t length) {
        WriteFile(dir / name, Sequence(length));
        return Trelvane_LoadROM((dir / name).c_str());
    }
    TempDir dir;
};

TEST_F(RomSlotsTest, LoadDropsTheHeaderFixedByTheExtension) {
    struct Case {
        const char* name;
        int32_t header, type;
    } cases[] = {{"GAME.SMC", 512, ROM_SNES}, {"a.fig", 512, ROM_SNES}, {"a.Nes", 16, ROM_NES}, {"a.gbc", 0, ROM_GB}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_EQ(Load(c.name, c.header + 64), 1);
        EXPECT_EQ(CurrentRom().headerLength, c.header);
        EXPECT_EQ(CurrentRom().type, c.type);
        Bytes image = Sequence(c.header + 64);
        image.erase(image.begin(), image.begin() + c.header);
        EXPECT_EQ(Bytes(CurrentRom().data, CurrentRom().data + CurrentRom().size), image);
        Trelvane_FreeROM(-1);
    }
}

TEST_F(RomSlotsTest, LoadRefusals) {
    WriteFile(dir / "short.smc", Sequence(100));
    const std::tuple<std::string, int, std::string> cases[] = {
        {"game.bin", TLERR_FILE_BADEXT, ".bin"},
        {"game.fr.smc", TLERR_FILE_BADEXT, ".fr.smc"},
        {"dir.v2/game", TLERR_FILE_NOEXT, ""},
        {"missing.gb", TLERR_FILE_NOREAD, ""},
        {dir / "short.smc", TLERR_FILE_INVALID, "ROM image"},  // shorter than its header
    };
    for (const auto& [path, code, data0] : cases) {
        EXPECT_EQ(Trelvane_LoadROM(path.c_str()), 0);
        EXPECT_EQ(std::tuple(LastError().code, LastError().file, LastError().data[0]), std::tuple(code, path, data0));
    }
    EXPECT_FALSE(RequireCurrentRom());
}

TEST_F(RomSlotsTest, OneSlotAndItsHandle) {
    EXPECT_EQ(Trelvane_UseROM(1), 0);
    ASSERT_EQ(Load("a.gb", 32), 1);
    EXPECT_EQ(Load("a.gb", 32), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_TOOMANY);
    EXPECT_EQ(LastError().data[0], "ROMs");
    EXPECT_EQ(Trelvane_UseROM(1), 1);
    for (long bad : {0L, 2L, -1L}) {
        EXPECT_EQ(Trelvane_UseROM(bad), 0);
        EXPECT_EQ(LastError().code, TLERR_ID_BAD);
        EXPECT_EQ(LastError().data[0] + LastError().data[1], "ROM" + std::to_string(bad));
    }
    Trelvane_FreeROM(-1);
    EXPECT_EQ(CurrentRom().data, nullptr);
    EXPECT_FALSE(RequireCurrentRom());
    EXPECT_EQ(Trelvane_UseROM(1), 0);
    EXPECT_EQ(Load("a.gb", 32), 1);
}

TEST_F(RomSlotsTest, SaveKeepsTheFilesHeaderAndTail) {
    ASSERT_EQ(Load("a.smc", 512 + 32), 1);
    CurrentRom().data[0] = 0xEE;
    Bytes other(512, 0x55), tail = Sequence(512 + 40);
    other.insert(other.end(), tail.begin() + 512, tail.end());
    WriteFile(dir / "b.smc", other);
    ASSERT_EQ(Trelvane_SaveROM((dir / "b.smc").c_str()), 1);
    Bytes expected = other;
    expected[512] = 0xEE;  // the image's 32 bytes equal the file's but for this one
    EXPECT_EQ(ReadFile(dir / "b.smc"), expected);

    // A file shorter than its header gets zeros for the bytes it lacks.
    WriteFile(dir / "short.smc", Bytes{1, 2, 3});
    chmod((dir / "short.smc").c_str(), 0604);
    ASSERT_EQ(Trelvane_SaveROM((dir / "short.smc").c_str()), 1);
    expected = Bytes{1, 2, 3};
    expected.resize(512, 0);
    expected.insert(expected.end(), CurrentRom().data, CurrentRom().data + CurrentRom().size);
    EXPECT_EQ(ReadFile(dir / "short.smc"), expected);
    EXPECT_EQ(std::filesystem::status(dir / "short.smc").permissions(), std::filesystem::perms(0604));

    // Saves never create a file, nor replace anything but a regular file.
    std::filesystem::create_directory(dir / "folder.smc");
    for (const char* name : {"missing.smc", "folder.smc", "no/a.smc"}) {
        EXPECT_EQ(Trelvane_SaveROM((dir / name).c_str()), 0);
        EXPECT_EQ(LastError().code, TLERR_FILE_NOWRITE);
    }
    EXPECT_FALSE(FileExists(dir / "missing.smc"));
    EXPECT_TRUE(std::filesystem::is_directory(dir / "folder.smc"));
}

TEST_F(RomSlotsTest, ImagesAboveTheCeilingAreRefusedUnread) {
    // Sparse files: the sizes cost no room.
    WriteFile(dir / "top.nes", Bytes());
    std::filesystem::resize_file(dir / "top.nes", TRELVANE_ROM_MAX_SIZE);
    WriteFile(dir / "over.nes", Bytes());
    std::filesystem::resize_file(dir / "over.nes", TRELVANE_ROM_MAX_SIZE + 1);
    EXPECT_EQ(Trelvane_LoadROM((dir / "over.nes").c_str()), 0);
    EXPECT_EQ(LastError().code, TLERR_FILE_TOOLARGE);
    EXPECT_STREQ(Trelvane_GetLastError(), (dir / "over.nes" + " is larger than 64 MiB.").c_str());
    ASSERT_EQ(Trelvane_LoadROM((dir / "top.nes").c_str()), 1);
    EXPECT_EQ(CurrentRom().size, TRELVANE_ROM_MAX_SIZE - 16);
}

TEST_F(RomSlotsTest, SaveCorrectsTheGameBoyGlobalChecksum) {
    ASSERT_EQ(Load("a.gb", 0x400), 1);
    ASSERT_EQ(Trelvane_SaveROM((dir / "a.gb").c_str()), 1);
    Bytes saved = ReadFile(dir / "a.gb");
    unsigned sum = 0;
    for (size_t i = 0; i < saved.size(); ++i) sum += i == 0x14E || i == 0x14F ? 0 : saved[i];
    EXPECT_EQ((saved[0x14E] << 8 | saved[0x14F]), static_cast<int>(sum & 0xFFFF));

    // An image too short for a cartridge header is saved unchanged.
    Trelvane_FreeROM(-1);
    ASSERT_EQ(Load("tiny.gb", 0x14F), 1);
    ASSERT_EQ(Trelvane_SaveROM((dir / "tiny.gb").c_str()), 1);
    EXPECT_EQ(ReadFile(dir / "tiny.gb"), Sequence(0x14F));
}

}  // namespace
