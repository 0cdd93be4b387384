// How many image bytes a string occupies, measured with the text decoder.
#pragma once

#include <cstdint>

// Bytes of the string that starts at offset in the current image, end code
// included, decoded with font fontId; -1 when the offset lies outside the
// image or the string runs past its end.
int32_t MeasureString(long fontId, int64_t offset);

// Offset just behind count strings that lie one after another from offset,
// or -1 when one of them cannot be measured.
int64_t EndOfStrings(long fontId, int64_t offset, int32_t count);
