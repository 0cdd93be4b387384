// The limits of the patch-script engine, which scripts, tests and the
// documentation rely on.
#pragma once

// The p command gives up after this many failed statements.
inline constexpr int MAX_PATCH_ERRORS = 20;

inline constexpr int PATCH_MESSAGE_SIZE = 128;   // characters of a statement error, terminator included
inline constexpr int MAX_CODE_ENTRIES = 4096;    // code entries of one pending block
inline constexpr int LABEL_SLOT_COUNT = 128;     // labels and numeric branch targets of one block
inline constexpr int MAX_LABEL_NAME = 31;
inline constexpr int MAX_SYMBOLS = 10000;        // variables and constants of one patch file
inline constexpr int MAX_SYMBOL_NAME = 24;
inline constexpr int MAX_MACROS = 1000;
inline constexpr int MAX_MACRO_NAME = 31;        // the leading "_" included
inline constexpr int MAX_MACRO_PARAMETERS = 16;  // texts cut from one call's line
inline constexpr int MAX_FILE_NAME = 127;        // a quoted .INCLUDE name
inline constexpr int MAX_INCLUDE_DEPTH = 100;    // script files being read at once, the main one included
inline constexpr int MAX_INCLUDES = 5000;        // .INCLUDE statements that open a file, in one patch file
