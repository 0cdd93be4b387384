#include "table/table_writer.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "core/last_error.h"
#include "core/output_file.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

// The text in double quotes; a double quote inside it is written twice, which
// the reader takes back as one.
void AppendQuoted(std::string& out, const char* text) {
    out += " \"";
    for (; *text; ++text) {
        if (*text == '"') out += '"';
        out += *text;
    }
    out += '"';
}

// The text part and the keywords of one code's line. Codes whose text marks
// its parameter need no "byte" for the first parameter. An empty text is left
// out where terminal or newline gives it back and written as "" elsewhere.
void AppendEntry(std::string& out, const Font& font, int entry) {
    const char* text = font.texts[entry];
    uint8_t flags = font.flags[entry];
    if (text && (*text || !(flags & (ENTRY_TERMINAL | ENTRY_NEWLINE)))) AppendQuoted(out, text);
    if (flags & ENTRY_TERMINAL) out += " terminal";
    if (flags & ENTRY_NEWLINE) out += " newline";
    if ((flags & ENTRY_PARAM) && !(text && std::strchr(text, PARAMETER_MARK))) out += " byte";
    if (flags & ENTRY_PARAM2) out += " byte";
    out += "\r\n";
}

std::string FormatTable(const Font& font) {
    std::string out = "; Trelvane table\r\n\r\n";
    char code[8];
    for (int entry = 0; entry < TWO_BYTE_FIRST_ENTRY; ++entry) {
        if (!font.texts[entry]) continue;
        std::snprintf(code, sizeof code, "[%02X]  ", entry);
        out += code;
        AppendEntry(out, font, entry);
    }
    out += "\r\n";
    for (int entry = TWO_BYTE_FIRST_ENTRY + 1; entry <= LastEntryIndex(font); ++entry) {
        std::snprintf(code, sizeof code, "[%04X]", TwoByteCodeOf(font, entry));
        out += code;
        AppendEntry(out, font, entry);
    }
    return out;
}

}  // namespace

bool WriteTableFile(long id, const char* name) {
    const Font* font = FindFont(id, name);
    if (!font) return false;
    OutputFile file(name);
    if (!file.is_open()) return SetError(TLERR_FILE_NOCREATE, name, 0, 0);
    std::string table = FormatTable(*font);
    return (file.Write(table.data(), table.size()) && file.Commit()) || SetError(TLERR_FILE_NOWRITE, name, 0, 0);
}

extern "C" long Trelvane_SaveFont(long id, const char* file) {
    if (!file) file = "";
    return WriteTableFile(id, file) ? -1 : 0;
}
