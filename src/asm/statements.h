// The statement parser of patch scripts.
#pragma once

#include <cstdint>

struct PatchFile;

// Runs the next statement: its kind (see statement_kinds.h and patch_lexicon.h), TOKEN_END when
// the script is finished, or 0 when it failed with the patch file's error set.
int32_t ParseStatement(PatchFile& patch);
