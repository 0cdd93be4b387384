// Loading a character table: the file name's extension picks the reader.
#include "core/path_names.h"
#include "core/text_compare.h"
#include "table/table_reader.h"
#include "table/thingy_reader.h"
#include "trelvane.h"

namespace {

// True when the name's extension after the last dot is "tbl" in any case.
bool IsThingyName(const char* name) {
    const char* dot = LastDotOfBaseName(name);
    return dot && SameTextIgnoringCase(dot + 1, "tbl");
}

}  // namespace

extern "C" long Trelvane_LoadFont(const char* file) {
    if (!file) file = "";
    return IsThingyName(file) ? ReadThingyTable(file) : ReadTableFile(file);
}
