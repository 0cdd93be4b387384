// Refusing a command whose output would overwrite one of its inputs.
#pragma once

#include "app/command_table.h"

// True when no file the command writes is the same file (by identity, so
// links and other spellings count) as another file it reads. Otherwise
// prints TLERR_FILE_SAME naming both and returns false; nothing has been
// read or written yet.
bool OutputsSpareInputs(const CommandEntry& command, const CommandLine& line);
