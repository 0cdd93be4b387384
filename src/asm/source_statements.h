// The statements of a common-syntax source, line by line: labels, defines,
// macro definitions and calls, conditionals, incsrc, then the instructions
// and data statements.
#pragma once

#include <string>

struct AsmSession;

// Assembles every line of the file name (relative to the file being assembled unless absolute).
// A macro without endmacro is an error at the end of its file, an if without endif at the end
// of the main file.
bool AssembleSourceFile(AsmSession& session, const std::string& name);
