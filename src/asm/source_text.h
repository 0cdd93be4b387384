// Text helpers of the common-syntax assembler: blanks around a statement or
// an operand, and messages built from parts.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

// text without the blanks (spaces, tabs) at either end.
inline std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

// The parts written one after the other (a function of its own, so that the compiler does not
// inline string building into its callers).
std::string JoinText(std::initializer_list<std::string_view> parts);
