#include "asm/source_lines.h"

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// The line up to a ";" outside quotes, trailing blanks removed.
std::string_view WithoutComment(std::string_view line) {
    char quote = 0;
    size_t end = line.size();
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || (c == '\'' && i + 2 < line.size() && line[i + 2] == '\'')) {
            quote = c;
        } else if (c == ';') {
            end = i;
            break;
        }
    }
    line = line.substr(0, end);
    while (!line.empty() && IsBlank(line.back())) line.remove_suffix(1);
    return line;
}

}  // namespace

std::vector<SourceLine> ReadSourceLines(std::string_view text) {
    std::vector<SourceLine> lines;
    bool joining = false;
    int number = 0;
    for (size_t start = 0; start <= text.size();) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        ++number;
        std::string_view line = WithoutComment(text.substr(start, end - start));
        start = end + 1;
        if (!joining) lines.push_back({std::string(), number});
        std::string& joined = lines.back().text;
        const bool backslash = !line.empty() && line.back() == '\\';
        if (backslash) line.remove_suffix(1);
        joined.append(line);
        joining = backslash || (!line.empty() && line.back() == ',');
        if (end == text.size()) break;
    }
    return lines;
}

std::vector<Statement> SplitStatements(std::string_view line) {
    std::vector<Statement> statements;
    char quote = 0;
    size_t start = 0;
    for (size_t i = 0; i <= line.size(); ++i) {
        const char c = i < line.size() ? line[i] : 0;
        if (quote) {
            if (c == quote) quote = 0;
            continue;
        }
        if (c == '"' || (c == '\'' && i + 2 < line.size() && line[i + 2] == '\'')) quote = c;
        const bool separator = c == ':' && i > 0 && IsBlank(line[i - 1]) && i + 1 < line.size() && IsBlank(line[i + 1]);
        if (!separator && i < line.size()) continue;
        size_t from = start, to = i;
        while (from < to && IsBlank(line[from])) ++from;
        while (to > from && IsBlank(line[to - 1])) --to;
        if (to > from) statements.push_back({line.substr(from, to - from), static_cast<int>(from) + 1});
        start = i + 1;
    }
    return statements;
}
