// The value of one hexadecimal digit, which every reader of numbers shares.
#pragma once

// 0 to 15 for 0-9, A-F and a-f; -1 for any other character.
inline int HexDigitValue(int c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}
