// Compiling code blocks: label positions, branch displacements and widening,
// pointers, the block limit and the refusals that keep writes inside the image.
#include <gtest/gtest.h>

#include "asm/script_run.h"

namespace {

using Errors = std::vector<std::string>;

std::string Repeat(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

TEST(BlockCompilerTest, BranchesToLabels) {
    const struct {
        std::string source;
        Bytes bytes;
    } cases[] = {
        {"loop: dex\nbne loop", {0xCA, 0xD0, 0xFD}},
        {"bra ahead\n.BYTE 1, 2\nahead: nop", {0x80, 0x02, 0x01, 0x02, 0xEA}},
        {"brl next\nnext:", {0x82, 0x00, 0x00}},
        // The brl grows on the first pass; the bra before it aims one byte further in the next.
        {"bra end\nbrl end\nend: nop", {0x80, 0x03, 0x82, 0x00, 0x00, 0xEA}},
        // A bra out of 8-bit reach becomes a jump to the label's address in the block's bank.
        {std::string("bra far\nnear: ") + Repeat(".BYTE 0\n", 130) + "far: bra near",
         [] {
             Bytes b = {0x4C, 0x85, 0x80};
             b.insert(b.end(), 130, 0);
             b.insert(b.end(), {0x4C, 0x03, 0x80});
             return b;
         }()},
        // Widening the brl pushes the earlier bra out of 8-bit reach; it grows into a jump too.
        {std::string("bra end\n") + Repeat(".BYTE 0\n", 125) + "brl x1\nx1: end: nop",
         [] {
             Bytes b = {0x4C, 0x83, 0x80};
             b.insert(b.end(), 125, 0);
             b.insert(b.end(), {0x82, 0x00, 0x00, 0xEA});
             return b;
         }()},
        {"jsr sub\nrts\nsub: rts", {0x20, 0x04, 0x80, 0x60, 0x60}},
        {"jsl sub\nsub: rtl", {0x22, 0x04, 0x80, 0x00, 0x6B}},
        {"ldx table\ntable: .BYTE 9", {0xA2, 0x03, 0x80, 0x09}},
        {"bne 8010h\nbeq 7FF0h", {0xD0, 0x0E, 0xF0, 0xEC}},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(std::string(".ADDRESS 8000h\n") + c.source);
        EXPECT_EQ(run.errors, Errors{}) << c.source;
        EXPECT_EQ(run.At(0x8000, static_cast<int>(c.bytes.size()) + 1), [&] {
            Bytes b = c.bytes;
            b.push_back(0);
            return b;
        }()) << c.source;
    }
}

TEST(BlockCompilerTest, NumericTargetsLieInTheBlocksBank) {
    const ScriptRun run = RunScript(".ADDRESS C08000h\nbne 8012h\njsl sub\nsub: rtl");
    EXPECT_EQ(run.errors, Errors{});
    EXPECT_EQ(run.At(0x8000, 7), Bytes({0xD0, 0x10, 0x22, 0x06, 0x80, 0xC0, 0x6B}));
}

TEST(BlockCompilerTest, RefusedBlocksWriteNothing) {
    const struct {
        std::string source;
        std::string error;
    } cases[] = {
        {std::string("bne ahead\n") + Repeat(".BYTE 0\n", 200) + "ahead: nop", "t.asm:203,11:bne ahead not implemented."},
        {std::string("bne end\n") + Repeat(".BYTE 0\n", 125) + "brl x1\nx1: end: nop",
         "t.asm:129,13:bne end not implemented."},
        {"brl 9100h\n", "t.asm:3,1: (33024) too far from brl (2) 33022"},
        {"bra nowhere\nnop", "t.asm:3,4:Label nowhere is not defined in this block."},
        {"lda ?1\nnop", "t.asm:3,4:Attempt to compile unevaluated macro failed.\n"},
        {"sta here\nhere: nop", "t.asm:3,10:sta here not implemented."},
        {"rep here\nhere: nop", "t.asm:3,10:rep here not implemented."},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(std::string(".ADDRESS 1000h\n") + c.source);
        EXPECT_EQ(run.errors, Errors({c.error})) << c.source;
        EXPECT_EQ(run.At(0x1000, 4), Bytes(4, 0)) << c.source;
    }
}

TEST(BlockCompilerTest, BlockLimitKeepsTheRefusedBytes) {
    testing::internal::CaptureStdout();
    const ScriptRun run = RunScript(".ADDRESS 8000h (4)\nnop nop nop nop nop\n.ADDRESS 9000h\nnop");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");  // the engine prints nothing
    EXPECT_EQ(run.refusedBlocks, std::vector<Bytes>({Bytes(5, 0xEA)}));
    EXPECT_EQ(run.errors, Errors({"t.asm:3,10:Compiled code at 008000 exceeds maximum size (5/4)"}));
    EXPECT_EQ(run.At(0x8000, 1), Bytes({0}));
    EXPECT_EQ(run.At(0x9000, 1), Bytes({0xEA}));  // the next block is not affected
}

TEST(BlockCompilerTest, PointersAreWrittenDuringThePass) {
    const struct {
        std::string source;
        int position;
        Bytes bytes;
    } cases[] = {
        {".ADDRESS 8000h\n.POINTER 2 @ 100h\nnop", 0x100, {0x00, 0x80, 0x00}},
        {".ADDRESS C08000h\nnop\n.POINTER 3 @ 100h", 0x100, {0x01, 0x80, 0xC0, 0x00}},
        {".ADDRESS C08000h\nnop\n.POINTER 0 @ 100h", 0x100, {0x01, 0x00}},
        {".ADDRESS C08000h\nnop\n.POINTER 6 @ 100h", 0x100, {0x01, 0x80, 0xC0, 0x00, 0x00}},
        {".ADDRESS 8000h\nbrl skip\nskip: .POINTER 2 @ 408100h", 0x8100, {0x03, 0x80}},  // widened first
        {".ADDRESS 8000h\n.POINTER 2 @ 8100h\nnop\nloop: bra loop", 0x8100, {0x00, 0x80}},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(c.source);
        EXPECT_EQ(run.errors, Errors{}) << c.source;
        EXPECT_EQ(run.At(c.position, static_cast<int>(c.bytes.size())), c.bytes) << c.source;
    }
    // A pointer location whose raw word looks like a label marker is no label definition.
    EXPECT_EQ(RunScript(".ADDRESS 8000h\nhere: .POINTER 2 @ 8000h\nhere2: nop").errors, Errors{});
}

TEST(BlockCompilerTest, RefusedBlocksStoreNoPointers) {
    const struct {
        const char* source;
        const char* error;
    } cases[] = {
        {".ADDRESS 8000h (1)\n.POINTER 2 @ 100h\nnop nop\n.ADDRESS 9000h",
         "t.asm:4,10:Compiled code at 008000 exceeds maximum size (2/1)"},
        {".ADDRESS 1FFFFh\n.POINTER 2 @ 100h\nnop nop", "t.asm:3,8:Compiled code at 01FFFF (2 bytes) lies outside the image"},
        {".ADDRESS 8000h\n.POINTER 2 @ 100h\nbra nowhere", "t.asm:3,12:Label nowhere is not defined in this block."},
        {".ADDRESS 8000h\n.POINTER 2 @ 100h\nnop\n.POINTER 2 @ 1FFFFh", "t.asm:4,20:Address 01FFFF lies outside the image"},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(c.source);
        EXPECT_EQ(run.errors, Errors({c.error})) << c.source;
        EXPECT_EQ(run.image, Bytes(SCRIPT_IMAGE_SIZE, 0)) << c.source;
    }
}

TEST(BlockCompilerTest, WritesStayInsideTheImage) {
    const struct {
        const char* source;
        const char* error;
    } cases[] = {
        {".ADDRESS 1FFFFh\nnop nop", "t.asm:2,8:Compiled code at 01FFFF (2 bytes) lies outside the image"},
        {".ADDRESS 8000h\n.POINTER 2 @ 1FFFFh\nnop", "t.asm:3,4:Address 01FFFF lies outside the image"},
        {".ADDRESS 3FFFFFh\nnop", "t.asm:2,4:Compiled code at 3FFFFF (1 bytes) lies outside the image"},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(c.source);
        EXPECT_EQ(run.errors, Errors({c.error})) << c.source;
        EXPECT_EQ(run.image, Bytes(SCRIPT_IMAGE_SIZE, 0)) << c.source;
    }
}

TEST(BlockCompilerTest, CodeAroundAMacroDefinitionIsOneBlock) {
    const ScriptRun run = RunScript(".ADDRESS 8000h\n.ADDRESS 9000h\nnop\nmac .MACRO\nnop\n.ENDM\n.BYTE 5");
    EXPECT_EQ(run.errors, Errors{});
    // The code after the definition goes on behind the code before it.
    EXPECT_EQ(run.At(0x9000, 3), Bytes({0xEA, 0x05, 0x00}));
    EXPECT_EQ(run.At(0x8000, 1), Bytes({0x00}));
    const ScriptRun labels = RunScript(".ADDRESS 818000h\nlda 1\nsta [10h]\nm2 .MACRO\nnop\n.ENDM\nrtl\n"
                                       "loop: bra out\nm3 .MACRO\n.ENDM\nout: bra loop");
    EXPECT_EQ(labels.errors, Errors{});
    EXPECT_EQ(labels.At(0x18000, 11), Bytes({0xA9, 0x01, 0x00, 0x85, 0x10, 0x6B, 0x80, 0x00, 0x80, 0xFC, 0x00}));
}

TEST(BlockCompilerTest, TableLimits) {
    std::string labels;
    for (int i = 0; i < 128; ++i) labels.append("l").append(std::to_string(i)).append(": ");
    EXPECT_EQ(RunScript(".ADDRESS 8000h\n" + labels + "extra: nop").errors,
              Errors({"t.asm:2,664:Too many labels and branch targets in one block (at most 128)."}));
    EXPECT_EQ(RunScript(".ADDRESS 8000h\n" + Repeat("bne 10h ", 128) + "bne 10h").errors,
              Errors({"t.asm:2,1029:Too many labels and branch targets in one block (at most 128).",
                      "t.asm:2,1032:bne  not implemented."}));  // the branches before it are far from 10h
    const ScriptRun full = RunScript(std::string(".ADDRESS 8000h\n.BYTE 1") + Repeat(",1", 4095) + "\nnop\n.BYTE 2");
    EXPECT_EQ(full.errors, Errors({"t.asm:3,1:Too many code entries in one block (at most 4096).",
                                   "t.asm:4,7:Too many code entries in one block (at most 4096)."}));
    EXPECT_EQ(full.At(0x8000 + 4095, 2), Bytes({1, 0}));
    EXPECT_EQ(RunScript(".ADDRESS 8000h " + Repeat("x", 32) + ": nop").errors,
              Errors({"t.asm:1,48:Name xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx is longer than 31 characters."}));
    EXPECT_EQ(RunScript(".ADDRESS 8000h " + std::string("bra ") + Repeat("y", 32)).errors,
              Errors({"t.asm:1,20:Name yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy is longer than 31 characters."}));
}

}  // namespace
