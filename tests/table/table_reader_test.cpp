#include "table/table_reader.h"

#include <cstring>

#include "table/font_test_support.h"
#include "table/text_decoder.h"

namespace {

using TableReaderTest = FontTest;

const Font& Slot(int index) { return TheFontSet.fonts[index]; }

std::string Decode(long id, const Bytes& bytes) {
    const char* text = DecodeText(id, bytes.data(), bytes.data() + bytes.size());
    return text ? text : "<null>";
}

TEST_F(TableReaderTest, LoadsAndSavesTheWritersLayout) {
    const std::string table =
        "; Trelvane table\r\n\r\n"
        "[00]   \"A\"\r\n"
        "[01]   \"B\"\r\n"
        "[05]   \"<w @>\" newline byte\r\n"
        "[81]   \"x\" byte\r\n"
        "[FF]   terminal\r\n"
        "\r\n"
        "[8140] \"X\"\r\n"
        "[0123] terminal\r\n";
    ASSERT_EQ(LoadTable("font.txt", table), 1);
    const Font& font = Slot(0);
    EXPECT_STREQ(font.texts[0x00], "A");
    EXPECT_EQ(font.flags[0x05], ENTRY_PARAM | ENTRY_PARAM2 | ENTRY_NEWLINE);
    EXPECT_EQ(font.flags[0x81], ENTRY_PARAM);
    EXPECT_EQ(font.flags[0x01], ENTRY_PARAM);
    EXPECT_STREQ(font.texts[257], "X");
    EXPECT_EQ(font.twoByteMap[0x8140], 1);
    EXPECT_STREQ(font.texts[258], "");
    EXPECT_EQ(font.flags[258], ENTRY_TERMINAL);
    ASSERT_EQ(Trelvane_SaveFont(1, (dir / "again.txt").c_str()), -1);
    std::string expected = table;
    expected.replace(expected.find("[01]   \"B\""), 10, "[01]   \"B\" byte");
    EXPECT_EQ(ReadText(dir / "again.txt"), expected);
    EXPECT_EQ(LastError().code, TLERR_NONE);
}

TEST_F(TableReaderTest, StatementsMayStandAnywhere) {
    ASSERT_EQ(LoadTable("free.txt", "\"zero\" [41]\n\n \"A\nB\"   [42] \"B\" ; [43] \"C\"\n terminal [FE] newline"), 1);
    const Font& font = Slot(0);
    EXPECT_STREQ(font.texts[0x00], "zero");
    EXPECT_STREQ(font.texts[0x41], "A\nB");
    EXPECT_STREQ(font.texts[0x42], "B");
    EXPECT_EQ(font.texts[0x43], nullptr);
    EXPECT_EQ(font.flags[0x42], ENTRY_TERMINAL);
    EXPECT_EQ(font.flags[0x00], 0);
    EXPECT_STREQ(font.texts[0xFE], "");
    EXPECT_EQ(font.flags[0xFE], ENTRY_NEWLINE);
}

TEST_F(TableReaderTest, AlternativeTextsFillASecondFont) {
    ASSERT_EQ(LoadTable("pair.txt", "[41] \"A\" {a} [42] \"B\" [8140] \"X\" {x} [FF] terminal\n"
                                    "fontrule = 2, romanji\n"),
              1);
    EXPECT_EQ(TheFontSet.fontCount, 2);
    EXPECT_EQ(Decode(1, {0x41, 0x81, 0x40, 0x42, 0xFF}), "AXB");
    EXPECT_EQ(Decode(2, {0x41, 0x81, 0x40, 0x42, 0xFF}), "ax[42]");
    EXPECT_EQ(0, std::memcmp(Slot(0).flags, Slot(1).flags, sizeof Slot(0).flags));
    EXPECT_EQ(Slot(1).twoByteCounter, 2);
    EXPECT_EQ(Slot(0).rule, 0);
    EXPECT_EQ(Slot(1).rule, FONT_RULE_ROMANJI);
    // No third slot: a table with alternative texts needs two free ones.
    ResetFontSet();
    ASSERT_EQ(LoadTable("one.txt", "[FF] terminal"), 1);
    EXPECT_EQ(LoadTable("pair.txt", "[41] \"A\" {a} [FF] terminal"), 0);
    EXPECT_EQ(LastErrorSummary(), "-102|" + (dir / "pair.txt") + "|0,0|fonts|");
    EXPECT_EQ(TheFontSet.fontCount, 1);
}

TEST_F(TableReaderTest, FontRuleStatements) {
    struct Case {
        const char* statement;
        uint8_t rule;
        std::string error;
    } cases[] = {
        {"fontrule = 1, romanji", FONT_RULE_ROMANJI, "0||0,0||"},
        {"fontrule = 1, plain", 0, "0||0,0||"},
        {"fontrule = 3, romanji", 0, "-250|rule.txt|2,12|1 or 2|3"},
        {"fontrule 1, romanji", 0, "-250|rule.txt|2,10|=|1"},
        {"fontrule = x, romanji", 0, "-250|rule.txt|2,12|number|x"},
        {"fontrule = 1 romanji", 0, "-250|rule.txt|2,14|comma|romanji"},
    };
    for (const Case& c : cases) {
        ResetFontSet();
        SetError(TLERR_NONE, "", 0, 0);
        std::string table = "[41] \"A\"\n" + std::string(c.statement) + " [42] \"B\"\n[FF] terminal\n";
        ASSERT_EQ(LoadTable("rule.txt", table), 1) << c.statement;
        EXPECT_EQ(Slot(0).rule, c.rule) << c.statement;
        EXPECT_EQ(LastErrorSummary(), c.error) << c.statement;
        EXPECT_STREQ(Slot(0).texts[0xFF], "");
    }
}

TEST_F(TableReaderTest, ObsoleteKeywordsWarnAndUnknownTokensFail) {
    ASSERT_EQ(LoadTable("old.txt", "[41] \"A\"\n  Base 8000h \"ignored\"\n[FF] terminal\n"), 1);
    EXPECT_EQ(LastErrorSummary(), "-303|old.txt|2,3|Base|");
    EXPECT_EQ(Slot(0).texts[0x00], nullptr);
    // A character no pattern accepts reports the column just before it, as every reader does.
    for (std::string token : {"hello", "[12345]", "=", "12", "romanji", "baseline", "#"}) {
        ResetFontSet();
        std::string table = "[FF] terminal\n[41] " + token + " \"A\"\n";
        EXPECT_EQ(LoadTable("bad.txt", table), 0) << token;
        EXPECT_EQ(LastErrorSummary(), "-302|bad.txt|2," + std::string(token == "#" ? "5" : "6") + "|" + token + "|");
        EXPECT_EQ(TheFontSet.fontCount, 0);
    }
}

TEST_F(TableReaderTest, MissingFilesAndTablesWithoutTerminals) {
    testing::internal::CaptureStdout();
    std::string missing = dir / "missing";
    EXPECT_EQ(Trelvane_LoadFont(missing.c_str()), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "loadFile failed on '" + missing + "'\n");
    EXPECT_EQ(LastError().code, TLERR_NONE);
    WriteFile(dir / "plain.txt", std::string("[41] \"A\" [FF] terminal"));
    EXPECT_EQ(Trelvane_LoadFont((dir / "plain").c_str()), 1);
    EXPECT_EQ(LoadTable("none.txt", "[41] \"A\" newline"), 0);
    EXPECT_EQ(LastErrorSummary(), "-351|" + (dir / "none.txt") + "|0,0||");
    EXPECT_EQ(TheFontSet.fontCount, 1);
}

}  // namespace
