#include "table/text_encoder.h"

#include <cstring>

#include "core/blank.h"
#include "core/hex_digit.h"
#include "core/last_error.h"
#include "core/text_compare.h"
#include "table/font_set.h"
#include "trelvane.h"

namespace {

// Where every encode writes its bytes; they stay there until the next encode.
unsigned char encoderArea[ENCODER_AREA_SIZE];

struct Match {
    int entry = -1;  // -1 while nothing matched
    size_t length = 0;
    int parameterCount = 0;
    unsigned char parameters[2] = {};
};

// A written byte's digit: anything but a hexadecimal digit counts as 0.
int HexValueOrZero(char c) { return IsHexDigit(c) ? HexDigitValue(c) : 0; }

// Two characters read as one byte; false when the text ends before them.
bool ReadHexByte(const char*& at, unsigned char& byte) {
    if (!at[0] || !at[1]) return false;
    byte = static_cast<unsigned char>(HexValueOrZero(at[0]) * 16 + HexValueOrZero(at[1]));
    at += 2;
    return true;
}

const char* SkipSpaces(const char* at) {
    while (IsBlank(*at)) ++at;
    return at;
}

// A parameter entry's text is prefix, mark, suffix; the input holds one or two
// hexadecimal bytes in place of the mark, with blanks before each.
bool MatchParameterEntry(const Font& font, int entry, const char* at, Match& match) {
    const char* text = font.texts[entry];
    size_t mark = static_cast<size_t>(font.index.markAt[entry]);
    if (std::strncmp(at, text, mark) != 0) return false;
    const char* cursor = SkipSpaces(at + mark);
    int count = 0;
    if (font.flags[entry] & ENTRY_PARAM2) {
        if (!ReadHexByte(cursor, match.parameters[count++])) return false;
        if (*cursor != ' ' && *cursor != '\t') return false;
        cursor = SkipSpaces(cursor);
    }
    if (!ReadHexByte(cursor, match.parameters[count++])) return false;
    const char* suffix = text + mark + 1;
    size_t suffixLength = font.index.textLength[entry] - mark - 1;
    if (std::strncmp(cursor, suffix, suffixLength) != 0) return false;
    match.entry = entry;
    match.length = static_cast<size_t>(cursor - at) + suffixLength;
    match.parameterCount = count;
    return true;
}

// The candidates whose text starts with the character at `at`, in entry
// order: the first matching parameter entry, else the longest whole text.
Match MatchTableText(const Font& font, const char* at) {
    const EncoderIndex& index = font.index;
    unsigned char first = static_cast<unsigned char>(*at);
    Match best;
    for (int i = index.start[first]; i < index.start[first + 1]; ++i) {
        int entry = index.entries[i];
        if (index.markAt[entry] >= 0) {
            Match match;
            if (MatchParameterEntry(font, entry, at, match)) return match;
            continue;
        }
        // The first character is known to match.
        size_t length = index.textLength[entry];
        if (length > best.length && std::strncmp(at + 1, font.texts[entry] + 1, length - 1) == 0) {
            best.entry = entry;
            best.length = length;
        }
    }
    return best;
}

// A backslash stands for the entry named <backNN>, NN being the number of
// characters consumed before it.
Match MatchBackslash(const Font& font, size_t consumed) {
    char name[] = "<back00>";
    name[5] = static_cast<char>('0' + consumed / 10);
    name[6] = static_cast<char>('0' + consumed % 10);
    constexpr unsigned char first = '<';
    const EncoderIndex& index = font.index;
    Match match;
    for (int i = index.start[first]; i < index.start[first + 1]; ++i) {
        int entry = index.entries[i];
        if (SameTextIgnoringCase(font.texts[entry], name)) {
            match.entry = entry;
            match.length = 1;
            break;
        }
    }
    return match;
}

// When no text matches: a line feed takes the first newline entry, and
// [XY] is the raw byte XY.
Match MatchFallback(const Font& font, const char* at) {
    Match match;
    if (*at == '\n' && font.index.newlineEntry >= 0) {
        match.entry = font.index.newlineEntry;
        match.length = 1;
    } else if (at[0] == '[' && at[1] && at[2] && at[3] == ']') {
        match.entry = HexValueOrZero(at[1]) * 16 + HexValueOrZero(at[2]);
        match.length = 4;
    }
    return match;
}

class EncodeOutput {
public:
    bool Put(unsigned char byte) {
        if (length_ >= kMaxLength) return false;
        area_[length_++] = byte;
        return true;
    }
    // Two-byte codes are written high byte first.
    bool PutCode(const Font& font, int entry) {
        if (entry < TWO_BYTE_FIRST_ENTRY) return Put(static_cast<unsigned char>(entry));
        uint16_t code = TwoByteCodeOf(font, entry);
        return Put(static_cast<unsigned char>(code >> 8)) && Put(static_cast<unsigned char>(code));
    }
    EncodedText Finish() {
        area_[length_] = 0;
        return {area_, static_cast<int32_t>(length_)};
    }

private:
    // One byte of the area stays free for the zero byte behind the output.
    static constexpr size_t kMaxLength = ENCODER_AREA_SIZE - 1;
    unsigned char* area_ = encoderArea;
    size_t length_ = 0;
};

}  // namespace

EncodedText EncodeText(long fontId, const char* text, bool appendTerminal) {
    const Font* font = FindFont(fontId);
    if (!font) return {};
    EncodeOutput out;
    int lastEntry = TWO_BYTE_FIRST_ENTRY;  // never has flags
    size_t consumed = 0;
    while (text[consumed]) {
        const char* at = text + consumed;
        Match match = *at == '\\' ? MatchBackslash(*font, consumed) : MatchTableText(*font, at);
        if (match.entry < 0 && *at != '\\') match = MatchFallback(*font, at);
        if (match.entry < 0 || !out.PutCode(*font, match.entry)) return {};
        for (int i = 0; i < match.parameterCount; ++i)
            if (!out.Put(match.parameters[i])) return {};
        lastEntry = match.entry;
        consumed += match.length;
    }
    if (appendTerminal && !(font->flags[lastEntry] & ENTRY_TERMINAL)) {
        int terminal = font->index.terminalEntry;
        if (terminal < 0 || !out.PutCode(*font, terminal)) return {};
    }
    return out.Finish();
}

extern "C" char* Trelvane_Encode(long id, const char* text, long* length) {
    if (!text) text = "";
    if (length) *length = 0;
    if (!FindFont(id)) return nullptr;
    const EncodedText encoded = EncodeText(id, text);
    if (!encoded.bytes) {
        SetError(TLERR_NOENCODE, "", 0, 0, text);
        return nullptr;
    }
    if (length) *length = encoded.length;
    return reinterpret_cast<char*>(const_cast<unsigned char*>(encoded.bytes));
}
