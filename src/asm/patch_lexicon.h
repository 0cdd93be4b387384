// The patch-script lexicons: token kinds of the patch language and the two
// constant automata (65816 and generic) that patch files start from.
#pragma once

#include <cstdint>

#include "text/fsa.h"

// Mnemonic tokens have their mnemonic index as kind (0 is "???", 1 "adc" up to 110 "xce").
inline constexpr int MNEMONIC_COUNT = 111;
extern const char* const MNEMONIC_NAMES[MNEMONIC_COUNT];

// Register tokens: TOKEN_REGISTER_BASE plus the register's row in the addressing-mode table
// (a 916, x 917, y 918, s 919, dbr 920, pbr 921, d 922, m 923, p 924).
inline constexpr int32_t TOKEN_REGISTER_BASE = 900;
inline constexpr int FIRST_REGISTER_MODE = 16;
inline constexpr int REGISTER_COUNT = 9;
extern const char* const REGISTER_NAMES[REGISTER_COUNT];

inline constexpr int32_t TOKEN_MEMORY = 10000;           // [hex digits h]
inline constexpr int32_t TOKEN_HEX = 10002;              // hexadecimal number with the suffix h
inline constexpr int32_t TOKEN_IDENTIFIER = 10003;       // word that starts with a letter
inline constexpr int32_t TOKEN_UNDERSCORE_NAME = 10005;  // word that starts with "_" (generic: "@")
inline constexpr int32_t TOKEN_DOT_MACRO = 10006;
inline constexpr int32_t TOKEN_DOT_ENDM = 10007;
inline constexpr int32_t TOKEN_DECIMAL = 10008;  // number that starts with a digit, no h suffix
inline constexpr int32_t TOKEN_DOT_PATCH = 10010;
inline constexpr int32_t TOKEN_DOT_POINTER = 10011;
inline constexpr int32_t TOKEN_DOT_ADDRESS = 10012;
inline constexpr int32_t TOKEN_VARIABLE = 10013;      // $ followed by a name
inline constexpr int32_t TOKEN_MEMORY_S = 15000;      // [hex digits h+s]
inline constexpr int32_t TOKEN_MEMORY_S_Y = 15001;    // [(hex digits h+s)+y]
inline constexpr int32_t TOKEN_MEMORY_X = 15002;      // [hex digits h+x]
inline constexpr int32_t TOKEN_MEMORY_Y = 15003;      // [hex digits h+y]
inline constexpr int32_t TOKEN_DOT_ASSUME = 15004;
inline constexpr int32_t TOKEN_AT = 15005;
inline constexpr int32_t TOKEN_DOT_BYTE = 15006;
inline constexpr int32_t TOKEN_DOT_CHARSET = 15007;
inline constexpr int32_t TOKEN_COLON = 15008;
inline constexpr int32_t TOKEN_COMMENT = 15009;  // ";" and the rest of the line
inline constexpr int32_t TOKEN_COMMA = 15010;
inline constexpr int32_t TOKEN_DOT_EQL = 15011;
inline constexpr int32_t TOKEN_DOT_INCLUDE = 15012;
inline constexpr int32_t TOKEN_LPAREN = 15013;
inline constexpr int32_t TOKEN_PARAMETER = 15014;  // "?" and one digit
inline constexpr int32_t TOKEN_INDEX_S = 15015;
inline constexpr int32_t TOKEN_INDEX_X = 15016;
inline constexpr int32_t TOKEN_INDEX_Y = 15017;
inline constexpr int32_t TOKEN_DIRECTIVE = 15018;  // any other "." followed by letters
inline constexpr int32_t TOKEN_RPAREN = 15019;
inline constexpr int32_t TOKEN_STRING = 15020;      // a name between double quotes, or the word .STRING
inline constexpr int32_t TOKEN_BAD_MEMORY = 15021;  // brackets around hex digits without the h suffix
inline constexpr int32_t TOKEN_DOT_WORD = 15022;
inline constexpr int32_t TOKEN_SYMBOL_BASE = 20000;  // plus the symbol index, added at run time
inline constexpr int32_t TOKEN_MACRO_BASE = 30000;   // plus the macro index, added at run time

// The lexicon of 65816 images, with mnemonics and register names (301 states, 589 transitions).
const Fsa& Lexicon65816();
// The lexicon of every other image (106 states, 174 transitions).
const Fsa& GenericLexicon();
