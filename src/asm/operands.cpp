#include "asm/operands.h"

#include <cstdio>
#include <string>

#include "asm/number_token.h"
#include "asm/patch_file.h"
#include "asm/patch_messages.h"
#include "asm/statement_kinds.h"
#include "asm/patch_lexicon.h"
#include "core/hex_digit.h"

namespace {

bool IsMemoryToken(int32_t kind) {
    return kind == TOKEN_MEMORY || kind == TOKEN_MEMORY_S || kind == TOKEN_MEMORY_X || kind == TOKEN_MEMORY_Y ||
           kind == TOKEN_MEMORY_S_Y;
}

std::string HexText(uint32_t value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*Xh", digits, value);
    return text;
}

// A number written with at least width digits, never cut: 5 gives 05h, 0005h, 000005h and
// 00000005h in the four attempts, 123456h at least 123456h.
std::string NumberText(uint32_t value, int width) {
    int digits = 8;
    while (digits > width && (value >> (4 * (digits - 2))) == 0) digits -= 2;
    return HexText(value, digits);
}

// A symbol written against base: the bits it shares with base above the chosen width are dropped.
std::string SymbolText(uint32_t value, uint32_t base, int width) {
    const uint32_t differing = value ^ base;
    if (width <= 2 && differing >> 8 == 0) return HexText(value & 0xFF, 2);
    if (width <= 4 && differing >> 16 == 0) return HexText(value & 0xFFFF, 4);
    if (width <= 6 && differing >> 24 == 0) return HexText(value & 0xFFFFFF, 6);
    return HexText(value, 8);
}

const char* IndexSuffix(int32_t kind) {
    switch (kind) {
    case TOKEN_INDEX_S: return "+s";
    case TOKEN_INDEX_X: return "+x";
    case TOKEN_INDEX_Y: return "+y";
    default: return nullptr;
    }
}

// The operand text split into its template (the first run of hex digits as X) and that run's value.
struct OperandTemplate {
    std::string pattern;
    uint32_t value = 0;
};

OperandTemplate MakeTemplate(const std::string& text) {
    OperandTemplate result{text, 0};
    size_t start = 0;
    while (start < text.size() && !IsHexDigit(text[start])) ++start;
    size_t end = start;
    while (end < text.size() && IsHexDigit(text[end])) ++end;
    result.value = static_cast<uint32_t>(ParseHex(text.substr(start, end - start).append("h").c_str()));
    result.pattern.replace(start, end - start, end - start, 'X');
    return result;
}

int32_t AssembleRegister(PatchFile& patch, int mnemonic, int mode) {
    const int opcode = FindRegisterOpcode(patch.cpu->Instructions(), mnemonic, mode);
    if (opcode < 0) return ReportInvalidOperand(patch.error);
    if (!patch.block.Append({static_cast<CodeEntry>(opcode)}))
        return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    return mnemonic;
}

int32_t AssembleLabel(PatchFile& patch, int mnemonic) {
    const std::string name = patch.reader.TokenText();
    if (name.size() > static_cast<size_t>(MAX_LABEL_NAME))
        return Report(patch.error, MSG_NAME_TOO_LONG, name.c_str(), MAX_LABEL_NAME);
    int slot = patch.labels.Lookup(name);
    if (slot < 0) slot = patch.labels.Add(name);
    if (slot < 0) return ReportTooMany(patch.error, TABLE_LABELS, LABEL_SLOT_COUNT);
    if (!patch.block.Append({BranchEntry(slot, mnemonic)}))
        return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    return STATEMENT_LABEL;
}

int32_t AssembleParameter(PatchFile& patch, int mnemonic) {
    const int parameter = ParseDecimal(patch.reader.TokenText() + 1);
    if (!patch.block.Append({MacroParameterEntry(parameter, mnemonic)}))
        return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    return TOKEN_UNDERSCORE_NAME;
}

// Writes the operand for this attempt's width; false when the token is no written-out operand.
bool WriteOperand(PatchFile& patch, int32_t kind, const std::string& token, int width, std::string& suffix,
                  std::string& text) {
    if (kind == TOKEN_HEX || kind == TOKEN_DECIMAL) {
        const int32_t value = kind == TOKEN_HEX ? ParseHex(token.c_str()) : ParseDecimal(token.c_str());
        text = NumberText(static_cast<uint32_t>(value), width);
        return true;
    }
    if (IsMemoryToken(kind)) {
        text = token;
        return true;
    }
    const SymbolRecord* symbol = patch.cpu->Symbols().Find(kind - TOKEN_SYMBOL_BASE);
    if (kind < TOKEN_SYMBOL_BASE || !symbol) return false;
    const bool variable = symbol->type == SYMBOL_VARIABLE;
    const int32_t base = variable ? patch.cpu->AssumedDataBank() : patch.place.address;
    if (width == 2) {
        const char* index = IndexSuffix(patch.reader.Match());
        if (index) {
            patch.reader.NextToken();
            suffix = index;
        }
    }
    char written[32];  // "[", eight digits, "h", a suffix and "]"
    std::snprintf(written, sizeof written, variable ? "[%s%s]" : "%s%s",
                  SymbolText(static_cast<uint32_t>(symbol->value), static_cast<uint32_t>(base), width).c_str(),
                  suffix.c_str());
    text = written;
    return true;
}

}  // namespace

int32_t EmitInstruction(PatchFile& patch, int opcode, uint32_t value, int mnemonic) {
    const AddressingMode& mode = ModeOf(patch.cpu->Instructions(), opcode);
    if (mode.kind == MODE_KIND_RELATIVE) {
        const int slot = patch.labels.NewNumericTarget(static_cast<int32_t>(value));
        if (slot < 0) return ReportTooMany(patch.error, TABLE_LABELS, LABEL_SLOT_COUNT);
        if (!patch.block.Append({BranchEntry(slot, mnemonic)}))
            return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
        return mnemonic;
    }
    unsigned char bytes[4];
    const int count = EncodeInstruction(opcode, value, mode.size, bytes);
    CodeEntry entries[4];
    for (int i = 0; i < count; ++i) entries[i] = bytes[i];
    if (!patch.block.Append(std::span<const CodeEntry>(entries, static_cast<size_t>(count))))
        return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    return mnemonic;
}

int32_t AssembleInstruction(PatchFile& patch, int mnemonic) {
    const InstructionSet& set = patch.cpu->Instructions();
    const int m = MapAlias(set, mnemonic);
    const int first = m > 0 && m < MNEMONIC_COUNT ? FirstOpcode(set, m) : -1;
    if (first < 0) return ReportNotImplemented(patch.error, patch.reader.TokenText(), "");
    if (ModeOf(set, first).kind == MODE_KIND_NONE) return EmitInstruction(patch, first, 0, m);

    const int32_t kind = patch.reader.NextToken();
    if (kind >= TOKEN_REGISTER_BASE + FIRST_REGISTER_MODE && kind < TOKEN_REGISTER_BASE + ADDRESSING_MODE_COUNT)
        return AssembleRegister(patch, m, kind - TOKEN_REGISTER_BASE);
    if (kind == TOKEN_IDENTIFIER) return AssembleLabel(patch, m);
    if (kind == TOKEN_PARAMETER) return AssembleParameter(patch, m);

    uint32_t number = 0;
    if (IsNumberToken(kind) && !NumberTokenValue(patch.reader, number))
        return Report(patch.error, MSG_TOO_WIDE, patch.reader.TokenText(), 32);
    const std::string token = patch.reader.TokenText();
    std::string suffix;
    for (int width = 2; width <= 8; width += 2) {
        std::string text;
        if (!WriteOperand(patch, kind, token, width, suffix, text)) break;
        const OperandTemplate operand = MakeTemplate(text);
        const int opcode = FindOpcode(set, m, operand.pattern.c_str());
        if (opcode >= 0) return EmitInstruction(patch, opcode, operand.value, m);
        if (IsMemoryToken(kind)) break;
    }
    return ReportInvalidOperand(patch.error);
}
