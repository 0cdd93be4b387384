// The program-wide set of loaded character tables ("fonts"): two slots and
// the string pool their texts live in.
#pragma once

#include <cstdint>

// Entry flags, one byte per entry index.
constexpr uint8_t ENTRY_TERMINAL = 0x01;  // the code ends a string
constexpr uint8_t ENTRY_PARAM = 0x02;     // one parameter byte follows; on a one-byte entry also "begins a two-byte code"
constexpr uint8_t ENTRY_NEWLINE = 0x04;   // the decoder writes a line feed after the text
constexpr uint8_t ENTRY_PARAM2 = 0x08;    // a second parameter byte follows

constexpr char PARAMETER_MARK = '@';
constexpr uint8_t FONT_RULE_ROMANJI = 22;

constexpr int FONT_ENTRIES = 1024;   // 0-255 one-byte codes, 256 unused, 257+ two-byte codes
constexpr int TWO_BYTE_FIRST_ENTRY = 256;
constexpr int TWO_BYTE_LIMIT = 254;  // two-byte codes per font
constexpr int MAX_FONTS = 2;
constexpr int POOL_SIZE = 32768;
constexpr int ENCODER_AREA_SIZE = 1024;
constexpr int DECODER_AREA_SIZE = 2048;

// What the encoder needs to find its candidates fast; rebuilt whenever a load
// completes. Entries whose text starts with byte b are
// entries[start[b]] .. entries[start[b + 1] - 1], in entry-index order.
struct EncoderIndex {
    uint16_t start[257] = {};
    uint16_t entries[FONT_ENTRIES] = {};
    uint16_t textLength[FONT_ENTRIES] = {};
    int16_t markAt[FONT_ENTRIES] = {};  // offset of the parameter mark in a parameter entry's text, else -1
    int newlineEntry = -1;              // first entry with ENTRY_NEWLINE
    int terminalEntry = -1;             // first entry with ENTRY_TERMINAL and the empty text
};

struct Font {
    uint8_t flags[FONT_ENTRIES] = {};
    uint16_t twoByteCodes[FONT_ENTRIES - TWO_BYTE_FIRST_ENTRY] = {};  // [n] is the code of entry 256 + n
    const char* texts[FONT_ENTRIES] = {};                             // into the pool; null means no entry
    uint8_t twoByteMap[65536] = {};                                   // code -> n, 0 for none
    uint8_t twoByteCounter = 1;                                       // next free n
    uint8_t rule = 0;
    EncoderIndex index;
};

struct FontSet {
    Font fonts[MAX_FONTS];
    uint8_t fontCount = 0;
    char pool[POOL_SIZE] = {};
    int poolEnd = 0;
};

// The loaded fonts, read-only: only loading (through NextFreeSlot and
// SlotBeingLoaded, ended by CompleteLoad) and ResetFontSet change them.
const FontSet& CurrentFontSet();

// Empties every slot and the pool, as at program start.
void ResetFontSet();

// The loaded font with that ID, or null after reporting TLERR_ID_BAD ("font", id).
const Font* FindFont(long id, const char* file = "");

// Stores text once in the pool, sharing the tail of an equal or longer stored
// text. Null when the pool has no room left.
const char* InternString(const char* text);

// Gives entry of font the text, pooled; false after reporting when the pool is full.
bool SetEntryText(Font& font, int entry, const char* text);

// The slot the next load fills, or null after reporting TLERR_FILE_TOOMANY when
// no slot is left.
Font* NextFreeSlot(const char* file);

// A slot that the load in progress fills: the next free one or one behind it.
// Null for a slot that is loaded already or does not exist.
Font* SlotBeingLoaded(int slot);

// Defines the next two-byte code of font and returns its entry index, or 0
// after reporting when the font already holds TWO_BYTE_LIMIT of them.
int DefineTwoByteCode(Font& font, uint16_t code);

// The last entry index a font uses: 255 + its two-byte counter.
inline int LastEntryIndex(const Font& font) { return TWO_BYTE_FIRST_ENTRY - 1 + font.twoByteCounter; }

// Ends a load of `slots` fonts (1, or 2 for a table with alternative texts)
// into the next free slot: checks that the first holds a terminal code, gives
// the second the first one's codes and flags, counts the slots and returns the
// first one's ID; 0 after reporting TLERR_NO_TERMINALS.
long CompleteLoad(const char* file, int slots);

// Bytes a two-byte code entry writes, high byte first.
inline uint16_t TwoByteCodeOf(const Font& font, int entry) {
    return font.twoByteCodes[entry - TWO_BYTE_FIRST_ENTRY];
}
