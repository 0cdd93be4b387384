// The exported patch-file calls, the CPU descriptions and the symbol table.
#include <gtest/gtest.h>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "asm/cpu_description.h"
#include "asm/symbol_table.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

int CurrentRomByte(int position) { return CurrentRom().data[position]; }

class PatchFileCallsTest : public ::testing::Test {
protected:
    void TearDown() override {
        Trelvane_PatchFile_Close();
        Trelvane_FreeROM(-1);
    }
    TempDir dir;
};

TEST_F(PatchFileCallsTest, NeedAnImageAndAnOpenFile) {
    Trelvane_FreeROM(-1);
    EXPECT_EQ(Trelvane_PatchFile_Open((dir / "x.asm").c_str()), 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Invalid ROM ID: 0");
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLERR_NESTED);
    EXPECT_STREQ(Trelvane_GetLastError(), "No patch file is open.");
}

TEST_F(PatchFileCallsTest, ProcessRunsToTheEndAndStaysThere) {
    WriteFile(dir / "game.smc", Bytes(512 + 0x10000, 0));
    WriteFile(dir / "s.asm", ".PATCH 10h: 01\n.FOO\n.PATCH 11h: 02\n");
    ASSERT_NE(Trelvane_LoadROM((dir / "game.smc").c_str()), 0);
    EXPECT_EQ(Trelvane_PatchFile_Open((dir / "missing.asm").c_str()), 0);
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLERR_FILE_NOREAD);
    ASSERT_EQ(Trelvane_PatchFile_Open((dir / "s.asm").c_str()), 1);
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "s.asm:2,1:Unknown command: .FOO");
    EXPECT_EQ(LastError().line, 0);
    EXPECT_EQ(Trelvane_PatchFile_Process(), 1);
    EXPECT_EQ(Trelvane_PatchFile_Process(), 1);
    EXPECT_EQ(CurrentRomByte(0x10), 0x01);
    EXPECT_EQ(CurrentRomByte(0x11), 0x02);
    Trelvane_PatchFile_Close();
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
}

TEST_F(PatchFileCallsTest, NothingToProcessAfterAFailedOpen) {
    WriteFile(dir / "game.smc", Bytes(512 + 0x10000, 0));
    ASSERT_NE(Trelvane_LoadROM((dir / "game.smc").c_str()), 0);
    EXPECT_EQ(Trelvane_PatchFile_Open((dir / "missing.asm").c_str()), 0);
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "No patch file is open.");
}

TEST_F(PatchFileCallsTest, AFreedOrReplacedImageIsNeverWritten) {
    WriteFile(dir / "game.smc", Bytes(512 + 0x10000, 0));
    WriteFile(dir / "s.asm", ".PATCH 10h: 01\n.PATCH 11h: 02\n");
    for (const bool reload : {false, true}) {
        ASSERT_NE(Trelvane_LoadROM((dir / "game.smc").c_str()), 0);
        ASSERT_EQ(Trelvane_PatchFile_Open((dir / "s.asm").c_str()), 1);
        Trelvane_FreeROM(-1);
        if (reload) {
            ASSERT_NE(Trelvane_LoadROM((dir / "game.smc").c_str()), 0);
        }
        EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
        EXPECT_EQ(Trelvane_GetLastErrorCode(), TLERR_PATCH_IMAGE_GONE);
        EXPECT_STREQ(Trelvane_GetLastError(), "The ROM image of the open patch file was freed or replaced.");
        EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
        if (reload) {
            EXPECT_EQ(CurrentRomByte(0x10), 0x00);
        }
        Trelvane_PatchFile_Close();
        Trelvane_FreeROM(-1);
    }
}

TEST(CpuDescriptionTest, DescriptionsByImageType) {
    const struct {
        int type;
        const char* name;
    } cases[] = {{ROM_SNES, "65816"}, {ROM_NES, "asm"}, {ROM_GB, "asm"}};
    for (const auto& c : cases) EXPECT_STREQ(MakeCpuDescription(c.type)->Name(), c.name);

    unsigned char memory[6] = {};
    CpuDescription base;
    base.SetMemory(memory, 6);
    EXPECT_TRUE(base.Inside(0, 6));
    EXPECT_FALSE(base.Inside(5, 2));
    EXPECT_FALSE(base.Inside(-1, 1));
    EXPECT_EQ(FirstOpcode(base.Instructions(), 42), -1);
}

TEST(SymbolTableTest, HoldsTenThousandRecords) {
    SymbolTable table;
    for (int i = 0; i < MAX_SYMBOLS; ++i) ASSERT_EQ(table.Add(SymbolRecord("s", SYMBOL_CONSTANT, i)), i);
    EXPECT_EQ(table.Add(SymbolRecord("s", SYMBOL_CONSTANT, 0)), -1);
    EXPECT_EQ(table.Count(), MAX_SYMBOLS);
    EXPECT_EQ(table.Find(9999)->value, 9999);
    EXPECT_EQ(table.Find(MAX_SYMBOLS), nullptr);
    EXPECT_EQ(table.Find(-1), nullptr);
    EXPECT_STREQ(SymbolRecord(std::string(30, 'n'), SYMBOL_VARIABLE, 0).name, std::string(24, 'n').c_str());
}

}  // namespace
