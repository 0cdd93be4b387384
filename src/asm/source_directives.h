// The data and placement statements of the common syntax: org, the mapping
// names, db/dw/dl/dd, incbin, fillbyte/fill, padbyte/pad, warnpc, print and
// table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct AsmSession;

enum class DirectiveResult { NotDirective, Done, Failed };

// Runs the statement whose first word (lower case) is word with the rest as operand.
DirectiveResult RunSourceDirective(AsmSession& session, const std::string& word, std::string_view operand);

// The text of a double-quoted string ("" is one quote); false when text is no such string.
bool ReadQuotedText(std::string_view text, std::string& out);
