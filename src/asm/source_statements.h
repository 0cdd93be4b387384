// The statements of a common-syntax source, line by line: labels, defines,
// macro definitions and calls, conditionals, incsrc, then the instructions
// and data statements.
#pragma once

#include <string>

struct AsmSession;

// Assembles every line of the file name (relative to the file being assembled unless absolute).
bool AssembleSourceFile(AsmSession& session, const std::string& name);

// What a pass leaves open at its end (an if without endif, a macro without endmacro) as errors.
void CloseSourcePass(AsmSession& session);
