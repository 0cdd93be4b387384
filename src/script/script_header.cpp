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

int32_t NumberValue(const SourceReader& reader) {
    return reader.TokenKind() == HEADER_TOKEN_HEX ? ParseHex(reader.TokenText()) : ParseDecimal(reader.TokenText());
}

// Reports that the current token is not what was expected.
bool ExpectedHere(const SourceReader& reader, const char* expected) {
    return SetError(TLERR_EXPECTED, reader.FileName(), reader.TokenLine(), reader.TokenColumn(), expected,
                    reader.TokenText());
}

// Reads the next token as a number into value.
bool ReadNumber(SourceReader& reader, const char* expected, int32_t& value) {
    if (!IsNumber(reader.NextToken())) return ExpectedHere(reader, expected);
    value = NumberValue(reader);
    return true;
}

// Reads a number that must lie between lowest and highest.
bool ReadNumberWithin(SourceReader& reader, int32_t lowest, int32_t highest, const char* range, int32_t& value) {
    int32_t number = 0;
    if (!ReadNumber(reader, "number", number)) return false;
    if (number < lowest || number > highest) return ExpectedHere(reader, range);
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
void ReadFirstPointer(SourceReader& reader, ScriptHeader& header) {
    if (!IsNumber(reader.Match())) {
        reader.SkipLine();
        return;
    }
    reader.NextToken();
    header.firstPointer = NumberValue(reader);
}

// One header command; the pointer commands set their field of pointers.
bool ReadCommandInto(SourceReader& reader, int32_t kind, ScriptHeader& header, PointerDestination& pointers) {
    switch (kind) {
        case HEADER_TOKEN_COMMENT: reader.SkipLine(); return true;
        case HEADER_TOKEN_LOAD: return ReadLoad(reader);
        case HEADER_TOKEN_TEXTADDRESS: return ReadTextAddress(reader, header);
        case HEADER_TOKEN_FIRSTPOINTER: ReadFirstPointer(reader, header); return true;
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
