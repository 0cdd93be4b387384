#include "table/font_set.h"

#include <cstring>
#include <string>
#include <string_view>

#include "core/last_error.h"
#include "trelvane.h"

namespace {

FontSet fontSet;

// The index lists, for every first byte, the entries whose text starts with
// it: a counting sort keeps entry-index order inside each byte's run.
void BuildEncoderIndex(Font& font) {
    EncoderIndex& index = font.index;
    index = EncoderIndex();
    int last = LastEntryIndex(font);
    int perByte[256] = {};
    for (int entry = 0; entry <= last; ++entry) {
        const char* text = font.texts[entry];
        uint8_t flags = font.flags[entry];
        if (index.newlineEntry < 0 && (flags & ENTRY_NEWLINE)) index.newlineEntry = entry;
        index.markAt[entry] = -1;
        if (!text) continue;
        if (index.terminalEntry < 0 && (flags & ENTRY_TERMINAL) && !*text) index.terminalEntry = entry;
        index.textLength[entry] = static_cast<uint16_t>(std::strlen(text));
        const char* mark = std::strchr(text, PARAMETER_MARK);
        if (mark && (flags & ENTRY_PARAM)) index.markAt[entry] = static_cast<int16_t>(mark - text);
        if (*text) ++perByte[static_cast<unsigned char>(*text)];
    }
    for (int b = 0; b < 256; ++b) index.start[b + 1] = static_cast<uint16_t>(index.start[b] + perByte[b]);
    uint16_t next[256];
    std::memcpy(next, index.start, sizeof next);
    for (int entry = 0; entry <= last; ++entry) {
        const char* text = font.texts[entry];
        if (text && *text) index.entries[next[static_cast<unsigned char>(*text)]++] = static_cast<uint16_t>(entry);
    }
}

bool HasTerminalCode(const Font& font) {
    for (int entry = 0; entry <= LastEntryIndex(font); ++entry)
        if (font.flags[entry] & ENTRY_TERMINAL) return true;
    return false;
}

// The second font of a pair has the first one's codes and flags, with its own texts and rule.
void ShareCodes(const Font& from, Font& to) {
    std::memcpy(to.flags, from.flags, sizeof to.flags);
    std::memcpy(to.twoByteCodes, from.twoByteCodes, sizeof to.twoByteCodes);
    std::memcpy(to.twoByteMap, from.twoByteMap, sizeof to.twoByteMap);
    to.twoByteCounter = from.twoByteCounter;
}

}  // namespace

const FontSet& CurrentFontSet() { return fontSet; }

void ResetFontSet() {
    static const FontSet empty;
    fontSet = empty;
}

const Font* FindFont(long id, const char* file) {
    if (id >= 1 && id <= fontSet.fontCount) return &fontSet.fonts[id - 1];
    SetError(TLERR_ID_BAD, file, 0, 0, "font", std::to_string(id).c_str());
    return nullptr;
}

const char* InternString(const char* text) {
    // A stored text ends with its zero byte, so searching for the text with
    // its own zero byte finds exactly the stored texts it is a tail of.
    std::string_view stored(fontSet.pool, static_cast<size_t>(fontSet.poolEnd));
    std::string_view wanted(text, std::strlen(text) + 1);
    size_t found = stored.find(wanted);
    if (found != std::string_view::npos) return fontSet.pool + found;
    if (wanted.size() > static_cast<size_t>(POOL_SIZE - fontSet.poolEnd)) return nullptr;
    char* place = fontSet.pool + fontSet.poolEnd;
    std::memcpy(place, wanted.data(), wanted.size());
    fontSet.poolEnd += static_cast<int>(wanted.size());
    return place;
}

bool SetEntryText(Font& font, int entry, const char* text) {
    const char* pooled = InternString(text);
    if (!pooled) return SetError(TLERR_UNSUPPORTED, "", 0, 0, "More than 32768 bytes of table text");
    font.texts[entry] = pooled;
    return true;
}

Font* NextFreeSlot(const char* file) {
    if (fontSet.fontCount < MAX_FONTS) return &fontSet.fonts[fontSet.fontCount];
    SetError(TLERR_FILE_TOOMANY, file, 0, 0, "fonts");
    return nullptr;
}

Font* SlotBeingLoaded(int slot) {
    return slot >= fontSet.fontCount && slot < MAX_FONTS ? &fontSet.fonts[slot] : nullptr;
}

int DefineTwoByteCode(Font& font, uint16_t code) {
    int n = font.twoByteCounter;
    if (n > TWO_BYTE_LIMIT) return SetError(TLERR_UNSUPPORTED, "", 0, 0, "More than 254 two-byte codes");
    font.twoByteCodes[n] = code;
    font.twoByteMap[code] = static_cast<uint8_t>(n);
    font.flags[code >> 8] |= ENTRY_PARAM;
    font.twoByteCounter = static_cast<uint8_t>(n + 1);
    return TWO_BYTE_FIRST_ENTRY + n;
}

long CompleteLoad(const char* file, int slots) {
    int first = fontSet.fontCount;
    Font& font = fontSet.fonts[first];
    if (!HasTerminalCode(font)) return SetError(TLERR_NO_TERMINALS, file, 0, 0);
    if (slots == 2) ShareCodes(font, fontSet.fonts[first + 1]);
    for (int slot = first; slot < first + slots; ++slot) BuildEncoderIndex(fontSet.fonts[slot]);
    fontSet.fontCount = static_cast<uint8_t>(first + slots);
    return first + 1;
}

