// The script-header lexicon: token kinds of the header of script files and
// their constant automaton.
#pragma once

#include <cstdint>

#include "text/fsa.h"

inline constexpr int32_t HEADER_TOKEN_COMMENT = 0;            // ";"
inline constexpr int32_t HEADER_TOKEN_QUOTED = 1;             // "text": one or more characters, line ends included
inline constexpr int32_t HEADER_TOKEN_HEX = 2;                // hexadecimal number with an h suffix
inline constexpr int32_t HEADER_TOKEN_OPEN_BRACKET = 3;       // "[": ends the header
inline constexpr int32_t HEADER_TOKEN_LPAREN = 4;             // "("
inline constexpr int32_t HEADER_TOKEN_LOAD = 5;               // keyword load
inline constexpr int32_t HEADER_TOKEN_DECIMAL = 6;            // decimal number
inline constexpr int32_t HEADER_TOKEN_FIRSTPOINTER = 7;       // keyword firstpointer
inline constexpr int32_t HEADER_TOKEN_POINTERFREQUENCY = 8;   // keyword pointerfrequency
inline constexpr int32_t HEADER_TOKEN_POINTERTABLE = 9;       // keyword pointertable
inline constexpr int32_t HEADER_TOKEN_POINTERTABLELOW = 10;   // keyword pointertablelow
inline constexpr int32_t HEADER_TOKEN_POINTERTABLEHIGH = 11;  // keyword pointertablehigh
inline constexpr int32_t HEADER_TOKEN_POINTERTABLEBANK = 12;  // keyword pointertablebank
inline constexpr int32_t HEADER_TOKEN_POINTERSIZE = 13;       // keyword pointersize
inline constexpr int32_t HEADER_TOKEN_CLOSE_BRACKET = 14;     // "]"
inline constexpr int32_t HEADER_TOKEN_RPAREN = 15;            // ")"
inline constexpr int32_t HEADER_TOKEN_TEXTADDRESS = 16;       // keyword textaddress

// The constant automaton of script-file headers.
const Fsa& HeaderLexicon();
