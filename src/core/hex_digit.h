// Hexadecimal digits, shared by the engine and the front end (which links only
// the library's exported interface, so this stays inline).
#pragma once

// The value of a hexadecimal digit ("0"-"9", "a"-"f", "A"-"F"), or -1 for any
// other character.
inline int HexDigitValue(int c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

inline bool IsHexDigit(int c) { return HexDigitValue(c) >= 0; }
