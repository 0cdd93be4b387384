#include "table/table_writer.h"

#include "table/font_test_support.h"

namespace {

using TableWriterTest = FontTest;

TEST_F(TableWriterTest, WritesEveryCodeWithItsKeywords) {
    ASSERT_EQ(FontBuilder()
                  .Entry(0x00, "A")
                  .Entry(0x01, "B")
                  .Entry(0xFF, "", ENTRY_TERMINAL)
                  .Entry(0x81, "x")
                  .Entry(0x90, nullptr, ENTRY_TERMINAL)
                  .Entry(0x05, "<w @>", ENTRY_PARAM | ENTRY_PARAM2 | ENTRY_NEWLINE)
                  .Entry(0x06, "\"q\"", ENTRY_PARAM)
                  .Entry(0xFE, "", ENTRY_NEWLINE | ENTRY_TERMINAL)
                  .TwoByte(0x8140, "X")
                  .TwoByte(0x0123, nullptr, ENTRY_TERMINAL)
                  .TwoByte(0x8141, "<c @>", ENTRY_PARAM)
                  .Load(),
              1);
    ASSERT_EQ(Trelvane_SaveFont(1, (dir / "out.txt").c_str()), -1);
    EXPECT_EQ(ReadText(dir / "out.txt"),
              "; Trelvane table\r\n\r\n"
              "[00]   \"A\"\r\n"
              "[01]   \"B\" byte\r\n"
              "[05]   \"<w @>\" newline byte\r\n"
              "[06]   \"\"q\"\" byte\r\n"
              "[81]   \"x\" byte\r\n"
              "[FE]   terminal newline\r\n"
              "[FF]   terminal\r\n"
              "\r\n"
              "[8140] \"X\"\r\n"
              "[0123] terminal\r\n"
              "[8141] \"<c @>\"\r\n");
}

TEST_F(TableWriterTest, RefusesUnknownFontsAndUncreatableFiles) {
    std::string out = dir / "out.txt";
    EXPECT_EQ(Trelvane_SaveFont(1, out.c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-200|" + out + "|0,0|font|1");
    ASSERT_EQ(FontBuilder().Entry(0xFF, "", ENTRY_TERMINAL).Load(), 1);
    EXPECT_EQ(Trelvane_SaveFont(0, out.c_str()), 0);
    EXPECT_EQ(Trelvane_SaveFont(2, out.c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-200|" + out + "|0,0|font|2");
    EXPECT_FALSE(FileExists(out));
    std::string missing = dir / "no/such/dir.txt";
    EXPECT_EQ(Trelvane_SaveFont(1, missing.c_str()), 0);
    EXPECT_EQ(LastErrorSummary(), "-105|" + missing + "|0,0||");
}

}  // namespace
