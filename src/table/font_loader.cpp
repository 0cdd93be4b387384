// Loading a character table: the file name's extension picks the reader, and
// a load that fails leaves no entry and no text behind.
#include <cstring>

#include "core/text_compare.h"
#include "table/font_set.h"
#include "table/table_reader.h"
#include "table/thingy_reader.h"
#include "trelvane.h"

namespace {

// True when the name's extension (behind the last "." of its last path
// component) is "tbl" in any case.
bool IsThingyName(const char* name) {
    const char* at = name + std::strlen(name);
    while (at > name && at[-1] != '.' && at[-1] != '\\' && at[-1] != '/') --at;
    return at > name && at[-1] == '.' && SameTextIgnoringCase(at, "tbl");
}

}  // namespace

extern "C" long Trelvane_LoadFont(const char* file) {
    if (!file) file = "";
    const int poolEnd = TheFontSet.poolEnd;
    long id = IsThingyName(file) ? ReadThingyTable(file) : ReadTableFile(file);
    if (!id) DiscardFailedLoad(poolEnd);
    return id;
}
