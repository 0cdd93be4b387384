// trelvane find: plain, wide and relative matches as image offsets.
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "verbs/test_images.h"

namespace {

class FindVerb : public ::testing::Test {
protected:
    void SetUp() override {
        WriteFile(dir / "letters.tbl", std::string("41=A\n42=B\n43=C\n44=D\n45=E\n48=H\n4C=L\n4F=O\n/FF\n"));
        Bytes image(0x8000, 0);
        Put(image, 0x0000, {0x48, 0x45, 0x4C, 0x4C, 0x4F});        // HELLO, at offset 0
        Put(image, 0x0100, {0x48, 0x45, 0x4C, 0x4C, 0x4F});        // and again
        Put(image, 0x0200, {0x48, 1, 0x45, 2, 0x4C, 3, 0x4C, 4, 0x4F});  // one letter in every second byte
        Put(image, 0x0300, {0x88, 0x85, 0x8C, 0x8C, 0x8F});        // another encoding, same distances
        WriteFile(dir / "game.sfc", image);
        WriteFile(dir / "Spiel (E) [T+Fre] \xC3\xA4.smc", WithCopierHeader(image));
    }
    static void Put(Bytes& image, size_t at, const Bytes& bytes) { std::copy(bytes.begin(), bytes.end(), image.begin() + at); }
    VerbResult Find(const std::vector<std::string>& args) {
        std::vector<std::string> line = {"find"};
        line.insert(line.end(), args.begin(), args.end());
        return RunVerb(dir.path(), line);
    }
    TempDir dir;
};

TEST_F(FindVerb, EachSearchPrintsItsOffsets) {
    const std::string note = "trelvane find: game.sfc: header: none\n";
    EXPECT_EQ(Find({"game.sfc", "HELLO", "--table", "letters.tbl"}), (VerbResult{0, "000000h\n000100h\n", note}));
    EXPECT_EQ(Find({"game.sfc", "HELLO", "--table", "letters.tbl", "--wide"}), (VerbResult{0, "000200h\n", note}));
    EXPECT_EQ(Find({"game.sfc", "HELLO", "--table", "letters.tbl", "--relative"}),
              (VerbResult{0, "000000h\n000100h\n000300h\n", note}));
    EXPECT_EQ(Find({"game.sfc", "LL", "--table", "letters.tbl"}),
              (VerbResult{0, "000002h\n000102h\n", note}));
}

TEST_F(FindVerb, OffsetsAreThoseOfTheImageBehindTheCopierHeader) {
    const std::string name = "Spiel (E) [T+Fre] \xC3\xA4.smc";
    EXPECT_EQ(Find({"--table", "letters.tbl", name, "HELLO"}),
              (VerbResult{0, "000000h\n000100h\n", "trelvane find: " + name + ": header: 512-byte copier header\n"}));
}

TEST_F(FindVerb, Refusals) {
    const Bytes image = ReadFile(dir / "game.sfc");
    WriteFile(dir / "bad.tbl", std::string("41 A\n"));
    const std::string note = "trelvane find: game.sfc: header: none\n";
    const struct {
        std::vector<std::string> args;
        VerbResult result;
    } cases[] = {
        {{"game.sfc", "ABBA", "--table", "letters.tbl"}, {1, "", note + "trelvane find: no match for 'ABBA'\n"}},
        {{"game.sfc", "xyz", "--table", "letters.tbl"},
         {1, "", note + "trelvane find: 'xyz' cannot be encoded with letters.tbl\n"}},
        {{"game.sfc", "H", "--table", "letters.tbl", "--wide"},
         {1, "", note + "trelvane find: --relative and --wide need a text of at least two characters\n"}},
        {{"game.sfc", "HELLO", "--table", "missing.tbl"}, {1, "", note + "trelvane find: Error opening missing.tbl.\n"}},
        {{"game.sfc", "HELLO", "--table", "bad.tbl"},
         {1, "", note + "trelvane find: bad.tbl:1,3:Expected '=', found ' '.\n"}},
        {{"missing.sfc", "HELLO", "--table", "letters.tbl"}, {1, "", "trelvane find: Error opening missing.sfc.\n"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[1] + " " + c.args[3]);
        EXPECT_EQ(Find(c.args), c.result);
    }
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"game.sfc", "HELLO"}, {"game.sfc", "--table", "letters.tbl"},
          {"game.sfc", "HELLO", "--table", "letters.tbl", "--wide", "--relative"}}) {
        ExpectRefusal(Find(args));
    }
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
}

}  // namespace
