#include "table/thingy_reader.h"

#include "table/font_test_support.h"

namespace {

using ThingyReaderTest = FontTest;

const Font& Slot(int index) { return TheFontSet.fonts[index]; }

TEST_F(ThingyReaderTest, ReadsTextsLineBreaksTerminalsAndIgnoredLines) {
    ASSERT_EQ(LoadTable("game.tbl", "41=A\n# note\n(x\n[y\n{z\n42= B c \r\n*FE\n/FF\n00=\n"), 1);
    EXPECT_EQ(TheFontSet.fontCount, 1);
    const Font& font = Slot(0);
    EXPECT_STREQ(font.texts[0x41], "A");
    EXPECT_STREQ(font.texts[0x42], " B c ");
    EXPECT_STREQ(font.texts[0xFE], "");
    EXPECT_STREQ(font.texts[0x00], "");
    EXPECT_EQ(font.texts[0x23], nullptr);
    EXPECT_EQ(font.flags[0xFE], ENTRY_NEWLINE);
    EXPECT_EQ(font.flags[0xFF], ENTRY_TERMINAL);
    EXPECT_EQ(font.flags[0x41], 0);
    EXPECT_EQ(LastError().code, TLERR_NONE);
}

TEST_F(ThingyReaderTest, ControlCodesAndTwoByteCodes) {
    ASSERT_EQ(LoadTable("a.tbl", "$1C=2\n$05=1 rest ignored\n8140=X\n$8141=1\n/FF\n"), 1);
    const Font& font = Slot(0);
    EXPECT_STREQ(font.texts[0x1C], "<1C @>");
    EXPECT_EQ(font.flags[0x1C], ENTRY_PARAM | ENTRY_PARAM2);
    EXPECT_STREQ(font.texts[0x05], "<05 @>");
    EXPECT_EQ(font.flags[0x05], ENTRY_PARAM);
    EXPECT_EQ(font.twoByteCounter, 3);
    EXPECT_EQ(font.twoByteMap[0x8140], 1);
    EXPECT_EQ(font.twoByteMap[0x8141], 2);
    EXPECT_STREQ(font.texts[257], "X");
    EXPECT_STREQ(font.texts[258], "<8141 @>");
    EXPECT_EQ(font.flags[258], ENTRY_PARAM);
    EXPECT_EQ(font.flags[0x81], ENTRY_PARAM);
}

TEST_F(ThingyReaderTest, ALineEndInPlaceOfTheEqualsSign) {
    // The text starts right after the consumed character: a lone line feed
    // makes the next line the text, a CR LF pair leaves it empty.
    ASSERT_EQ(LoadTable("a.tbl", "41\nA=1\n42\r\n/FF\n"), 1);
    EXPECT_STREQ(Slot(0).texts[0x41], "A=1");
    EXPECT_STREQ(Slot(0).texts[0x42], "");
}

TEST_F(ThingyReaderTest, ErrorsNameLineAndColumn) {
    struct Case {
        const char* text;
        std::string expected;
    } cases[] = {
        {"41=A\n42 B\n/FF\n", "-250|%|2,3|=| "},
        {"41=A\r\n\r\n/FF", "-250|%|3,4|=|"},
        {"12345=A\n/FF\n", "-250|%|1,5|=|5"},
        {"41=A\n=B\n/FF\n", "-250|%|2,1|code|="},
        {"41=A\n/\n", "-250|%|2,2|code|\n"},
        {"41=A\n  $1C=3\n/FF\n", "-503|%|2,7||"},
        {"$1C=", "-503|%|1,5||"},
    };
    for (const Case& c : cases) {
        ResetFontSet();
        EXPECT_EQ(LoadTable("bad.tbl", c.text), 0) << c.text;
        std::string expected = c.expected;
        expected.replace(expected.find('%'), 1, dir / "bad.tbl");
        EXPECT_EQ(LastErrorSummary(), expected) << c.text;
        EXPECT_EQ(TheFontSet.fontCount, 0);
    }
}

TEST_F(ThingyReaderTest, RefusesMissingFilesTablesWithoutTerminalsAndAThirdFont) {
    EXPECT_EQ(Trelvane_LoadFont((dir / "none.tbl").c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-103|" + (dir / "none.tbl") + "|0,0||");
    EXPECT_EQ(LoadTable("a.tbl", "41=A\n*FE\n"), 0);
    EXPECT_EQ(LastErrorSummary(), "-351|" + (dir / "a.tbl") + "|0,0||");
    EXPECT_EQ(TheFontSet.fontCount, 0);
    // The failed load left its entries in the slot; the next load adds to them.
    EXPECT_EQ(LoadTable("b.tbl", "/FF\n"), 1);
    EXPECT_STREQ(Slot(0).texts[0x41], "A");
    EXPECT_EQ(LoadTable("b.tbl", "/FF\n"), 2);
    EXPECT_EQ(LoadTable("b.tbl", "/FF\n"), 0);
    EXPECT_EQ(LastErrorSummary(), "-102|" + (dir / "b.tbl") + "|0,0|fonts|");
    EXPECT_EQ(TheFontSet.fontCount, 2);
}

TEST_F(ThingyReaderTest, TwoByteCodesStopAtTheLimit) {
    std::string table = "/FF\n";
    char line[16];
    for (int n = 1; n <= TWO_BYTE_LIMIT; ++n) {
        std::snprintf(line, sizeof line, "%04X=w%d\n", 0x8000 + n, n);
        table += line;
    }
    ASSERT_EQ(LoadTable("full.tbl", table), 1);
    EXPECT_EQ(Slot(0).twoByteCounter, 255);
    EXPECT_EQ(Slot(0).twoByteMap[0x80FE], 254);
    EXPECT_EQ(LoadTable("over.tbl", table + "9000=x\n"), 0);
    EXPECT_EQ(LastErrorSummary(), "-300||0,0|More than 254 two-byte codes|");
    EXPECT_EQ(Slot(1).twoByteMap[0x9000], 0);
}

TEST_F(ThingyReaderTest, ChoosesTheReaderByExtension) {
    WriteFile(dir / "UPPER.TBL", std::string("/FF\n"));
    EXPECT_EQ(Trelvane_LoadFont((dir / "UPPER.TBL").c_str()), 1);
    std::filesystem::create_directory(dir.path() / "d.tbl");
    WriteFile(dir / "d.tbl/plain", std::string("/FF\n"));
    testing::internal::CaptureStdout();
    EXPECT_EQ(Trelvane_LoadFont((dir / "d.tbl/plain").c_str()), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "loadFile failed on '" + (dir / "d.tbl/plain") + "'\n");
    EXPECT_EQ(TheFontSet.fontCount, 1);
}

TEST(InternStringTest, SharesTailsAndStopsAtThePoolEnd) {
    ResetFontSet();
    const char* abc = InternString("ABC");
    EXPECT_EQ(InternString("BC"), abc + 1);
    EXPECT_EQ(InternString(""), abc + 3);
    EXPECT_EQ(InternString("ABC"), abc);
    const char* ab = InternString("AB");
    EXPECT_EQ(ab, abc + 4);
    EXPECT_EQ(TheFontSet.poolEnd, 7);
    std::string big(POOL_SIZE - 7 - 1, 'x');
    EXPECT_NE(InternString(big.c_str()), nullptr);
    EXPECT_EQ(TheFontSet.poolEnd, POOL_SIZE);
    EXPECT_EQ(InternString("y"), nullptr);
    EXPECT_EQ(InternString("xx"), abc + 7 + big.size() - 2);
}

TEST_F(ThingyReaderTest, PoolOverflowRefusesTheLoad) {
    std::string table = "/FF\n";
    for (int code = 0; code < 200; ++code) table += std::to_string(10 + code % 90) + "=" + std::string(200, 'a' + code % 26) + std::to_string(code) + "\n";
    EXPECT_EQ(LoadTable("big.tbl", table), 0);
    EXPECT_EQ(LastErrorSummary(), "-300||0,0|More than 32768 bytes of table text|");
}

}  // namespace
