// The three string searches over the current image: plain, wide (one pattern
// byte per two-byte unit) and relative (equal rises and falls between
// neighbouring bytes, for text in a still unknown encoding).
#pragma once

#include <cstdint>

// Offset of the first plain match that starts at or after from and lies wholly
// inside the current image, or -1. A pattern of no bytes matches nowhere.
int32_t FindPlainMatch(const unsigned char* pattern, int32_t length, int32_t from);

// The same for the wide search (pattern byte i at offset + 2i) and the
// relative search (equal differences between neighbouring bytes); both need
// a pattern of at least two bytes.
int32_t FindWideMatch(const unsigned char* pattern, int32_t length, int32_t from);
int32_t FindRelativeMatch(const unsigned char* pattern, int32_t length, int32_t from);
