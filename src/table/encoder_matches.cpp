#include "table/encoder_matches.h"

#include <cstring>

#include "core/blank.h"
#include "core/hex_digit.h"
#include "core/text_compare.h"

namespace {

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
bool MatchParameterEntry(const Font& font, int entry, const char* at, EncoderMatch& match) {
    const char* text = font.texts[entry];
    size_t mark = static_cast<size_t>(font.index.markAt[entry]);
    if (std::strncmp(at, text, mark) != 0) return false;
    const char* cursor = SkipSpaces(at + mark);
    int count = 0;
    if (font.flags[entry] & ENTRY_PARAM2) {
        if (!ReadHexByte(cursor, match.parameters[count++])) return false;
        if (!IsBlank(*cursor)) return false;
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
EncoderMatch MatchTableText(const Font& font, const char* at) {
    const EncoderIndex& index = font.index;
    unsigned char first = static_cast<unsigned char>(*at);
    EncoderMatch best;
    for (int i = index.start[first]; i < index.start[first + 1]; ++i) {
        int entry = index.entries[i];
        if (index.markAt[entry] >= 0) {
            EncoderMatch match;
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
EncoderMatch MatchBackslash(const Font& font, size_t consumed) {
    char name[] = "<back00>";
    name[5] = static_cast<char>('0' + consumed / 10);
    name[6] = static_cast<char>('0' + consumed % 10);
    constexpr unsigned char first = '<';
    const EncoderIndex& index = font.index;
    EncoderMatch match;
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

// "<$XX>": the raw byte XX of literal scripts.
EncoderMatch MatchDollarByte(const char* at) {
    EncoderMatch match;
    if (at[0] == '<' && at[1] == '$' && IsHexDigit(at[2]) && IsHexDigit(at[3]) && at[4] == '>') {
        match.entry = HexDigitValue(at[2]) * 16 + HexDigitValue(at[3]);
        match.length = 5;
    }
    return match;
}

// When no text matches: a line feed takes the first newline entry, and
// (classic rules) [XY] is the raw byte XY.
EncoderMatch MatchFallback(const Font& font, const char* at, EncodeRules rules) {
    EncoderMatch match;
    if (*at == '\n' && font.index.newlineEntry >= 0) {
        match.entry = font.index.newlineEntry;
        match.length = 1;
    } else if (!rules.literal && at[0] == '[' && at[1] && at[2] && at[3] == ']') {
        match.entry = HexValueOrZero(at[1]) * 16 + HexValueOrZero(at[2]);
        match.length = 4;
    }
    return match;
}

}  // namespace

EncoderMatch LongestMatchAt(const Font& font, const char* text, size_t consumed, EncodeRules rules) {
    const char* at = text + consumed;
    if (*at == '\\') return MatchBackslash(font, consumed);
    EncoderMatch match = rules.literal ? MatchDollarByte(at) : EncoderMatch{};
    if (match.entry < 0) match = MatchTableText(font, at);
    if (match.entry < 0) match = MatchFallback(font, at, rules);
    return match;
}

// Literal rules: the line feed behind a line-breaking code that was written
// out (not itself a line feed) belongs to that code.
size_t LineBreakOfCode(const Font& font, const char* at, const EncoderMatch& match, EncodeRules rules) {
    if (!rules.literal || !(font.flags[match.entry] & ENTRY_NEWLINE)) return 0;
    return *at != '\n' && at[match.length] == '\n' ? 1 : 0;
}


void AllMatchesAt(const Font& font, const char* text, size_t consumed, EncodeRules rules,
                  std::vector<EncoderMatch>& matches) {
    matches.clear();
    const char* at = text + consumed;
    EncoderMatch only = *at == '\\' ? MatchBackslash(font, consumed) : EncoderMatch{};
    if (only.entry < 0 && rules.literal) only = MatchDollarByte(at);
    if (only.entry >= 0 || *at == '\\') {
        if (only.entry >= 0) matches.push_back(only);
        return;
    }
    const EncoderIndex& index = font.index;
    const unsigned char first = static_cast<unsigned char>(*at);
    for (int i = index.start[first]; i < index.start[first + 1]; ++i) {
        const int entry = index.entries[i];
        EncoderMatch match;
        if (index.markAt[entry] >= 0) {
            if (!MatchParameterEntry(font, entry, at, match)) continue;
            matches.assign(1, match);
            return;
        }
        const size_t length = index.textLength[entry];
        if (std::strncmp(at + 1, font.texts[entry] + 1, length - 1) != 0) continue;
        match.entry = entry;
        match.length = length;
        matches.push_back(match);
    }
    if (matches.empty() && (only = MatchFallback(font, at, rules)).entry >= 0) matches.push_back(only);
}
