// Arbitrary bytes as a thingy table.
#include "font_file_fuzzing.h"
#include "table/thingy_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string table = ScratchName(".tbl");
    if (!WriteInput(table, data, size)) return 0;
    ResetFontSet();
    ExerciseFonts(ReadThingyTable(table.c_str()), data, size);
    return 0;
}
