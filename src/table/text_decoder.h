// The text decoder: game bytes to readable text through a loaded font.
#pragma once

#include <cstdint>

#include "table/font_set.h"

// A decoded string: its text (in the font set's decoder area; null when the
// decode failed) and the count of bytes it consumed.
struct DecodedText {
    const char* text = nullptr;
    int32_t consumed = 0;
};

// Decodes one string starting at first, reading nothing at or past end, with
// the font of that ID (romaji joining rules when the font's rule asks for
// them). Returns the text in the font set's decoder area and the bytes
// consumed. Reaching end finishes the string like a
// terminal code; the bytes of a code cut short by end show as "[XY]" each.
// No text when the font ID names no loaded font (reported), or when a romaji
// decode reaches the output limit (not reported).
DecodedText DecodeText(long fontId, const unsigned char* first, const unsigned char* end);

// The romaji variant that DecodeText chooses for FONT_RULE_ROMANJI fonts.
DecodedText DecodeRomanji(const Font& font, const unsigned char* first, const unsigned char* end);

// Bytes the code at `at` occupies (a two-byte code, a code with its
// parameter bytes, or one byte), cut at end.
int32_t CodeLength(const Font& font, const unsigned char* at, const unsigned char* end);
