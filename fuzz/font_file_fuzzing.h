// What the table-reader harnesses share: the input written to a file, and
// every font a load produced saved again and run through both codecs.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "table/font_set.h"
#include "table/table_writer.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

// A per-process file name with that suffix, on memory-backed storage when the
// system has it, since every input is written once.
inline std::string ScratchName(const char* suffix) {
    std::error_code error;
    std::string folder =
        std::filesystem::is_directory("/dev/shm", error) ? "/dev/shm" : std::filesystem::temp_directory_path().string();
    return folder + "/trelvane-fuzz-" + std::to_string(getpid()) + suffix;
}

inline bool WriteInput(const std::string& name, const uint8_t* data, size_t size) {
    std::FILE* file = std::fopen(name.c_str(), "wb");
    if (!file) return false;
    std::fwrite(data, 1, size, file);
    return std::fclose(file) == 0;
}

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
