#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "script/game_image.h"

namespace {

using namespace std::string_literals;

class ScriptCommandsTest : public GameTest {
protected:
    RunResult Run(std::vector<std::string> args) {
        args.insert(args.begin(), "game.nes");
        return RunTrelvane(dir.path(), args);
    }

    void ExpectRun(const std::vector<std::string>& args, int status, const std::string& output) {
        RunResult run = Run(args);
        EXPECT_EQ(run.status, status) << args[0] << " " << args[1];
        EXPECT_EQ(run.output, output) << args[0] << " " << args[1];
    }

    // The script a dump command wrote to the file named by its third argument.
    std::string Dump(const std::vector<std::string>& args) {
        Run(args);
        return ReadText(dir / args[2]);
    }
};

const std::vector<std::string> kFirstTexts = {"Hello", "Two\nlines", "   ", "End\n"};

// The entries of kFirstTexts placed end to end at 000010h.
const std::string kFirstEntries =
    "\r\n[0000] ; 000010\r\n; Hello\r\nM00\r\n\r\n[0001] ; 000016\r\n; Two\r\n; lines\r\nM01\r\n"
    "\r\n[0002] ; 000020\r\n; ___\r\nM02\r\n\r\n[0003] ; 000024\r\n; End\r\n; \r\nM03\r\n";

TEST_F(ScriptCommandsTest, TranslatorsRoundTrip) {
    GameImage image(0x20000);
    std::vector<std::string> texts = kFirstTexts;
    for (const std::string& text : NumberedTexts(16)) texts.push_back(text);
    // A base with bits inside the pointer's width gives no firstpointer line.
    image.PutPointers(0x4000, 2, image.PutStrings(0x10010, texts), 0x8010);
    image.WriteNes(dir / "game.nes");
    EXPECT_TRUE(StartsWith(Dump({"d", "game.tbl", "script.txt", "10010h", "1"}),
                           "load \"game.tbl\"\r\ntextaddress 010010h (6)\r\npointertable 004000h\r\n"));

    image.PutPointers(0x4000, 2, image.PutStrings(0x10, texts));
    image.WriteNes(dir / "game.nes");
    ExpectRun({"d", "game.tbl", "script.txt", "10h"}, 0, "Searching for pointer table... found.\n");
    std::string script = ReadText(dir / "script.txt");
    EXPECT_TRUE(StartsWith(script, "load \"game.tbl\"\r\nfirstpointer 0010h\r\ntextaddress 000010h (218)\r\n"
                                   "pointertable 004000h\r\npointersize 2\r\npointerfrequency 1\r\n" +
                                       kFirstEntries));
    EXPECT_TRUE(EndsWith(script, "\r\n[0013] ; 0000DF\r\n; Line 15 xx\r\nM13\r\n"));

    // Refused scripts leave the image file as it was.
    WriteFile(dir / "long.txt", "load \"game.tbl\"\ntextaddress 1000h (4)\n[0000]\nHi\n[0001]\nYou\n");
    ExpectRun({"t", "long.txt"}, 255, "long.txt:Too much space used - 7/4 (175%)\n");
    ExpectRun({"t", "missing.txt"}, 255, "Error opening missing.txt.\n");
    EXPECT_EQ(ReadFile(dir / "game.nes"), image.Nes());

    texts.clear();
    for (int i = 0; i < 20; ++i) texts.push_back("New " + std::to_string(i));
    texts[3] = texts[7] = "Two\r\nlines";  // the same text shares one place
    texts[8] = "Shared tail";
    texts[9] = "tail";  // and so does a tail
    texts[10] = "Ends with blanks__";
    // Each text goes in place of its placeholder "Mxx".
    for (size_t i = 0; i < texts.size(); ++i) {
        char placeholder[32];
        std::snprintf(placeholder, sizeof placeholder, "\r\nM%02zX\r\n", i);
        script.replace(script.find(placeholder) + 2, 3, texts[i]);
    }
    WriteFile(dir / "script.txt", script);
    ExpectRun({"t", "script.txt"}, 0, "script.txt:20 strings - 140/218 (64%)\n");

    std::string again = Dump({"x", "game.tbl", "again.txt", "4000h", "2", "1", "20"});
    EXPECT_TRUE(StartsWith(again, "load \"game.tbl\"\r\nfirstpointer 0010h\r\ntextaddress 000010h (140)\r\n"));
    for (const char* entry : {"\r\n[0003] ; 000022\r\n; Two\r\n; lines\r\nM03\r\n",
                              "\r\n[0007] ; 000022\r\n; Two\r\n; lines\r\nM07\r\n",
                              "\r\n[0009] ; 000045\r\n; tail\r\nM09\r\n",
                              "\r\n[000A] ; 00004A\r\n; Ends with blanks__\r\nM0A\r\n"})
        EXPECT_NE(again.find(entry), std::string::npos) << entry;
    // Every byte but the new text and the table is as it was.
    Bytes now = ReadFile(dir / "game.nes");
    image.Put(0x10, Bytes(now.begin() + 16 + 0x10, now.begin() + 16 + 0x10 + 140));
    image.Put(0x4000, Bytes(now.begin() + 16 + 0x4000, now.begin() + 16 + 0x4000 + 40));
    EXPECT_EQ(now, image.Nes());
}

TEST_F(ScriptCommandsTest, DumpWithoutTable) {
    GameImage image(0x8000);
    image.PutStrings(0x10, kFirstTexts);
    image.PutStrings(0x1000, std::vector<std::string>(5000, "a"));
    image.WriteNes(dir / "game.nes");
    ExpectRun({"d", "game.tbl", "out.txt", "10h", "4"}, 0, "Searching for pointer table... not found.\n");
    EXPECT_EQ(ReadText(dir / "out.txt"), "load \"game.tbl\"\r\n" + kFirstEntries);
    // End lines grow to three and four digits with the count.
    EXPECT_TRUE(EndsWith(Dump({"d", "game.tbl", "300.txt", "1000h", "300"}), "\r\n[012B] ; 001256\r\n; a\r\nM12B\r\n"));
    EXPECT_TRUE(
        EndsWith(Dump({"d", "game.tbl", "5000.txt", "1000h", "5000"}), "\r\n[1387] ; 00370E\r\n; a\r\nM1387\r\n"));
    ExpectRun({"d", "game.tbl", "none.txt", "1000h"}, 255,
              "Searching for pointer table... not found.\n"
              "Cannot dump script without pointer table unless count specified.\n");
    EXPECT_FALSE(FileExists(dir / "none.txt"));
}

TEST_F(ScriptCommandsTest, SplitTableDumpsNeedTheirKeywordsRenamed) {
    // 20 strings at 10010h whose pointers (base 10000h) have their low bytes at
    // 3000h and their high bytes at 3400h, and again, farther from the low
    // bytes, at 2400h; and 20 short strings "s0", "s3", ... in the page 37A00h
    // behind a low-byte table at 1000h.
    GameImage image(0x40000);
    std::vector<int64_t> strings = image.PutStrings(0x10010, NumberedTexts(20, 30));
    image.PutPointers(0x3000, 1, strings, 0x10000);
    image.PutPointers(0x3400, 1, strings, 0x10000, 1);
    image.PutPointers(0x2400, 1, strings, 0x10000, 1);
    std::vector<std::string> shortTexts;
    for (int i = 0; i < 20; ++i) shortTexts.push_back("s" + std::to_string(i * 3));
    image.PutPointers(0x1000, 1, image.PutStrings(0x37A10, shortTexts), 0x37A00);
    image.WriteNes(dir / "game.nes");
    Bytes original = ReadFile(dir / "game.nes");
    EXPECT_EQ(Dump({"d", "game.tbl", "low.txt", "37A10h", "1"}),
              "load \"game.tbl\"\r\nfirstpointer 10h\r\ntextaddress 037A10h (3)\r\npointerlow 001000h\r\n"
              "pointerfrequency 1\r\n\r\n[0000] ; 037A10\r\n; s0\r\nM00\r\n");
    // Of two copies of the high bytes the one nearer the low bytes is taken.
    std::string script = Dump({"d", "game.tbl", "split.txt", "10010h"});
    EXPECT_TRUE(StartsWith(script, "load \"game.tbl\"\r\nfirstpointer 0010h\r\ntextaddress 010010h (847)\r\n"
                                   "pointerlow 003000h\r\npointerhigh 003400h\r\npointerfrequency 1\r\n\r\n"
                                   "[0000] ; 010010\r\n; Line 0 " + std::string(31, 'x') + "\r\nM00\r\n"));
    ExpectRun({"t", "split.txt"}, 255, "split.txt:4,7:Unknown command: p\n");
    EXPECT_EQ(ReadFile(dir / "game.nes"), original);
}

TEST_F(ScriptCommandsTest, PointerDump) {
    GameImage image(0x20000);
    std::vector<int64_t> strings = image.PutStrings(0x1010, NumberedTexts(6));
    image.PutPointers(0x5000, 2, {strings[0], strings[2], strings[4]});
    image.WriteNes(dir / "game.nes");
    ExpectRun({"x", "game.tbl", "out.txt", "5000h", "2", "2"}, 0, "");
    std::string dump = ReadText(dir / "out.txt");
    EXPECT_TRUE(StartsWith(dump, "load \"game.tbl\"\r\nfirstpointer 1010h\r\ntextaddress 001010h (69)\r\n"
                                 "pointertable 005000h\r\npointersize 2\r\npointerfrequency 2\r\n\r\n"
                                 "[0000] ; 001010\r\n"));
    EXPECT_TRUE(EndsWith(dump, "\r\n[0005] ; 001047\r\n; Line 5 xxxxxx\r\nM05\r\n"));
    // A table outside the image covers no strings: only the load line.
    EXPECT_EQ(Dump({"x", "game.tbl", "out.txt", "20000h", "2", "1"}), "load \"game.tbl\"\r\n");

    ExpectRun({"x", "game.tbl", "refused.txt", "100h", "5", "1"}, 255, "Pointer size 5 not supported.\n");
    ExpectRun({"x", "game.tbl", "refused.txt", "100h", "2", "0"}, 255, "Pointer frequency 0 not supported.\n");
    // Numbers the record's 32-bit fields cannot hold are refused, not cut down.
    ExpectRun({"x", "game.tbl", "refused.txt", "100h", "2", "100000000h"}, 255,
              "Pointer frequency 4294967296 not supported.\n");
    ExpectRun({"x", "game.tbl", "refused.txt", "100h", "100000002h", "1"}, 255,
              "Pointer size 4294967298 not supported.\n");
    ExpectRun({"x", "game.tbl", "refused.txt", "100005000h", "2", "1"}, 255,
              "Pointer table 4294987776 not supported.\n");
    // A text address beyond 32 bits is refused too, not dumped at its low 32 bits.
    ExpectRun({"d", "game.tbl", "refused.txt", "1FFFFFFFFh", "1"}, 255, "Text address 8589934591 not supported.\n");
    ExpectRun({"d", "game.tbl", "refused.txt", "100001010h"}, 255, "Text address 4294971408 not supported.\n");
    EXPECT_FALSE(FileExists(dir / "refused.txt"));
    ExpectRun({"x", "game.tbl", "missing/out.txt", "5000h", "2", "1"}, 255, "Error creating missing/out.txt.\n");
}

// Scripts and tables that would be misread (a zero byte, a number beyond 32 bits) are refused
// with their place named, and the image file stays as it was.
TEST_F(ScriptCommandsTest, MisreadInputsAreRefusedAndTheImageKept) {
    GameImage image(0x2000);
    image.WriteNes(dir / "game.nes");
    WriteFile(dir / "zero.tbl", "41=A\n42=B\n/FF\0\n"s);
    const std::string header = "load \"game.tbl\"\ntextaddress 100h pointertable 10h pointersize 2\n";
    const struct {
        std::string script, output;
    } cases[] = {
        {header + "[0000]\nAB\n[0001]\nA\0B\n[0002]\nBA\n"s, "s.txt:6,2:Unable to encode: \\0\n"},
        {"load \"game.tbl\"\npointersize 4294967297\ntextaddress 100h pointertable 10h\n[0000]\nAB\n",
         "s.txt:2,13:Expected '1 to 4', found '4294967297'.\n"},
        {"load \"game.tbl\"\ntextaddress 10001D040h pointertable 10h pointersize 2\n[0000]\nAB\n",
         "s.txt:2,13:Expected '32-bit number', found '10001D040h'.\n"},
        {"load \"zero.tbl\"\n" + header.substr(16) + "[0000]\nAB\n", "Error opening zero.tbl.\n"},
    };
    for (const auto& c : cases) {
        WriteFile(dir / "s.txt", c.script);
        ExpectRun({"t", "s.txt"}, 255, c.output);
        EXPECT_EQ(ReadFile(dir / "game.nes"), image.Nes()) << c.script;
    }
    EXPECT_EQ(RunTrelvane(dir.path(), {"zero.tbl", "c", "out.txt"}),
              (RunResult{255, "zero.tbl:3,4:Expected '=', found '\\0'.\n"}));
    EXPECT_FALSE(FileExists(dir / "out.txt"));
}

// A table file that cannot be opened is named, then reported as the error
// (no longer "No errors occurred."), by every command that reads one.
TEST_F(ScriptCommandsTest, ATableThatCannotBeOpenedIsNamedThenReported) {
    GameImage image(0x2000);
    image.WriteNes(dir / "game.nes");
    const std::string refusal = "loadFile failed on 'missing.tbx'\nError opening missing.tbx.\n";
    ExpectRun({"d", "missing.tbx", "out.txt", "0h", "1"}, 255, refusal);
    ExpectRun({"x", "missing.tbx", "out.txt", "10h", "2", "1", "1"}, 255, refusal);
    ExpectRun({"l", "missing.tbx", "AB"}, 255, refusal);
    EXPECT_EQ(RunTrelvane(dir.path(), {"missing.tbx", "c", "out.txt"}), (RunResult{255, refusal}));
    WriteFile(dir / "s.txt", "load \"missing.tbx\"\ntextaddress 100h pointertable 10h pointersize 2\n[0000]\nAB\n"s);
    ExpectRun({"t", "s.txt"}, 255, refusal);
    EXPECT_FALSE(FileExists(dir / "out.txt"));
    EXPECT_EQ(ReadFile(dir / "game.nes"), image.Nes());
    // A thingy table that cannot be opened only gets the error.
    ExpectRun({"d", "missing.tbl", "out.txt", "0h", "1"}, 255, "Error opening missing.tbl.\n");
}

TEST_F(ScriptCommandsTest, LocateCountsOnUntilOneSearchHasTenMatchesOrFindsNothing) {
    GameImage image(0x1000, true);
    for (size_t i = 0; i < 9; ++i) image.Put(0x100 + 0x10 * i, {'H', 'e', 'l', 'l', 'o'});
    for (size_t at : {0x200, 0x220, 0x240}) image.Put(at, {'H', 0, 'e', 0, 'l', 0, 'l', 0, 'o'});
    image.Put(0x300, {'I', 'f', 'm', 'm', 'p'});
    image.WriteNes(dir / "game.nes");
    std::string plain = "   1 000100h\n   2 000110h\n   3 000120h\n   4 000130h\n   5 000140h\n   6 000150h\n"
                        "   7 000160h\n   8 000170h\n   9 000180h\n";
    ExpectRun({"l", "game.tbl", "Hello"}, 0,
              plain + "? 10 000200h\n? 11 000220h\n? 12 000240h\n* 13 000100h\n* 14 000110h\n* 15 000120h\n"
                      "* 16 000130h\n* 17 000140h\n* 18 000150h\n* 19 000160h\n* 20 000170h\n* 21 000180h\n"
                      "* 22 000300h\n");
    image.Put(0x190, {'H', 'e', 'l', 'l', 'o'});
    image.WriteNes(dir / "game.nes");
    ExpectRun({"l", "game.tbl", "Hello"}, 0, plain + "  10 000190h\n");

    image.Put(0, {'H', 'i'});  // offset 0 is never reported
    image.WriteNes(dir / "game.nes");
    ExpectRun({"l", "game.tbl", "Hi"}, 255, "No matches found.\n");
    ExpectRun({"l", "game.tbl", ""}, 255, "No matches found.\n");
    ExpectRun({"l", "game.tbl", "a\\b"}, 255, "Unable to encode: a\\b\n");
    // A message file can reword a line: data2 is the bare count, data3 the string.
    WriteFile(dir / "trelvane.msg", "TRELVANE_MESSAGE(TLMSG_SEARCH_FOUND, \"#[data2] [data3] at [data1]\")\n");
    image.Put(0, {0, 0});
    image.Put(0x40, {'H', 'i'});
    image.WriteNes(dir / "game.nes");
    ExpectRun({"l", "game.tbl", "Hi"}, 0, "#1 Hi at 000040h\n*  2 000040h\n");
}

}  // namespace
