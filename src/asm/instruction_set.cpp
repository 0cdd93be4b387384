#include "asm/instruction_set.h"

#include <array>
#include <cstring>

#include "core/text_compare.h"
#include "asm/patch_lexicon.h"

const AddressingMode ADDRESSING_MODES[ADDRESSING_MODE_COUNT] = {
    {"", MODE_KIND_NONE, 0},                 // 0: no operand
    {"XXXXh", MODE_KIND_RELATIVE, 1},        // 1: branch, 8-bit displacement
    {"XXXXh", MODE_KIND_RELATIVE, 2},        // 2: branch, 16-bit displacement
    {"XXh", MODE_KIND_VALUE, 1},             // 3: 8-bit value
    {"XXXXh", MODE_KIND_VALUE, 2},           // 4: 16-bit value (immediate or jump target)
    {"XXXXXXh", MODE_KIND_VALUE, 3},         // 5: 24-bit value
    {"[XXh]", MODE_KIND_VALUE, 1},           // 6: direct page
    {"[XXh+x]", MODE_KIND_VALUE, 1},         // 7: direct page indexed by X
    {"[XXh+y]", MODE_KIND_VALUE, 1},         // 8: direct page with Y
    {"[XXh+s]", MODE_KIND_VALUE, 1},         // 9: stack relative
    {"[(XXh+s)+y]", MODE_KIND_VALUE, 1},     // 10: stack relative indirect indexed by Y
    {"[XXXXh]", MODE_KIND_VALUE, 2},         // 11: absolute
    {"[XXXXh+x]", MODE_KIND_VALUE, 2},       // 12: absolute indexed by X
    {"[XXXXh+y]", MODE_KIND_VALUE, 2},       // 13: absolute indexed by Y
    {"[XXXXXXh]", MODE_KIND_VALUE, 3},       // 14: long
    {"[XXXXXXh+x]", MODE_KIND_VALUE, 3},     // 15: long indexed by X
    {"a", 16, -1},   {"x", 17, -1},   {"y", 18, -1},   {"s", 19, -1},  {"dbr", 20, -1},
    {"pbr", 21, -1}, {"d", 22, -1},   {"m", 23, -1},   {"p", 24, -1},  // 16 to 24: registers
    {"", MODE_KIND_NONE, 0},                 // 25: end of table
};

namespace {

// Addressing-mode rows by name, for the listing below.
enum Mode : uint8_t {
    NONE, BRANCH8, BRANCH16, VALUE8, VALUE16, VALUE24, DIRECT, DIRECT_X, DIRECT_Y, STACK, STACK_Y,
    ABSOLUTE, ABSOLUTE_X, ABSOLUTE_Y, LONG, LONG_X, REG_A
};

struct ListedOpcode {
    const char* mnemonic;
    uint8_t opcode;
    Mode mode;
};

// The opcodes of the 65816 description, by mnemonic, ascending within a mnemonic.
// Everything not listed is no instruction (jmp among others has no opcode at all).
constexpr ListedOpcode LISTING_65816[] = {
    {"adc", 0x63, STACK}, {"adc", 0x65, DIRECT}, {"adc", 0x69, VALUE16}, {"adc", 0x6D, ABSOLUTE},
    {"adc", 0x73, STACK_Y},
    {"and", 0x29, VALUE16}, {"and", 0x3F, LONG_X},
    {"asl", 0x0A, REG_A},
    {"bcc", 0x90, BRANCH8}, {"bcs", 0xB0, BRANCH8}, {"beq", 0xF0, BRANCH8},
    {"bmi", 0x30, BRANCH8}, {"bne", 0xD0, BRANCH8}, {"bpl", 0x10, BRANCH8},
    {"bra", 0x4C, VALUE16}, {"bra", 0x80, BRANCH8},
    {"brl", 0x82, BRANCH16},
    {"cmp", 0xC5, DIRECT}, {"cmp", 0xC9, VALUE16}, {"cmp", 0xCD, ABSOLUTE}, {"cmp", 0xCF, LONG},
    {"cpx", 0xE0, VALUE16}, {"cpx", 0xEC, ABSOLUTE},
    {"cpy", 0xC0, VALUE16},
    {"dec", 0x3A, REG_A}, {"dec", 0xCE, ABSOLUTE},
    {"eor", 0x49, VALUE16},
    {"inc", 0x1A, REG_A}, {"inc", 0xEE, ABSOLUTE}, {"inc", 0xF6, DIRECT_X},
    {"jsl", 0x22, VALUE24},
    {"jsr", 0x20, VALUE16}, {"jsr", 0xFC, ABSOLUTE_X},
    {"lda", 0xA3, STACK}, {"lda", 0xA5, DIRECT}, {"lda", 0xA9, VALUE16}, {"lda", 0xAD, ABSOLUTE},
    {"lda", 0xAF, LONG}, {"lda", 0xB1, DIRECT_Y}, {"lda", 0xB3, STACK_Y}, {"lda", 0xB5, DIRECT_X},
    {"lda", 0xB9, ABSOLUTE_Y}, {"lda", 0xBD, ABSOLUTE_X}, {"lda", 0xBF, LONG_X},
    {"ldx", 0xA2, VALUE16}, {"ldx", 0xAE, ABSOLUTE},
    {"ldy", 0xA0, VALUE16}, {"ldy", 0xAC, ABSOLUTE},
    {"lsr", 0x4A, REG_A}, {"lsr", 0x4E, ABSOLUTE},
    {"ora", 0x09, VALUE16}, {"ora", 0x0D, ABSOLUTE},
    {"pea", 0xF4, VALUE16},
    {"rep", 0xC2, VALUE8}, {"sep", 0xE2, VALUE8},
    {"ror", 0x6E, ABSOLUTE},
    {"sbc", 0xE9, VALUE16}, {"sbc", 0xED, ABSOLUTE},
    {"sta", 0x85, DIRECT}, {"sta", 0x8D, ABSOLUTE}, {"sta", 0x8F, LONG}, {"sta", 0x99, ABSOLUTE_Y},
    {"sta", 0x9D, ABSOLUTE_X}, {"sta", 0x9F, LONG_X},
    {"stx", 0x8E, ABSOLUTE}, {"sty", 0x8C, ABSOLUTE},
    {"stz", 0x64, DIRECT}, {"stz", 0x9C, ABSOLUTE}, {"stz", 0x9E, ABSOLUTE_X},
    {"tsb", 0x0C, ABSOLUTE},
    {"clc", 0x18, NONE}, {"dex", 0xCA, NONE}, {"inx", 0xE8, NONE}, {"iny", 0xC8, NONE},
    {"nop", 0xEA, NONE}, {"pha", 0x48, NONE}, {"phb", 0x8B, NONE}, {"php", 0x08, NONE},
    {"phx", 0xDA, NONE}, {"phy", 0x5A, NONE}, {"pla", 0x68, NONE}, {"plb", 0xAB, NONE},
    {"plp", 0x28, NONE}, {"plx", 0xFA, NONE}, {"ply", 0x7A, NONE}, {"rtl", 0x6B, NONE},
    {"rts", 0x60, NONE}, {"sec", 0x38, NONE}, {"sei", 0x78, NONE}, {"tax", 0xAA, NONE},
    {"tay", 0xA8, NONE}, {"txa", 0x8A, NONE}, {"tya", 0x98, NONE}, {"xba", 0xEB, NONE},
};

// Alternative spellings and the mnemonic each stands for.
constexpr const char* ALIASES_65816[][2] = {
    {"blt", "bcc"}, {"bge", "bcs"}, {"cpa", "cmp"}, {"tad", "tcd"}, {"tas", "tcs"},
    {"tda", "tdc"}, {"tsa", "tsc"}, {"rsl", "rtl"}, {"swa", "xba"},
};
constexpr size_t ALIAS_COUNT = std::size(ALIASES_65816);

uint8_t MnemonicIndex(const char* name) {
    for (int index = 1; index < MNEMONIC_COUNT; ++index)
        if (std::strcmp(MNEMONIC_NAMES[index], name) == 0) return static_cast<uint8_t>(index);
    return 0;
}

// The tables built from the listings, with mnemonic names turned into indices.
struct Tables65816 {
    std::array<OpcodeRecord, 256> opcodes{};
    uint16_t aliases[ALIAS_COUNT + 1][2]{};
    InstructionSet set{};

    Tables65816() {
        for (const ListedOpcode& row : LISTING_65816) opcodes[row.opcode] = {MnemonicIndex(row.mnemonic), row.mode};
        for (size_t i = 0; i < ALIAS_COUNT; ++i) {
            aliases[i][0] = MnemonicIndex(ALIASES_65816[i][0]);
            aliases[i][1] = MnemonicIndex(ALIASES_65816[i][1]);
        }
        set = {opcodes.data(), aliases};
    }
};

constexpr std::array<OpcodeRecord, 256> NO_OPCODES{};
constexpr uint16_t NO_ALIASES[1][2] = {{0, 0}};

// The lowest opcode of mnemonic whose row satisfies accept, or -1.
template <typename Accept>
int LowestOpcode(const InstructionSet& set, int mnemonic, Accept accept) {
    if (mnemonic <= 0 || mnemonic > 255) return -1;
    for (int opcode = 0; opcode < 256; ++opcode) {
        const OpcodeRecord& row = set.opcodes[opcode];
        if (row.mnemonic == mnemonic && accept(row)) return opcode;
    }
    return -1;
}

}  // namespace

const InstructionSet& Instructions65816() {
    static const Tables65816 tables;
    return tables.set;
}

const InstructionSet& NoInstructions() {
    static const InstructionSet set{NO_OPCODES.data(), NO_ALIASES};
    return set;
}

int MapAlias(const InstructionSet& set, int mnemonic) {
    for (const uint16_t(*pair)[2] = set.aliases; (*pair)[0] != 0 || (*pair)[1] != 0; ++pair)
        if ((*pair)[0] == mnemonic) mnemonic = (*pair)[1];
    return mnemonic;
}

int FirstOpcode(const InstructionSet& set, int mnemonic) {
    return LowestOpcode(set, mnemonic, [](const OpcodeRecord&) { return true; });
}

int FindOpcode(const InstructionSet& set, int mnemonic, const char* pattern) {
    if (pattern == nullptr) return -1;
    return LowestOpcode(set, mnemonic, [pattern](const OpcodeRecord& row) {
        return SameTextIgnoringCase(ADDRESSING_MODES[row.mode].pattern, pattern);
    });
}

int FindRegisterOpcode(const InstructionSet& set, int mnemonic, int mode) {
    return LowestOpcode(set, mnemonic, [mode](const OpcodeRecord& row) { return row.mode == mode; });
}
