#include "table/table_reader.h"

#include "core/last_error.h"
#include "trelvane.h"

long ReadTableFile(const char* name) { return SetError(TLERR_UNSUPPORTED, name, 0, 0, "Table files"); }
