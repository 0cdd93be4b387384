#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "script/game_image.h"
#include "support/test_support.h"

namespace {

class ScriptDumpCommandsTest : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.tbl", GameTable()); }

    RunResult Run(const GameImage& image, std::vector<std::string> args) {
        image.WriteNes(dir / "game.nes");
        args.insert(args.begin(), "game.nes");
        return RunTrelvane(dir.path(), args);
    }

    std::string Dump(const GameImage& image, const std::vector<std::string>& args) {
        Run(image, args);
        return ReadText(dir / args[2]);
    }

    TempDir dir;
};

const std::vector<std::string> kFirstTexts = {"Hello", "Two\nlines", "   ", "End\n"};

// The entries of kFirstTexts placed end to end at bank + 0010h.
std::string FirstEntries(const std::string& bank) {
    return "\r\n[0000] ; " + bank + "0010\r\n; Hello\r\nM00\r\n\r\n[0001] ; " + bank +
           "0016\r\n; Two\r\n; lines\r\nM01\r\n\r\n[0002] ; " + bank + "0020\r\n; ___\r\nM02\r\n\r\n[0003] ; " + bank +
           "0024\r\n; End\r\n; \r\nM03\r\n";
}

TEST_F(ScriptDumpCommandsTest, DumpWithFoundTable) {
    GameImage image(0x20000);
    std::vector<std::string> texts = kFirstTexts;
    for (const std::string& text : NumberedTexts(16)) texts.push_back(text);
    image.PutPointers(0x4000, 2, image.PutStrings(0x10010, texts), 0x10000);
    RunResult run = Run(image, {"d", "game.tbl", "out.txt", "10010h", "4"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Searching for pointer table... found.\n");
    EXPECT_EQ(ReadText(dir / "out.txt"),
              "load \"game.tbl\"\r\nfirstpointer 0010h\r\ntextaddress 010010h (25)\r\npointertable 004000h\r\n"
              "pointersize 2\r\npointerfrequency 1\r\n" + FirstEntries("01"));
    // Without a count the table's own 20 strings.
    std::string all = Dump(image, {"d", "game.tbl", "all.txt", "10010h"});
    EXPECT_NE(all.find("textaddress 010010h (218)\r\n"), std::string::npos);
    EXPECT_TRUE(EndsWith(all, "\r\n[0013] ; 0100DF\r\n; Line 15 xx\r\nM13\r\n"));
    // A base with bits inside the pointer's width gives no firstpointer line.
    image.PutPointers(0x4000, 2, image.PutStrings(0x10010, texts), 0x8010);
    EXPECT_TRUE(StartsWith(Dump(image, {"d", "game.tbl", "out.txt", "10010h", "1"}),
                           "load \"game.tbl\"\r\ntextaddress 010010h (6)\r\npointertable 004000h\r\n"));
}

TEST_F(ScriptDumpCommandsTest, DumpWithoutTable) {
    GameImage image(0x8000);
    image.PutStrings(0x10, kFirstTexts);
    image.PutStrings(0x1000, std::vector<std::string>(5000, "a"));
    RunResult run = Run(image, {"d", "game.tbl", "out.txt", "10h", "4"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Searching for pointer table... not found.\n");
    EXPECT_EQ(ReadText(dir / "out.txt"), "load \"game.tbl\"\r\n" + FirstEntries("00"));
    // End lines grow to three and four digits with the count.
    std::string dump = Dump(image, {"d", "game.tbl", "300.txt", "1000h", "300"});
    EXPECT_TRUE(StartsWith(dump, "load \"game.tbl\"\r\n\r\n[0000] ; 001000\r\n; a\r\nM000\r\n"));
    EXPECT_TRUE(EndsWith(dump, "\r\n[012B] ; 001256\r\n; a\r\nM12B\r\n"));
    EXPECT_TRUE(EndsWith(Dump(image, {"d", "game.tbl", "5000.txt", "1000h", "5000"}),
                         "\r\n[1387] ; 00370E\r\n; a\r\nM1387\r\n"));
    run = Run(image, {"d", "game.tbl", "none.txt", "1000h"});
    EXPECT_EQ(run.status, 255);
    EXPECT_EQ(run.output,
              "Searching for pointer table... not found.\n"
              "Cannot dump script without pointer table unless count specified.\n");
    EXPECT_FALSE(FileExists(dir / "none.txt"));
}

TEST_F(ScriptDumpCommandsTest, DumpOfSplitTables) {
    std::vector<int64_t> strings;
    GameImage image = SplitTableGame(strings);
    EXPECT_EQ(Dump(image, {"d", "game.tbl", "split.txt", "10010h", "1"}),
              "load \"game.tbl\"\r\nfirstpointer 0010h\r\ntextaddress 010010h (39)\r\npointerlow 003000h\r\n"
              "pointerhigh 003400h\r\npointerfrequency 1\r\n\r\n[0000] ; 010010\r\n; Line 0 " +
                  std::string(31, 'x') + "\r\nM00\r\n");
    EXPECT_EQ(Dump(image, {"d", "game.tbl", "low.txt", "37A10h", "1"}),
              "load \"game.tbl\"\r\nfirstpointer 10h\r\ntextaddress 037A10h (3)\r\npointerlow 001000h\r\n"
              "pointerfrequency 1\r\n\r\n[0000] ; 037A10\r\n; s0\r\nM00\r\n");
}

TEST_F(ScriptDumpCommandsTest, PointerDump) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x1010, NumberedTexts(6));
    image.PutPointers(0x5000, 2, {strings[0], strings[2], strings[4]});
    RunResult run = Run(image, {"x", "game.tbl", "out.txt", "5000h", "2", "2"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    std::string dump = ReadText(dir / "out.txt");
    EXPECT_TRUE(StartsWith(dump, "load \"game.tbl\"\r\nfirstpointer 1010h\r\ntextaddress 001010h (69)\r\n"
                                 "pointertable 005000h\r\npointersize 2\r\npointerfrequency 2\r\n\r\n[0000] ; 001010\r\n"));
    EXPECT_TRUE(EndsWith(dump, "\r\n[0005] ; 001047\r\n; Line 5 xxxxxx\r\nM05\r\n"));
    // A table outside the image covers no strings: only the load line.
    EXPECT_EQ(Dump(GameImage(0x1000), {"x", "game.tbl", "out.txt", "1000h", "2", "1"}), "load \"game.tbl\"\r\n");

    for (const auto& [args, output] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"100h", "5", "1"}, "Pointer size 5 not supported.\n"},
             {{"100h", "2", "0"}, "Pointer frequency 0 not supported.\n"}}) {
        std::vector<std::string> line{"x", "game.tbl", "refused.txt"};
        line.insert(line.end(), args.begin(), args.end());
        run = Run(image, line);
        EXPECT_EQ(run.status, 255);
        EXPECT_EQ(run.output, output);
    }
    EXPECT_FALSE(FileExists(dir / "refused.txt"));
    run = Run(image, {"x", "game.tbl", "missing/out.txt", "5000h", "2", "1"});
    EXPECT_EQ(run.status, 255);
    EXPECT_EQ(run.output, "Error creating missing/out.txt.\n");
}

TEST_F(ScriptDumpCommandsTest, LocateCountsOnUntilOneSearchHasTenMatches) {
    GameImage image(0x1000, true);
    for (size_t i = 0; i < 9; ++i) image.Put(0x100 + 0x10 * i, {'H', 'e', 'l', 'l', 'o'});
    for (size_t at : {0x200, 0x220, 0x240}) image.Put(at, {'H', 0, 'e', 0, 'l', 0, 'l', 0, 'o'});
    image.Put(0x300, {'I', 'f', 'm', 'm', 'p'});
    std::string plain = "   1 000100h\n   2 000110h\n   3 000120h\n   4 000130h\n   5 000140h\n   6 000150h\n"
                        "   7 000160h\n   8 000170h\n   9 000180h\n";
    RunResult run = Run(image, {"l", "game.tbl", "Hello"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, plain +
                              "? 10 000200h\n? 11 000220h\n? 12 000240h\n* 13 000100h\n* 14 000110h\n* 15 000120h\n"
                              "* 16 000130h\n* 17 000140h\n* 18 000150h\n* 19 000160h\n* 20 000170h\n"
                              "* 21 000180h\n* 22 000300h\n");
    image.Put(0x190, {'H', 'e', 'l', 'l', 'o'});
    EXPECT_EQ(Run(image, {"l", "game.tbl", "Hello"}).output, plain + "  10 000190h\n");
}

TEST_F(ScriptDumpCommandsTest, LocateFindingNothing) {
    GameImage image(0x1000, true);
    image.Put(0, {'H', 'i'});  // offset 0 is never reported
    for (const char* text : {"Hi", ""}) {
        RunResult run = Run(image, {"l", "game.tbl", text});
        EXPECT_EQ(run.status, 255);
        EXPECT_EQ(run.output, "No matches found.\n");
    }
    EXPECT_EQ(Run(image, {"l", "game.tbl", "a\\b"}).output, "Unable to encode: a\\b\n");
    // A message file can reword a line: data2 is the bare count, data3 the string.
    WriteFile(dir / "trelvane.msg", "TRELVANE_MESSAGE(TLMSG_SEARCH_FOUND, \"#[data2] [data3] at [data1]\")\n");
    image.Put(0, {0, 0});
    image.Put(0x40, {'H', 'i'});
    EXPECT_EQ(Run(image, {"l", "game.tbl", "Hi"}).output, "#1 Hi at 000040h\n*  2 000040h\n");
}

}  // namespace
