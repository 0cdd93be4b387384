#include "asm/number_token.h"

#include "asm/patch_lexicon.h"

bool IsNumberToken(int32_t kind) { return kind == TOKEN_HEX || kind == TOKEN_DECIMAL; }

bool NumberTokenValue(const SourceReader& reader, uint32_t& value) {
    return ExactNumber(reader.TokenText(), reader.TokenKind() == TOKEN_HEX, value);
}
