// Text comparison shared by the engine and the front end.
#pragma once

#include <string_view>

// True when a and b hold the same characters, ASCII letters compared without
// regard to case.
bool SameTextIgnoringCase(std::string_view a, std::string_view b);
