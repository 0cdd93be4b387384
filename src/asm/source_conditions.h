// Conditional assembly: "if cond", "elseif cond", "else", "endif". A
// condition is one expression (true when above 0) or "a op b" with op one of
// == != < > <= >=, such terms joined by && or ||.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct AsmSession;

class ConditionStack {
public:
    void Clear() { frames_.clear(); }
    bool Active() const { return frames_.empty() || frames_.back().active; }
    bool Open() const { return !frames_.empty(); }

    // Runs the statement when word (lower case) is a condition keyword: true when it was one
    // (with the outcome in ok, false after an error recorded in the session).
    bool Run(AsmSession& session, const std::string& word, std::string_view operand, bool& ok);

private:
    struct Frame {
        bool active;
        bool taken;  // a branch of this if was (or cannot be) chosen
        bool elseSeen;
    };
    bool ParentActive() const { return frames_.size() < 2 || frames_[frames_.size() - 2].active; }
    std::vector<Frame> frames_;
};

// The truth of a condition; false with an error recorded when it cannot be evaluated.
bool EvaluateCondition(AsmSession& session, std::string_view text, bool& result);
