// The lines of a script file's string section, under the rules of classic
// scripts or of the literal scripts the dump verb writes.
#pragma once

#include <string>

enum class ScriptLine {
    Comment,      // starts with ";": ignored
    EntryHeader,  // ends the string before it
    Text,         // part of the current string
};

// Classic: a text line is cut at its first ";", loses its trailing blanks and
// has every "_" made a space; an entry header is a line starting "[" that is
// not a "[XY]" code. Literal: only a line starting ";" is a comment, an entry
// header starts "[" + hexadecimal digits + "]", and a text line is taken as
// written except for its trailing blanks and the escapes "<;>", "<[>" and
// "<_>" (";", "[" and a blank, for where the plain character would not
// survive: the start or the end of a line).
enum class LineRules { Classic, Literal };

ScriptLine ClassifyScriptLine(const std::string& line, LineRules rules = LineRules::Classic);

// What a text line adds to its string.
std::string TextOfLine(const std::string& line, LineRules rules = LineRules::Classic);

// A line of string text written so that TextOfLine(Literal) gives it back.
std::string LiteralTextLine(const std::string& text);

// Adds a text line's piece to the string collected so far: pieces join with
// a line feed, and empty pieces before the first text add nothing.
void AppendTextPiece(std::string& text, const std::string& piece);

// The string a finished entry holds: its text without trailing line feeds.
void EndStringText(std::string& text);
