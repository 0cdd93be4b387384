// The 65816 instruction set: every opcode row, the aliases, the addressing modes
// and the look-ups that choose an opcode.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "asm/instruction_set.h"
#include "asm/patch_lexicon.h"

namespace {

int Mnemonic(const char* name) {
    for (int index = 0; index < MNEMONIC_COUNT; ++index)
        if (std::strcmp(MNEMONIC_NAMES[index], name) == 0) return index;
    ADD_FAILURE() << "no mnemonic " << name;
    return -1;
}

struct Row {
    const char* mnemonic;
    int opcode;
    int mode;
};

// The expected rows, written with the addressing-mode index of each.
constexpr Row ROWS[] = {
    {"adc", 0x63, 9}, {"adc", 0x65, 6}, {"adc", 0x69, 4}, {"adc", 0x6D, 11}, {"adc", 0x73, 10},
    {"and", 0x29, 4}, {"and", 0x3F, 15}, {"asl", 0x0A, 16},
    {"bcc", 0x90, 1}, {"bcs", 0xB0, 1}, {"beq", 0xF0, 1}, {"bmi", 0x30, 1}, {"bne", 0xD0, 1}, {"bpl", 0x10, 1},
    {"bra", 0x4C, 4}, {"bra", 0x80, 1}, {"brl", 0x82, 2},
    {"cmp", 0xC5, 6}, {"cmp", 0xC9, 4}, {"cmp", 0xCD, 11}, {"cmp", 0xCF, 14},
    {"cpx", 0xE0, 4}, {"cpx", 0xEC, 11}, {"cpy", 0xC0, 4},
    {"dec", 0x3A, 16}, {"dec", 0xCE, 11}, {"eor", 0x49, 4},
    {"inc", 0x1A, 16}, {"inc", 0xEE, 11}, {"inc", 0xF6, 7},
    {"jsl", 0x22, 5}, {"jsr", 0x20, 4}, {"jsr", 0xFC, 12},
    {"lda", 0xA3, 9}, {"lda", 0xA5, 6}, {"lda", 0xA9, 4}, {"lda", 0xAD, 11}, {"lda", 0xAF, 14},
    {"lda", 0xB1, 8}, {"lda", 0xB3, 10}, {"lda", 0xB5, 7}, {"lda", 0xB9, 13}, {"lda", 0xBD, 12},
    {"lda", 0xBF, 15},
    {"ldx", 0xA2, 4}, {"ldx", 0xAE, 11}, {"ldy", 0xA0, 4}, {"ldy", 0xAC, 11},
    {"lsr", 0x4A, 16}, {"lsr", 0x4E, 11}, {"ora", 0x09, 4}, {"ora", 0x0D, 11}, {"pea", 0xF4, 4},
    {"rep", 0xC2, 3}, {"sep", 0xE2, 3}, {"ror", 0x6E, 11}, {"sbc", 0xE9, 4}, {"sbc", 0xED, 11},
    {"sta", 0x85, 6}, {"sta", 0x8D, 11}, {"sta", 0x8F, 14}, {"sta", 0x99, 13}, {"sta", 0x9D, 12},
    {"sta", 0x9F, 15}, {"stx", 0x8E, 11}, {"sty", 0x8C, 11},
    {"stz", 0x64, 6}, {"stz", 0x9C, 11}, {"stz", 0x9E, 12}, {"tsb", 0x0C, 11},
    {"clc", 0x18, 0}, {"dex", 0xCA, 0}, {"inx", 0xE8, 0}, {"iny", 0xC8, 0}, {"nop", 0xEA, 0},
    {"pha", 0x48, 0}, {"phb", 0x8B, 0}, {"php", 0x08, 0}, {"phx", 0xDA, 0}, {"phy", 0x5A, 0},
    {"pla", 0x68, 0}, {"plb", 0xAB, 0}, {"plp", 0x28, 0}, {"plx", 0xFA, 0}, {"ply", 0x7A, 0},
    {"rtl", 0x6B, 0}, {"rts", 0x60, 0}, {"sec", 0x38, 0}, {"sei", 0x78, 0}, {"tax", 0xAA, 0},
    {"tay", 0xA8, 0}, {"txa", 0x8A, 0}, {"tya", 0x98, 0}, {"xba", 0xEB, 0},
};

TEST(InstructionSetTest, EveryListedRowAndNothingElse) {
    const InstructionSet& set = Instructions65816();
    std::set<int> listed;
    for (const Row& row : ROWS) {
        SCOPED_TRACE(std::string(row.mnemonic) + " " + std::to_string(row.opcode));
        EXPECT_TRUE(listed.insert(row.opcode).second);
        EXPECT_EQ(set.opcodes[row.opcode].mnemonic, Mnemonic(row.mnemonic));
        EXPECT_EQ(set.opcodes[row.opcode].mode, row.mode);
    }
    EXPECT_EQ(listed.size(), 94u);
    for (int opcode = 0; opcode < 256; ++opcode)
        if (listed.count(opcode) == 0) {
            EXPECT_EQ(set.opcodes[opcode].mnemonic, 0) << opcode;
        }
}

TEST(InstructionSetTest, EachRowIsFoundByItsTemplate) {
    const InstructionSet& set = Instructions65816();
    for (const Row& row : ROWS) {
        const AddressingMode& mode = ADDRESSING_MODES[row.mode];
        const int m = Mnemonic(row.mnemonic);
        // bra's branch row shares the template "XXXXh" with its lower 4C row.
        const int expected = row.opcode == 0x80 ? 0x4C : row.opcode;
        if (mode.kind >= 16) {
            EXPECT_EQ(FindRegisterOpcode(set, m, row.mode), row.opcode) << row.mnemonic;
        } else {
            EXPECT_EQ(FindOpcode(set, m, mode.pattern), expected) << row.mnemonic << " " << mode.pattern;
        }
    }
}

TEST(InstructionSetTest, MnemonicsWithoutOpcodes) {
    const InstructionSet& set = Instructions65816();
    const char* const without[] = {
        "???", "bge", "blt", "cpa", "rsl", "swa", "brk", "bvc", "bvs", "cld", "cli", "clp", "clr", "cop",
        "csp", "dea", "dey", "hlt", "ina", "jml", "jmp", "mvn", "mvp", "pei", "per", "phd", "phk", "pld",
        "psh", "pul", "ret", "rol", "rti", "sed", "shl", "shr", "tad", "tas", "tcb", "tcd", "tcs", "tda",
        "tdc", "trb", "tsa", "tsc", "tsx", "txs", "txy", "tyx", "wai", "wdm", "xce"};
    for (const char* name : without) EXPECT_EQ(FirstOpcode(set, Mnemonic(name)), -1) << name;
    int with = 0;
    for (int m = 0; m < MNEMONIC_COUNT; ++m) with += FirstOpcode(set, m) >= 0;
    EXPECT_EQ(with, 58);
    EXPECT_EQ(with + static_cast<int>(std::size(without)), MNEMONIC_COUNT);
}

TEST(InstructionSetTest, Aliases) {
    const InstructionSet& set = Instructions65816();
    const struct {
        const char *alias, *canonical;
    } cases[] = {{"blt", "bcc"}, {"bge", "bcs"}, {"cpa", "cmp"}, {"tad", "tcd"}, {"tas", "tcs"},
                 {"tda", "tdc"}, {"tsa", "tsc"}, {"rsl", "rtl"}, {"swa", "xba"},
                 {"bcc", "bcc"}, {"lda", "lda"}, {"jmp", "jmp"}, {"???", "???"}};
    for (const auto& c : cases) {
        EXPECT_EQ(MapAlias(set, Mnemonic(c.alias)), Mnemonic(c.canonical)) << c.alias;
        EXPECT_EQ(MapAlias(NoInstructions(), Mnemonic(c.alias)), Mnemonic(c.alias)) << c.alias;
    }
    int pairs = 0;
    while (set.aliases[pairs][0] != 0 || set.aliases[pairs][1] != 0) ++pairs;
    EXPECT_EQ(pairs, 9);
}

TEST(InstructionSetTest, LookupsTakeTheLowestOpcode) {
    const InstructionSet& set = Instructions65816();
    const int lda = Mnemonic("lda"), bra = Mnemonic("bra"), brl = Mnemonic("brl"), bne = Mnemonic("bne");
    const struct {
        const char* what;
        int found, expected;
    } cases[] = {
        {"first lda", FirstOpcode(set, lda), 0xA3},
        {"first bra", FirstOpcode(set, bra), 0x4C},
        {"first nop", FirstOpcode(set, Mnemonic("nop")), 0xEA},
        {"lda size 1", FindOpcodeBySize(set, lda, 1), 0xA3},
        {"lda size 2", FindOpcodeBySize(set, lda, 2), 0xA9},
        {"lda size 3", FindOpcodeBySize(set, lda, 3), 0xAF},
        {"bra size 1", FindOpcodeBySize(set, bra, 1), 0x80},
        {"bra size 2", FindOpcodeBySize(set, bra, 2), 0x4C},
        {"brl size 2", FindOpcodeBySize(set, brl, 2), 0x82},
        {"brl size 1", FindOpcodeBySize(set, brl, 1), -1},
        {"bne size 1", FindOpcodeBySize(set, bne, 1), 0xD0},
        {"bne size 2", FindOpcodeBySize(set, bne, 2), -1},
        {"nop size 0", FindOpcodeBySize(set, Mnemonic("nop"), 0), 0xEA},
        {"asl a", FindRegisterOpcode(set, Mnemonic("asl"), 16), 0x0A},
        {"lda a", FindRegisterOpcode(set, lda, 16), -1},
        {"inc x", FindRegisterOpcode(set, Mnemonic("inc"), 17), -1},
        {"lda [xxXXh+X]", FindOpcode(set, lda, "[xxXXh+X]"), 0xBD},
        {"lda [XXh+y]", FindOpcode(set, lda, "[XXh+y]"), 0xB1},
        {"lda XXh", FindOpcode(set, lda, "XXh"), -1},
        {"lda XXXXXXh", FindOpcode(set, lda, "XXXXXXh"), -1},
        {"sta [XXh+x]", FindOpcode(set, Mnemonic("sta"), "[XXh+x]"), -1},
        {"rep XXh", FindOpcode(set, Mnemonic("rep"), "XXh"), 0xC2},
        {"rep XXXXh", FindOpcode(set, Mnemonic("rep"), "XXXXh"), -1},
        {"lda no pattern", FindOpcode(set, lda, nullptr), -1},
        {"mnemonic 0", FirstOpcode(set, 0), -1},
        {"mnemonic 111", FirstOpcode(set, 111), -1},
        {"mnemonic -1", FindOpcodeBySize(set, -1, 0), -1},
        {"mnemonic 300", FindOpcode(set, 300, ""), -1},
    };
    for (const auto& c : cases) EXPECT_EQ(c.found, c.expected) << c.what;
}

TEST(InstructionSetTest, NoInstructionsHasNoRows) {
    const InstructionSet& set = NoInstructions();
    for (int m = 0; m < MNEMONIC_COUNT; ++m) {
        EXPECT_EQ(FirstOpcode(set, m), -1) << m;
        EXPECT_EQ(FindOpcodeBySize(set, m, 0), -1) << m;
        EXPECT_EQ(FindOpcode(set, m, ""), -1) << m;
    }
    EXPECT_EQ(set.aliases[0][0], 0);
    EXPECT_EQ(set.aliases[0][1], 0);
}

TEST(InstructionSetTest, AddressingModes) {
    const struct {
        const char* pattern;
        int kind, size;
    } rows[ADDRESSING_MODE_COUNT] = {
        {"", 0, 0},         {"XXXXh", 1, 1},     {"XXXXh", 1, 2},       {"XXh", 2, 1},         {"XXXXh", 2, 2},
        {"XXXXXXh", 2, 3},  {"[XXh]", 2, 1},     {"[XXh+x]", 2, 1},     {"[XXh+y]", 2, 1},     {"[XXh+s]", 2, 1},
        {"[(XXh+s)+y]", 2, 1}, {"[XXXXh]", 2, 2}, {"[XXXXh+x]", 2, 2}, {"[XXXXh+y]", 2, 2}, {"[XXXXXXh]", 2, 3},
        {"[XXXXXXh+x]", 2, 3}, {"a", 16, -1},    {"x", 17, -1},         {"y", 18, -1},         {"s", 19, -1},
        {"dbr", 20, -1},    {"pbr", 21, -1},     {"d", 22, -1},         {"m", 23, -1},         {"p", 24, -1},
        {"", 0, 0}};
    for (int i = 0; i < ADDRESSING_MODE_COUNT; ++i) {
        EXPECT_STREQ(ADDRESSING_MODES[i].pattern, rows[i].pattern) << i;
        EXPECT_EQ(ADDRESSING_MODES[i].kind, rows[i].kind) << i;
        EXPECT_EQ(ADDRESSING_MODES[i].size, rows[i].size) << i;
    }
    // The register rows carry the names that the lexicon scans as register words.
    for (int row = 0; row < REGISTER_COUNT; ++row)
        EXPECT_STREQ(ADDRESSING_MODES[FIRST_REGISTER_MODE + row].pattern, REGISTER_NAMES[row]);
    EXPECT_EQ(ModeOf(Instructions65816(), 0xB1).size, 1);
    EXPECT_STREQ(ModeOf(Instructions65816(), 0x22).pattern, "XXXXXXh");
}

}  // namespace
