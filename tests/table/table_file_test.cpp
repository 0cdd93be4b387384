#include <filesystem>
#include <cstdio>
#include <cstring>

#include "table/font_test_support.h"
#include "table/table_reader.h"

namespace {

using namespace std::string_literals;

using TableFileTest = FontTest;

// Saving refuses unknown fonts and uncreatable files; the written layout reads back byte for byte,
// leaving out entries without a text (0x90).
TEST_F(TableFileTest, WrittenTablesReadBackByteForByteAndRefusals) {
    const std::string out = dir / "out.txt", missing = dir / "no/such/dir.txt";
    EXPECT_EQ(Trelvane_SaveFont(1, out.c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-200|" + out + "|0,0|font|1");
    EXPECT_FALSE(FileExists(out));
    ASSERT_EQ(FontBuilder().Entry(0x06, "\"q\"", ENTRY_PARAM).Entry(0x90, nullptr, ENTRY_TERMINAL).Load(), 1);
    EXPECT_EQ(Trelvane_SaveFont(0, out.c_str()), 0);
    EXPECT_EQ(Trelvane_SaveFont(1, missing.c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-105|" + missing + "|0,0||");
    ASSERT_EQ(Trelvane_SaveFont(1, out.c_str()), -1);
    EXPECT_EQ(ReadText(out), "; Trelvane table\r\n\r\n[06]   \"\"\"q\"\"\" byte\r\n\r\n");
    const std::string table =
        "; Trelvane table\r\n\r\n"
        "[00]   \"A\"\r\n"
        "[01]   \"B\"\r\n"
        "[05]   \"<w @>\" newline byte\r\n"
        "[81]   \"x\" byte\r\n"
        "[FE]   terminal newline\r\n"
        "[FF]   terminal\r\n"
        "\r\n"
        "[8140] \"X\"\r\n"
        "[8141] \"<c @>\"\r\n"
        "[0123] terminal\r\n";
    ResetFontSet();
    ASSERT_EQ(LoadTable("font.txt", table), 1);
    ASSERT_EQ(Trelvane_SaveFont(1, (dir / "again.txt").c_str()), -1);
    std::string expected = table;  // 0x01 now begins the two-byte code 0123
    expected.replace(expected.find("[01]   \"B\""), 10, "[01]   \"B\" byte");
    EXPECT_EQ(ReadText(dir / "again.txt"), expected);
}

// Table files of both formats, loaded as font 1 and then decoding the bytes to the text.
TEST_F(TableFileTest, LoadedTablesDecode) {
    const struct {
        const char *name, *table;
        Bytes bytes;
        const char* text;
    } cases[] = {
        {"free.txt", "\"zero\" [41]\n\n \"A\nB\"   [42] \"B\" ; [43] \"C\"\n terminal [FE] newline",
         {0x00, 0x41, 0xFE, 0x43, 0x42, 0x41}, "zeroA\nB\n[43]B"},
        {"rule.txt", "[01] \"ki\" [02] \"-ya\" fontrule = 1, romanji [FF] terminal", {0x01, 0x02, 0xFF}, "kya"},
        {"rule.txt", "[01] \"ki\" [02] \"-ya\" fontrule = 1, plain [FF] terminal", {0x01, 0x02, 0xFF}, "ki-ya"},
        {"game.tbl", "41=A\n# note\n(x\n[y\n{z\n42= B c \r\n*FE\n/FF\n00=\n",
         {0x41, 0x42, 0xFE, 0x00, 0x23, 0xFF, 0x41}, "A B c \n[23]"},
        // A two-byte control code reads no parameter bytes.
        {"game.tbl", "$1C=2\n$05=1 rest ignored\n8140=X\n$8141=1\n/FF\n",
         {0x1C, 0x01, 0x02, 0x05, 0x03, 0x81, 0x40, 0x81, 0x41, 0x07, 0xFF}, "<1C  01 02><05  03>X<8141 @>[07]"},
        // A line end in place of "=": the text starts right after it, so a lone line
        // feed makes the next line the text, a CR LF pair leaves it empty.
        {"game.tbl", "41\nA=1\n42\r\n/FF\n", {0x42, 0x41, 0xFF}, "A=1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.table);
        ResetFontSet();
        ASSERT_EQ(LoadTable(c.name, c.table), 1);
        EXPECT_EQ(Decode(c.bytes), c.text);
    }
}

// A refused load returns 0; a warning keeps the load going. "%" stands for the table's path.
TEST_F(TableFileTest, RefusalsAndWarningsNameLineAndColumn) {
    const struct {
        const char* name;
        std::string table;
        long font;
        std::string error;
    } cases[] = {
        {"bad.tbl", "41=A\r\n\r\n/FF", 0, "-250|%|3,4|=|"},
        {"bad.tbl", "12345=A\n/FF\n", 0, "-250|%|1,5|=|5"},
        {"bad.tbl", "41=A\n=B\n/FF\n", 0, "-250|%|2,1|code|="},
        {"bad.tbl", "41=A\n/\n", 0, "-250|%|2,2|code|\n"},
        {"bad.tbl", "41=A\n  $1C=3\n/FF\n", 0, "-503|%|2,7||"},
        {"bad.tbl", "$1C=", 0, "-503|%|1,5||"},
        {"bad.tbl", "41=A\n*FE\n", 0, "-351|%|0,0||"},
        {"bad.txt", "[41] \"A\" newline", 0, "-351|%|0,0||"},
        {"rule.txt", "[41] \"A\"\nfontrule = 3, romanji\n[FF] terminal", 1, "-250|rule.txt|2,12|1 or 2|3"},
        {"rule.txt", "[41] \"A\"\nfontrule 1, romanji\n[FF] terminal", 1, "-250|rule.txt|2,10|=|1"},
        {"rule.txt", "[41] \"A\"\nfontrule = x, romanji\n[FF] terminal", 1, "-250|rule.txt|2,12|number|x"},
        {"rule.txt", "[41] \"A\"\nfontrule = 1 romanji\n[FF] terminal", 1, "-250|rule.txt|2,14|comma|romanji"},
        {"old.txt", "[41] \"A\"\n  Base 8000h \"ignored\"\n[FF] terminal\n", 1, "-303|old.txt|2,3|Base|"},
        // A character no pattern accepts reports the column just before it, as every reader does.
        {"bad.txt", "[FF] terminal\n[41] # \"A\"\n", 0, "-302|bad.txt|2,5|#|"},
        {"rule.txt", "[41] \"A\"\nfontrule = 4294967297, romanji\n[FF] terminal", 1,
         "-250|rule.txt|2,12|1 or 2|4294967297"},
        // A zero byte is refused at its own place; in a comment it does no harm.
        {"bad.txt", "[41] \"A\"\0 [FF] terminal"s, 0, "-302|bad.txt|1,9|\\0|"},
        {"bad.txt", "[41] \"A\0\" [FF] terminal"s, 0, "-302|bad.txt|1,8|\\0|"},
        {"bad.tbl", "41=A\n42=B\0C\n/FF\n"s, 0, "-250|%|2,5|text|\\0"},
        {"bad.tbl", "41=A\n\0"s "42=B\n/FF\n", 0, "-250|%|2,1|code|\\0"},
        {"bad.tbl", "4\0=A\n/FF\n"s, 0, "-250|%|1,2|=|\\0"},
        {"note.txt", "; \0\n[41] \"A\" [FF] terminal ; \0"s, 1, "0||0,0||"},
        {"note.tbl", "# \0\n41=A\n$42=1 \0\n/FF\n"s, 1, "0||0,0||"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.table);
        ResetFontSet();
        SetError(TLERR_NONE, "", 0, 0);
        EXPECT_EQ(LoadTable(c.name, c.table), c.font);
        std::string error = c.error;
        if (error.find('%') != std::string::npos) error.replace(error.find('%'), 1, dir / c.name);
        EXPECT_EQ(LastErrorSummary(), error);
    }
    for (std::string token : {"hello", "[12345]", "=", "12", "romanji", "baseline"}) {
        ResetFontSet();
        EXPECT_EQ(LoadTable("bad.txt", "[FF] terminal\n[41] " + token + " \"A\"\n"), 0);
        EXPECT_EQ(LastErrorSummary(), "-302|bad.txt|2,6|" + token + "|");
    }
}

TEST_F(TableFileTest, AlternativeTextsFillASecondFont) {
    ASSERT_EQ(LoadTable("pair.txt", "[41] \"A\" {a} [42] \"B\" [8140] \"X\" {x} [FF] terminal fontrule=2,romanji"), 1);
    EXPECT_EQ(CurrentFontSet().fontCount, 2);
    EXPECT_EQ(Decode({0x41, 0x81, 0x40, 0x42, 0xFF}), "AXB");
    EXPECT_EQ(Decode({0x41, 0x81, 0x40, 0x42, 0xFF}, 2), "ax[42]");
    EXPECT_EQ(CurrentFontSet().fonts[0].rule, 0);
    EXPECT_EQ(CurrentFontSet().fonts[1].rule, FONT_RULE_ROMANJI);
    // No third slot: a table with alternative texts needs two free ones.
    ResetFontSet();
    ASSERT_EQ(LoadTable("one.txt", "[FF] terminal"), 1);
    EXPECT_EQ(LoadTable("pair.txt", "[41] \"A\" {a} [FF] terminal"), 0);
    EXPECT_EQ(LastErrorSummary(), "-102|" + (dir / "pair.txt") + "|0,0|fonts|");
}

TEST_F(TableFileTest, MissingFilesTheReaderChoiceAndAThirdFont) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(Trelvane_LoadFont((dir / "missing").c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-103|" + (dir / "missing") + "|0,0||");
    EXPECT_EQ(UnopenedTableFile(), dir / "missing");
    std::filesystem::create_directory(dir.path() / "d.tbl");  // a ".tbl" folder does not make a thingy table
    WriteFile(dir / "d.tbl/plain", std::string("/FF\n"));
    EXPECT_EQ(Trelvane_LoadFont((dir / "d.tbl/plain").c_str()), 0);
    EXPECT_EQ(UnopenedTableFile(), dir / "d.tbl/plain");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");  // the engine prints nothing
    EXPECT_EQ(LoadTable("a.tbl", "41=A\n*FE\n"), 0);
    EXPECT_EQ(LoadTable("UPPER.TBL", "/FF\n"), 1);
    EXPECT_EQ(Decode({0x41, 0xFF}), "[41]");
    WriteFile(dir / "plain.txt", std::string("[41] \"A\" [FF] terminal"));
    EXPECT_EQ(Trelvane_LoadFont((dir / "plain").c_str()), 2);
    EXPECT_EQ(LoadTable("b.tbl", "/FF\n"), 0);
    EXPECT_EQ(LastErrorSummary(), "-102|" + (dir / "b.tbl") + "|0,0|fonts|");
}

TEST_F(TableFileTest, TwoByteCodesAndThePoolStopAtTheirLimits) {
    std::string table = "/FF\n";
    char line[16];
    for (int n = 1; n <= TWO_BYTE_LIMIT; ++n) {
        std::snprintf(line, sizeof line, "%04X=w%d\n", 0x8000 + n, n);
        table += line;
    }
    ASSERT_EQ(LoadTable("full.tbl", table), 1);
    EXPECT_EQ(Decode({0x80, 0xFE, 0xFF}), "w254");
    EXPECT_EQ(LoadTable("over.tbl", table + "9000=x\n"), 0);
    EXPECT_EQ(LastErrorSummary(), "-300||0,0|More than 254 two-byte codes|");
    ResetFontSet();
    table = "/FF\n";
    for (int code = 0; code < 200; ++code)
        table += std::to_string(10 + code % 90) + "=" + std::string(200, 'a' + code % 26) + std::to_string(code) + "\n";
    EXPECT_EQ(LoadTable("big.tbl", table), 0);
    EXPECT_EQ(LastErrorSummary(), "-300||0,0|More than 32768 bytes of table text|");
}

// A refused load takes back what it stored: the next load into the same slot sees none of its
// entries, flags, two-byte codes or rule, and its texts no longer hold room in the pool.
TEST_F(TableFileTest, AFailedLoadLeavesNothingBehind) {
    const std::string kept = "/FF\n01=" + std::string(20000, 'k') + "\n";
    ASSERT_EQ(LoadTable("kept.tbl", kept), 1);
    const int poolEnd = CurrentFontSet().poolEnd;
    const std::string failedText(10000, 'f'), laterText(10000, 'l');
    const struct {
        const char *name, *table;
    } failures[] = {
        {"bad.txt", "[41] \"A\" [42] \"@\" [FE] newline [8140] \"X\" fontrule = 1, romanji [43] ? [FF] terminal"},
        {"bad.txt", "[41] \"A\" [42] \"@\" [FE] newline [8140] \"X\" fontrule = 1, romanji"},
        {"bad.tbl", "41=A\n$42=1\n*FE\n8140=X\n43 C\n/FF\n"},
        {"bad.tbl", "41=A\n$42=1\n*FE\n8140=X\n"},
    };
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.table);
        const bool thingy = EndsWith(failure.name, ".tbl");
        const std::string longEntry = thingy ? "44=" + failedText + "\n" : "[44] \"" + failedText + "\"\n";
        EXPECT_EQ(LoadTable(failure.name, longEntry + failure.table), 0);
        EXPECT_EQ(CurrentFontSet().poolEnd, poolEnd);
        ASSERT_EQ(LoadTable("later.tbl", "45=" + laterText + "\n/FF\n"), 2);
        EXPECT_EQ(Decode({0x41, 0x42, 0x07, 0xFE, 0x81, 0x40, 0x44, 0xFF}, 2), "[41][42][07][FE][81][40][44]");
        EXPECT_TRUE(CurrentFontSet().fonts[1].texts[0x45] == laterText);
        EXPECT_EQ(CurrentFontSet().fonts[1].rule, 0);
        // Start again from the kept font alone.
        ResetFontSet();
        ASSERT_EQ(LoadTable("kept.tbl", kept), 1);
    }
}

// Converting a thingy table writes a file that loads back to the same entries: every byte value
// as a one-character text (0x00, 0x0A and 0x0D cannot stand in a thingy text and get the empty
// text), and texts with double quotes, brackets, semicolons and blanks. Only "@" differs: the
// reloaded entry takes a parameter byte.
TEST_F(TableFileTest, ConvertedThingyTablesLoadBackToTheSameEntries) {
    std::string thingy;
    char code[8];
    for (int value = 0; value < 256; ++value) {
        std::snprintf(code, sizeof code, "%02X=", value);
        thingy += code;
        if (value != 0 && value != '\n' && value != '\r') thingy += static_cast<char>(value);
        thingy += "\r\n";
    }
    thingy += "/8000\r\n8001=\"\r\n8002=\"\"\r\n8003=a\"b\"\r\n8004=[41]\r\n8005=;x ]\r\n8006= \r\n8007=  two  ends  \r\n";
    thingy += "$8008=1\r\n8009={\"@\"}\r\n";
    ASSERT_EQ(LoadTable("game.tbl", thingy), 1);
    const std::string converted = dir / "game.txt";
    ASSERT_EQ(Trelvane_SaveFont(1, converted.c_str()), -1);
    const std::string written = ReadText(converted);
    EXPECT_NE(written.find("\r\n[00]   \"\"\r\n"), std::string::npos);
    EXPECT_NE(written.find("\r\n[22]   \"\"\"\"\r\n"), std::string::npos);
    EXPECT_NE(written.find("\r\n[8003] \"a\"\"b\"\"\"\r\n"), std::string::npos);
    ASSERT_EQ(Trelvane_LoadFont(converted.c_str()), 2) << LastErrorSummary();
    const Font& thingyFont = *FindFont(1);
    const Font& reloaded = *FindFont(2);
    ASSERT_EQ(LastEntryIndex(reloaded), LastEntryIndex(thingyFont));
    ASSERT_EQ(LastEntryIndex(thingyFont), TWO_BYTE_FIRST_ENTRY + 10);
    for (int entry = 0; entry <= LastEntryIndex(thingyFont); ++entry) {
        SCOPED_TRACE(entry);
        if (entry == TWO_BYTE_FIRST_ENTRY) continue;
        ASSERT_NE(thingyFont.texts[entry], nullptr);
        ASSERT_NE(reloaded.texts[entry], nullptr);
        EXPECT_EQ(std::string(reloaded.texts[entry]), std::string(thingyFont.texts[entry]));
        // A table file's "@" marks a parameter, which a thingy text's does not.
        const bool marksParameter = std::strchr(thingyFont.texts[entry], PARAMETER_MARK) != nullptr;
        EXPECT_EQ(reloaded.flags[entry], thingyFont.flags[entry] | (marksParameter ? ENTRY_PARAM : 0));
        if (entry > TWO_BYTE_FIRST_ENTRY) {
            EXPECT_EQ(TwoByteCodeOf(reloaded, entry), TwoByteCodeOf(thingyFont, entry));
        }
    }
    EXPECT_EQ(std::string(reloaded.texts[0x41]), "A");
    EXPECT_EQ(std::string(reloaded.texts[TWO_BYTE_FIRST_ENTRY + 4]), "a\"b\"");
    EXPECT_EQ(std::string(reloaded.texts[TWO_BYTE_FIRST_ENTRY + 8]), "  two  ends  ");
    EXPECT_EQ(std::string(reloaded.texts[TWO_BYTE_FIRST_ENTRY + 10]), "{\"@\"}");
}

// Quoted texts that touch continue one another; a blank between them leaves the later one.
TEST_F(TableFileTest, TouchingQuotedTextsJoinWithADoubleQuote) {
    ASSERT_EQ(LoadTable("t.txt", "[41] \"x\"\"\"\"y\" [42] \"p\" \"q\" [FF] terminal"), 1);
    EXPECT_EQ(Decode({0x41, 0x42, 0xFF}), "x\"\"yq");
    ResetFontSet();
    EXPECT_EQ(LoadTable("u.txt", "[41] \"x\"\"y [FF] terminal"), 0);
    EXPECT_EQ(LastErrorSummary(), "-302|u.txt|1,24|\"|");
}

}  // namespace
