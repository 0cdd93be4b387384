// Defines of the common-syntax assembler: "!name = value" stores text that
// replaces every later "!name" (or "!{name}") before the line is read.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

// True for the characters of label, define and macro names.
inline bool IsNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

class DefineTable {
public:
    void Clear() { values_.clear(); }
    void Set(const std::string& name, std::string value) { values_[name] = std::move(value); }
    bool Has(const std::string& name) const { return values_.count(name) != 0; }

    // Replaces each define use in text by its value, itself expanded; "\!" stays a plain "!". False
    // with error set when a define is unknown or refers to itself.
    bool Expand(std::string_view text, std::string& out, std::string& error) const;

private:
    bool ExpandInto(std::string_view text, std::string& out, std::string& error, int depth) const;
    std::unordered_map<std::string, std::string> values_;
};
