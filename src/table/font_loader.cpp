// Loading a character table: the file name's extension picks the reader, and
// a load that fails leaves no entry and no text behind.
#include "core/path_names.h"
#include "table/font_set.h"
#include "table/table_reader.h"
#include "table/thingy_reader.h"
#include "trelvane.h"

extern "C" long Trelvane_LoadFont(const char* file) {
    if (!file) file = "";
    const int poolEnd = CurrentFontSet().poolEnd;
    long id = HasExtension(file, "tbl") ? ReadThingyTable(file) : ReadTableFile(file);
    if (!id) DiscardFailedLoad(poolEnd);
    return id;
}
