// The lines of a common-syntax source: comments, continuation lines and the
// " : " that separates statements on one line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct SourceLine {
    std::string text;
    int line = 0;  // of its first physical line
};

// The logical lines of a file's text: ";" comments removed (outside quotes), a line ending in
// "," joined with the next one, a trailing "\" removed and the next line joined.
std::vector<SourceLine> ReadSourceLines(std::string_view text);

struct Statement {
    std::string_view text;
    int column = 1;  // of its first character in the line
};

// Splits a line at each " : " outside quotes; statements keep their blanks trimmed.
std::vector<Statement> SplitStatements(std::string_view line);
