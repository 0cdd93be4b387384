#include "patches/compared_files.h"

#include "core/last_error.h"
#include "trelvane.h"

bool OpenComparedFiles(const char* patchfile, const char* originalfile, const char* modifiedfile,
                       FileView& original, FileView& modified) {
    if (!original.Open(originalfile, SameFile(patchfile, originalfile)))
        return SetError(TLERR_FILE_NOREAD, originalfile, 0, 0);
    if (!modified.Open(modifiedfile, SameFile(patchfile, modifiedfile)))
        return SetError(TLERR_FILE_NOREAD, modifiedfile, 0, 0);
    return true;
}
