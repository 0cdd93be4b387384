// Text comparison shared by the engine and the front end (which links only
// the library's exported interface, so this stays inline).
#pragma once

#include <string_view>

inline char LowerAsciiLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// True when a and b hold the same characters, ASCII letters compared without
// regard to case.
inline bool SameTextIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (LowerAsciiLetter(a[i]) != LowerAsciiLetter(b[i])) return false;
    return true;
}
