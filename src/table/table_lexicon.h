// The table-file lexicon: token kinds of character-table files and their
// constant automaton.
#pragma once

#include <cstdint>

#include "text/fsa.h"

inline constexpr int32_t TABLE_TOKEN_BASE = 8;          // keyword base
inline constexpr int32_t TABLE_TOKEN_BYTE = 9;          // keyword byte
inline constexpr int32_t TABLE_TOKEN_COMMENT = 10;      // ";"
inline constexpr int32_t TABLE_TOKEN_QUOTED = 11;       // "text", line ends included
inline constexpr int32_t TABLE_TOKEN_EQUALS = 12;       // "="
inline constexpr int32_t TABLE_TOKEN_FORMAT = 13;       // keyword format
inline constexpr int32_t TABLE_TOKEN_HEX = 14;          // hexadecimal number with an h suffix
inline constexpr int32_t TABLE_TOKEN_WORD = 15;         // letters, digits and "_"
inline constexpr int32_t TABLE_TOKEN_IMAGE = 16;        // keyword image
inline constexpr int32_t TABLE_TOKEN_CODE = 17;         // code in brackets, such as [41] or [8140]
inline constexpr int32_t TABLE_TOKEN_ALTERNATIVE = 18;  // {text}: anything but "}" between braces
inline constexpr int32_t TABLE_TOKEN_NEWLINE = 19;      // keyword newline
inline constexpr int32_t TABLE_TOKEN_DECIMAL = 20;      // decimal number
inline constexpr int32_t TABLE_TOKEN_TERMINAL = 21;     // keyword terminal
inline constexpr int32_t TABLE_TOKEN_ROMANJI = 22;      // keyword romanji
inline constexpr int32_t TABLE_TOKEN_FONTRULE = 23;     // keyword fontrule
inline constexpr int32_t TABLE_TOKEN_COMMA = 24;        // ","

// The constant automaton of table files (64 states, 128 transitions).
const Fsa& TableLexicon();
