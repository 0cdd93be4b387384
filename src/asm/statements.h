// The statement parser of patch scripts.
#pragma once

#include <cstdint>

struct PatchFile;

// Runs the next statement: its kind (see patch_limits.h and patch_lexicon.h), TOKEN_END when
// the script is finished, or 0 when it failed with the patch file's message set.
int32_t ParseStatement(PatchFile& patch);
