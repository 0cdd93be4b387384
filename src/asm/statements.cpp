#include "asm/statements.h"

#include <filesystem>
#include <string>
#include <string_view>

#include "core/text_compare.h"
#include "asm/macros.h"
#include "asm/operands.h"
#include "asm/patch_file.h"
#include "asm/patch_messages.h"
#include "asm/statement_kinds.h"
#include "asm/patch_lexicon.h"

namespace {

bool IsNumberToken(int32_t kind) { return kind == TOKEN_HEX || kind == TOKEN_DECIMAL; }

int32_t TokenNumber(const SourceReader& reader) {
    return reader.TokenKind() == TOKEN_HEX ? ParseHex(reader.TokenText()) : ParseDecimal(reader.TokenText());
}

// Reads a number into value; otherwise reports expected.
bool ReadNumber(PatchFile& patch, const char* expected, int32_t& value) {
    if (!IsNumberToken(patch.reader.NextToken())) return ReportExpected(patch.error, expected);
    value = TokenNumber(patch.reader);
    return true;
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
    if (!patch.reader.AddPattern(TOKEN_SYMBOL_BASE + patch.cpu->Symbols().Count(), name.c_str()))
        return Report(patch.error, MSG_SCANNER_FULL, name.c_str());
    patch.cpu->Symbols().Add(record);
    return TOKEN_VARIABLE;
}

// $name value
int32_t ParseVariable(PatchFile& patch) {
    const std::string name = patch.reader.TokenText() + 1;
    if (!NameFits(patch, name, MAX_SYMBOL_NAME)) return 0;
    if (patch.reader.NextToken() != TOKEN_HEX) return ReportExpected(patch.error, "memory location");
    return DefineSymbol(patch, name, SymbolRecord(name, SYMBOL_VARIABLE, ParseHex(patch.reader.TokenText())));
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
    if (!ReadToken(patch, TOKEN_COLON, "colon")) return false;
    if (!ReadToken(patch, TOKEN_HEX, "memory address")) return false;
    patch.cpu->SetAssumedDataBank(ParseHex(patch.reader.TokenText()));
    return true;
}

// The name a file is opened under: the reader drops the dot that an empty extension leaves.
std::string OpenedName(std::string name) {
    if (!name.empty() && name.back() == '.') name.pop_back();
    return name;
}

bool AlreadyBeingRead(const PatchFile& patch, const std::string& name) {
    for (const std::string& open : patch.openFiles) {
        std::error_code error;
        if (std::filesystem::equivalent(OpenedName(name), OpenedName(open), error)) return true;
    }
    return false;
}

// .INCLUDE "name": reading goes on in the included file.
bool ParseInclude(PatchFile& patch) {
    if (patch.reader.NextToken() != TOKEN_STRING) return ReportExpected(patch.error, "filename");
    const std::string name = Substring(patch.reader.TokenText(), 1, -1);
    if (!NameFits(patch, name, MAX_FILE_NAME)) return false;
    if (AlreadyBeingRead(patch, name)) return Report(patch.error, MSG_ALREADY_OPEN, name.c_str());
    const std::string file = patch.reader.FileName();
    const int line = patch.reader.TokenLine(), column = patch.reader.TokenColumn();
    patch.reader.PushFrame();
    if (!patch.reader.Open(name.c_str(), "")) {
        patch.reader.PopFrame();
        return ReportAt(patch.error, file.c_str(), line, column, MSG_OPEN_FAILED, name.c_str());
    }
    patch.openFiles.push_back(name);
    return true;
}

// .BYTE v, v, ... (bytes = 1) and .WORD v, v, ... (bytes = 2), low byte first.
int32_t ParseData(PatchFile& patch, int bytes) {
    do {
        int32_t value = 0;
        if (!ReadNumber(patch, "Byte value", value)) return 0;
        const CodeEntry low = static_cast<CodeEntry>(value & 0xFF), high = static_cast<CodeEntry>(value >> 8 & 0xFF);
        const bool appended = bytes == 1 ? patch.block.Append({low}) : patch.block.Append({low, high});
        if (!appended) return ReportTooMany(patch.error, TABLE_CODE_ENTRIES, MAX_CODE_ENTRIES);
    } while (TakeIf(patch, TOKEN_COMMA));
    return STATEMENT_DATA;
}

// .ADDRESS address, optionally ( limit ): compiles the pending block and starts the next.
int32_t ParseAddress(PatchFile& patch) {
    int32_t address = 0;
    if (!ReadNumber(patch, "number", address)) return 0;
    const bool compiled = CompilePendingBlock(patch);
    patch.place.limit = 0xFFFF;
    patch.place.address = address;
    if (TakeIf(patch, TOKEN_LPAREN)) {
        int32_t limit = 0;
        if (!ReadNumber(patch, "number", limit)) return 0;
        patch.place.limit = static_cast<uint16_t>(limit);
        if (!ReadToken(patch, TOKEN_RPAREN, ")")) return 0;
    }
    return compiled ? TOKEN_DOT_ADDRESS : 0;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// .PATCH address : hex pairs up to the end of the line, written straight into the image.
int32_t ParsePatch(PatchFile& patch) {
    int32_t address = 0;
    if (!ReadNumber(patch, "number", address)) return 0;
    if (!ReadToken(patch, TOKEN_COLON, "colon")) return 0;
    SourceReader& reader = patch.reader;
    const int endColumn = reader.TokenEndColumn();
    SetMessagePrefix(patch.error, reader.FileName(), reader.TokenLine(), endColumn);
    const std::string line = reader.LineText();
    reader.SkipLine();
    for (size_t at = static_cast<size_t>(endColumn - 1); at <= line.size();) {
        while (at < line.size() && IsBlank(line[at])) ++at;
        if (at >= line.size() || line[at] == ';') break;
        const char second = at + 1 < line.size() ? line[at + 1] : '\0';
        if (second == '\0' || second == ';' || IsBlank(second)) return AppendMessage(patch.error, MSG_MISMATCHED_PAIR);
        const int32_t position = ImagePosition(address);
        if (!patch.cpu->Inside(position, 1)) return AppendMessage(patch.error, MSG_OUTSIDE_IMAGE, address & 0xFFFFFF);
        patch.cpu->Memory()[position] = static_cast<unsigned char>(ParseHex(line.substr(at, 2).append("h").c_str()));
        ++address;
        at += 2;
    }
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
    if (patch.definingMacro) {
        finished = Report(patch.error, MSG_MACRO_NOT_ENDED, patch.macroName.c_str());
        patch.definingMacro = false;
        patch.block.Clear();
        patch.labels.Reset();
    }
    finished = CompilePendingBlock(patch) && finished;
    while (patch.reader.PopFrame()) {
    }
    patch.openFiles.clear();
    return finished ? TOKEN_END : 0;
}

bool InRange(int32_t kind, int32_t first, int32_t end) { return kind >= first && kind < end; }

}  // namespace

int32_t ParseStatement(PatchFile& patch) {
    patch.error.Clear();
    SourceReader& reader = patch.reader;
    for (;;) {
        int32_t kind = reader.NextToken();
        while (kind == TOKEN_COMMENT) kind = reader.NextToken();
        if (kind == TOKEN_END && patch.openFiles.size() > 1) {  // an included file ended
            reader.PopFrame();
            patch.openFiles.pop_back();
            continue;
        }
        if (kind == TOKEN_END) return EndOfScript(patch);
        if (kind < TOKEN_REGISTER_BASE) return AssembleInstruction(patch, kind);
        switch (kind) {
        case TOKEN_VARIABLE: return ParseVariable(patch);
        case TOKEN_DOT_ASSUME:
            if (!ParseAssume(patch)) return 0;
            continue;
        case TOKEN_DOT_INCLUDE:
            if (!ParseInclude(patch)) return 0;
            continue;
        case TOKEN_DOT_BYTE: return ParseData(patch, 1);
        case TOKEN_DOT_WORD: return ParseData(patch, 2);
        case TOKEN_IDENTIFIER: return ParseIdentifier(patch);
        case TOKEN_DOT_ENDM: return StoreMacro(patch);
        case TOKEN_DOT_ADDRESS: return ParseAddress(patch);
        case TOKEN_DOT_PATCH: return ParsePatch(patch);
        case TOKEN_DOT_POINTER: return ParsePointer(patch);
        default: break;
        }
        if (InRange(kind, TOKEN_MACRO_BASE, TOKEN_MACRO_BASE + MAX_MACROS))
            return ExpandMacro(patch, kind - TOKEN_MACRO_BASE);
        if (InRange(kind, TOKEN_SYMBOL_BASE, TOKEN_SYMBOL_BASE + MAX_SYMBOLS)) return ParseSymbolStart(patch);
        return Report(patch.error, MSG_UNKNOWN_COMMAND, reader.TokenText());
    }
}
