// Instructions: every opcode row reached through the assembler, the widening
// of numbers and symbols, registers, and the refusals of operands.
#include <gtest/gtest.h>

#include <set>

#include "asm/script_run.h"

namespace {

using Errors = std::vector<std::string>;

struct Case {
    const char* source;
    Bytes bytes;
};

// One instruction per opcode of the 65816 description, in the language's own syntax.
const Case kOpcodeRows[] = {
    {"adc [12h+s]", {0x63, 0x12}}, {"adc [12h]", {0x65, 0x12}}, {"adc 1234h", {0x69, 0x34, 0x12}},
    {"adc [1234h]", {0x6D, 0x34, 0x12}}, {"adc [(12h+s)+y]", {0x73, 0x12}},
    {"and 1234h", {0x29, 0x34, 0x12}}, {"and [123456h+x]", {0x3F, 0x56, 0x34, 0x12}},
    {"asl a", {0x0A}},
    {"bcc 8010h", {0x90, 0x0E}}, {"bcs 8010h", {0xB0, 0x0E}}, {"beq 8010h", {0xF0, 0x0E}},
    {"bmi 8010h", {0x30, 0x0E}}, {"bne 8010h", {0xD0, 0x0E}}, {"bpl 8010h", {0x10, 0x0E}},
    {"bra 8010h", {0x4C, 0x10, 0x80}}, {"here: bra here", {0x80, 0xFE}}, {"brl next\nnext:", {0x82, 0x00, 0x00}},
    {"cmp [12h]", {0xC5, 0x12}}, {"cmp 1234h", {0xC9, 0x34, 0x12}}, {"cmp [1234h]", {0xCD, 0x34, 0x12}},
    {"cmp [123456h]", {0xCF, 0x56, 0x34, 0x12}},
    {"cpx 1234h", {0xE0, 0x34, 0x12}}, {"cpx [1234h]", {0xEC, 0x34, 0x12}}, {"cpy 1234h", {0xC0, 0x34, 0x12}},
    {"dec a", {0x3A}}, {"dec [1234h]", {0xCE, 0x34, 0x12}}, {"eor 1234h", {0x49, 0x34, 0x12}},
    {"inc a", {0x1A}}, {"inc [1234h]", {0xEE, 0x34, 0x12}}, {"inc [12h+x]", {0xF6, 0x12}},
    {"jsl 123456h", {0x22, 0x56, 0x34, 0x12}}, {"jsr 1234h", {0x20, 0x34, 0x12}},
    {"jsr [1234h+x]", {0xFC, 0x34, 0x12}},
    {"lda [12h+s]", {0xA3, 0x12}}, {"lda [12h]", {0xA5, 0x12}}, {"lda 1234h", {0xA9, 0x34, 0x12}},
    {"lda [1234h]", {0xAD, 0x34, 0x12}}, {"lda [123456h]", {0xAF, 0x56, 0x34, 0x12}},
    {"lda [12h+y]", {0xB1, 0x12}}, {"lda [(12h+s)+y]", {0xB3, 0x12}}, {"lda [12h+x]", {0xB5, 0x12}},
    {"lda [1234h+y]", {0xB9, 0x34, 0x12}}, {"lda [1234h+x]", {0xBD, 0x34, 0x12}},
    {"lda [123456h+x]", {0xBF, 0x56, 0x34, 0x12}},
    {"ldx 1234h", {0xA2, 0x34, 0x12}}, {"ldx [1234h]", {0xAE, 0x34, 0x12}},
    {"ldy 1234h", {0xA0, 0x34, 0x12}}, {"ldy [1234h]", {0xAC, 0x34, 0x12}},
    {"lsr a", {0x4A}}, {"lsr [1234h]", {0x4E, 0x34, 0x12}},
    {"ora 1234h", {0x09, 0x34, 0x12}}, {"ora [1234h]", {0x0D, 0x34, 0x12}}, {"pea 1234h", {0xF4, 0x34, 0x12}},
    {"rep 30h", {0xC2, 0x30}}, {"sep 20h", {0xE2, 0x20}}, {"ror [1234h]", {0x6E, 0x34, 0x12}},
    {"sbc 1234h", {0xE9, 0x34, 0x12}}, {"sbc [1234h]", {0xED, 0x34, 0x12}},
    {"sta [12h]", {0x85, 0x12}}, {"sta [1234h]", {0x8D, 0x34, 0x12}}, {"sta [123456h]", {0x8F, 0x56, 0x34, 0x12}},
    {"sta [1234h+y]", {0x99, 0x34, 0x12}}, {"sta [1234h+x]", {0x9D, 0x34, 0x12}},
    {"sta [123456h+x]", {0x9F, 0x56, 0x34, 0x12}},
    {"stx [1234h]", {0x8E, 0x34, 0x12}}, {"sty [1234h]", {0x8C, 0x34, 0x12}},
    {"stz [12h]", {0x64, 0x12}}, {"stz [1234h]", {0x9C, 0x34, 0x12}}, {"stz [1234h+x]", {0x9E, 0x34, 0x12}},
    {"tsb [1234h]", {0x0C, 0x34, 0x12}},
    {"clc", {0x18}}, {"dex", {0xCA}}, {"inx", {0xE8}}, {"iny", {0xC8}}, {"nop", {0xEA}}, {"pha", {0x48}},
    {"phb", {0x8B}}, {"php", {0x08}}, {"phx", {0xDA}}, {"phy", {0x5A}}, {"pla", {0x68}}, {"plb", {0xAB}},
    {"plp", {0x28}}, {"plx", {0xFA}}, {"ply", {0x7A}}, {"rtl", {0x6B}}, {"rts", {0x60}}, {"sec", {0x38}},
    {"sei", {0x78}}, {"tax", {0xAA}}, {"tay", {0xA8}}, {"txa", {0x8A}}, {"tya", {0x98}}, {"xba", {0xEB}},
};

// The bytes of source assembled at 8000h, one byte past the expected ones (which must stay 0).
void ExpectAssembles(const std::string& source, Bytes bytes) {
    const ScriptRun run = RunScript(".ADDRESS 8000h\n" + source);
    EXPECT_EQ(run.errors, Errors{}) << source;
    bytes.push_back(0);
    EXPECT_EQ(run.At(0x8000, static_cast<int>(bytes.size())), bytes) << source;
}

TEST(OperandsTest, EveryOpcodeRow) {
    std::set<int> opcodes;
    for (const Case& c : kOpcodeRows) {
        ExpectAssembles(c.source, c.bytes);
        opcodes.insert(c.bytes[0]);
    }
    EXPECT_EQ(opcodes.size(), 94u);
}

TEST(OperandsTest, WideningAndAliases) {
    const Case cases[] = {
        {"lda 5", {0xA9, 0x05, 0x00}},        // no XXh form: the second attempt writes 0005h
        {"lda\n5", {0xA9, 0x05, 0x00}},       // the operand may stand on the next line
        {"jsl 8000h", {0x22, 0x00, 0x80, 0x00}},
        {"LDA [0012h]", {0xAD, 0x12, 0x00}},  // memory forms are used as written
        {"blt 8010h", {0x90, 0x0E}},
        {"bge 8010h", {0xB0, 0x0E}},
        {"cpa 5", {0xC9, 0x05, 0x00}},
        {"rsl swa", {0x6B, 0xEB}},
        {"lda 0FFFFh", {0xA9, 0xFF, 0xFF}},
        {"rep 0", {0xC2, 0x00}},
    };
    for (const Case& c : cases) ExpectAssembles(c.source, c.bytes);
}

TEST(OperandsTest, SymbolsArePlacedAgainstTheirBase) {
    const std::string symbols = ".ASSUME dbr: 7E0000h\n$v 7E0010h\n$w 7F0010h\nk .EQL 8123h\nf .EQL C18123h\n";
    const Case cases[] = {
        {"lda v", {0xA5, 0x10}},
        {"sta v+x", {0x9D, 0x10, 0x00}},  // sta has no [XXh+x]: the index stays for the next attempt
        {"lda v+x", {0xB5, 0x10}},
        {"lda v +y", {0xB1, 0x10}},
        {"stx v", {0x8E, 0x10, 0x00}},
        {"lda w", {0xAF, 0x10, 0x00, 0x7F}},
        {"sta w+x", {0x9F, 0x10, 0x00, 0x7F}},
        {"jsr k", {0x20, 0x23, 0x81}},
        {"jsl f", {0x22, 0x23, 0x81, 0xC1}},
    };
    for (const Case& c : cases) ExpectAssembles(symbols + c.source, c.bytes);
    // A constant keeps only the bits that differ from the block address.
    const ScriptRun run = RunScript(".ADDRESS C08000h\nk .EQL C08123h\njsr k\nlda k");
    EXPECT_EQ(run.errors, Errors{});
    EXPECT_EQ(run.At(0x8000, 7), Bytes({0x20, 0x23, 0x81, 0xA9, 0x23, 0x81, 0x00}));
    // Before any .ASSUME the data bank is 0.
    ExpectAssembles("$z 10h\nlda z", {0xA5, 0x10});
}

TEST(OperandsTest, RefusedOperands) {
    const struct {
        const char* source;
        const char* error;
    } cases[] = {
        {"rep 1234h", "t.asm:2,5:Invalid operand: 1234h"},
        {"sta [12h+x]", "t.asm:2,5:Invalid operand: [12h+x]"},
        {"lda a", "t.asm:2,5:Invalid operand: a"},
        {"inc x", "t.asm:2,5:Invalid operand: x"},
        {"lda 123456h", "t.asm:2,5:Invalid operand: 123456h"},
        {"lda ,", "t.asm:2,5:Invalid operand: ,"},
        {"lda [12]", "t.asm:2,5:Invalid operand: [12]"},
        {"lda \"x.asm\"", "t.asm:2,5:Invalid operand: \"x.asm\""},
        {"lda .BYTE", "t.asm:2,5:Invalid operand: .BYTE"},
        {"lda nop", "t.asm:2,5:Invalid operand: nop"},
        {"lda [123456789h]", "t.asm:2,5:Invalid operand: [123456789h]"},
        {"$v 10h stz v+y", "t.asm:2,13:Invalid operand: +y"},
        {"$v 12345678h sta v+x", "t.asm:2,19:Invalid operand: +x"},
        {"lda", "t.asm:2,4:Invalid operand: "},
    };
    for (const auto& c : cases) {
        const ScriptRun run = RunScript(".ADDRESS 8000h\n" + std::string(c.source));
        EXPECT_EQ(run.errors, Errors({c.error})) << c.source;
        EXPECT_EQ(run.At(0x8000, 1), Bytes({0})) << c.source;  // nothing was appended
    }
}

TEST(OperandsTest, NoOperandLeavesTheNextToken) {
    const ScriptRun run = RunScript(".ADDRESS 8000h\nclc 5\nnop");
    EXPECT_EQ(run.errors, Errors({"t.asm:2,5:Unknown command: 5"}));
    EXPECT_EQ(run.At(0x8000, 3), Bytes({0x18, 0xEA, 0x00}));
}

}  // namespace
