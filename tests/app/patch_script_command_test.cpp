// The p command with patch scripts: errors printed and counted, the image saved
// or left untouched, includes, macros and a block over its limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
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

// How soon a refused bomb ends: the sanitizers slow every file read down,
// and so does the emulator a Windows build runs under (5,000 includes take
// it about 1.3 s).
std::chrono::seconds Quickly() {
#ifdef __SANITIZE_ADDRESS__
    return std::chrono::seconds(5);
#else
    return std::chrono::seconds(TestingWindowsBuild() ? 5 : 1);
#endif
}

// The name of file number i of a series, such as b12.asm.
std::string Numbered(const char* prefix, int i) {
    char name[32];
    std::snprintf(name, sizeof name, "%s%d.asm", prefix, i);
    return name;
}

TEST_F(PatchScriptCommandTest, IncludeBombsAreRefusedQuickly) {
    // 40 files each including the next twice would read 2^40 files.
    for (int i = 0; i < 40; ++i) {
        const std::string include = ".INCLUDE \"" + Numbered("b", i + 1) + "\"\n";
        WriteFile(dir / Numbered("b", i), include + include);
    }
    WriteFile(dir / "b40.asm", ".ADDRESS 8000h\n.BYTE 1\n");
    const auto start = std::chrono::steady_clock::now();
    const RunResult bomb = Patch("b0.asm");
    EXPECT_LT(std::chrono::steady_clock::now() - start, Quickly());
    EXPECT_EQ(bomb.status, 255);
    ASSERT_GT(bomb.output.size(), 27u);
    EXPECT_EQ(bomb.output.substr(bomb.output.size() - 27), "Too many errors - aborting\n");
    EXPECT_EQ(std::count(bomb.output.begin(), bomb.output.end(), '\n'), 21);
    EXPECT_NE(bomb.output.find(",10:Too many includes (at most 5000).\n"), std::string::npos) << bomb.output;
    EXPECT_EQ(ReadFile(dir / "game.smc"), Bytes(kHeader + kImageSize, 0));

    // A chain of 3000 includes stops at the depth limit.
    for (int i = 0; i < 3000; ++i) WriteFile(dir / Numbered("c", i), ".INCLUDE \"" + Numbered("c", i + 1) + "\"\n");
    WriteFile(dir / "top.asm", ".ADDRESS 8000h\n.BYTE 2\n.INCLUDE \"c0.asm\"\n.BYTE 3\n");
    const auto chainStart = std::chrono::steady_clock::now();
    EXPECT_EQ(Patch("top.asm"), (RunResult{0, "c98.asm:1,10:Too many nested includes (at most 100).\n"}));
    EXPECT_LT(std::chrono::steady_clock::now() - chainStart, Quickly());
    EXPECT_EQ(Image(0x8000, 3), Bytes({0x02, 0x03, 0x00}));
}

TEST_F(PatchScriptCommandTest, ZeroBytesAndCarriageReturns) {
    using namespace std::string_literals;
    // A zero byte ends neither a .PATCH line nor a macro call silently; in a comment it is comment.
    WriteFile(dir / "zero.asm", "; note \0 .PATCH 10h: 55\n.ADDRESS 8000h\n.PATCH 100h: 41 4\0 42\n"
                                "m2 .MACRO\nlda ?0\n.ENDM\n_m2 1\0 2\n.BYTE 1\n"s);
    EXPECT_EQ(Patch("zero.asm"), (RunResult{0,
                                            "zero.asm:3,17:Not a pair of hexadecimal digits: 4\\0\n"
                                            "zero.asm:7,6:A zero byte stands in the line.\n"}));
    EXPECT_EQ(Image(0x10, 1), Bytes({0x00}));
    EXPECT_EQ(Image(0x100, 3), Bytes({0x00, 0x00, 0x00}));
    EXPECT_EQ(Image(0x8000, 2), Bytes({0x01, 0x00}));

    // Carriage returns end lines, alone or before a line feed, and swallow nothing.
    WriteFile(dir / "cr.asm", ".ADDRESS 8000h\r.BYTE 1\r.PATCH 100h: 41 42\r.BYTE 3 ; note\r.BYTE 4\r\n.PATCH 102h: 43\r44\n");
    EXPECT_EQ(Patch("cr.asm"), (RunResult{0, "cr.asm:7,1:Unknown command: 44\n"}));
    EXPECT_EQ(Image(0x8000, 4), Bytes({0x01, 0x03, 0x04, 0x00}));
    EXPECT_EQ(Image(0x100, 4), Bytes({0x41, 0x42, 0x43, 0x00}));
}

TEST_F(PatchScriptCommandTest, CodeAfterAMacroDefinitionGoesOn) {
    WriteFile(dir / "m.asm", ".ADDRESS 808000h\nlda 1\nsta [10h]\nm2 .MACRO\nnop\n.ENDM\nrtl\n");
    EXPECT_EQ(Patch("m.asm"), (RunResult{0, "m.asm: Patch successful\n"}));
    EXPECT_EQ(Image(0x8000, 7), Bytes({0xA9, 0x01, 0x00, 0x85, 0x10, 0x6B, 0x00}));
}

TEST_F(PatchScriptCommandTest, IncludeCyclesAreRefused) {
    WriteFile(dir / "self.asm", ".ADDRESS 8000h\n.BYTE 1\n.INCLUDE \"self.asm\"\n.BYTE 2\n");
    EXPECT_EQ(Patch("self.asm"), (RunResult{0, "self.asm:3,10:File self.asm is already being read.\n"}));
    EXPECT_EQ(Image(0x8000, 3), Bytes({0x01, 0x02, 0x00}));

    // A symbolic link made here is no Windows link to the Windows program under wine.
    if (TestingWindowsBuild()) return;
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
