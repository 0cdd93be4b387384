#include "app/script_dump.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "app/sequence_support.h"
#include "core/output_file.h"
#include "script/pointer_width.h"

namespace {

void Append(std::string& out, const char* format, ...) {
    char line[128];
    va_list arguments;
    va_start(arguments, format);
    int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    if (length > 0) out.append(line, static_cast<size_t>(length) < sizeof line ? length : sizeof line - 1);
}

unsigned Hex(long value) { return static_cast<unsigned>(value); }

// One decoded string: its text (empty when it cannot be decoded) and the
// bytes it occupies in the image.
struct DecodedString {
    std::string text;
    long length = 0;
};

DecodedString DecodeAt(long fontId, long address) {
    DecodedString decoded;
    const char* text = Trelvane_Decode(fontId, address, &decoded.length);
    if (text) decoded.text = text;
    else decoded.length = 0;
    return decoded;
}

void AppendFirstPointer(std::string& out, const PointerTable& table, long first) {
    int64_t mask = PointerWidthMask(table.size);
    if ((table.base & mask) != 0) return;
    long value = first - table.base;
    switch (table.size) {
        case 1: Append(out, "firstpointer %02Xh\r\n", Hex(value & mask)); break;
        case 2: Append(out, "firstpointer %04Xh\r\n", Hex(value & mask)); break;
        case 3: Append(out, "firstpointer %06Xh\r\n", Hex(value & mask)); break;
        default: Append(out, "firstpointer %08Xh\r\n", Hex(value)); break;
    }
}

void AppendTableLines(std::string& out, const PointerTable& table) {
    if (table.table != 0) {
        Append(out, "pointertable %06Xh\r\npointersize %d\r\n", Hex(table.table), table.size);
        return;
    }
    Append(out, "pointerlow %06Xh\r\n", Hex(table.low));
    if (table.high == 0) return;
    Append(out, "pointerhigh %06Xh\r\n", Hex(table.high));
    if (table.bank != 0) Append(out, "pointerbank %06Xh\r\n", Hex(table.bank));
}

void AppendHeader(std::string& out, const DumpRequest& request) {
    auto* table = const_cast<PointerTable*>(request.table);
    long first = Trelvane_GetPointer(request.fontId, table, 0);
    AppendFirstPointer(out, *table, first);
    long last = Trelvane_GetPointer(request.fontId, table, request.count - 1);
    long end = last + DecodeAt(request.fontId, last).length;
    Append(out, "textaddress %06Xh (%ld)\r\n", Hex(first), end - first);
    AppendTableLines(out, *table);
    Append(out, "pointerfrequency %d\r\n", table->frequency);
}

// Trailing blanks of a comment piece become "_" so that they survive the
// editor; the blank behind a leading ";" stays, keeping "; " in front.
void ShowTrailingBlanks(std::string& piece) {
    size_t i = piece.size();
    while (i > 0 && piece[i - 1] == ' ') piece[--i] = '_';
    if (i > 0 && piece[i - 1] == ';' && i < piece.size()) piece[i] = ' ';
}

void AppendComment(std::string& out, const std::string& text) {
    std::string built = "; " + text;
    size_t start = 0;
    while (true) {
        size_t end = built.find('\n', start);
        std::string piece = built.substr(start, end == std::string::npos ? std::string::npos : end - start);
        ShowTrailingBlanks(piece);
        out += piece;
        if (end == std::string::npos) return;
        out += "\r\n; ";
        start = end + 1;
    }
}

const char* EndLineFormat(long count) {
    if (count <= 256) return "\r\nM%02X\r\n";
    if (count <= 4096) return "\r\nM%03X\r\n";
    return "\r\nM%04X\r\n";
}

void AppendEntries(std::string& out, const DumpRequest& request) {
    auto* table = const_cast<PointerTable*>(request.table);
    const char* endLine = EndLineFormat(request.count);
    long address = request.textAddress;
    for (long i = 0; i < request.count; ++i) {
        if (table) address = Trelvane_GetPointer(request.fontId, table, i);
        Append(out, "\r\n[%04X] ; %06X\r\n", Hex(i), Hex(address));
        DecodedString decoded = DecodeAt(request.fontId, address);
        AppendComment(out, decoded.text);
        Append(out, endLine, Hex(i));
        address += decoded.length;
    }
}

}  // namespace

std::string FormatScriptDump(const DumpRequest& request) {
    std::string out = std::string("load \"") + request.tableFile + "\"\r\n";
    if (request.table && request.count > 0) AppendHeader(out, request);
    AppendEntries(out, request);
    return out;
}

int DumpScript(const DumpRequest& request) {
    const std::string out = FormatScriptDump(request);
    bool written = WriteOutputFile(request.dumpFile, out.data(), out.size());
    Trelvane_FreeROM(-1);
    if (written) return 0;
    Trelvane_SetStringFile(request.dumpFile);
    PrintMessageLine(TLERR_FILE_NOCREATE);
    return -1;
}
