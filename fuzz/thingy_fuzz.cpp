// Arbitrary bytes as a thingy table; a table that loads is saved again and
// its texts encoded and decoded.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "table/font_set.h"
#include "table/table_writer.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"
#include "table/thingy_reader.h"

namespace {
std::string ScratchName(const char* suffix) { return "/tmp/trelvane-fuzz-" + std::to_string(getpid()) + suffix; }
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string table = ScratchName(".tbl"), saved = ScratchName("-saved.txt");
    std::FILE* file = std::fopen(table.c_str(), "wb");
    if (!file) return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);
    ResetFontSet();
    if (ReadThingyTable(table.c_str()) != 1) return 0;
    WriteTableFile(1, saved.c_str());
    const Font& font = TheFontSet.fonts[0];
    for (int entry = 0; entry <= LastEntryIndex(font); ++entry)
        if (font.texts[entry]) EncodeText(1, font.texts[entry]);
    DecodeText(1, data, data + size);
    return 0;
}
