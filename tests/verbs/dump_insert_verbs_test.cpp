// The dump and insert verbs end to end: exit statuses, what they print, and
// files left exactly as they were after a refusal.
#include <gtest/gtest.h>

#include "script/game_image.h"

namespace {

class DumpInsertVerbsTest : public ::testing::Test {
protected:
    // A NES game: strings from 0x2010 (a $8000 window at 0x0010), a table of
    // 2-byte pointers at 0x0200 and a split table at 0x0400/0x0500.
    void SetUp() override {
        WriteFile(dir / "game.tbl", GameTable());
        GameImage image(0x8000);
        std::vector<int64_t> strings = image.PutStrings(0x2010, {"Welcome!", "Lass es; das ist sicher", "Bye"});
        image.PutPointers(0x200, 2, strings, -0x7FF0);
        image.PutPointers(0x400, 1, strings, -0x7FF0, 0);
        image.PutPointers(0x500, 1, strings, -0x7FF0, 1);
        image.Put(0x206, {0x00, 0x00});  // the table ends at a null pointer
        image.WriteNes(dir / "game.nes");
        original = ReadFile(dir / "game.nes");
    }

    RunResult Run(const std::vector<std::string>& args) { return RunTrelvane(dir.path(), args); }

    TempDir dir;
    Bytes original;
};

TEST_F(DumpInsertVerbsTest, AnUnchangedDumpInsertsBackByteForByte) {
    RunResult dumped = Run({"dump", "game.nes", "--table", "game.tbl", "-o", "game.txt", "--pointers", "$200",
                            "--base", "-0x7FF0"});
    EXPECT_EQ(dumped, (RunResult{0, "3 strings through 2-byte pointers at $200, 3 entries, base -$7FF0, 1 text region\n"}));
    const std::string script = ReadText(dir / "game.txt");
    EXPECT_NE(script.find("\r\n[0001] ; 002019 (24)\r\n; Lass es; das ist sicher\r\nLass es; das ist sicher\r\n"),
              std::string::npos);
    EXPECT_EQ(Run({"insert", "game.nes", "game.txt", "-o", "copy.nes"}),
              (RunResult{0, "game.txt: 3 strings - 37/37 bytes\n"}));
    EXPECT_EQ(ReadFile(dir / "copy.nes"), original);
    EXPECT_EQ(Run({"insert", "game.nes", "game.txt"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "game.nes"), original);
}

TEST_F(DumpInsertVerbsTest, ASplitTableRoundTrips) {
    EXPECT_EQ(Run({"dump", "game.nes", "--table", "game.tbl", "-o", "split.txt", "--split", "0x400,0x500",
                   "--count", "3", "--base", "-0x7FF0"})
                  .status,
              0);
    EXPECT_NE(ReadText(dir / "split.txt").find("pointerlow 000400h\r\npointerhigh 000500h\r\n"), std::string::npos);
    EXPECT_EQ(Run({"insert", "game.nes", "split.txt", "-o", "copy.nes"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "copy.nes"), original);
}

TEST_F(DumpInsertVerbsTest, RefusalsLeaveEveryFileAsItWas) {
    // A number without its marker, and a dump without any source of strings.
    EXPECT_EQ(Run({"dump", "game.nes", "--table", "game.tbl", "-o", "game.txt", "--pointers", "2AE0"}).status, 1);
    EXPECT_EQ(Run({"dump", "game.nes", "--table", "game.tbl", "-o", "game.txt", "--at", "0x2010"}).status, 1);
    EXPECT_FALSE(FileExists(dir / "game.txt"));

    ASSERT_EQ(Run({"dump", "game.nes", "--table", "game.tbl", "-o", "game.txt", "--pointers", "0x200", "--base",
                   "-0x7FF0"})
                  .status,
              0);
    std::string script = ReadText(dir / "game.txt");
    script.replace(script.find("\r\nBye\r\n"), 7, "\r\nAuf Wiedersehen\r\n");
    WriteFile(dir / "game.txt", script);
    WriteFile(dir / "old.nes", std::string("untouched"));
    EXPECT_EQ(Run({"insert", "game.nes", "game.txt", "-o", "old.nes"}), (RunResult{1, ""}));
    EXPECT_EQ(ReadFile(dir / "game.nes"), original);
    EXPECT_EQ(ReadText(dir / "old.nes"), "untouched");
}

TEST_F(DumpInsertVerbsTest, TheFinderNamesTheFormItFoundAndEveryPointerToAString) {
    GameImage image(0x8000);
    std::vector<int64_t> strings = image.PutStrings(0x4010, NumberedTexts(10));
    image.PutPointers(0x300, 2, strings, 0x4000 - 0xC000);  // the bank at 4000h seen at $C000
    image.WriteNes(dir / "ten.nes");
    const Bytes before = ReadFile(dir / "ten.nes");
    EXPECT_EQ(Run({"dump", "ten.nes", "--table", "game.tbl", "-o", "ten.txt", "--find", "0x4010"}),
              (RunResult{0, "10 strings through 2-byte pointers at $300, 10 entries, base -$8000, 1 text region\n"}));
    EXPECT_EQ(Run({"insert", "ten.nes", "ten.txt"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "ten.nes"), before);

    const RunResult found = Run({"find", "ten.nes", "--references", "0x4010", "--size", "2", "--table", "game.tbl"});
    EXPECT_EQ(found.status, 0);
    EXPECT_NE(found.output.find("000300h: 2-byte pointers at $300, base -$8000\n"), std::string::npos);
    EXPECT_NE(found.output.find("table: 2-byte pointers at $300, 10 entries, base -$8000\n"), std::string::npos);

    // A string no pointer addresses: no table is made up for it.
    EXPECT_EQ(Run({"dump", "ten.nes", "--table", "game.tbl", "-o", "none.txt", "--find", "0x4015"}).status, 1);
    EXPECT_FALSE(FileExists(dir / "none.txt"));
}

TEST_F(DumpInsertVerbsTest, TablesWithAByteOrderMarkAndCarriageReturnsLoad) {
    std::string thingy("\xEF\xBB\xBF");
    for (char c : GameTable()) {
        if (c == '\n') thingy.push_back('\r');
        thingy.push_back(c);
    }
    WriteFile(dir / "bom.tbl", thingy);
    EXPECT_EQ(Run({"dump", "game.nes", "--table", "bom.tbl", "-o", "bom.txt", "--pointers", "0x200", "--base",
                   "-0x7FF0"})
                  .status,
              0);
    EXPECT_NE(ReadText(dir / "bom.txt").find("\r\nLass es; das ist sicher\r\n"), std::string::npos);
    EXPECT_EQ(Run({"insert", "game.nes", "bom.txt", "-o", "copy.nes"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "copy.nes"), original);
}

}  // namespace
