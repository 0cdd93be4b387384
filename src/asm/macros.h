// Macro definitions and calls.
#pragma once

#include <cstdint>
#include <string_view>

struct PatchFile;

// name .MACRO: compiles the pending block and starts collecting the body of "_" + name.
// Returns TOKEN_DOT_MACRO, or 0 on failure.
int32_t BeginMacro(PatchFile& patch, std::string_view name);
// .ENDM: stores the pending block as the macro's body. Returns TOKEN_DOT_ENDM, or 0.
int32_t StoreMacro(PatchFile& patch);
// A call of macro number index with the parameters on the rest of the line.
// Returns TOKEN_UNDERSCORE_NAME, or 0 on failure.
int32_t ExpandMacro(PatchFile& patch, int index);
