#include "asm/source_instruction.h"

#include <array>
#include <cstdio>
#include <unordered_map>

#include "asm/asm_session.h"
#include "asm/operand_forms.h"
#include "asm/snes_image_writer.h"
#include "asm/source_expression.h"
#include "asm/source_text.h"

namespace {

constexpr int MODE_COUNT = static_cast<int>(CpuMode::BlockMove) + 1;
using ModeOpcodes = std::array<int16_t, MODE_COUNT>;  // -1 where the mnemonic lacks the mode

// Three lower-case letters packed into a key; 0 for anything else.
uint32_t MnemonicKey(std::string_view word) {
    if (word.size() != 3) return 0;
    uint32_t key = 0;
    for (char c : word) {
        const char lower = static_cast<char>(c | 0x20);
        if (lower < 'a' || lower > 'z') return 0;
        key = key << 8 | static_cast<unsigned char>(lower);
    }
    return key;
}

const ModeOpcodes* OpcodesOf(std::string_view mnemonic) {
    static const std::unordered_map<uint32_t, ModeOpcodes> table = [] {
        std::unordered_map<uint32_t, ModeOpcodes> built;
        for (int opcode = 0; opcode < 256; ++opcode) {
            const CpuOpcode& row = CpuOpcodeRow(opcode);
            auto [entry, added] = built.try_emplace(MnemonicKey(row.mnemonic));
            if (added) entry->second.fill(-1);
            entry->second[static_cast<size_t>(row.mode)] = static_cast<int16_t>(opcode);
        }
        return built;
    }();
    const auto found = table.find(MnemonicKey(mnemonic));
    return found == table.end() ? nullptr : &found->second;
}

int OpcodeFor(const ModeOpcodes& opcodes, CpuMode mode) { return opcodes[static_cast<size_t>(mode)]; }

std::string Hex(int64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, value < 0 ? "-$%llX" : "$%llX",
                  static_cast<unsigned long long>(value < 0 ? -value : value));
    return text;
}

struct Instruction {
    AsmSession& session;
    std::string mnemonic;
    const ModeOpcodes& opcodes;
    int forcedWidth;  // 0 without a suffix
    std::string_view operand;

    bool Emit(int opcode, int64_t value, int size) {
        unsigned char bytes[4];
        const int count = EncodeInstruction(opcode, static_cast<uint32_t>(value), size, bytes);
        return WriteAtProgramCounter(session, bytes, static_cast<size_t>(count));
    }

    // Advances the program counter past an instruction that could not be assembled.
    bool Refuse(const std::string& text, int size) {
        session.pc += static_cast<uint32_t>(1 + size);
        return session.Error(text);
    }

    // Advances the program counter past an instruction whose error is already recorded.
    bool Skip(int size) {
        session.pc += static_cast<uint32_t>(1 + size);
        return false;
    }

    bool Evaluate(std::string_view text, ExpressionValue& value) {
        ExpressionError error;
        if (EvaluateExpression(session, text, value, error)) return true;
        return session.Error(error.text);
    }

    bool Assemble() {
        const OperandShape shape = ReadOperandShape(operand);
        const bool branch = OpcodeFor(opcodes, CpuMode::Relative8) >= 0 || OpcodeFor(opcodes, CpuMode::Relative16) >= 0;
        if (branch && shape.form == OperandForm::Plain) return Branch(shape.expression);
        if (OpcodeFor(opcodes, CpuMode::BlockMove) >= 0) return BlockMove(shape);
        if (shape.form == OperandForm::None) return NoOperand();
        if (shape.form == OperandForm::Immediate) return Immediate(shape.expression);
        if (shape.form == OperandForm::Pair) return Refuse(JoinText({"'", operand, "' is no operand form of ", mnemonic}), 0);
        return Address(shape);
    }

    bool NoOperand() {
        if (forcedWidth) return session.Error(JoinText({"a width suffix does not apply to ", mnemonic, " without an operand"}));
        for (CpuMode mode : {CpuMode::Implied, CpuMode::Accumulator})
            if (OpcodeFor(opcodes, mode) >= 0) return Emit(OpcodeFor(opcodes, mode), 0, 0);
        if (OpcodeFor(opcodes, CpuMode::Signature) >= 0) return Emit(OpcodeFor(opcodes, CpuMode::Signature), 0, 1);
        return Refuse(JoinText({mnemonic, " needs an operand"}), 0);
    }

    bool Immediate(std::string_view text) {
        int opcode = -1;
        bool sized = false;
        for (CpuMode mode : {CpuMode::ImmediateM, CpuMode::ImmediateX, CpuMode::Immediate8, CpuMode::Signature})
            if (OpcodeFor(opcodes, mode) >= 0) {
                opcode = OpcodeFor(opcodes, mode);
                sized = mode == CpuMode::ImmediateM || mode == CpuMode::ImmediateX;
            }
        if (opcode < 0) return Refuse(JoinText({mnemonic, " has no immediate form"}), 0);
        ExpressionValue value;
        if (!Evaluate(text, value)) return Skip(sized ? 2 : 1);
        const int width = forcedWidth ? forcedWidth : value.width;
        if (width == 3 && forcedWidth) return Refuse("a .l suffix does not apply to an immediate", 2);
        if (!sized && width != 1)
            return Refuse(JoinText({mnemonic, " takes an 8-bit immediate; #", text, " is written with ",
                                    std::to_string(width), " bytes"}),
                          1);
        const int bits = width == 1 ? 8 : 16;
        if (value.value < -(int64_t{1} << (bits - 1)) || value.value >= (int64_t{1} << bits))
            return Refuse(JoinText({"#", text, " does not fit ", bits == 8 ? "an 8" : "a 16", "-bit immediate"}), bits / 8);
        return Emit(opcode, value.value, bits / 8);
    }

    bool Fits(const ExpressionValue& value, int width) const {
        if (value.value < 0 || value.value > 0xFFFFFF) return false;
        if (width == 3) return true;
        if (width == 1) return value.value <= 0xFF;
        return value.value <= 0xFFFF || (value.value >> 16) == (session.pc >> 16);
    }

    bool Address(const OperandShape& shape) {
        ExpressionValue value;
        const bool evaluated = Evaluate(shape.expression, value);
        const auto modes = ModesOfForm(shape.form);
        const int wanted = forcedWidth ? forcedWidth : evaluated ? value.width : 2;
        int opcode = -1, width = wanted;
        for (int w = wanted; w <= 3; ++w) {
            const std::optional<CpuMode> mode = modes[static_cast<size_t>(w - 1)];
            if (mode && OpcodeFor(opcodes, *mode) >= 0) {
                opcode = OpcodeFor(opcodes, *mode);
                width = w;
                break;
            }
            if (forcedWidth) break;
        }
        if (opcode < 0 && shape.form == OperandForm::LongIndirect && mnemonic == "jmp" && wanted <= 2)
            return Instruction{session, "jml", *OpcodesOf("jml"), forcedWidth, operand}.Address(shape);
        if (opcode < 0 && !forcedWidth && wanted > 1 && modes[0] && OpcodeFor(opcodes, *modes[0]) >= 0)
            return Refuse(JoinText({shape.expression, " does not fit the ", FormName(shape.form, 1), " operand of ",
                                    mnemonic}),
                          1);
        if (opcode < 0)
            return Refuse(JoinText({mnemonic, " has no ", FormName(shape.form, wanted), " form"}), wanted);
        if (!evaluated) return Skip(width);
        if (!Fits(value, width))
            return Refuse(JoinText({shape.expression, " (", Hex(value.value), ") does not fit the ",
                                    FormName(shape.form, width), " operand of ", mnemonic}),
                          width);
        return Emit(opcode, value.value, width);
    }

    bool Branch(std::string_view text) {
        const bool longBranch = OpcodeFor(opcodes, CpuMode::Relative16) >= 0;
        const int opcode = OpcodeFor(opcodes, longBranch ? CpuMode::Relative16 : CpuMode::Relative8);
        const int size = longBranch ? 2 : 1;
        if (forcedWidth && forcedWidth != size)
            return Refuse(JoinText({"this width suffix does not apply to ", mnemonic}), size);
        ExpressionValue value;
        if (!Evaluate(text, value)) return Skip(size);
        const int64_t low = -(int64_t{1} << (8 * size - 1)), high = (int64_t{1} << (8 * size - 1)) - 1;
        if (!value.hasLabel) {
            if (value.value < low || value.value > 2 * high + 1)
                return Refuse(JoinText({"displacement ", text, " does not fit ", mnemonic}), size);
            return Emit(opcode, value.value, size);
        }
        const int64_t distance = value.value - (static_cast<int64_t>(session.pc) + 1 + size);
        if (distance < low || distance > high)
            return Refuse(JoinText({"branch to ", text, " is ", std::to_string(distance < 0 ? -distance : distance),
                                    " bytes away; ", mnemonic, " reaches ", std::to_string(low), " to +",
                                    std::to_string(high)}),
                          size);
        return Emit(opcode, distance, size);
    }

    bool BlockMove(const OperandShape& shape) {
        if (shape.form != OperandForm::Pair)
            return Refuse(JoinText({mnemonic, " takes two banks: ", mnemonic, " destination,source"}), 2);
        ExpressionValue destination, source;
        if (!Evaluate(shape.expression, destination) || !Evaluate(shape.second, source)) return Skip(2);
        for (const ExpressionValue* bank : {&destination, &source})
            if (bank->value < 0 || bank->value > 0xFF)
                return Refuse(JoinText({"bank ", Hex(bank->value), " of ", mnemonic, " does not fit 8 bits"}), 2);
        return Emit(OpcodeFor(opcodes, CpuMode::BlockMove), destination.value | source.value << 8, 2);
    }
};

// The width a suffix forces: 1, 2, 3; 0 without one; -1 for an unknown suffix.
int SuffixWidth(std::string_view suffix) {
    if (suffix.empty()) return 0;
    if (suffix.size() != 2 || suffix[0] != '.') return -1;
    switch (suffix[1] | 0x20) {
    case 'b': return 1;
    case 'w': return 2;
    case 'l': return 3;
    default: return -1;
    }
}

}  // namespace

bool IsSourceMnemonic(std::string_view word) { return OpcodesOf(word.substr(0, 3)) && (word.size() == 3 || word[3] == '.'); }

InstructionResult AssembleSourceInstruction(AsmSession& session, std::string_view word, std::string_view operand) {
    if (!IsSourceMnemonic(word)) return InstructionResult::NotInstruction;
    const int width = SuffixWidth(word.substr(3));
    if (width < 0) {
        session.Error(JoinText({"unknown width suffix '", word.substr(3), "' (write .b, .w or .l)"}));
        return InstructionResult::Failed;
    }
    std::string mnemonic(word.substr(0, 3));
    for (char& c : mnemonic) c = static_cast<char>(c | 0x20);
    Instruction instruction{session, mnemonic, *OpcodesOf(mnemonic), width, operand};
    return instruction.Assemble() ? InstructionResult::Assembled : InstructionResult::Failed;
}
