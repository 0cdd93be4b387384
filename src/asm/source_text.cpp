#include "asm/source_text.h"

std::string JoinText(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (std::string_view part : parts) text.append(part);
    return text;
}

std::vector<std::string_view> SplitOperandList(std::string_view text) {
    std::vector<std::string_view> items;
    int depth = 0;
    bool quoted = false;
    size_t start = 0;
    for (size_t i = 0; i <= text.size(); ++i) {
        const char c = i < text.size() ? text[i] : ',';
        if (c == '"') quoted = !quoted;
        if (!quoted && c == '\'' && i + 2 < text.size() && text[i + 2] == '\'') i += 2;
        if (quoted) continue;
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (c != ',' || depth != 0) continue;
        items.push_back(TrimBlanks(text.substr(start, i - start)));
        start = i + 1;
    }
    return items;
}
