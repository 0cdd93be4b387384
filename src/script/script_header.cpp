#include "script/script_header.h"

#include <string>

#include "core/last_error.h"
#include "script/header_lexicon.h"
#include "script/pointer_writer.h"
#include "text/source_reader.h"
#include "trelvane.h"

namespace {

constexpr int32_t kMaxPointerSize = 4;

bool IsNumber(int32_t kind) { return kind == HEADER_TOKEN_HEX || kind == HEADER_TOKEN_DECIMAL; }

// Reports that the current token is not what was expected.
bool ExpectedHere(const SourceReader& reader, const std::string& expected) {
    return SetError(TLERR_EXPECTED, reader.FileName(), reader.TokenLine(), reader.TokenColumn(), expected.c_str(),
                    reader.TokenText());
}

enum class NumberToken { Missing, TooLarge, RunsOn, Read };

bool IsLetterOrDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// The current token as a number; numbers are 32-bit and never wrap. A number
// followed directly by letters ("2AE0", which reads as 2 and "AE0") is no
// number: runOn then holds the whole of it.
// True when the decimal token holds letters: the lexicon's decimal numbers
// take the hexadecimal digits a number with an h would have ("2AE0").
bool DecimalWithLetters(const SourceReader& reader) {
    if (reader.TokenKind() != HEADER_TOKEN_DECIMAL) return false;
    for (const char* c = reader.TokenText(); *c; ++c)
        if (*c < '0' || *c > '9') return true;
    return false;
}

NumberToken NumberOf(SourceReader& reader, int32_t& value, std::string& runOn) {
    uint32_t number = 0;
    if (!IsNumber(reader.TokenKind())) return NumberToken::Missing;
    if (DecimalWithLetters(reader) || IsLetterOrDigit(reader.CurrentChar())) {
        runOn = reader.TokenText();
        while (IsLetterOrDigit(reader.CurrentChar())) runOn += reader.Advance();
        return NumberToken::RunsOn;
    }
    if (!ExactNumber(reader.TokenText(), reader.TokenKind() == HEADER_TOKEN_HEX, number)) return NumberToken::TooLarge;
    value = static_cast<int32_t>(number);
    return NumberToken::Read;
}

// Reports a number that runs on into letters.
bool RunOnNumber(const SourceReader& reader, const char* expected, const std::string& runOn) {
    return SetError(TLERR_EXPECTED, reader.FileName(), reader.TokenLine(), reader.TokenColumn(), expected,
                    runOn.c_str());
}

// Reads the next token as a number into value.
bool ReadNumber(SourceReader& reader, const char* expected, int32_t& value) {
    reader.NextToken();
    std::string runOn;
    switch (NumberOf(reader, value, runOn)) {
        case NumberToken::Missing: return ExpectedHere(reader, expected);
        case NumberToken::TooLarge: return ExpectedHere(reader, std::string("32-bit ") + expected);
        case NumberToken::RunsOn: return RunOnNumber(reader, expected, runOn);
        case NumberToken::Read: break;
    }
    return true;
}

// Reads a number that must lie between lowest and highest.
bool ReadNumberWithin(SourceReader& reader, int32_t lowest, int32_t highest, const char* range, int32_t& value) {
    int32_t number = 0;
    std::string runOn;
    reader.NextToken();
    const NumberToken read = NumberOf(reader, number, runOn);
    if (read == NumberToken::Missing) return ExpectedHere(reader, "number");
    if (read == NumberToken::RunsOn) return RunOnNumber(reader, "number", runOn);
    if (read == NumberToken::TooLarge || number < lowest || number > highest) return ExpectedHere(reader, range);
    value = number;
    return true;
}

bool ReadLoad(SourceReader& reader) {
    if (reader.NextToken() != HEADER_TOKEN_QUOTED) return ExpectedHere(reader, "filename");
    std::string name = Substring(reader.TokenText(), 1, -1);
    if (Trelvane_LoadFont(name.c_str())) return true;
    return SetError(TLERR_FILE_NOREAD, name.c_str(), 0, 0);
}

// A number, then optionally "(" limit ")". A limit of FFFFFFFFh means none
// and needs no closing parenthesis.
bool ReadTextAddress(SourceReader& reader, ScriptHeader& header) {
    if (!ReadNumber(reader, "number", header.textAddress)) return false;
    if (reader.Match() != HEADER_TOKEN_LPAREN) return true;
    reader.NextToken();
    if (!ReadNumber(reader, "number", header.limit)) return false;
    if (header.limit == HEADER_VALUE_UNSET) {
        if (reader.Match() == HEADER_TOKEN_RPAREN) reader.NextToken();
        return true;
    }
    return reader.NextToken() == HEADER_TOKEN_RPAREN || ExpectedHere(reader, ")");
}

// A first pointer not followed by a number is ignored with the rest of its line.
bool ReadFirstPointer(SourceReader& reader, ScriptHeader& header) {
    if (!IsNumber(reader.Match())) {
        reader.SkipLine();
        return true;
    }
    return ReadNumber(reader, "number", header.firstPointer);
}

// One header command; the pointer commands set their field of pointers.
bool ReadCommandInto(SourceReader& reader, int32_t kind, ScriptHeader& header, PointerDestination& pointers) {
    switch (kind) {
        case HEADER_TOKEN_COMMENT: reader.SkipLine(); return true;
        case HEADER_TOKEN_LOAD: return ReadLoad(reader);
        case HEADER_TOKEN_TEXTADDRESS: return ReadTextAddress(reader, header);
        case HEADER_TOKEN_FIRSTPOINTER: return ReadFirstPointer(reader, header);
        case HEADER_TOKEN_POINTERTABLE:
        case HEADER_TOKEN_POINTERTABLELOW: return ReadNumber(reader, "address", pointers.table);
        case HEADER_TOKEN_POINTERTABLEHIGH: return ReadNumber(reader, "address", pointers.high);
        case HEADER_TOKEN_POINTERTABLEBANK: return ReadNumber(reader, "address", pointers.bank);
        case HEADER_TOKEN_POINTERSIZE: return ReadNumberWithin(reader, 1, kMaxPointerSize, "1 to 4", pointers.size);
        case HEADER_TOKEN_POINTERFREQUENCY:
            return ReadNumberWithin(reader, 1, INT32_MAX, "1 or more", pointers.frequency);
        default:
            return SetError(TLERR_UNKNOWN, reader.FileName(), reader.TokenLine(), reader.TokenColumn(),
                            reader.TokenText());
    }
}

// The pointer commands change the program-wide pointer destination.
bool ReadCommand(SourceReader& reader, int32_t kind, ScriptHeader& header) {
    PointerDestination pointers = CurrentPointerDestination();
    const bool read = ReadCommandInto(reader, kind, header, pointers);
    SetPointerDestination(pointers);
    return read;
}

}  // namespace

HeaderEnd ReadScriptHeader(SourceReader& reader, ScriptHeader& header) {
    while (true) {
        int32_t kind = reader.NextToken();
        if (kind == TOKEN_END) return HeaderEnd::EndOfFile;
        if (kind == HEADER_TOKEN_OPEN_BRACKET) return HeaderEnd::StringSection;
        if (!ReadCommand(reader, kind, header)) return HeaderEnd::Failed;
    }
}
