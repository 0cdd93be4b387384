// trelvane table convert: the same table the letter command c writes, and
// every refusal leaves the output as it was.
#include <gtest/gtest.h>

#include "support/test_support.h"

namespace {

const std::string kThingy = "41=A\n42=B \n*FE\n$1C=2\n/FF\n";

TEST(TableVerb, ConvertsAsTheLetterCommandDoes) {
    TempDir dir;
    WriteFile(dir / "plain.tbl", kThingy);
    WriteFile(dir / "Tabelle \xC3\xA4.txt", kThingy);  // read as a thingy table whatever its extension
    ASSERT_EQ(RunTrelvane(dir.path(), {"plain.tbl", "c", "letters.txt"}).status, 0);
    EXPECT_EQ(RunVerb(dir.path(), {"table", "convert", "Tabelle \xC3\xA4.txt", "-o", "out table \xC3\xA4.txt"}),
              (VerbResult{0, "out table \xC3\xA4.txt: written from Tabelle \xC3\xA4.txt\n", ""}));
    EXPECT_EQ(ReadText(dir / "out table \xC3\xA4.txt"), ReadText(dir / "letters.txt"));
    EXPECT_EQ(ReadText(dir / "letters.txt"),
              "; Trelvane table\r\n\r\n[1C]   \"<1C @>\" byte\r\n[41]   \"A\"\r\n[42]   \"B \"\r\n[FE]   newline\r\n"
              "[FF]   terminal\r\n\r\n");
}

TEST(TableVerb, RefusalsLeaveTheOutputAsItWas) {
    TempDir dir;
    WriteFile(dir / "good.tbl", kThingy);
    WriteFile(dir / "bad.tbl", std::string("41 A\n/FF\n"));
    WriteFile(dir / "noend.tbl", std::string("41=A\n"));
    WriteFile(dir / "out.txt", std::string("keep me"));
    const struct {
        std::vector<std::string> args;
        std::string errors;
    } cases[] = {
        {{"table", "convert", "missing.tbl", "-o", "out.txt"}, "trelvane table: Error opening missing.tbl.\n"},
        {{"table", "convert", "bad.tbl", "-o", "out.txt"}, "trelvane table: bad.tbl:1,3:Expected '=', found ' '.\n"},
        {{"table", "convert", "noend.tbl", "-o", "out.txt"}, "trelvane table: noend.tbl contains no terminal codes.\n"},
        {{"table", "convert", "good.tbl", "-o", "no/such/folder.txt"},
         "trelvane table: Error creating no/such/folder.txt.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[2]);
        EXPECT_EQ(RunVerb(dir.path(), c.args), (VerbResult{1, "", c.errors}));
        EXPECT_EQ(ReadText(dir / "out.txt"), "keep me");
    }
    for (const std::vector<std::string>& args : {std::vector<std::string>{"table"}, {"table", "convert", "good.tbl"},
                                                 {"table", "split", "good.tbl"}}) {
        ExpectRefusal(RunVerb(dir.path(), args));
    }
    EXPECT_EQ(ReadText(dir / "out.txt"), "keep me");
}

}  // namespace
