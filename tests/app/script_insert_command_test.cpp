#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "script/game_image.h"
#include "support/test_support.h"

namespace {

class ScriptInsertCommandTest : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.tbl", GameTable()); }

    RunResult Run(std::vector<std::string> args) {
        args.insert(args.begin(), "game.nes");
        return RunTrelvane(dir.path(), args);
    }

    // Puts each text of a translation in place of its placeholder "Mxx".
    static std::string Translate(std::string script, const std::vector<std::string>& texts) {
        for (size_t i = 0; i < texts.size(); ++i) {
            char placeholder[32];
            std::snprintf(placeholder, sizeof placeholder, "\r\nM%02zX\r\n", i);
            script.replace(script.find(placeholder) + 2, 3, texts[i]);
        }
        return script;
    }

    TempDir dir;
};

TEST_F(ScriptInsertCommandTest, TheImageIsSavedOnlyAfterSuccess) {
    GameImage image(0x2000);
    image.WriteNes(dir / "game.nes");
    Bytes expected = ReadFile(dir / "game.nes");
    WriteFile(dir / "s.txt", "load \"game.tbl\"\r\ntextaddress 1000h (8)\r\npointertable 100h\r\npointersize 2\r\n"
                             "\r\n[0000] ; 001000\r\nHi\r\n\r\n[0001] ; 001003\r\nHi\r\n\r\n[0002]\r\nYou\r\n");
    RunResult run = Run({"t", "s.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "s.txt:3 strings - 7/8 (87%)\n");
    const Bytes pointers = {0x00, 0x00, 0x00, 0x00, 0x03, 0x00}, text = {'H', 'i', 0xFF, 'Y', 'o', 'u', 0xFF};
    std::copy(pointers.begin(), pointers.end(), expected.begin() + 16 + 0x100);
    std::copy(text.begin(), text.end(), expected.begin() + 16 + 0x1000);
    EXPECT_EQ(ReadFile(dir / "game.nes"), expected);

    WriteFile(dir / "long.txt", "load \"game.tbl\"\ntextaddress 1000h (4)\n[0000]\nHi\n[0001]\nYou\n");
    WriteFile(dir / "bad.txt", "load \"game.tbl\"\ntextaddress 1000h\n[0000]\nback\\slash\n");
    for (const auto& [args, output] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"t", "long.txt"}, "long.txt:Too much space used - 7/4 (175%)\n"},
             {{"t", "missing.txt"}, "Error opening missing.txt.\n"},
             {{"t2", "bad.txt"}, "bad.txt:3,-8:Unable to encode: back\\slash\n"}}) {
        run = Run(args);
        EXPECT_EQ(run.status, 255);
        EXPECT_EQ(run.output, output);
        EXPECT_EQ(ReadFile(dir / "game.nes"), expected);
    }
}

TEST_F(ScriptInsertCommandTest, TranslatorsRoundTrip) {
    GameImage image(0x8000);
    image.PutPointers(0x4000, 2, image.PutStrings(0x1010, NumberedTexts(24)));
    image.WriteNes(dir / "game.nes");
    Bytes original = ReadFile(dir / "game.nes");
    ASSERT_EQ(Run({"d", "game.tbl", "script.txt", "1010h"}).output, "Searching for pointer table... found.\n");
    std::string script = ReadText(dir / "script.txt");
    ASSERT_TRUE(StartsWith(script, "load \"game.tbl\"\r\nfirstpointer 1010h\r\ntextaddress 001010h (296)\r\n"));

    std::vector<std::string> texts;
    for (int i = 0; i < 24; ++i) texts.push_back("New " + std::to_string(i));
    texts[3] = texts[7] = "Two\r\nlines";  // the same text shares one place
    texts[8] = "Shared tail";
    texts[9] = "tail";  // and so does a tail
    texts[10] = "Ends with blanks__";
    WriteFile(dir / "script.txt", Translate(script, texts));
    RunResult run = Run({"t", "script.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "script.txt:24 strings - 168/296 (56%)\n");

    Run({"x", "game.tbl", "again.txt", "4000h", "2", "1", "24"});
    std::string again = ReadText(dir / "again.txt");
    EXPECT_TRUE(StartsWith(again, "load \"game.tbl\"\r\nfirstpointer 1010h\r\ntextaddress 001010h (168)\r\n"));
    for (const char* entry : {"\r\n[0000] ; 001010\r\n; New 0\r\nM00\r\n",
                              "\r\n[0003] ; 001022\r\n; Two\r\n; lines\r\nM03\r\n",
                              "\r\n[0007] ; 001022\r\n; Two\r\n; lines\r\nM07\r\n",
                              "\r\n[0009] ; 001045\r\n; tail\r\nM09\r\n",
                              "\r\n[000A] ; 00104A\r\n; Ends with blanks__\r\nM0A\r\n",
                              "\r\n[0017] ; 0010B1\r\n; New 23\r\nM17\r\n"})
        EXPECT_NE(again.find(entry), std::string::npos) << entry;
    // Every byte but the new text and the table is as it was.
    Bytes now = ReadFile(dir / "game.nes");
    for (size_t offset : {0x1010, 0x4000}) {
        size_t length = offset == 0x1010 ? 168 : 48;
        std::copy(now.begin() + 16 + offset, now.begin() + 16 + offset + length, original.begin() + 16 + offset);
    }
    EXPECT_EQ(now, original);
}

TEST_F(ScriptInsertCommandTest, SplitTableDumpsNeedTheirKeywordsRenamed) {
    std::vector<int64_t> strings;
    SplitTableGame(strings).WriteNes(dir / "game.nes");
    Bytes original = ReadFile(dir / "game.nes");
    Run({"d", "game.tbl", "split.txt", "10010h"});
    RunResult run = Run({"t", "split.txt"});
    EXPECT_EQ(run.status, 255);
    EXPECT_EQ(run.output, "split.txt:4,7:Unknown command: p\n");
    EXPECT_EQ(ReadFile(dir / "game.nes"), original);

    std::string script = ReadText(dir / "split.txt");
    for (const char* keyword : {"pointerlow", "pointerhigh"}) script.replace(script.find(keyword), 7, "pointertable");
    WriteFile(dir / "split.txt", script);
    run = Run({"t", "split.txt"});
    EXPECT_EQ(run.output, "split.txt:20 strings - 80/847 (9%)\n");
    Bytes now = ReadFile(dir / "game.nes");
    EXPECT_EQ(Bytes(now.begin() + 16 + 0x3000, now.begin() + 16 + 0x3003), (Bytes{0x10, 0x14, 0x18}));
    EXPECT_EQ(Bytes(now.begin() + 16 + 0x3400, now.begin() + 16 + 0x3403), (Bytes{0x00, 0x00, 0x00}));
    EXPECT_EQ(Bytes(now.begin() + 16 + 0x10010, now.begin() + 16 + 0x10014), (Bytes{'M', '0', '0', 0xFF}));
}

}  // namespace
