// The text encoder: script text to game bytes through a loaded font.
#pragma once

// Encodes the zero-terminated text with the font of that ID and appends a
// terminal code unless the text ends with one. Returns the bytes (followed by
// a zero byte) in the font set's encoder area and sets the last length to
// their count. Null when the text cannot be encoded or its bytes would not fit
// in the area (nothing reported), or when the font ID names no loaded font
// (reported).
const unsigned char* EncodeText(long fontId, const char* text);
