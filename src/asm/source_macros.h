// Macros of the common-syntax assembler: "macro name(a, b)" ... "endmacro"
// stores the body lines; "%name(x, y)" assembles them with every "<a>"
// replaced by the argument's text.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct MacroLine {
    std::string text;
    int line = 0;
};

struct Macro {
    std::vector<std::string> parameters;
    std::vector<MacroLine> lines;
    std::string file;  // where the body was written
};

class MacroBook {
public:
    void Clear() { macros_.clear(); }
    // False when a macro of that name exists.
    bool Add(const std::string& name, Macro macro) { return macros_.emplace(name, std::move(macro)).second; }
    const Macro* Find(const std::string& name) const;

private:
    std::unordered_map<std::string, Macro> macros_;
};

// Reads "name(p1, p2)" (the text behind "macro" or "%"): the name and the comma-separated items,
// blanks trimmed and one pair of double quotes taken off an item. False with error set otherwise.
bool ReadMacroSignature(std::string_view text, std::string& name, std::vector<std::string>& items,
                        std::string& error);

// The body line with each "<parameter>" replaced by its argument.
std::string SubstituteParameters(const Macro& macro, const std::vector<std::string>& arguments,
                                 std::string_view line);
