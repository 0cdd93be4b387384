// Arbitrary bytes as a table file of the toolkit's own format.
#include "font_file_fuzzing.h"
#include "table/table_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string table = ScratchName(".txt");
    if (!WriteInput(table, data, size)) return 0;
    ResetFontSet();
    ExerciseFonts(ReadTableFile(table.c_str()), data, size);
    return 0;
}
