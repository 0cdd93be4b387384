// Writes a script document as the text of a literal script file.
#pragma once

#include <string>

#include "script/script_document.h"

// The header lines, then per string an empty line, the entry line
// "[NNNN] ; OFFSET (LENGTH)", the original text as comment lines and the
// text lines. Lines end with a carriage return and a line feed.
std::string FormatScriptDocument(const ScriptDocument& document);
