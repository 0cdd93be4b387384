// The text decoder: game bytes to readable text through a loaded font.
#pragma once

#include "table/font_set.h"

// Decodes one string starting at first, reading nothing at or past end, with
// the font of that ID (romaji joining rules when the font's rule asks for
// them). Returns the text in the font set's decoder area and sets the last
// length to the bytes consumed. Reaching end finishes the string like a
// terminal code; the bytes of a code cut short by end show as "[XY]" each.
// Null when the font ID names no loaded font (reported), or when a romaji
// decode reaches the output limit (not reported).
const char* DecodeText(long fontId, const unsigned char* first, const unsigned char* end);

// The romaji variant that DecodeText chooses for FONT_RULE_ROMANJI fonts.
const char* DecodeRomanji(const Font& font, const unsigned char* first, const unsigned char* end);
