// Numbers as translators write them: decimal ("10976"), "0x2AE0", "$2AE0" and
// "2AE0h", letters in either case, with an optional leading "-". Shared by
// the verbs, the letter commands and the C interface, so that every place
// that reads a number from the user reads it the same way.
#pragma once

#include <cstdint>

// The value of text when the whole of it is a number in one of the forms
// above that fits 63 bits; false for anything else ("2AE0", "12q", "", "0x").
bool ReadNumberText(const char* text, int64_t& value);
