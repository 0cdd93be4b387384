#include "asm/source_lines.h"

#include "core/blank.h"

// A line never holds a line feed, so white space here means blanks and carriage returns.

namespace {

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
    return TrimEnd(line.substr(0, end), IsWhiteSpace);
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
        const bool separator =
            c == ':' && i > 0 && IsWhiteSpace(line[i - 1]) && i + 1 < line.size() && IsWhiteSpace(line[i + 1]);
        if (!separator && i < line.size()) continue;
        const std::string_view text = TrimBlanks(line.substr(start, i - start), IsWhiteSpace);
        if (!text.empty()) statements.push_back({text, static_cast<int>(text.data() - line.data()) + 1});
        start = i + 1;
    }
    return statements;
}
