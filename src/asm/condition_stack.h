// The open "if" blocks of a common-syntax source: which branch is being
// assembled at each level.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class ConditionStack {
public:
    // Evaluates a condition into its truth; false after an error has been recorded.
    using Evaluator = std::function<bool(std::string_view, bool&)>;

    void Clear() { frames_.clear(); }
    bool Active() const { return frames_.empty() || frames_.back().active; }
    bool Open() const { return !frames_.empty(); }

    // Runs "if", "elseif", "else" or "endif" (word in lower case). An empty text when all is
    // well, else what is wrong ("else without if").
    std::string Run(const std::string& word, std::string_view operand, const Evaluator& evaluate);

private:
    struct Frame {
        bool active;
        bool taken;  // a branch of this if was (or cannot be) chosen
        bool elseSeen;
    };
    bool ParentActive() const { return frames_.size() < 2 || frames_[frames_.size() - 2].active; }
    std::vector<Frame> frames_;
};
