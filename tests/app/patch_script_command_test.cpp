// The p command with patch scripts: errors printed and counted, the image saved
// or left untouched, includes, macros and a block over its limit.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/test_support.h"

namespace {

constexpr size_t kHeader = 512;
constexpr size_t kImageSize = 0x10000;

class PatchScriptCommandTest : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.smc", Bytes(kHeader + kImageSize, 0)); }
    RunResult Patch(const std::string& script) { return RunTrelvane(dir.path(), {"game.smc", "p", script}); }
    // The image bytes (behind the copier header) at position.
    Bytes Image(size_t position, size_t count) {
        const Bytes file = ReadFile(dir / "game.smc");
        return Bytes(file.begin() + static_cast<long>(kHeader + position),
                     file.begin() + static_cast<long>(kHeader + position + count));
    }
    TempDir dir;
};

TEST_F(PatchScriptCommandTest, AppliesAScript) {
    WriteFile(dir / "fix.asm",
              "; a routine and its hook\r\n"
              ".ADDRESS 8100h\r\n"
              "loop: dex\r\n"
              " bne loop\r\n"
              " rtl\r\n"
              ".PATCH 8000h: 22 00 81 00\r\n");
    EXPECT_EQ(Patch("fix.asm"), (RunResult{0, "fix.asm: Patch successful\n"}));
    EXPECT_EQ(Image(0x8000, 4), Bytes({0x22, 0x00, 0x81, 0x00}));
    EXPECT_EQ(Image(0x8100, 4), Bytes({0xCA, 0xD0, 0xFD, 0x6B}));
}

TEST_F(PatchScriptCommandTest, ErrorsArePrintedAndTheImageSaved) {
    WriteFile(dir / "three.asm", ".ADDRESS 8000h\nfoo bar\n.BYTE 1\nlda ,\n.CHARSET\n.BYTE 2\n");
    EXPECT_EQ(Patch("three.asm"), (RunResult{0,
                                             "three.asm:2,5:Expected .MACRO, found: bar\n"
                                             "three.asm:4,5:Invalid operand: ,\n"
                                             "three.asm:5,1:Unknown command: .CHARSET\n"}));
    EXPECT_EQ(Image(0x8000, 3), Bytes({0x01, 0x02, 0x00}));
}

TEST_F(PatchScriptCommandTest, MessagesWithBracketsAreShownAsTheyStand) {
    WriteFile(dir / "brackets.asm", ".ADDRESS 8000h\nlda [12]\nsta [12+x]\n.BYTE 7\n");
    EXPECT_EQ(Patch("brackets.asm"), (RunResult{0,
                                                "brackets.asm:2,5:Invalid operand: [12]\n"
                                                "brackets.asm:3,5:Invalid operand: [12+x]\n"}));
    EXPECT_EQ(Image(0x8000, 2), Bytes({0x07, 0x00}));
}

TEST_F(PatchScriptCommandTest, TwentyErrorsAbortWithoutSaving) {
    std::string script = ".PATCH 100h: 55\n";
    for (int i = 0; i < 25; ++i) script += ".FOO\n";
    WriteFile(dir / "many.asm", script);
    std::string output;
    for (int line = 2; line < 22; ++line) output += "many.asm:" + std::to_string(line) + ",1:Unknown command: .FOO\n";
    output += "Too many errors - aborting\n";
    EXPECT_EQ(Patch("many.asm"), (RunResult{255, output}));
    EXPECT_EQ(ReadFile(dir / "game.smc"), Bytes(kHeader + kImageSize, 0));
}

TEST_F(PatchScriptCommandTest, IncludesToAnyDepth) {
    WriteFile(dir / "main.asm", ".ADDRESS 8000h\n.INCLUDE \"one.asm\" .BYTE 3\n.INCLUDE \"gone.asm\"\n.BYTE 4\n");
    WriteFile(dir / "one.asm", ".BYTE 1\n.INCLUDE \"two\"\n");
    WriteFile(dir / "two", "$v 10h\nstore .MACRO\nsta ?0\n.ENDM\n_store v\n");
    EXPECT_EQ(Patch("main.asm"), (RunResult{0, "main.asm:3,10:Error opening: gone.asm\n"}));
    // The code after the macro definition goes on behind the 01 before it.
    EXPECT_EQ(Image(0x8000, 6), Bytes({0x01, 0x85, 0x10, 0x03, 0x04, 0x00}));
}

TEST_F(PatchScriptCommandTest, IncludeCyclesAreRefused) {
    WriteFile(dir / "self.asm", ".ADDRESS 8000h\n.BYTE 1\n.INCLUDE \"self.asm\"\n.BYTE 2\n");
    EXPECT_EQ(Patch("self.asm"), (RunResult{0, "self.asm:3,10:File self.asm is already being read.\n"}));
    EXPECT_EQ(Image(0x8000, 3), Bytes({0x01, 0x02, 0x00}));

    WriteFile(dir / "a.asm", ".ADDRESS 9000h\n.BYTE 5\n.INCLUDE \"b.asm\"\n");
    WriteFile(dir / "b.asm", ".INCLUDE \"link.asm\"\n.BYTE 6\n");
    std::filesystem::create_symlink("a.asm", dir / "link.asm");
    EXPECT_EQ(Patch("a.asm"), (RunResult{0, "b.asm:1,10:File link.asm is already being read.\n"}));
    EXPECT_EQ(Image(0x9000, 3), Bytes({0x05, 0x06, 0x00}));
}

TEST_F(PatchScriptCommandTest, BlockOverItsLimit) {
    WriteFile(dir / "big.asm", ".ADDRESS 8000h (3)\nlda 1234h\nnop\n.ADDRESS 9000h\nnop\n");
    EXPECT_EQ(Patch("big.asm"),
              (RunResult{0, "A9 34 12 EA \n\nbig.asm:4,10:Compiled code at 008000 exceeds maximum size (4/3)\n"}));
    EXPECT_EQ(Image(0x8000, 1), Bytes({0x00}));
    EXPECT_EQ(Image(0x9000, 1), Bytes({0xEA}));
}

TEST_F(PatchScriptCommandTest, RefusalsBeforeTheScriptRuns) {
    EXPECT_EQ(Patch("none.asm"), (RunResult{255, "Error opening none.asm.\n"}));
    EXPECT_EQ(Patch("none"), (RunResult{255, "Error opening none.\n"}));
    EXPECT_EQ(RunTrelvane(dir.path(), {"gone.smc", "p", "x.asm"}), (RunResult{255, "Error opening gone.smc.\n"}));
    EXPECT_EQ(ReadFile(dir / "game.smc"), Bytes(kHeader + kImageSize, 0));
}

}  // namespace
