// Blanks and white space in the text files the program reads, and the one
// trimmer that removes them from the ends of a piece of text.
#pragma once

#include <string_view>

// A blank separates words on a line: a space or a tab.
inline bool IsBlank(int c) { return c == ' ' || c == '\t'; }

// White space: a blank or a line end (line feed or carriage return).
inline bool IsWhiteSpace(int c) { return IsBlank(c) || c == '\n' || c == '\r'; }

// text without the characters dropped (blanks unless told otherwise) at its start.
inline std::string_view TrimStart(std::string_view text, bool (*dropped)(int) = IsBlank) {
    while (!text.empty() && dropped(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    return text;
}

// text without the characters dropped (blanks unless told otherwise) at its end.
inline std::string_view TrimEnd(std::string_view text, bool (*dropped)(int) = IsBlank) {
    while (!text.empty() && dropped(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return text;
}

// text without the characters dropped (blanks unless told otherwise) at either end.
inline std::string_view TrimBlanks(std::string_view text, bool (*dropped)(int) = IsBlank) {
    return TrimEnd(TrimStart(text, dropped), dropped);
}
