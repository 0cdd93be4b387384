// What the table-reader harnesses share: the input written to a file, and
// every font a load produced saved again and run through both codecs.
#pragma once

#include <cstdint>
#include <string>

#include "scratch_files.h"
#include "table/font_set.h"
#include "table/table_writer.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

// Saves each font from ID first on, encodes every text it holds and decodes the input with it.
inline void ExerciseFonts(long first, const uint8_t* data, size_t size) {
    static const std::string saved = ScratchName("-saved.txt");
    for (long id = first; first && id <= CurrentFontSet().fontCount; ++id) {
        WriteTableFile(id, saved.c_str());
        const Font& font = CurrentFontSet().fonts[id - 1];
        for (int entry = 0; entry <= LastEntryIndex(font); ++entry)
            if (font.texts[entry]) EncodeText(id, font.texts[entry]);
        DecodeText(id, data, data + size);
    }
}
