// The value of a number token of the patch language, refused when it is wider
// than 32 bits instead of wrapping.
#pragma once

#include <cstdint>

#include "text/source_reader.h"

// TOKEN_HEX (digits and an h) or TOKEN_DECIMAL.
bool IsNumberToken(int32_t kind);
// The value of the reader's current number token; false when it needs more than 32 bits.
bool NumberTokenValue(const SourceReader& reader, uint32_t& value);
