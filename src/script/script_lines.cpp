#include "script/script_lines.h"

#include <algorithm>

ScriptLine ClassifyScriptLine(const std::string& line) {
    if (!line.empty() && line[0] == ';') return ScriptLine::Comment;
    if (!line.empty() && line[0] == '[' && (line.size() < 4 || line[3] != ']')) return ScriptLine::EntryHeader;
    return ScriptLine::Text;
}

std::string TextOfLine(const std::string& line) {
    std::string text = line.substr(0, line.find(';'));
    size_t end = text.find_last_not_of(" \t");
    text.erase(end == std::string::npos ? 0 : end + 1);
    std::replace(text.begin(), text.end(), '_', ' ');
    return text;
}
