// Every exported function handed bad arguments (null pointers, unknown IDs,
// sizes and handles out of range, calls in the wrong order): it returns its
// failure value with the last error saying why, and never crashes.
#include <gtest/gtest.h>

#include <string>

#include "support/test_support.h"
#include "trelvane.h"

namespace {

class BadArgumentsTest : public ::testing::Test {
protected:
    void SetUp() override { Trelvane_FreeROM(-1); }
    void TearDown() override { Trelvane_FreeROM(-1); }

    // Loads a 64 KiB Game Boy image of zeros.
    void LoadImage() {
        WriteFile(dir / "game.gb", Bytes(0x10000));
        ASSERT_NE(Trelvane_LoadROM((dir / "game.gb").c_str()), 0);
    }
    static std::string Error() { return Trelvane_GetLastError(); }
    TempDir dir;
};

TEST_F(BadArgumentsTest, MessagesAndErrors) {
    EXPECT_EQ(Trelvane_LoadROM("game"), 0);
    Trelvane_SetStringData(-1, "x");
    Trelvane_SetStringData(4, "x");
    Trelvane_SetStringData(0, nullptr);
    Trelvane_SetStringFile(nullptr);
    EXPECT_EQ(Error(), "You must specify an extension on .");
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLERR_FILE_NOEXT);
    EXPECT_EQ(std::string(Trelvane_GetString(12345)), "Unknown error");
}

TEST_F(BadArgumentsTest, RomImages) {
    EXPECT_EQ(Trelvane_LoadROM(nullptr), 0);
    EXPECT_EQ(Error(), "You must specify an extension on .");
    EXPECT_EQ(Trelvane_SaveROM(nullptr), 0);
    EXPECT_EQ(Error(), "Invalid ROM ID: 0");
    for (long handle : {0L, 2L, -5L}) {
        Trelvane_FreeROM(handle);  // ignored
        EXPECT_EQ(Trelvane_UseROM(handle), 0);
        EXPECT_EQ(Error(), "Invalid ROM ID: " + std::to_string(handle));
    }
    LoadImage();
    EXPECT_EQ(Trelvane_SaveROM(nullptr), 0);
    EXPECT_EQ(Error(), "Error opening  for writing.");
}

TEST_F(BadArgumentsTest, Patches) {
    for (auto create : {Trelvane_CreateIPS, Trelvane_CreateBPS}) {
        EXPECT_EQ(create(nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(Error(), "Error opening .");
    }
    for (auto apply : {Trelvane_ApplyIPS, Trelvane_ApplyBPS, Trelvane_ApplyUPS}) {
        EXPECT_EQ(apply(nullptr, nullptr), 0);
        EXPECT_EQ(Error(), "Error opening .");
    }
}

TEST_F(BadArgumentsTest, PatchScripts) {
    Trelvane_PatchFile_Close();  // nothing open: nothing happens
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
    EXPECT_EQ(Error(), "No patch file is open.");
    EXPECT_EQ(Trelvane_PatchFile_Open(nullptr), 0);
    EXPECT_EQ(Error(), "Invalid ROM ID: 0");
    LoadImage();
    EXPECT_EQ(Trelvane_PatchFile_Open(nullptr), 0);
    EXPECT_EQ(Error(), "Error opening .");
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);  // the failed open left nothing to run
    EXPECT_EQ(Error(), "No patch file is open.");
    Trelvane_PatchFile_Close();
    Trelvane_PatchFile_Close();
    // The image freed under an open patch file: later statements are refused.
    WriteFile(dir / "fix.txt", std::string(".PATCH 0: EA\n"));
    ASSERT_EQ(Trelvane_PatchFile_Open((dir / "fix.txt").c_str()), 1);
    Trelvane_FreeROM(-1);
    EXPECT_EQ(Trelvane_PatchFile_Process(), 0);
    EXPECT_EQ(Error(), "The ROM image of the open patch file was freed or replaced.");
    Trelvane_PatchFile_Close();
}

TEST_F(BadArgumentsTest, TablesAndText) {
    long length = 7;
    EXPECT_EQ(Trelvane_LoadFont(nullptr), 0);
    EXPECT_EQ(Error(), "Error opening .");
    EXPECT_EQ(Trelvane_SaveFont(1, nullptr), 0);
    EXPECT_EQ(Error(), "Invalid font ID: 1");
    EXPECT_EQ(Trelvane_Encode(3, "A", &length), nullptr);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(Error(), "Invalid font ID: 3");
    EXPECT_EQ(Trelvane_Decode(1, 0, nullptr), nullptr);
    EXPECT_EQ(Error(), "Invalid ROM ID: 0");
    LoadImage();
    EXPECT_EQ(Trelvane_Decode(1, -1, &length), nullptr);
    EXPECT_EQ(Error(), "Invalid address ID: -1");
    EXPECT_EQ(Trelvane_Decode(1, 0x10000, nullptr), nullptr);
    EXPECT_EQ(Error(), "Invalid address ID: 65536");
}

TEST_F(BadArgumentsTest, PointersSearchAndInsertion) {
    EXPECT_EQ(Trelvane_FindPointerTable(1, 0), nullptr);
    EXPECT_EQ(Error(), "Invalid ROM ID: 0");
    EXPECT_EQ(Trelvane_GetPointer(1, nullptr, 0), -1);
    EXPECT_EQ(Error(), "Trelvane_GetPointer: table is a null pointer.");
    Trelvane_AdjustPointerTable(1, nullptr);
    EXPECT_EQ(Error(), "Trelvane_AdjustPointerTable: table is a null pointer.");
    EXPECT_EQ(Trelvane_Locate(nullptr, 1), 0);
    EXPECT_EQ(Error(), "Trelvane_Locate: pattern is a null pointer.");
    EXPECT_EQ(Trelvane_LocateWide(nullptr, 1), 0);
    EXPECT_EQ(Error(), "Trelvane_LocateWide: pattern is a null pointer.");
    EXPECT_EQ(Trelvane_LocateRelative(nullptr, 1), 0);
    EXPECT_EQ(Error(), "Trelvane_LocateRelative: pattern is a null pointer.");
    EXPECT_EQ(Trelvane_InsertFromFile(1, nullptr), 0);
    EXPECT_EQ(Error(), "Invalid ROM ID: 0");
    LoadImage();
    EXPECT_EQ(Trelvane_InsertFromFile(1, nullptr), 0);
    EXPECT_EQ(Error(), "Error opening .");
    PointerTable table{};
    EXPECT_EQ(Trelvane_GetPointer(1, &table, -1), -1);
}

TEST_F(BadArgumentsTest, TilesAndBitmaps) {
    unsigned char pixels[64] = {};
    long width = 8, height = 8;
    LoadImage();
    EXPECT_EQ(Trelvane_DecodeTiles(nullptr, 8, 8, 0, "NES"), 0);
    EXPECT_EQ(Error(), "Trelvane_DecodeTiles: pixels is a null pointer.");
    EXPECT_EQ(Trelvane_EncodeTiles(nullptr, 8, 8, 0, 1, "NES"), 0);
    EXPECT_EQ(Error(), "Trelvane_EncodeTiles: pixels is a null pointer.");
    EXPECT_EQ(Trelvane_DecodeTiles(pixels, 8, 8, 0, nullptr), 0);
    EXPECT_EQ(Error(), "Unknown format: ");
    EXPECT_EQ(Trelvane_WriteBMP((dir / "a.bmp").c_str(), nullptr, 8, 8), 0);
    EXPECT_EQ(Error(), "Trelvane_WriteBMP: pixels is a null pointer.");
    EXPECT_FALSE(FileExists(dir / "a.bmp"));
    EXPECT_EQ(Trelvane_WriteBMP((dir / "a.bmp").c_str(), pixels, -8, 8), 0);
    ASSERT_EQ(Trelvane_WriteBMP((dir / "a.bmp").c_str(), pixels, 8, 8), -1);
    const std::string bmp = dir / "a.bmp";
    EXPECT_EQ(Trelvane_LoadBMP(bmp.c_str(), nullptr, &width, &height), 0);
    EXPECT_EQ(Error(), "Trelvane_LoadBMP: pixels is a null pointer.");
    EXPECT_EQ(Trelvane_LoadBMP(bmp.c_str(), pixels, nullptr, &height), 0);
    EXPECT_EQ(Error(), "Trelvane_LoadBMP: width is a null pointer.");
    EXPECT_EQ(Trelvane_LoadBMP(bmp.c_str(), pixels, &width, nullptr), 0);
    EXPECT_EQ(Error(), "Trelvane_LoadBMP: height is a null pointer.");
    EXPECT_EQ(Trelvane_LoadBMP(nullptr, pixels, &width, &height), 0);
    EXPECT_EQ(Error(), "Error opening .");
}

}  // namespace
