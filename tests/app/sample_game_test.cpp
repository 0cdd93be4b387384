#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/test_support.h"

// The sample game that scripts/sample.sh demonstrates on: its script must be
// long enough for the pointer-table finder and survive a dump and insertion.
namespace {

class SampleGameTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(RunProgram(dir.path(), TRELVANE_MAKE_SAMPLE, {dir.path().string()}).status, 0); }

    TempDir dir;
};

// The dump with each placeholder line replaced by the text its comment lines
// show, so that inserting it writes the script as it was.
std::string RestoreOriginalText(const std::string& dump) {
    std::istringstream lines(dump);
    std::string line, text, script;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (StartsWith(line, "M") && !text.empty()) {
            script += text;
            text.clear();
            continue;
        }
        if (StartsWith(line, "; ")) text += line.substr(2) + "\n";
        script += line + "\n";
    }
    return script;
}

TEST_F(SampleGameTest, DumpFindsThePointerTable) {
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
}

TEST_F(SampleGameTest, DumpedScriptGoesBackByteForByte) {
    ASSERT_EQ(RunTrelvane(dir.path(), {"sample.nes", "d", "sample.tbl", "script.txt", "1D040h"}).status, 0);
    WriteFile(dir / "script.txt", RestoreOriginalText(ReadText(dir / "script.txt")));
    Bytes original = ReadFile(dir / "sample.nes");
    RunResult run = RunTrelvane(dir.path(), {"sample.nes", "t", "script.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "script.txt:20 strings - 426/426 (100%)\n");
    EXPECT_EQ(ReadFile(dir / "sample.nes"), original);
}

TEST_F(SampleGameTest, FrenchImageSharesTheTextBeforeItsMenus) {
    // Only the menus, strings 12 to 19, are French: string 12 keeps its place
    // and the images first differ at the pointer to string 13, so the patch
    // between them stays small.
    Bytes english = ReadFile(dir / "sample.nes"), french = ReadFile(dir / "sample_fr.nes");
    ASSERT_EQ(english.size(), french.size());
    size_t first = 0;
    while (first < english.size() && english[first] == french[first]) ++first;
    EXPECT_EQ(first, 16 + 0x1D000 + 2 * 13u);
}

}  // namespace
