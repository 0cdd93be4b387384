// The 65816 instruction set as constant data: every one of the 256 opcodes with
// its mnemonic and addressing mode, the one encoder of instructions, and the
// view of the literal patch language (its templates, the opcodes it reaches and
// its mnemonic aliases) with the look-ups that pick an opcode for a template.
#pragma once

#include <cstdint>

// Kinds of addressing modes; register modes have their own row index as kind (16 to 24).
inline constexpr int MODE_KIND_NONE = 0, MODE_KIND_RELATIVE = 1, MODE_KIND_VALUE = 2;
inline constexpr int ADDRESSING_MODE_COUNT = 26;

// An operand template ("XXh", "[XXXXh+x]", a register name, or empty for no operand),
// its kind, and its operand size in bytes (-1 for registers).
struct AddressingMode {
    const char* pattern;
    int8_t kind;
    int8_t size;
};

// One opcode: its mnemonic index (0: the opcode is no instruction) and addressing-mode row.
struct OpcodeRecord {
    uint8_t mnemonic;
    uint8_t mode;
};

struct InstructionSet {
    const OpcodeRecord* opcodes;       // 256 rows, indexed by opcode
    const uint16_t (*aliases)[2];      // (alias, canonical) pairs, ended by {0, 0}
};

extern const AddressingMode ADDRESSING_MODES[ADDRESSING_MODE_COUNT];

// The instructions of the 65816 processor.
const InstructionSet& Instructions65816();
// The instruction set of a processor without instructions: no rows, no aliases.
const InstructionSet& NoInstructions();

// The canonical mnemonic of an alias; any other mnemonic is returned unchanged.
int MapAlias(const InstructionSet& set, int mnemonic);

// Opcode look-ups; each returns the lowest matching opcode, or -1 when none matches.
int FirstOpcode(const InstructionSet& set, int mnemonic);
// The opcode whose template equals pattern, letters compared without regard to case.
int FindOpcode(const InstructionSet& set, int mnemonic, const char* pattern);
int FindRegisterOpcode(const InstructionSet& set, int mnemonic, int mode);

inline const AddressingMode& ModeOf(const InstructionSet& s, int opcode) {
    return ADDRESSING_MODES[s.opcodes[opcode].mode];
}

// The addressing modes of the 65816. ImmediateM/ImmediateX take 8 or 16 bits (the register
// width); Signature is the one byte after brk, cop and wdm; BlockMove is mvn/mvp's two banks.
enum class CpuMode : uint8_t {
    Implied, Accumulator, ImmediateM, ImmediateX, Immediate8, Signature, Direct, DirectX, DirectY,
    DirectIndirect, DirectXIndirect, DirectIndirectY, DirectLong, DirectLongY, Absolute, AbsoluteX,
    AbsoluteY, AbsoluteIndirect, AbsoluteXIndirect, AbsoluteLongIndirect, Long, LongX, Stack,
    StackIndirectY, Relative8, Relative16, BlockMove
};

struct CpuOpcode {
    const char* mnemonic;  // lower case, three letters
    CpuMode mode;
};

// The mnemonic and mode of opcode (0 to 255).
const CpuOpcode& CpuOpcodeRow(int opcode);

// Writes opcode and the low operandSize bytes of operand, little-endian, to out (at least
// four bytes); returns the count written.
int EncodeInstruction(int opcode, uint32_t operand, int operandSize, unsigned char* out);
