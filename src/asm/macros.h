// Macro definitions and calls.
#pragma once

#include <cstdint>
#include <string_view>

struct PatchFile;

// name .MACRO: starts collecting the body of "_" + name, while the code written so far waits
// for the definition to end. Returns TOKEN_DOT_MACRO, or 0 on failure.
int32_t BeginMacro(PatchFile& patch, std::string_view name);
// .ENDM: stores the body, and the code around the definition goes on where it stopped.
// Returns TOKEN_DOT_ENDM, or 0.
int32_t StoreMacro(PatchFile& patch);
// The script ended inside a definition: refuses it (false, with the message set), and the code
// around it goes on.
bool AbandonMacro(PatchFile& patch);
// A call of macro number index with the parameters on the rest of the line.
// Returns TOKEN_UNDERSCORE_NAME, or 0 on failure.
int32_t ExpandMacro(PatchFile& patch, int index);
