// Arbitrary input as text to encode and as bytes to decode, through a plain
// font and a romaji font that hold every kind of entry.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "table/font_set.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

namespace {

void Add(Font& font, int entry, const char* text, uint8_t flags = 0) {
    if (text) SetEntryText(font, entry, text);
    font.flags[entry] |= flags;
}

void BuildFont(uint8_t rule) {
    Font& font = *NextFreeSlot("fuzz");
    const char* syllables[] = {"a", "ka", "ki", "shi", "chi", "ji", "hi", "DE", "KI", "SHI", "KA", "n", " ", "e"};
    for (int i = 0; i < 14; ++i) Add(font, 0x20 + i, syllables[i]);
    const char* joiners[] = {"-tsu", "-TSU", "-ya", "-yu", "-yo", "-YA", "-YU", "-YO", "-A", "-I", "-U", "-E", "-O", "-x"};
    for (int i = 0; i < 14; ++i) Add(font, 0x40 + i, joiners[i]);
    Add(font, 0x05, "<wait @>", ENTRY_PARAM);
    Add(font, 0x06, "<pos @>", ENTRY_PARAM | ENTRY_PARAM2 | ENTRY_NEWLINE);
    Add(font, 0x07, "<sound>", ENTRY_PARAM);
    Add(font, 0x08, nullptr, ENTRY_PARAM);
    Add(font, 0x09, "@", ENTRY_PARAM);
    Add(font, 0x0A, "<back03>");
    Add(font, 0x0B, "[x]");
    Add(font, 0x0C, std::string(1500, 'w').c_str());
    Add(font, 0xFE, "", ENTRY_NEWLINE);
    Add(font, 0xFF, "", ENTRY_TERMINAL);
    Add(font, 0x00, "<end>", ENTRY_TERMINAL);
    Add(font, DefineTwoByteCode(font, 0x8140), "X");
    Add(font, DefineTwoByteCode(font, 0x8141), nullptr, ENTRY_NEWLINE);
    Add(font, DefineTwoByteCode(font, 0x8142), "<big @>", ENTRY_PARAM | ENTRY_PARAM2);
    Add(font, DefineTwoByteCode(font, 0x0505), "-ya");
    font.rule = rule;
    CompleteLoad("fuzz", 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static bool built = [] {
        BuildFont(0);
        BuildFont(FONT_RULE_ROMANJI);
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
