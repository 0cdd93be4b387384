#include "asm/source_defines.h"

#include "asm/source_text.h"

namespace {

constexpr int MAX_DEFINE_DEPTH = 64;

// The name of the use at text[at] (just behind "!"): "{name}" or the longest name run; its
// length in text is returned in used.
std::string_view UseName(std::string_view text, size_t at, size_t& used) {
    if (at < text.size() && text[at] == '{') {
        const size_t close = text.find('}', at);
        if (close == std::string_view::npos) return {};
        used = close - at + 1;
        return text.substr(at + 1, close - at - 1);
    }
    size_t end = at;
    while (end < text.size() && IsNameCharacter(text[end])) ++end;
    used = end - at;
    return text.substr(at, end - at);
}

}  // namespace

bool DefineTable::Expand(std::string_view text, std::string& out, std::string& error) const {
    out.clear();
    if (text.find('!') == std::string_view::npos) {
        out.assign(text);
        return true;
    }
    return ExpandInto(text, out, error, 0);
}

bool DefineTable::ExpandInto(std::string_view text, std::string& out, std::string& error, int depth) const {
    if (depth > MAX_DEFINE_DEPTH) {
        error = "a define refers to itself";
        return false;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '!') {
            out += '!';
            ++i;
            continue;
        }
        size_t used = 0;
        const std::string_view name = text[i] == '!' ? UseName(text, i + 1, used) : std::string_view();
        if (name.empty()) {
            out += text[i];
            continue;
        }
        const auto found = values_.find(std::string(name));
        if (found == values_.end()) {
            error = JoinText({"!", name, " is not defined"});
            return false;
        }
        if (!ExpandInto(found->second, out, error, depth + 1)) return false;
        i += used;
    }
    return true;
}
