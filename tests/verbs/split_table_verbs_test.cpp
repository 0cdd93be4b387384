// Split pointer tables (low, high and bank bytes in separate tables) through
// dump and insert: with a base as NES games keep them, and with a bank table
// under a Super NES mapping.
#include <gtest/gtest.h>

#include "script/game_image.h"

namespace {

class SplitTableVerbsTest : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.tbl", GameTable()); }

    RunResult Run(const std::vector<std::string>& args) { return RunTrelvane(dir.path(), args); }

    // Dumps with the split options, inserts the unchanged script, then a translation of the first
    // and last strings, and dumps the translated image again: the dump line printed first.
    std::string RoundTrip(const std::string& name, const std::vector<std::string>& splitOptions) {
        const Bytes original = ReadFile(dir / name);
        const std::string extension = name.substr(name.find('.'));
        std::vector<std::string> dump = {"dump", name, "--table", "game.tbl", "-o", "script.txt"};
        dump.insert(dump.end(), splitOptions.begin(), splitOptions.end());
        const RunResult dumped = Run(dump);
        EXPECT_EQ(Run({"insert", name, "script.txt", "-o", "copy" + extension}).status, 0);
        EXPECT_EQ(ReadFile(dir / ("copy" + extension)), original);

        std::string script = ReadText(dir / "script.txt");
        Replace(script, "; Welcome!\r\nWelcome!\r\n", "; Welcome!\r\nHi;\r\n");
        Replace(script, "; Bye\r\nBye\r\n", "; Bye\r\nTschau!\r\n");
        WriteFile(dir / "translated.txt", script);
        EXPECT_EQ(Run({"insert", name, "translated.txt", "-o", "translated" + extension}).status, 0);
        dump[1] = "translated" + extension;
        dump[5] = "again.txt";
        EXPECT_EQ(Run(dump).status, 0);
        const std::string again = ReadText(dir / "again.txt");
        EXPECT_NE(again.find("; Hi;\r\nHi;\r\n"), std::string::npos) << again;
        EXPECT_NE(again.find("; Lass es; das ist sicher\r\nLass es; das ist sicher\r\n"), std::string::npos);
        EXPECT_NE(again.find("; Tschau!\r\nTschau!\r\n"), std::string::npos);
        return dumped.output;
    }

    static void Replace(std::string& text, const std::string& from, const std::string& to) {
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << text;
        text.replace(at, from.size(), to);
    }

    TempDir dir;
    const std::vector<std::string> texts = {"Welcome!", "Lass es; das ist sicher", "Bye"};
};

TEST_F(SplitTableVerbsTest, ANesSplitTableWithABaseRoundTrips) {
    GameImage image(0x8000);
    const std::vector<int64_t> strings = image.PutStrings(0x4010, texts);
    image.PutPointers(0x600, 1, strings, 0x4000 - 0xC000, 0);  // the bank at 4000h seen at $C000
    image.PutPointers(0x603, 1, strings, 0x4000 - 0xC000, 1);
    image.WriteNes(dir / "game.nes");
    EXPECT_EQ(RoundTrip("game.nes", {"--split", "0x600,0x603", "--count", "3", "--base", "-0x8000"}),
              "3 strings through split table, low bytes at $600, high at $603, 3 entries, base -$8000, "
              "1 text region\n");
    EXPECT_NE(ReadText(dir / "script.txt").find("pointerlow 000600h\r\npointerhigh 000603h\r\npointercount 3\r\n"),
              std::string::npos);
}

TEST_F(SplitTableVerbsTest, ABankTableUnderLoRomAndHiRomRoundTrips) {
    struct Case {
        std::string mapping, title;
        size_t textAt;
        int64_t addressLessOffset;
    };
    for (const Case& c : {Case{"lorom", "LoROM", 0x18010, 0x20000}, Case{"hirom", "HiROM", 0x18010, 0xC00000}}) {
        SCOPED_TRACE(c.mapping);
        GameImage image(0x20000);
        const std::vector<int64_t> strings = image.PutStrings(c.textAt, texts);
        for (int shift = 0; shift < 3; ++shift) image.PutPointers(0x1000 + 0x10 * shift, 1, strings, -c.addressLessOffset, shift);
        WriteFile(dir / "game.sfc", image.bytes);
        EXPECT_EQ(RoundTrip("game.sfc", {"--split", "0x1000,0x1010,0x1020", "--count", "3", "--map", c.mapping}),
                  "3 strings through split table, low bytes at $1000, high at $1010, bank at $1020, 3 entries, " +
                      c.title + ", 1 text region\n");
    }
}

// A mapping without a bank table is refused, and no script is written.
TEST_F(SplitTableVerbsTest, AMappingNeedsABankTable) {
    GameImage image(0x8000);
    image.WriteNes(dir / "game.nes");
    EXPECT_EQ(RunVerb(dir.path(), {"dump", "game.nes", "--table", "game.tbl", "-o", "s.txt", "--split", "0x10,0x20",
                                   "--count", "3", "--map", "lorom"}),
              (VerbResult{1, "",
                          "trelvane dump: game.nes: header: 16-byte iNES header\n"
                          "trelvane dump: Pointer form: a mapping needs pointers of 3 or 4 bytes (use a base for "
                          "shorter ones)\n"}));
    EXPECT_FALSE(FileExists(dir / "s.txt"));
}

}  // namespace
