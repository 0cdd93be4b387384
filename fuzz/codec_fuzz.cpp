// Arbitrary input as text to encode and as bytes to decode, through a plain
// font and a romaji font that hold every kind of entry.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "every_kind_font.h"
#include "table/font_set.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static bool built = [] {
        BuildEveryKindFont(0);
        BuildEveryKindFont(FONT_RULE_ROMANJI);
        return true;
    }();
    (void)built;
    std::string text(reinterpret_cast<const char*>(data), size);
    for (long id = 1; id <= 2; ++id) {
        const EncodedText encoded = EncodeText(id, text.c_str());
        if (encoded.bytes && (encoded.length < 1 || encoded.length > 1023)) std::abort();
        const DecodedText decoded = DecodeText(id, data, data + size);
        if (decoded.text && decoded.consumed > static_cast<int32_t>(size)) std::abort();
    }
    return 0;
}
