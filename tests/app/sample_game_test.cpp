#include <gtest/gtest.h>

#include <string>

#include "support/test_support.h"

namespace {

// The sample game that scripts/sample.sh demonstrates on: the finder must see
// its pointer table, and the French image must differ only from its menus on.
TEST(SampleGameTest, DumpFindsThePointerTableAndTheFrenchImageSharesTheStory) {
    TempDir dir;
    ASSERT_EQ(RunProgram(dir.path(), TRELVANE_MAKE_SAMPLE, {dir.path().string()}).status, 0);
    RunResult run = RunTrelvane(dir.path(), {"sample.nes", "d", "sample.tbl", "script.txt", "1D040h"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Searching for pointer table... found.\n");
    std::string dump = ReadText(dir / "script.txt");
    EXPECT_TRUE(StartsWith(dump,
                           "load \"sample.tbl\"\r\nfirstpointer D040h\r\ntextaddress 01D040h (426)\r\n"
                           "pointertable 01D000h\r\npointersize 2\r\npointerfrequency 1\r\n"
                           "\r\n[0000] ; 01D040\r\n; Welcome to Trelvane Island!\r\nM00\r\n"
                           "\r\n[0001] ; 01D05C\r\n; The old lighthouse keeper\r\n; waits by the shore.\r\nM01\r\n"));
    EXPECT_TRUE(EndsWith(dump, "\r\n[0013] ; 01D1E7\r\n; No\r\nM13\r\n"));

    // Only the menus, strings 12 to 19, are French: string 12 keeps its place
    // and the images first differ at the pointer to string 13.
    Bytes english = ReadFile(dir / "sample.nes"), french = ReadFile(dir / "sample_fr.nes");
    ASSERT_EQ(english.size(), french.size());
    size_t first = 0;
    while (first < english.size() && english[first] == french[first]) ++first;
    EXPECT_EQ(first, 16 + 0x1D000 + 2 * 13u);
}

}  // namespace
