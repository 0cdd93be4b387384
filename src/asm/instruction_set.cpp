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

// Every opcode of the 65816: its mnemonic and its addressing mode, in opcode order.
constexpr CpuOpcode CPU_OPCODE_ROWS[256] = {
#define R(m, mode) {m, CpuMode::mode}
    R("brk", Signature), R("ora", DirectXIndirect), R("cop", Signature), R("ora", Stack),
    R("tsb", Direct), R("ora", Direct), R("asl", Direct), R("ora", DirectLong),
    R("php", Implied), R("ora", ImmediateM), R("asl", Accumulator), R("phd", Implied),
    R("tsb", Absolute), R("ora", Absolute), R("asl", Absolute), R("ora", Long),
    R("bpl", Relative8), R("ora", DirectIndirectY), R("ora", DirectIndirect), R("ora", StackIndirectY),
    R("trb", Direct), R("ora", DirectX), R("asl", DirectX), R("ora", DirectLongY),
    R("clc", Implied), R("ora", AbsoluteY), R("inc", Accumulator), R("tcs", Implied),
    R("trb", Absolute), R("ora", AbsoluteX), R("asl", AbsoluteX), R("ora", LongX),
    R("jsr", Absolute), R("and", DirectXIndirect), R("jsl", Long), R("and", Stack),
    R("bit", Direct), R("and", Direct), R("rol", Direct), R("and", DirectLong),
    R("plp", Implied), R("and", ImmediateM), R("rol", Accumulator), R("pld", Implied),
    R("bit", Absolute), R("and", Absolute), R("rol", Absolute), R("and", Long),
    R("bmi", Relative8), R("and", DirectIndirectY), R("and", DirectIndirect), R("and", StackIndirectY),
    R("bit", DirectX), R("and", DirectX), R("rol", DirectX), R("and", DirectLongY),
    R("sec", Implied), R("and", AbsoluteY), R("dec", Accumulator), R("tsc", Implied),
    R("bit", AbsoluteX), R("and", AbsoluteX), R("rol", AbsoluteX), R("and", LongX),
    R("rti", Implied), R("eor", DirectXIndirect), R("wdm", Signature), R("eor", Stack),
    R("mvp", BlockMove), R("eor", Direct), R("lsr", Direct), R("eor", DirectLong),
    R("pha", Implied), R("eor", ImmediateM), R("lsr", Accumulator), R("phk", Implied),
    R("jmp", Absolute), R("eor", Absolute), R("lsr", Absolute), R("eor", Long),
    R("bvc", Relative8), R("eor", DirectIndirectY), R("eor", DirectIndirect), R("eor", StackIndirectY),
    R("mvn", BlockMove), R("eor", DirectX), R("lsr", DirectX), R("eor", DirectLongY),
    R("cli", Implied), R("eor", AbsoluteY), R("phy", Implied), R("tcd", Implied),
    R("jml", Long), R("eor", AbsoluteX), R("lsr", AbsoluteX), R("eor", LongX),
    R("rts", Implied), R("adc", DirectXIndirect), R("per", Relative16), R("adc", Stack),
    R("stz", Direct), R("adc", Direct), R("ror", Direct), R("adc", DirectLong),
    R("pla", Implied), R("adc", ImmediateM), R("ror", Accumulator), R("rtl", Implied),
    R("jmp", AbsoluteIndirect), R("adc", Absolute), R("ror", Absolute), R("adc", Long),
    R("bvs", Relative8), R("adc", DirectIndirectY), R("adc", DirectIndirect), R("adc", StackIndirectY),
    R("stz", DirectX), R("adc", DirectX), R("ror", DirectX), R("adc", DirectLongY),
    R("sei", Implied), R("adc", AbsoluteY), R("ply", Implied), R("tdc", Implied),
    R("jmp", AbsoluteXIndirect), R("adc", AbsoluteX), R("ror", AbsoluteX), R("adc", LongX),
    R("bra", Relative8), R("sta", DirectXIndirect), R("brl", Relative16), R("sta", Stack),
    R("sty", Direct), R("sta", Direct), R("stx", Direct), R("sta", DirectLong),
    R("dey", Implied), R("bit", ImmediateM), R("txa", Implied), R("phb", Implied),
    R("sty", Absolute), R("sta", Absolute), R("stx", Absolute), R("sta", Long),
    R("bcc", Relative8), R("sta", DirectIndirectY), R("sta", DirectIndirect), R("sta", StackIndirectY),
    R("sty", DirectX), R("sta", DirectX), R("stx", DirectY), R("sta", DirectLongY),
    R("tya", Implied), R("sta", AbsoluteY), R("txs", Implied), R("txy", Implied),
    R("stz", Absolute), R("sta", AbsoluteX), R("stz", AbsoluteX), R("sta", LongX),
    R("ldy", ImmediateX), R("lda", DirectXIndirect), R("ldx", ImmediateX), R("lda", Stack),
    R("ldy", Direct), R("lda", Direct), R("ldx", Direct), R("lda", DirectLong),
    R("tay", Implied), R("lda", ImmediateM), R("tax", Implied), R("plb", Implied),
    R("ldy", Absolute), R("lda", Absolute), R("ldx", Absolute), R("lda", Long),
    R("bcs", Relative8), R("lda", DirectIndirectY), R("lda", DirectIndirect), R("lda", StackIndirectY),
    R("ldy", DirectX), R("lda", DirectX), R("ldx", DirectY), R("lda", DirectLongY),
    R("clv", Implied), R("lda", AbsoluteY), R("tsx", Implied), R("tyx", Implied),
    R("ldy", AbsoluteX), R("lda", AbsoluteX), R("ldx", AbsoluteY), R("lda", LongX),
    R("cpy", ImmediateX), R("cmp", DirectXIndirect), R("rep", Immediate8), R("cmp", Stack),
    R("cpy", Direct), R("cmp", Direct), R("dec", Direct), R("cmp", DirectLong),
    R("iny", Implied), R("cmp", ImmediateM), R("dex", Implied), R("wai", Implied),
    R("cpy", Absolute), R("cmp", Absolute), R("dec", Absolute), R("cmp", Long),
    R("bne", Relative8), R("cmp", DirectIndirectY), R("cmp", DirectIndirect), R("cmp", StackIndirectY),
    R("pei", DirectIndirect), R("cmp", DirectX), R("dec", DirectX), R("cmp", DirectLongY),
    R("cld", Implied), R("cmp", AbsoluteY), R("phx", Implied), R("stp", Implied),
    R("jml", AbsoluteLongIndirect), R("cmp", AbsoluteX), R("dec", AbsoluteX), R("cmp", LongX),
    R("cpx", ImmediateX), R("sbc", DirectXIndirect), R("sep", Immediate8), R("sbc", Stack),
    R("cpx", Direct), R("sbc", Direct), R("inc", Direct), R("sbc", DirectLong),
    R("inx", Implied), R("sbc", ImmediateM), R("nop", Implied), R("xba", Implied),
    R("cpx", Absolute), R("sbc", Absolute), R("inc", Absolute), R("sbc", Long),
    R("beq", Relative8), R("sbc", DirectIndirectY), R("sbc", DirectIndirect), R("sbc", StackIndirectY),
    R("pea", Absolute), R("sbc", DirectX), R("inc", DirectX), R("sbc", DirectLongY),
    R("sed", Implied), R("sbc", AbsoluteY), R("plx", Implied), R("xce", Implied),
    R("jsr", AbsoluteXIndirect), R("sbc", AbsoluteX), R("inc", AbsoluteX), R("sbc", LongX),
#undef R
};

// The opcodes the literal patch language reaches, under the mnemonic it writes for each; its
// template follows from the opcode's addressing mode. "bra" with a number is the absolute jump.
struct LiteralOpcode {
    const char* mnemonic;
    uint8_t opcode;
};

constexpr LiteralOpcode LITERAL_OPCODES[] = {
    {"adc", 0x63}, {"adc", 0x65}, {"adc", 0x69}, {"adc", 0x6D}, {"adc", 0x73}, {"and", 0x29}, {"and", 0x3F},
    {"asl", 0x0A}, {"bcc", 0x90}, {"bcs", 0xB0}, {"beq", 0xF0}, {"bmi", 0x30}, {"bne", 0xD0}, {"bpl", 0x10},
    {"bra", 0x4C}, {"bra", 0x80}, {"brl", 0x82}, {"cmp", 0xC5}, {"cmp", 0xC9}, {"cmp", 0xCD}, {"cmp", 0xCF},
    {"cpx", 0xE0}, {"cpx", 0xEC}, {"cpy", 0xC0}, {"dec", 0x3A}, {"dec", 0xCE}, {"eor", 0x49}, {"inc", 0x1A},
    {"inc", 0xEE}, {"inc", 0xF6}, {"jsl", 0x22}, {"jsr", 0x20}, {"jsr", 0xFC}, {"lda", 0xA3}, {"lda", 0xA5},
    {"lda", 0xA9}, {"lda", 0xAD}, {"lda", 0xAF}, {"lda", 0xB1}, {"lda", 0xB3}, {"lda", 0xB5}, {"lda", 0xB9},
    {"lda", 0xBD}, {"lda", 0xBF}, {"ldx", 0xA2}, {"ldx", 0xAE}, {"ldy", 0xA0}, {"ldy", 0xAC}, {"lsr", 0x4A},
    {"lsr", 0x4E}, {"ora", 0x09}, {"ora", 0x0D}, {"pea", 0xF4}, {"rep", 0xC2}, {"sep", 0xE2}, {"ror", 0x6E},
    {"sbc", 0xE9}, {"sbc", 0xED}, {"sta", 0x85}, {"sta", 0x8D}, {"sta", 0x8F}, {"sta", 0x99}, {"sta", 0x9D},
    {"sta", 0x9F}, {"stx", 0x8E}, {"sty", 0x8C}, {"stz", 0x64}, {"stz", 0x9C}, {"stz", 0x9E}, {"tsb", 0x0C},
    {"clc", 0x18}, {"dex", 0xCA}, {"inx", 0xE8}, {"iny", 0xC8}, {"nop", 0xEA}, {"pha", 0x48}, {"phb", 0x8B},
    {"php", 0x08}, {"phx", 0xDA}, {"phy", 0x5A}, {"pla", 0x68}, {"plb", 0xAB}, {"plp", 0x28}, {"plx", 0xFA},
    {"ply", 0x7A}, {"rtl", 0x6B}, {"rts", 0x60}, {"sec", 0x38}, {"sei", 0x78}, {"tax", 0xAA}, {"tay", 0xA8},
    {"txa", 0x8A}, {"tya", 0x98}, {"xba", 0xEB},
};

// Rows of ADDRESSING_MODES by name.
enum LiteralMode : uint8_t {
    NONE, BRANCH8, BRANCH16, VALUE8, VALUE16, VALUE24, DIRECT, DIRECT_X, DIRECT_Y, STACK, STACK_Y,
    ABSOLUTE, ABSOLUTE_X, ABSOLUTE_Y, LONG, LONG_X, REG_A
};

bool IsJump(CpuOpcode row) {
    return std::strcmp(row.mnemonic, "jmp") == 0 || std::strcmp(row.mnemonic, "jsr") == 0 ||
           std::strcmp(row.mnemonic, "jsl") == 0 || std::strcmp(row.mnemonic, "pea") == 0;
}

// The template the literal language writes for an opcode: a jump target or an immediate is a
// bare value, memory is in brackets, and "+y" on a direct page means (dp),y.
uint8_t LiteralModeOf(uint8_t opcode) {
    const CpuOpcode row = CPU_OPCODE_ROWS[opcode];
    switch (row.mode) {
    case CpuMode::Accumulator: return REG_A;
    case CpuMode::ImmediateM: case CpuMode::ImmediateX: return VALUE16;
    case CpuMode::Immediate8: return VALUE8;
    case CpuMode::Direct: return DIRECT;
    case CpuMode::DirectX: return DIRECT_X;
    case CpuMode::DirectIndirectY: return DIRECT_Y;
    case CpuMode::Stack: return STACK;
    case CpuMode::StackIndirectY: return STACK_Y;
    case CpuMode::Absolute: return IsJump(row) ? VALUE16 : ABSOLUTE;
    case CpuMode::AbsoluteX: case CpuMode::AbsoluteXIndirect: return ABSOLUTE_X;
    case CpuMode::AbsoluteY: return ABSOLUTE_Y;
    case CpuMode::Long: return IsJump(row) ? VALUE24 : LONG;
    case CpuMode::LongX: return LONG_X;
    case CpuMode::Relative8: return BRANCH8;
    case CpuMode::Relative16: return BRANCH16;
    default: return NONE;
    }
}

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
        for (const LiteralOpcode& row : LITERAL_OPCODES)
            opcodes[row.opcode] = {MnemonicIndex(row.mnemonic), LiteralModeOf(row.opcode)};
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

const CpuOpcode& CpuOpcodeRow(int opcode) { return CPU_OPCODE_ROWS[opcode & 0xFF]; }

int EncodeInstruction(int opcode, uint32_t operand, int operandSize, unsigned char* out) {
    out[0] = static_cast<unsigned char>(opcode);
    for (int i = 0; i < operandSize; ++i) out[1 + i] = static_cast<unsigned char>(operand >> (8 * i));
    return 1 + operandSize;
}
