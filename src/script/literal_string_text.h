// The text a literal script holds for a string's bytes: the table's texts
// wherever they encode back to the very same bytes, "<$XX>" raw bytes where
// they would not (a byte the table does not know, a second code with the same
// text, a longer table text that would swallow two codes, a line break the
// lines of a script cannot hold).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

std::string LiteralTextOfString(long fontId, const unsigned char* bytes, int32_t length);

// The text lines a string is written as, and the string they read back as.
std::vector<std::string> LiteralLinesOf(const std::string& text);
std::string TextOfLiteralLines(const std::vector<std::string>& lines);
