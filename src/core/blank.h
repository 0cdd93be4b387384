// Blanks and white space in the text files the program reads.
#pragma once

// A blank separates words on a line: a space or a tab.
inline bool IsBlank(int c) { return c == ' ' || c == '\t'; }

// White space: a blank or a line end (line feed or carriage return).
inline bool IsWhiteSpace(int c) { return IsBlank(c) || c == '\n' || c == '\r'; }
