// Text helpers of the common-syntax assembler: blanks around a statement or
// an operand (core/blank.h), operand lists, and messages built from parts.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/blank.h"  // TrimBlanks


// The parts written one after the other (a function of its own, so that the compiler does not
// inline string building into its callers).
std::string JoinText(std::initializer_list<std::string_view> parts);

// Splits text at commas outside quotes, character literals and parentheses,
// blanks trimmed.
std::vector<std::string_view> SplitOperandList(std::string_view text);
