// How the encoder reads script text: the table entries, raw bytes, line
// breaks and backslash codes that can stand at a place of the text.
#pragma once

#include <cstddef>
#include <vector>

#include "table/font_set.h"
#include "table/encode_rules.h"

struct EncoderMatch {
    int entry = -1;  // -1 while nothing matched
    size_t length = 0;
    int parameterCount = 0;
    unsigned char parameters[2] = {};
};

// What the longest-match encoder takes at text + consumed: a backslash code,
// (literal rules) a "<$XX>" raw byte, the first parameter entry that matches,
// else the longest table text (the lowest entry among equal ones), else a
// line feed's newline code or (classic rules) a "[XY]" raw byte. No entry
// when nothing applies.
EncoderMatch LongestMatchAt(const Font& font, const char* text, size_t consumed, EncodeRules rules);

// Every match that may stand there under the same rules: all the table texts
// that match (where the longest-match encoder takes the longest), or the one
// match the rules force.
void AllMatchesAt(const Font& font, const char* text, size_t consumed, EncodeRules rules,
                  std::vector<EncoderMatch>& matches);

// Literal rules: the line feed behind a line-breaking code written out (not
// itself a line feed) is that code's own; 1 when it follows the match, else 0.
size_t LineBreakOfCode(const Font& font, const char* at, const EncoderMatch& match, EncodeRules rules);
