// Writing the patch that turns one file into another, in the format asked
// for, refusing what the format cannot describe.
#pragma once

#include "patches/patch_formats.h"

// Writes patchfile (IPS, BPS or UPS by kind) from originalfile to
// modifiedfile. IPS: a modified file over 16 MiB is refused
// (TLERR_IPS_TOO_LARGE), since offsets past it cannot be written; a shorter
// one is cut to its length by the 3-byte size behind "EOF"; equal files are
// TLERR_IPS_IDENTICAL. Files over PATCH_LARGEST_FILE are refused. False
// after reporting; then no file is written.
bool WritePatchOfFiles(PatchKind kind, const char* patchfile, const char* originalfile, const char* modifiedfile);
