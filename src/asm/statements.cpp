#include "asm/statements.h"

#include <string>
#include <string_view>
#include <vector>

#include "core/blank.h"
#include "core/hex_digit.h"
#include "core/text_compare.h"
#include "asm/macros.h"
#include "asm/number_token.h"
#include "asm/operands.h"
#include "asm/patch_file.h"
#include "asm/patch_messages.h"
#include "asm/statement_kinds.h"
#include "asm/patch_lexicon.h"

namespace {

// The value of the number token just read; a number wider than 32 bits is refused.
bool TakeNumber(PatchFile& patch, int32_t& value) {
    uint32_t exact = 0;
    if (!NumberTokenValue(patch.reader, exact)) return Report(patch.error, MSG_TOO_WIDE, patch.reader.TokenText(), 32);
    value = static_cast<int32_t>(exact);
    return true;
}

// Reads a number into value; otherwise reports expected.
bool ReadNumber(PatchFile& patch, const char* expected, int32_t& value) {
    if (!IsNumberToken(patch.reader.NextToken())) return ReportExpected(patch.error, expected);
    return TakeNumber(patch, value);
}

// Reads a hexadecimal number (with its h) into value; otherwise reports expected.
bool ReadHex(PatchFile& patch, const char* expected, int32_t& value) {
    if (patch.reader.NextToken() != TOKEN_HEX) return ReportExpected(patch.error, expected);
    return TakeNumber(patch, value);
}

bool ReadToken(PatchFile& patch, int32_t kind, const char* expected) {
    return patch.reader.NextToken() == kind || ReportExpected(patch.error, expected);
}

// Reads the next token when it has the given kind.
bool TakeIf(PatchFile& patch, int32_t kind) { return patch.reader.Match() == kind && patch.reader.NextToken() == kind; }

bool NameFits(PatchFile& patch, std::string_view name, int limit) {
    return static_cast<int>(name.size()) <= limit ||
           Report(patch.error, MSG_NAME_TOO_LONG, std::string(name).c_str(), limit);
}

// Adds a variable or constant to the symbol table and its name to the scanner.
int32_t DefineSymbol(PatchFile& patch, const std::string& name, const SymbolRecord& record) {
    if (patch.cpu->Symbols().Count() >= MAX_SYMBOLS) return ReportTooMany(patch.error, TABLE_SYMBOLS, MAX_SYMBOLS);
    patch.reader.AddWord(TOKEN_SYMBOL_BASE + patch.cpu->Symbols().Count(), name);
    patch.cpu->Symbols().Add(record);
    return TOKEN_VARIABLE;
}

// $name value
int32_t ParseVariable(PatchFile& patch) {
    const std::string name = patch.reader.TokenText() + 1;
    if (!NameFits(patch, name, MAX_SYMBOL_NAME)) return 0;
    int32_t value = 0;
    if (!ReadHex(patch, "memory location", value)) return 0;
    return DefineSymbol(patch, name, SymbolRecord(name, SYMBOL_VARIABLE, value));
}

// name .EQL value, optionally ( attribute ); nothing reads the attribute.
int32_t ParseConstant(PatchFile& patch, const std::string& name) {
    int32_t value = 0;
    if (!ReadNumber(patch, "number", value)) return 0;
    if (static_cast<uint32_t>(value) > 0xFFFFFF) return Report(patch.error, MSG_TOO_WIDE, patch.reader.TokenText(), 24);
    if (!NameFits(patch, name, MAX_SYMBOL_NAME)) return 0;
    SymbolRecord record(name, SYMBOL_CONSTANT, value);
    if (TakeIf(patch, TOKEN_LPAREN)) {
        int32_t attribute = 0;
        if (!ReadNumber(patch, "number", attribute)) return 0;
        if (!ReadToken(patch, TOKEN_RPAREN, ")")) return 0;
    }
    return DefineSymbol(patch, name, record);
}

// name :
int32_t ParseLabel(PatchFile& patch, const std::string& name) {
    if (!NameFits(patch, name, MAX_LABEL_NAME)) return 0;
    int slot = patch.labels.Lookup(name);
    if (slot >= 0 && patch.block.Holds(LabelDefinitionEntry(slot)))
        return ReportAlreadyDefined(patch.error, "Label", patch.labels.Name(slot));
    if (slot < 0) slot = patch.labels.Add(name);
    if (slot < 0) return ReportTooMany(patch.error, TABLE_LABELS, LABEL_SLOT_COUNT);
    if (!patch.block.Append({LabelDefinitionEntry(slot)}))
        return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    return STATEMENT_LABEL;
}

// A name at the start of a statement: a macro definition, a constant or a label.
int32_t ParseIdentifier(PatchFile& patch) {
    const std::string name = patch.reader.TokenText();
    switch (patch.reader.NextToken()) {
    case TOKEN_DOT_MACRO: return BeginMacro(patch, name);
    case TOKEN_DOT_EQL: return ParseConstant(patch, name);
    case TOKEN_COLON: return ParseLabel(patch, name);
    default: return ReportExpected(patch.error, ".MACRO");
    }
}

// A defined symbol at the start of a statement may only name a new macro.
int32_t ParseSymbolStart(PatchFile& patch) {
    const std::string name = patch.reader.TokenText();
    if (patch.reader.Match() != TOKEN_DOT_MACRO) return ReportAlreadyDefined(patch.error, "Variable", name.c_str());
    patch.reader.NextToken();
    return BeginMacro(patch, name);
}

// .ASSUME dbr : value
bool ParseAssume(PatchFile& patch) {
    const int32_t kind = patch.reader.NextToken();
    const int mode = kind - TOKEN_REGISTER_BASE;
    if (mode < FIRST_REGISTER_MODE || mode >= ADDRESSING_MODE_COUNT ||
        !SameTextIgnoringCase(ADDRESSING_MODES[mode].pattern, "DBR"))
        return ReportExpected(patch.error, "DBR");
    int32_t bank = 0;
    if (!ReadToken(patch, TOKEN_COLON, "colon") || !ReadHex(patch, "memory address", bank)) return false;
    patch.cpu->SetAssumedDataBank(bank);
    return true;
}

// Refuses an include that is already being read or goes beyond the bounds of includes.
bool IncludeAllowed(PatchFile& patch, const std::string& name) {
    switch (patch.files.Check(name)) {
    case IncludedFiles::Refusal::ALREADY_OPEN: return Report(patch.error, MSG_ALREADY_OPEN, name.c_str());
    case IncludedFiles::Refusal::TOO_DEEP: return ReportTooMany(patch.error, TABLE_NESTED_INCLUDES, MAX_INCLUDE_DEPTH);
    case IncludedFiles::Refusal::TOO_MANY: return ReportTooMany(patch.error, TABLE_INCLUDES, MAX_INCLUDES);
    default: return true;
    }
}

// .INCLUDE "name": reading goes on in the included file.
bool ParseInclude(PatchFile& patch) {
    if (patch.reader.NextToken() != TOKEN_STRING) return ReportExpected(patch.error, "filename");
    const std::string name = Substring(patch.reader.TokenText(), 1, -1);
    if (!NameFits(patch, name, MAX_FILE_NAME) || !IncludeAllowed(patch, name)) return false;
    const std::string file = patch.reader.FileName();
    const int line = patch.reader.TokenLine(), column = patch.reader.TokenColumn();
    patch.reader.PushFrame();
    if (!patch.reader.Open(name.c_str(), "")) {
        patch.reader.PopFrame();
        return ReportAt(patch.error, file.c_str(), line, column, MSG_OPEN_FAILED, name.c_str());
    }
    patch.files.Enter(name);
    return true;
}

// .BYTE v, v, ... (bytes = 1) and .WORD v, v, ... (bytes = 2), low byte first.
bool AppendDataValue(PatchFile& patch, int bytes) {
    int32_t value = 0;
    if (!ReadNumber(patch, "Byte value", value)) return false;
    const CodeEntry low = static_cast<CodeEntry>(value & 0xFF), high = static_cast<CodeEntry>(value >> 8 & 0xFF);
    const bool appended = bytes == 1 ? patch.block.Append({low}) : patch.block.Append({low, high});
    return appended || ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
}

// A list that fails appends none of its values.
int32_t ParseData(PatchFile& patch, int bytes) {
    const int start = patch.block.Size();
    do {
        if (!AppendDataValue(patch, bytes)) {
            patch.block.Truncate(start);
            return 0;
        }
    } while (TakeIf(patch, TOKEN_COMMA));
    return STATEMENT_DATA;
}

// .ADDRESS address, optionally ( limit ): compiles the pending block and starts the next. A
// statement that is not well formed changes nothing; a block refused still starts the next.
int32_t ParseAddress(PatchFile& patch) {
    BlockPlace next;
    if (!ReadNumber(patch, "number", next.address)) return 0;
    if (TakeIf(patch, TOKEN_LPAREN)) {
        int32_t limit = 0;
        if (!ReadNumber(patch, "number", limit) || !ReadToken(patch, TOKEN_RPAREN, ")")) return 0;
        next.limit = static_cast<uint16_t>(limit);
    }
    const bool compiled = CompilePendingBlock(patch);
    patch.place = next;
    patch.addressGiven = true;
    return compiled ? TOKEN_DOT_ADDRESS : 0;
}

// The zero byte shown as the reader shows it, any other character as itself.
std::string Shown(std::string_view text) {
    std::string shown;
    for (char c : text) shown += c == '\0' ? std::string(ZERO_BYTE_SHOWN) : std::string(1, c);
    return shown;
}

// The bytes that the hex pairs of line from index at on stand for, up to the line's end or a ";".
// A lone digit or a pair that is not two hexadecimal digits is refused.
bool ReadHexPairs(PatchFile& patch, const std::string& line, size_t at, std::vector<unsigned char>& bytes) {
    for (;;) {
        while (at < line.size() && IsBlank(line[at])) ++at;
        if (at >= line.size() || line[at] == ';') return true;
        const char second = at + 1 < line.size() ? line[at + 1] : ';';
        if (second == ';' || IsBlank(second)) return AppendMessage(patch.error, MSG_MISMATCHED_PAIR);
        if (HexDigitValue(line[at]) < 0 || HexDigitValue(second) < 0) {
            const SourceReader& reader = patch.reader;
            return ReportAt(patch.error, reader.FileName(), reader.TokenLine(), static_cast<int>(at) + 1,
                            MSG_NOT_HEX_PAIR, Shown(line.substr(at, 2)).c_str());
        }
        bytes.push_back(static_cast<unsigned char>(HexDigitValue(line[at]) << 4 | HexDigitValue(second)));
        at += 2;
    }
}

// .PATCH address : hex pairs up to the end of the line, written straight into the image once the
// whole line has been read and every byte found to lie inside the image.
int32_t ParsePatch(PatchFile& patch) {
    int32_t address = 0;
    if (!ReadNumber(patch, "number", address) || !ReadToken(patch, TOKEN_COLON, "colon")) return 0;
    SourceReader& reader = patch.reader;
    const int endColumn = reader.TokenEndColumn();
    SetMessagePrefix(patch.error, reader.FileName(), reader.TokenLine(), endColumn);
    reader.LineText();
    const std::string line = reader.TokenString();  // zero bytes included
    reader.SkipLine();
    std::vector<unsigned char> bytes;
    if (!ReadHexPairs(patch, line, static_cast<size_t>(endColumn - 1), bytes)) return 0;
    for (size_t i = 0; i < bytes.size(); ++i)
        if (!patch.cpu->Inside(ImagePosition(int64_t{address} + static_cast<int64_t>(i)), 1))
            return AppendMessage(patch.error, MSG_OUTSIDE_IMAGE, (address + static_cast<int32_t>(i)) & 0xFFFFFF);
    for (size_t i = 0; i < bytes.size(); ++i)
        patch.cpu->Memory()[ImagePosition(int64_t{address} + static_cast<int64_t>(i))] = bytes[i];
    return TOKEN_DOT_PATCH;
}

// .POINTER size @ location
int32_t ParsePointer(PatchFile& patch) {
    int32_t size = 0, location = 0;
    if (!ReadNumber(patch, "number", size)) return 0;
    if (!ReadToken(patch, TOKEN_AT, "@")) return 0;
    if (!ReadNumber(patch, "number", location)) return 0;
    if (!patch.block.AppendPointer(size, static_cast<uint32_t>(location)))
        return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    return TOKEN_DOT_POINTER;
}

// The end of the outermost file: a macro left open is refused, the pending block compiled.
int32_t EndOfScript(PatchFile& patch) {
    bool finished = true;
    if (patch.definingMacro) finished = AbandonMacro(patch);
    finished = CompilePendingBlock(patch) && finished;
    while (patch.reader.PopFrame()) {
    }
    patch.files.Clear();
    return finished ? TOKEN_END : 0;
}

bool InRange(int32_t kind, int32_t first, int32_t end) { return kind >= first && kind < end; }

// The next token that is not a comment. A comment runs to the end of its line, whatever bytes
// it holds (a zero byte too).
int32_t NextStatementToken(SourceReader& reader) {
    int32_t kind = reader.NextToken();
    while (kind == TOKEN_COMMENT) {
        reader.SkipLine();
        kind = reader.NextToken();
    }
    return kind;
}

// The statement that starts with the token of kind.
int32_t Dispatch(PatchFile& patch, int32_t kind) {
    if (kind < TOKEN_REGISTER_BASE) return AssembleInstruction(patch, kind);
    switch (kind) {
    case TOKEN_VARIABLE: return ParseVariable(patch);
    case TOKEN_DOT_BYTE: return ParseData(patch, 1);
    case TOKEN_DOT_WORD: return ParseData(patch, 2);
    case TOKEN_IDENTIFIER: return ParseIdentifier(patch);
    case TOKEN_DOT_ENDM: return StoreMacro(patch);
    case TOKEN_DOT_ADDRESS: return ParseAddress(patch);
    case TOKEN_DOT_PATCH: return ParsePatch(patch);
    case TOKEN_DOT_POINTER: return ParsePointer(patch);
    default: break;
    }
    if (InRange(kind, TOKEN_MACRO_BASE, TOKEN_MACRO_BASE + MAX_MACROS)) return ExpandMacro(patch, kind - TOKEN_MACRO_BASE);
    if (InRange(kind, TOKEN_SYMBOL_BASE, TOKEN_SYMBOL_BASE + MAX_SYMBOLS)) return ParseSymbolStart(patch);
    return Report(patch.error, MSG_UNKNOWN_COMMAND, patch.reader.TokenText());
}

// Where a statement starts.
struct StatementStart {
    std::string file;
    int line = 0, column = 0;
};

// Code has no place before the first .ADDRESS: a statement that put some in the block is refused
// and its code dropped (a macro's body is no such code).
int32_t RefuseCodeWithoutAddress(PatchFile& patch, int32_t kind, const StatementStart& start) {
    if (kind == 0 || patch.addressGiven || patch.definingMacro || patch.block.Empty()) return kind;
    patch.block.Clear();
    patch.labels.Reset();
    return ReportAt(patch.error, start.file.c_str(), start.line, start.column, MSG_NO_ADDRESS);
}

}  // namespace

int32_t ParseStatement(PatchFile& patch) {
    patch.error.Clear();
    SourceReader& reader = patch.reader;
    for (;;) {
        const int32_t kind = NextStatementToken(reader);
        if (kind == TOKEN_END && patch.files.Depth() > 1) {  // an included file ended
            reader.PopFrame();
            patch.files.Leave();
            continue;
        }
        if (kind == TOKEN_END) return EndOfScript(patch);
        if (kind == TOKEN_DOT_ASSUME || kind == TOKEN_DOT_INCLUDE) {  // the statement goes on behind them
            if (!(kind == TOKEN_DOT_ASSUME ? ParseAssume(patch) : ParseInclude(patch))) return 0;
            continue;
        }
        const StatementStart start{reader.FileName(), reader.TokenLine(), reader.TokenColumn()};
        return RefuseCodeWithoutAddress(patch, Dispatch(patch, kind), start);
    }
}
