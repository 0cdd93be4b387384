// Loading a character table: the file name's extension picks the reader.
#include <cstring>

#include "table/table_reader.h"
#include "table/thingy_reader.h"
#include "trelvane.h"

namespace {

// True when the name's extension (behind the last "." of its last path
// component) is "tbl" in any case.
bool IsThingyName(const char* name) {
    const char* at = name + std::strlen(name);
    while (at > name && at[-1] != '.' && at[-1] != '\\' && at[-1] != '/') --at;
    if (at == name || at[-1] != '.') return false;
    const char* lower = "tbl";
    for (; *at && *lower; ++at, ++lower)
        if ((*at | 0x20) != *lower) return false;
    return !*at && !*lower;
}

}  // namespace

extern "C" long Trelvane_LoadFont(const char* file) {
    if (!file) file = "";
    return IsThingyName(file) ? ReadThingyTable(file) : ReadTableFile(file);
}
