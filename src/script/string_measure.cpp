#include "script/string_measure.h"

#include "core/rom_slots.h"
#include "table/text_decoder.h"

int32_t MeasureString(long fontId, int64_t offset) {
    if (!RomRangeInside(offset, 1)) return -1;
    const unsigned char* image = CurrentRom().data;
    const DecodedText decoded = DecodeText(fontId, image + offset, image + CurrentRom().size);
    return decoded.text ? decoded.consumed : -1;
}

int64_t EndOfStrings(long fontId, int64_t offset, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        int32_t length = MeasureString(fontId, offset);
        if (length < 0) return -1;
        offset += length;
    }
    return offset;
}
