// The common-syntax assembler: runs a source file over an image, pass after
// pass, until every label keeps its value (labels may be used before they are
// defined); the last pass's bytes, labels and reports are the result.
#pragma once

#include <string>

struct AsmSession;

// Assembles the source at path into session.image. True when no error was recorded; the
// session then holds the labels, warnings and printed lines of the run.
bool AssembleSource(AsmSession& session, const std::string& path);
