#include "asm/source_macros.h"

#include "asm/source_defines.h"
#include "asm/source_text.h"

namespace {

// The arguments of a macro call: the operand list's items, a quoted item
// without its quotes.
std::vector<std::string> SplitItems(std::string_view text) {
    std::vector<std::string> items;
    if (TrimBlanks(text).empty()) return items;
    for (std::string_view item : SplitOperandList(text)) {
        if (item.size() >= 2 && item.front() == '"' && item.back() == '"') item = item.substr(1, item.size() - 2);
        items.emplace_back(item);
    }
    return items;
}

}  // namespace

const Macro* MacroBook::Find(const std::string& name) const {
    const auto found = macros_.find(name);
    return found == macros_.end() ? nullptr : &found->second;
}

bool ReadMacroSignature(std::string_view text, std::string& name, std::vector<std::string>& items,
                        std::string& error) {
    text = TrimBlanks(text);
    size_t end = 0;
    while (end < text.size() && IsNameCharacter(text[end])) ++end;
    name.assign(text.substr(0, end));
    const std::string_view rest = TrimBlanks(text.substr(end));
    if (name.empty() || rest.size() < 2 || rest.front() != '(' || rest.back() != ')') {
        error = "expected name(...) but found '" + std::string(text) + "'";
        return false;
    }
    items = SplitItems(rest.substr(1, rest.size() - 2));
    return true;
}

std::string SubstituteParameters(const Macro& macro, const std::vector<std::string>& arguments,
                                 std::string_view line) {
    std::string out;
    for (size_t i = 0; i < line.size(); ++i) {
        const size_t close = line[i] == '<' ? line.find('>', i + 1) : std::string_view::npos;
        bool replaced = false;
        if (close != std::string_view::npos) {
            const std::string_view name = line.substr(i + 1, close - i - 1);
            for (size_t p = 0; p < macro.parameters.size() && !replaced; ++p) {
                if (macro.parameters[p] != name) continue;
                out += arguments[p];
                i = close;
                replaced = true;
            }
        }
        if (!replaced) out += line[i];
    }
    return out;
}
