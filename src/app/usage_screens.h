// The full usage screen (banner and every command) and the short usage
// screen of one command.
#pragma once

#include "app/command_table.h"

void PrintFullUsage();
void PrintShortUsage(const CommandEntry& command);

// The line that names an argument refused as a number (nothing for null).
void PrintRefusedNumber(const char* argument);
