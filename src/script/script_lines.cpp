#include "script/script_lines.h"

#include <algorithm>

#include "core/hex_digit.h"

namespace {

bool IsLiteralEntryHeader(const std::string& line) {
    size_t digits = 1;
    while (digits < line.size() && IsHexDigit(line[digits])) ++digits;
    return line.size() > 2 && line[0] == '[' && digits > 1 && digits < line.size() && line[digits] == ']';
}

void DropTrailingBlanks(std::string& text, const char* blanks) {
    size_t end = text.find_last_not_of(blanks);
    text.erase(end == std::string::npos ? 0 : end + 1);
}

// The escapes of literal lines, as "<c>" for the character c.
char EscapedCharacter(const std::string& line, size_t at) {
    if (at + 2 >= line.size() || line[at] != '<' || line[at + 2] != '>') return 0;
    switch (line[at + 1]) {
        case ';': return ';';
        case '[': return '[';
        case '_': return ' ';
        default: return 0;
    }
}

std::string LiteralTextOfLine(std::string line) {
    DropTrailingBlanks(line, " \t\r");
    std::string text;
    text.reserve(line.size());
    for (size_t at = 0; at < line.size(); ++at) {
        char escaped = EscapedCharacter(line, at);
        text += escaped ? escaped : line[at];
        if (escaped) at += 2;
    }
    return text;
}

}  // namespace

ScriptLine ClassifyScriptLine(const std::string& line, LineRules rules) {
    if (!line.empty() && line[0] == ';') return ScriptLine::Comment;
    if (rules == LineRules::Literal) return IsLiteralEntryHeader(line) ? ScriptLine::EntryHeader : ScriptLine::Text;
    if (!line.empty() && line[0] == '[' && (line.size() < 4 || line[3] != ']')) return ScriptLine::EntryHeader;
    return ScriptLine::Text;
}

std::string TextOfLine(const std::string& line, LineRules rules) {
    if (rules == LineRules::Literal) return LiteralTextOfLine(line);
    std::string text = line.substr(0, line.find(';'));
    DropTrailingBlanks(text, " \t");
    std::replace(text.begin(), text.end(), '_', ' ');
    return text;
}

std::string LiteralTextLine(const std::string& text) {
    std::string line = text;
    if (!line.empty() && line.back() == ' ') line.replace(line.size() - 1, 1, "<_>");
    if (!line.empty() && (line[0] == ';' || line[0] == '[')) line.insert(0, 1, '<').insert(2, 1, '>');
    return line;
}

void AppendTextPiece(std::string& text, const std::string& piece) {
    if (text.empty() && piece.empty()) return;
    if (!text.empty()) text += '\n';
    text += piece;
}

void EndStringText(std::string& text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
}
