#include "asm/condition_stack.h"

std::string ConditionStack::Run(const std::string& word, std::string_view operand, const Evaluator& evaluate) {
    if (word == "if") {
        bool truth = false;
        if (Active()) evaluate(operand, truth);
        frames_.push_back({Active() && truth, !Active() || truth, false});
        return {};
    }
    if (frames_.empty()) return word + " without if";
    Frame& frame = frames_.back();
    if (word == "endif") {
        frames_.pop_back();
    } else if (frame.elseSeen) {
        return word + " after else";
    } else if (word == "else") {
        frame.elseSeen = true;
        frame.active = ParentActive() && !frame.taken;
        frame.taken = true;
    } else {
        bool truth = false;
        if (ParentActive() && !frame.taken) evaluate(operand, truth);
        frame.active = ParentActive() && !frame.taken && truth;
        frame.taken = frame.taken || truth;
    }
    return {};
}
