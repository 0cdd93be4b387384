#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/test_support.h"

namespace {

// The sample game that scripts/sample.sh demonstrates on: the finder must see
// its pointer table, and the French image must differ only from its menus on.
TEST(SampleGameTest, DumpFindsThePointerTableAndTheFrenchImageSharesTheStory) {
    TempDir dir;
    ASSERT_EQ(RunProgram(dir.path(), TRELVANE_MAKE_SAMPLE, {dir.path().string()}).status, 0);
    RunResult run = RunTrelvane(dir.path(), {"sample.nes", "d", "sample.tbl", "script.txt", "1D040h"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Searching for pointer table... found.\n");
    std::string dump = ReadText(dir / "script.txt");
    EXPECT_TRUE(StartsWith(dump,
                           "load \"sample.tbl\"\r\nfirstpointer D040h\r\ntextaddress 01D040h (426)\r\n"
                           "pointertable 01D000h\r\npointersize 2\r\npointerfrequency 1\r\n"
                           "\r\n[0000] ; 01D040\r\n; Welcome to Trelvane Island!\r\nM00\r\n"
                           "\r\n[0001] ; 01D05C\r\n; The old lighthouse keeper\r\n; waits by the shore.\r\nM01\r\n"));
    EXPECT_TRUE(EndsWith(dump, "\r\n[0013] ; 01D1E7\r\n; No\r\nM13\r\n"));

    // Only the menus, strings 12 to 19, are French: string 12 keeps its place
    // and the images first differ at the pointer to string 13.
    Bytes english = ReadFile(dir / "sample.nes"), french = ReadFile(dir / "sample_fr.nes");
    ASSERT_EQ(english.size(), french.size());
    size_t first = 0;
    while (first < english.size() && english[first] == french[first]) ++first;
    EXPECT_EQ(first, 16 + 0x1D000 + 2 * 13u);
}

// The patch script of the sample run on the Super NES image: the hook, the
// message pointer and the routine with its message, and nothing else.
TEST(SampleGameTest, BonusPatchWritesTheHookThePointerAndTheRoutine) {
    TempDir dir;
    ASSERT_EQ(RunProgram(dir.path(), TRELVANE_MAKE_SAMPLE, {dir.path().string()}).status, 0);
    WriteFile(dir / "bonus.txt", ReadText(std::string(TRELVANE_SOURCE_DIR) + "/sample/bonus.txt"));
    Bytes expected = ReadFile(dir / "sample.smc");
    ASSERT_EQ(expected.size(), 512 + 0x20000u);
    EXPECT_EQ(RunTrelvane(dir.path(), {"sample.smc", "p", "bonus.txt"}),
              (RunResult{0, "bonus.txt: Patch successful\n"}));

    const struct {
        size_t offset;
        Bytes bytes;
    } writes[] = {
        {0x8010, {0x22, 0x00, 0x80, 0x81}},  // jsl 818000h
        {0x8100, {0x1E, 0x80, 0x81}},        // the pointer to the message at 81801Eh
        {0x18000, {0xEE, 0x14, 0x00,         // inc [0014h]
                   0xA5, 0x12, 0xC9, 0x64, 0x00, 0x90, 0x13, 0xE9, 0x64, 0x00, 0x85, 0x12,  // check: ...
                   0xA5, 0x10, 0x18, 0x69, 0x01, 0x00, 0x85, 0x10,                          // _add lives, 1
                   0x22, 0x00, 0x90, 0x80, 0x80, 0xE6, 0x6B,                                // jsl, bra, rtl
                   0x31, 0x55, 0x50, 0x21, 0x00}},                                          // "1UP!"
    };
    for (const auto& write : writes)
        std::copy(write.bytes.begin(), write.bytes.end(), expected.begin() + 512 + write.offset);
    EXPECT_EQ(ReadFile(dir / "sample.smc"), expected);
}

}  // namespace
