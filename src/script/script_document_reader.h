// Reads a script file, literal (from the dump verb) or classic, into a script
// document.
#pragma once

#include <string>

#include "script/script_document.h"

// Reads the script text (a byte-order mark and carriage returns are allowed)
// of the file named file. False after reporting the first error, with file,
// line and column.
bool ReadScriptDocument(const std::string& text, const char* file, ScriptDocument& document);
