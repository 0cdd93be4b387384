#include <gtest/gtest.h>

#include "support/test_support.h"

namespace {

TEST(ThingyCommandTest, ConvertsByteForByteOrPrintsTheErrorAndWritesNothing) {
    TempDir dir;
    WriteFile(dir / "game.tbl", std::string("41=A\r\n42=B b\r\n8140=X\r\n$05=2\r\n*FE\r\n/FF\r\n"));
    EXPECT_EQ(RunTrelvane(dir.path(), {"game.tbl", "c", "game.txt"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "game.txt"),
              "; Trelvane table\r\n\r\n"
              "[05]   \"<05 @>\" byte\r\n"
              "[41]   \"A\"\r\n"
              "[42]   \"B b\"\r\n"
              "[FE]   newline\r\n"
              "[FF]   terminal\r\n"
              "\r\n"
              "[8140] \"X\"\r\n");
    WriteFile(dir / "bad.tbl", std::string("41=A\n42 B\n/FF\n"));
    EXPECT_EQ(RunTrelvane(dir.path(), {"bad.tbl", "C", "out.txt"}),
              (RunResult{255, "bad.tbl:2,3:Expected '=', found ' '.\n"}));
    EXPECT_EQ(RunTrelvane(dir.path(), {"none.tbl", "c", "out.txt"}), (RunResult{255, "Error opening none.tbl.\n"}));
    EXPECT_FALSE(FileExists(dir / "out.txt"));
}

// A double quote is written twice inside its quotes, and the written table loads back.
TEST(ThingyCommandTest, ConvertedQuotesLoadBack) {
    TempDir dir;
    WriteFile(dir / "q.tbl", std::string("22=\"\r\n41=A\"B\r\n/FF\r\n"));
    EXPECT_EQ(RunTrelvane(dir.path(), {"q.tbl", "c", "q.txt"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "q.txt"),
              "; Trelvane table\r\n\r\n"
              "[22]   \"\"\"\"\r\n"
              "[41]   \"A\"\"B\"\r\n"
              "[FF]   terminal\r\n"
              "\r\n");
    EXPECT_EQ(RunTrelvane(dir.path(), {"q.txt", "c", "again.txt"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "again.txt"), ReadText(dir / "q.txt"));
}

}  // namespace
