// A font built entry by entry that holds every kind of entry the codecs know:
// romaji syllables and joiners, parameter entries with and without their mark,
// a long text, line breaks, terminals and two-byte codes.
#pragma once

#include <cstdint>
#include <string>

#include "table/font_set.h"

// Gives an entry of font its text (none when null) and flags.
inline void AddFontEntry(Font& font, int entry, const char* text, uint8_t flags = 0) {
    if (text) SetEntryText(font, entry, text);
    font.flags[entry] |= flags;
}

// Loads the font into the next free slot with the given rule; returns its ID.
inline long BuildEveryKindFont(uint8_t rule) {
    Font& font = *NextFreeSlot("fuzz");
    const char* syllables[] = {"a", "ka", "ki", "shi", "chi", "ji", "hi", "DE", "KI", "SHI", "KA", "n", " ", "e"};
    for (int i = 0; i < 14; ++i) AddFontEntry(font, 0x20 + i, syllables[i]);
    const char* joiners[] = {"-tsu", "-TSU", "-ya", "-yu", "-yo", "-YA", "-YU", "-YO", "-A", "-I", "-U", "-E", "-O", "-x"};
    for (int i = 0; i < 14; ++i) AddFontEntry(font, 0x40 + i, joiners[i]);
    AddFontEntry(font, 0x05, "<wait @>", ENTRY_PARAM);
    AddFontEntry(font, 0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2 | ENTRY_NEWLINE);
    AddFontEntry(font, 0x07, "<sound>", ENTRY_PARAM);
    AddFontEntry(font, 0x08, nullptr, ENTRY_PARAM);
    AddFontEntry(font, 0x09, "@", ENTRY_PARAM);
    AddFontEntry(font, 0x0A, "<back03>");
    AddFontEntry(font, 0x0B, "[x]");
    AddFontEntry(font, 0x0C, std::string(1500, 'w').c_str());
    AddFontEntry(font, 0xFE, "", ENTRY_NEWLINE);
    AddFontEntry(font, 0xFF, "", ENTRY_TERMINAL);
    AddFontEntry(font, 0x00, "<end>", ENTRY_TERMINAL);
    AddFontEntry(font, DefineTwoByteCode(font, 0x8140), "X");
    AddFontEntry(font, DefineTwoByteCode(font, 0x8141), nullptr, ENTRY_NEWLINE);
    AddFontEntry(font, DefineTwoByteCode(font, 0x8142), "<big @>", ENTRY_PARAM | ENTRY_PARAM2);
    AddFontEntry(font, DefineTwoByteCode(font, 0x0505), "-ya");
    font.rule = rule;
    return CompleteLoad("fuzz", 1);
}
