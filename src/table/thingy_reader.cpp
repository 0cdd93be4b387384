#include "table/thingy_reader.h"

#include <cstdio>
#include <string>
#include <vector>

#include "core/blank.h"
#include "core/byte_order_mark.h"
#include "core/file_bytes.h"
#include "core/hex_digit.h"
#include "core/last_error.h"
#include "table/font_set.h"
#include "text/source_reader.h"
#include "trelvane.h"

namespace {

constexpr int kEnd = -1;

bool IsLineEnd(int c) { return c == '\r' || c == '\n'; }

// Walks the raw bytes of a thingy table entry by entry, keeping the line and
// the start of the line for the positions its errors report.
class ThingyScanner {
public:
    ThingyScanner(const std::vector<unsigned char>& bytes, const char* name, Font& font)
        : bytes_(bytes), name_(name), font_(font) {}

    bool ReadEntries() {
        SkipBlanks();
        while (Peek() != kEnd) {
            if (!ReadEntry()) return false;
            SkipBlanks();
        }
        return true;
    }

private:
    int Peek() const { return position_ < bytes_.size() ? bytes_[position_] : kEnd; }

    void Advance() {
        if (bytes_[position_++] == '\n') {
            ++line_;
            lineStart_ = position_;
        }
    }

    int Column() const { return static_cast<int>(position_ - lineStart_ + 1); }

    void SkipBlanks() {
        for (int c = Peek(); IsBlank(c) || IsLineEnd(c); c = Peek()) Advance();
    }

    void SkipRestOfLine() {
        while (Peek() != kEnd && !IsLineEnd(Peek())) Advance();
    }

    // Reports TLERR_EXPECTED at the cursor; the character found is empty at the end of the data.
    bool ExpectedHere(const char* expected) {
        int c = Peek();
        std::string found = c == kEnd ? "" : c == 0 ? ZERO_BYTE_SHOWN : std::string(1, static_cast<char>(c));
        return SetError(TLERR_EXPECTED, name_, line_, Column(), expected, found.c_str());
    }

    bool ReadEntry() {
        int first = Peek();
        if (first == '(' || first == '[' || first == '{' || first == '#') {
            SkipRestOfLine();
            return true;
        }
        int prefix = 0;
        if (first == '/' || first == '*' || first == '$') {
            prefix = first;
            Advance();
        }
        int entry = 0;
        if (!ReadCode(entry)) return false;
        switch (prefix) {
        case '$': return ReadControlCode(entry);
        case '*': font_.flags[entry] |= ENTRY_NEWLINE; return SetEntryText(font_, entry, "");
        case '/': font_.flags[entry] |= ENTRY_TERMINAL; return SetEntryText(font_, entry, "");
        default: return ReadEntryText(entry);
        }
    }

    // Up to four hexadecimal digits and the "=" or line end behind them, which
    // is consumed. Gives the code's entry index; false after reporting.
    bool ReadCode(int& entry) {
        unsigned value = 0;
        int digits = 0;
        for (; digits < 4 && IsHexDigit(Peek()); ++digits) {
            value = value * 16 + static_cast<unsigned>(HexDigitValue(Peek()));
            Advance();
        }
        if (digits == 0) return ExpectedHere("code");
        if (Peek() != '=' && !IsLineEnd(Peek())) return ExpectedHere("=");
        Advance();
        entry = digits <= 2 ? static_cast<int>(value) : DefineTwoByteCode(font_, static_cast<uint16_t>(value));
        return entry != 0 || digits <= 2;
    }

    // "$" entries: a control code shown as <XX @>, followed by 1 or 2 parameter bytes.
    bool ReadControlCode(int entry) {
        char text[16];
        if (entry < TWO_BYTE_FIRST_ENTRY)
            std::snprintf(text, sizeof text, "<%02X @>", entry);
        else
            std::snprintf(text, sizeof text, "<%04X @>", TwoByteCodeOf(font_, entry));
        if (!SetEntryText(font_, entry, text)) return false;
        font_.flags[entry] |= ENTRY_PARAM;
        int count = Peek();
        if (count != '1' && count != '2') return SetError(TLERR_TEXT_PARAMCOUNT, name_, line_, Column(), "");
        if (count == '2') font_.flags[entry] |= ENTRY_PARAM2;
        Advance();
        SkipRestOfLine();
        return true;
    }

    // The rest of the line is the entry's text, which holds no zero byte.
    bool ReadEntryText(int entry) {
        size_t start = position_;
        for (; Peek() != kEnd && !IsLineEnd(Peek()); Advance())
            if (Peek() == 0) return ExpectedHere("text");
        std::string text(bytes_.begin() + static_cast<long>(start), bytes_.begin() + static_cast<long>(position_));
        return SetEntryText(font_, entry, text.c_str());
    }

    const std::vector<unsigned char>& bytes_;
    const char* name_;
    Font& font_;
    size_t position_ = 0;
    size_t lineStart_ = 0;
    int line_ = 1;
};

}  // namespace

long ReadThingyTable(const char* name) {
    Font* font = NextFreeSlot(name);
    if (!font) return 0;
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(name, bytes)) return SetError(TLERR_FILE_NOREAD, name, 0, 0);
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<long>(ByteOrderMarkLength(bytes.data(), bytes.size())));
    ThingyScanner scanner(bytes, name, *font);
    if (!scanner.ReadEntries()) return 0;
    return CompleteLoad(name, 1);
}
