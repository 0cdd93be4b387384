// Labels of the common-syntax assembler: main labels, sub-labels owned by the
// latest main label (".name" is "Main_name", "..deep" hangs under the latest
// one-dot label), constants ("Name = value") and the "+"/"-" labels. Values
// are 24-bit processor addresses; a name used before its definition takes
// the value the previous pass gave it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct LabelEntry {
    uint32_t value = 0;
    bool constant = false;
};

class LabelBook {
public:
    // Begins a pass: what this pass defined becomes the previous pass's values.
    void StartPass();
    // True when the pass just run gave every label the value the pass before gave it and found
    // every label it looked up.
    bool Settled() const { return settled_; }
    void FinishPass();

    // The global name of a written label: ".sub" and "..deep" are qualified by their owners.
    std::string Qualify(std::string_view written) const;
    // Defines a label by its written name; false when this pass already defined it.
    bool Define(std::string_view written, uint32_t value, bool constant);
    // The value of a written label: this pass's, else the previous pass's, else nothing.
    std::optional<uint32_t> Find(std::string_view written) const;

    // "+"/"-" labels: count signs of one kind. A "-" reference is the latest definition at or
    // before it; a "+" reference the next one after it.
    void DefineAnonymous(int count, bool plus, uint32_t value);
    std::optional<uint32_t> FindAnonymous(int count, bool plus) const;

    // Every label this pass defined.
    const std::unordered_map<std::string, LabelEntry>& All() const { return current_; }

private:
    using Anonymous = std::vector<std::vector<uint32_t>>;  // [count] -> addresses in order
    std::unordered_map<std::string, LabelEntry> current_, previous_;
    Anonymous plus_, minus_, previousPlus_;
    std::string main_, sub_;
    bool settled_ = false;
    mutable bool missed_ = false;  // a look-up found no value in this pass
};
