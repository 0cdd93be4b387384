// The texts of the statement errors of patch scripts. Every message starts with
// the position of the statement (file, line and column), then one of these.
#pragma once

#define PATCH_POSITION "%s:%d,%d:"

// The reporters of a failed statement.
inline constexpr const char* MSG_EXPECTED = "Expected %s, found: %s";
inline constexpr const char* MSG_OPEN_FAILED = "Error opening: %s";
inline constexpr const char* MSG_INVALID_OPERAND = "Invalid operand: %s";
inline constexpr const char* MSG_ALREADY_DEFINED = "%s %s already defined.";
inline constexpr const char* MSG_TOO_WIDE = "%s does not fit into %d bits.";
inline constexpr const char* MSG_NOT_IMPLEMENTED = "%s %s not implemented.";
inline constexpr const char* MSG_UNKNOWN_COMMAND = "Unknown command: %s";

// .PATCH and macro calls append these behind the position of the colon or the name.
inline constexpr const char* MSG_MISMATCHED_PAIR = "mismatched hex pair";
inline constexpr const char* MSG_COMMA_EXPECTED = "Comma expected between macro parameters";
inline constexpr const char* MSG_NOT_ENOUGH_PARAMETERS = "Not enough parameters to macro %s.";

// Compiling a block.
inline constexpr const char* MSG_UNEVALUATED_MACRO = "Attempt to compile unevaluated macro failed.\n";
inline constexpr const char* MSG_TOO_FAR = "%s (%d) too far from %s (%d) %d";
inline constexpr const char* MSG_EXCEEDS_SIZE = "Compiled code at %06X exceeds maximum size (%d/%d)";

// Refusals that keep every write inside the image and every table within its size.
inline constexpr const char* MSG_OUTSIDE_IMAGE = "Address %06X lies outside the image";
inline constexpr const char* MSG_BLOCK_OUTSIDE_IMAGE = "Compiled code at %06X (%d bytes) lies outside the image";
inline constexpr const char* MSG_LABEL_UNDEFINED = "Label %s is not defined in this block.";
inline constexpr const char* MSG_TOO_MANY = "Too many %s (at most %d).";
inline constexpr const char* MSG_NAME_TOO_LONG = "Name %s is longer than %d characters.";
inline constexpr const char* MSG_ENDM_WITHOUT_MACRO = ".ENDM without .MACRO";
inline constexpr const char* MSG_MACRO_IN_MACRO = "Macro %s cannot be defined inside macro %s.";
inline constexpr const char* MSG_MACRO_NOT_ENDED = "Macro %s has no .ENDM.";
inline constexpr const char* MSG_ALREADY_OPEN = "File %s is already being read.";
inline constexpr const char* MSG_NO_PATCH_FILE = "No patch file is open.";
inline constexpr const char* MSG_NOT_HEX_PAIR = "Not a pair of hexadecimal digits: %s";
inline constexpr const char* MSG_NO_ADDRESS = "Code needs an .ADDRESS before it.";
inline constexpr const char* MSG_ZERO_BYTE = "A zero byte stands in the line.";

// The table names of MSG_TOO_MANY.
inline constexpr const char* TABLE_CODE_ENTRIES = "code entries in one block";
inline constexpr const char* TABLE_LABELS = "labels and branch targets in one block";
inline constexpr const char* TABLE_SYMBOLS = "symbols";
inline constexpr const char* TABLE_MACROS = "macros";
inline constexpr const char* TABLE_PARAMETERS = "macro parameters";
inline constexpr const char* TABLE_NESTED_INCLUDES = "nested includes";
inline constexpr const char* TABLE_INCLUDES = "includes";
