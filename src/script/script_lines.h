// The lines of a script file's string section.
#pragma once

#include <string>

enum class ScriptLine {
    Comment,      // starts with ";": ignored
    EntryHeader,  // starts with "[" and is not a "[XY]" code: ends the string before it
    Text,         // part of the current string
};

ScriptLine ClassifyScriptLine(const std::string& line);

// What a text line adds to its string: the line up to its first ";", without
// trailing spaces and tabs, with every "_" made a space.
std::string TextOfLine(const std::string& line);
