// Opening the original and the modified file a patch is made from.
#pragma once

#include "core/file_view.h"
#include "core/same_file.h"

// Opens both files. One that is also the patch file is read whole, as
// writing the patch replaces it. False, with TLERR_FILE_NOREAD reported for
// the first that cannot be read, otherwise.
bool OpenComparedFiles(const char* patchfile, const char* originalfile, const char* modifiedfile,
                       FileView& original, FileView& modified);
