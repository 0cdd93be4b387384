// Conditions of "if" and "elseif": one expression (true when above 0) or
// "a op b" with op one of == != < > <= >=, such terms joined by && or ||.
#pragma once

#include <string_view>

struct AsmSession;

// The truth of a condition; false with an error recorded when it cannot be evaluated.
bool EvaluateCondition(AsmSession& session, std::string_view text, bool& result);
