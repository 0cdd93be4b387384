// The text encoder: script text to game bytes through a loaded font.
#pragma once

#include <cstdint>
#include <vector>

#include "table/encode_rules.h"

struct Font;
struct EncoderMatch;

// Encoded text: its bytes (in the font set's encoder area; null when the
// encode failed) and their count.
struct EncodedText {
    const unsigned char* bytes = nullptr;
    int32_t length = 0;
};

// Encodes the zero-terminated text with the font of that ID and (as the rules
// say) appends a terminal code unless the text ends with one. Returns the bytes (followed by
// a zero byte) in the font set's encoder area and their count. No bytes when the text cannot be encoded or its bytes would not fit
// in the area (nothing reported), or when the font ID names no loaded font
// (reported).
EncodedText EncodeText(long fontId, const char* text, EncodeRules rules = CLASSIC_ENCODING);

// The bytes of matches chosen along a text (see table/encoder_matches.h),
// with a terminal code appended (as the rules say) unless the last one ends
// the string.
EncodedText EncodeMatches(const Font& font, const std::vector<EncoderMatch>& matches, EncodeRules rules);
