#include "table/table_reader.h"

#include <cstring>
#include <string>

#include "core/last_error.h"
#include "table/font_set.h"
#include "table/table_lexicon.h"
#include "text/source_reader.h"
#include "trelvane.h"

namespace {

// The one reader every table file goes through, running the table-file lexicon.
SourceReader& TableFileReader() {
    static SourceReader reader(READER_SKIP_SPACE);
    static const bool ready = (reader.SetAutomaton(&TableLexicon()), true);
    (void)ready;
    return reader;
}

// Reads the statements of one table file into the slot being filled and, for
// alternative texts, the slot after it. The current entry stays selected from
// one code in brackets to the next.
class TableFileLoader {
public:
    TableFileLoader(SourceReader& reader, const char* name, int slot) : reader_(reader), name_(name), slot_(slot) {}

    bool ReadStatements() {
        Main().rule = 0;
        for (int32_t kind = reader_.NextToken(); kind != TOKEN_END; kind = reader_.NextToken())
            if (!Statement(kind)) return false;
        return true;
    }

    bool HasAlternatives() const { return hasAlternatives_; }

private:
    Font& Main() { return *SlotBeingLoaded(slot_); }
    Font* Alternative() { return SlotBeingLoaded(slot_ + 1); }

    // The token's text without its enclosing characters: brackets, quotes or braces.
    std::string Enclosed() const {
        const char* text = reader_.TokenText();
        size_t length = std::strlen(text);
        return length >= 2 ? std::string(text + 1, length - 2) : std::string();
    }

    bool ReportAtToken(int code, const char* data0, const char* data1 = "") {
        return SetError(code, reader_.FileName(), reader_.TokenLine(), reader_.TokenColumn(), data0, data1);
    }

    bool Statement(int32_t kind) {
        switch (kind) {
        case TABLE_TOKEN_CODE: return SelectCode();
        case TABLE_TOKEN_QUOTED: return SetMainText();
        case TABLE_TOKEN_ALTERNATIVE: return SetAlternativeText();
        case TABLE_TOKEN_BYTE:
            Main().flags[entry_] |= (Main().flags[entry_] & ENTRY_PARAM) ? ENTRY_PARAM2 : ENTRY_PARAM;
            return true;
        case TABLE_TOKEN_NEWLINE: return MarkEntry(ENTRY_NEWLINE);
        case TABLE_TOKEN_TERMINAL: return MarkEntry(ENTRY_TERMINAL);
        case TABLE_TOKEN_COMMENT: reader_.SkipLine(); return true;
        case TABLE_TOKEN_BASE:
        case TABLE_TOKEN_FORMAT:
        case TABLE_TOKEN_IMAGE:
            ReportAtToken(TLWRN_OBSOLETE, reader_.TokenText());
            reader_.SkipLine();
            return true;
        case TABLE_TOKEN_FONTRULE: ReadFontRule(); return true;
        default: return ReportAtToken(TLERR_UNKNOWN, reader_.TokenText());
        }
    }

    // One or two digits select a one-byte code, three or four define a two-byte code.
    bool SelectCode() {
        std::string digits = Enclosed();
        if (digits.size() > 4) return ReportAtToken(TLERR_UNKNOWN, reader_.TokenText());
        uint16_t value = static_cast<uint16_t>(ParseHex(digits.c_str()));
        entry_ = digits.size() <= 2 ? value : DefineTwoByteCode(Main(), value);
        return entry_ != 0 || digits.size() <= 2;
    }

    // A quoted text that follows another with nothing between them continues
    // it after a double quote: "a""b" is a"b.
    bool SetMainText() {
        std::string text = Enclosed();
        while (reader_.CurrentChar() == '"') {
            if (reader_.NextToken() != TABLE_TOKEN_QUOTED) return ReportAtToken(TLERR_UNKNOWN, reader_.TokenText());
            text += '"' + Enclosed();
        }
        if (!SetEntryText(Main(), entry_, text.c_str())) return false;
        if (text.find(PARAMETER_MARK) != std::string::npos) Main().flags[entry_] |= ENTRY_PARAM;
        return true;
    }

    // Alternative texts fill the next slot, which must exist.
    bool SetAlternativeText() {
        Font* alternative = Alternative();
        if (!alternative) return SetError(TLERR_FILE_TOOMANY, name_, 0, 0, "fonts");
        hasAlternatives_ = true;
        return SetEntryText(*alternative, entry_, Enclosed().c_str());
    }

    // newline and terminal give an entry without a text the empty text, in both slots.
    bool MarkEntry(uint8_t flag) {
        Main().flags[entry_] |= flag;
        if (!Main().texts[entry_] && !SetEntryText(Main(), entry_, "")) return false;
        Font* alternative = Alternative();
        return !alternative || alternative->texts[entry_] || SetEntryText(*alternative, entry_, "");
    }

    // fontrule = N, romanji: once "=", N and "," are right, the next token
    // decides the rule of font N of this table, whatever it is.
    void ReadFontRule() {
        if (reader_.NextToken() != TABLE_TOKEN_EQUALS) return SkipMisplaced("=");
        if (reader_.NextToken() != TABLE_TOKEN_DECIMAL) return SkipMisplaced("number");
        uint32_t number = 0;
        if (!ExactNumber(reader_.TokenText(), false, number) || number < 1 || number > 2)
            return SkipMisplaced("1 or 2");
        if (reader_.NextToken() != TABLE_TOKEN_COMMA) return SkipMisplaced("comma");
        uint8_t rule = reader_.NextToken() == TABLE_TOKEN_ROMANJI ? FONT_RULE_ROMANJI : 0;
        if (Font* font = SlotBeingLoaded(slot_ + static_cast<int>(number) - 1)) font->rule = rule;
    }

    void SkipMisplaced(const char* expected) {
        ReportAtToken(TLERR_EXPECTED, expected, reader_.TokenText());
        reader_.SkipLine();
    }

    SourceReader& reader_;
    const char* name_;
    int slot_;
    int entry_ = 0;
    bool hasAlternatives_ = false;
};

}  // namespace

namespace {

std::string unopenedTable;

}  // namespace

const char* UnopenedTableFile() { return unopenedTable.empty() ? nullptr : unopenedTable.c_str(); }

long ReadTableFile(const char* name) {
    unopenedTable.clear();
    if (!NextFreeSlot(name)) return 0;
    SourceReader& reader = TableFileReader();
    if (!reader.Open(name, "txt")) {
        unopenedTable = name;
        return SetError(TLERR_FILE_NOREAD, name, 0, 0);
    }
    TableFileLoader loader(reader, name, CurrentFontSet().fontCount);
    if (!loader.ReadStatements()) return 0;
    return CompleteLoad(name, loader.HasAlternatives() ? 2 : 1);
}
