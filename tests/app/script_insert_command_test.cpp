#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "script/game_image.h"
#include "support/test_support.h"

namespace {

class ScriptInsertCommandTest : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.tbl", GameTable()); }

    RunResult Run(const std::vector<std::string>& args) {
        std::vector<std::string> line{"game.nes"};
        line.insert(line.end(), args.begin(), args.end());
        return RunTrelvane(dir.path(), line);
    }

    // Replaces each placeholder line "Mxx" of a dump with the new text of
    // that string, written as the translator would (trailing blanks as "_").
    static std::string Translate(std::string script, const std::vector<std::string>& texts) {
        for (size_t i = 0; i < texts.size(); ++i) {
            char placeholder[32];
            std::snprintf(placeholder, sizeof placeholder, "\r\nM%02zX\r\n", i);
            size_t at = script.find(placeholder);
            if (at == std::string::npos) return "";
            script.replace(at + 2, 3, texts[i]);
        }
        return script;
    }

    TempDir dir;
};

TEST_F(ScriptInsertCommandTest, InsertSavesOnlyAfterSuccess) {
    GameImage image(0x2000);
    image.WriteNes(dir / "game.nes");
    Bytes original = ReadFile(dir / "game.nes");
    WriteFile(dir / "s.txt", "load \"game.tbl\"\r\ntextaddress 1000h (8)\r\npointertable 100h\r\npointersize 2\r\n"
                             "\r\n[0000] ; 001000\r\nHi\r\n\r\n[0001] ; 001003\r\nHi\r\n\r\n[0002]\r\nYou\r\n");
    RunResult run = Run({"t", "s.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "s.txt:3 strings - 7/8 (87%)\n");
    Bytes expected = original;
    Bytes changes[] = {{0x00, 0x00, 0x00, 0x00, 0x03, 0x00}, {'H', 'i', 0xFF, 'Y', 'o', 'u', 0xFF}};
    std::copy(changes[0].begin(), changes[0].end(), expected.begin() + 16 + 0x100);
    std::copy(changes[1].begin(), changes[1].end(), expected.begin() + 16 + 0x1000);
    EXPECT_EQ(ReadFile(dir / "game.nes"), expected);

    image.WriteNes(dir / "game.nes");
    WriteFile(dir / "long.txt", "load \"game.tbl\"\ntextaddress 1000h (4)\n[0000]\nHi\n[0001]\nYou\n");
    run = Run({"t", "long.txt"});
    EXPECT_EQ(run.status, 255);
    EXPECT_EQ(run.output, "long.txt:Too much space used - 7/4 (175%)\n");
    run = Run({"t", "missing.txt"});
    EXPECT_EQ(run.output, "Error opening missing.txt.\n");
    WriteFile(dir / "bad.txt", "load \"game.tbl\"\ntextaddress 1000h\n[0000]\nback\\slash\n");
    run = Run({"t2", "bad.txt"});
    EXPECT_EQ(run.status, 255);
    EXPECT_EQ(run.output, "bad.txt:3,-8:Unable to encode: back\\slash\n");
    EXPECT_EQ(ReadFile(dir / "game.nes"), original);
}

TEST_F(ScriptInsertCommandTest, TranslatorsRoundTrip) {
    GameImage image(0x8000);
    std::vector<int64_t> strings = image.PutStrings(0x1010, NumberedTexts(24));
    image.PutPointers(0x4000, 2, strings);
    image.WriteNes(dir / "game.nes");
    Bytes original = ReadFile(dir / "game.nes");

    RunResult run = Run({"d", "game.tbl", "script.txt", "1010h"});
    ASSERT_EQ(run.output, "Searching for pointer table... found.\n");
    std::string script = ReadText(dir / "script.txt");
    ASSERT_TRUE(StartsWith(script, "load \"game.tbl\"\r\nfirstpointer 1010h\r\ntextaddress 001010h (296)\r\n"
                                   "pointertable 004000h\r\npointersize 2\r\npointerfrequency 1\r\n\r\n[0000]"));

    std::vector<std::string> texts;
    for (int i = 0; i < 24; ++i) texts.push_back("New " + std::to_string(i));
    texts[3] = "Two\r\nlines";
    texts[7] = "Two\r\nlines";         // the same text shares the pointer of string 3
    texts[8] = "Shared tail";
    texts[9] = "tail";                  // the tail of string 8
    texts[10] = "Ends with blanks__";
    WriteFile(dir / "script.txt", Translate(script, texts));
    run = Run({"t", "script.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "script.txt:24 strings - 168/296 (56%)\n");

    run = Run({"x", "game.tbl", "again.txt", "4000h", "2", "1", "24"});
    std::string again = ReadText(dir / "again.txt");
    EXPECT_TRUE(StartsWith(again, "load \"game.tbl\"\r\nfirstpointer 1010h\r\ntextaddress 001010h (168)\r\n"
                                  "pointertable 004000h\r\npointersize 2\r\npointerfrequency 1\r\n"
                                  "\r\n[0000] ; 001010\r\n; New 0\r\nM00\r\n"));
    for (const char* entry : {"\r\n[0003] ; 001022\r\n; Two\r\n; lines\r\nM03\r\n",
                              "\r\n[0007] ; 001022\r\n; Two\r\n; lines\r\nM07\r\n",
                              "\r\n[0008] ; 00103E\r\n; Shared tail\r\nM08\r\n",
                              "\r\n[0009] ; 001045\r\n; tail\r\nM09\r\n",
                              "\r\n[000A] ; 00104A\r\n; Ends with blanks__\r\nM0A\r\n",
                              "\r\n[0017] ; 0010B1\r\n; New 23\r\nM17\r\n"})
        EXPECT_NE(again.find(entry), std::string::npos) << entry;

    // Every byte but the text and the table is as it was.
    Bytes now = ReadFile(dir / "game.nes");
    ASSERT_EQ(now.size(), original.size());
    for (size_t at = 0; at < now.size(); ++at) {
        size_t offset = at - 16;
        bool inText = at >= 16 && offset >= 0x1010 && offset < 0x1010 + 168;
        bool inTable = at >= 16 && offset >= 0x4000 && offset < 0x4000 + 48;
        if (!inText && !inTable) {
            ASSERT_EQ(now[at], original[at]) << "offset " << at;
        }
    }
}

TEST_F(ScriptInsertCommandTest, SplitTableDumpsNeedTheirKeywordsRenamed) {
    GameImage image(0x40000);
    std::vector<int64_t> values = PointerValues(image.PutStrings(0x10010, NumberedTexts(20, 30)), 0x10000);
    image.PutPointerBytes(0x3000, 0, values);
    image.PutPointerBytes(0x3400, 1, values);
    image.WriteNes(dir / "game.nes");
    Bytes original = ReadFile(dir / "game.nes");
    Run({"d", "game.tbl", "split.txt", "10010h"});
    std::string script = ReadText(dir / "split.txt");
    RunResult run = Run({"t", "split.txt"});
    EXPECT_EQ(run.status, 255);
    EXPECT_EQ(run.output, "split.txt:4,7:Unknown command: p\n");
    EXPECT_EQ(ReadFile(dir / "game.nes"), original);

    for (const char* keyword : {"pointerlow", "pointerhigh"})
        script.replace(script.find(keyword), 7, "pointertable");
    WriteFile(dir / "split.txt", script);
    run = Run({"t", "split.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "split.txt:20 strings - 80/847 (9%)\n");
    Bytes now = ReadFile(dir / "game.nes");
    EXPECT_EQ(Bytes(now.begin() + 16 + 0x3000, now.begin() + 16 + 0x3003), (Bytes{0x10, 0x14, 0x18}));
    EXPECT_EQ(Bytes(now.begin() + 16 + 0x3400, now.begin() + 16 + 0x3403), (Bytes{0x00, 0x00, 0x00}));
    EXPECT_EQ(Bytes(now.begin() + 16 + 0x10010, now.begin() + 16 + 0x10018), (Bytes{'M', '0', '0', 0xFF, 'M', '0', '1', 0xFF}));
}

}  // namespace
