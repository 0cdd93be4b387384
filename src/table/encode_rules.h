// How the encoder reads script text: the classic rules or the literal rules
// of the scripts the dump verb writes.
#pragma once

// The rules that differ between classic scripts and the scripts of the dump
// verb. Classic: "[XY]" is the raw byte XY where no table text matches.
// Literal: "<$XX>" is always the raw byte XX, ahead of any table text, "[" is
// only text, and a line feed right behind a code that breaks the line (its
// entry has ENTRY_NEWLINE) is that code's own line break, not another code.
// Strings get a terminal code unless their text ends with one; text that is
// not a string (data of a patch script) gets none.
struct EncodeRules {
    bool literal = false;
    bool appendTerminal = true;
};
inline constexpr EncodeRules CLASSIC_ENCODING{false, true};
inline constexpr EncodeRules LITERAL_ENCODING{true, true};
inline constexpr EncodeRules UNTERMINATED_ENCODING{false, false};
