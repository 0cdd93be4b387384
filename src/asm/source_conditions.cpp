#include "asm/source_conditions.h"

#include "asm/asm_session.h"
#include "asm/source_expression.h"

namespace {

// The position of the first top-level occurrence of any of the texts, and which one matched.
size_t FindTopLevel(std::string_view text, std::initializer_list<std::string_view> operators, std::string_view& found) {
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (depth != 0) continue;
        for (std::string_view op : operators) {
            if (text.substr(i, op.size()) != op) continue;
            const bool shift = op.size() == 1 && i + 1 < text.size() && (text[i + 1] == op[0] || (i > 0 && text[i - 1] == op[0]));
            if (shift) continue;
            found = op;
            return i;
        }
    }
    return std::string_view::npos;
}

bool Value(AsmSession& session, std::string_view text, int64_t& value) {
    ExpressionValue result;
    ExpressionError error;
    if (!EvaluateExpression(session, text, result, error)) return session.Error(error.text);
    value = result.value;
    return true;
}

bool Comparison(AsmSession& session, std::string_view text, bool& result) {
    std::string_view op;
    const size_t at = FindTopLevel(text, {"==", "!=", "<=", ">=", "<", ">"}, op);
    int64_t left = 0, right = 0;
    if (at == std::string_view::npos) {
        if (!Value(session, text, left)) return false;
        result = left > 0;
        return true;
    }
    if (!Value(session, text.substr(0, at), left) || !Value(session, text.substr(at + op.size()), right)) return false;
    result = op == "==" ? left == right : op == "!=" ? left != right : op == "<=" ? left <= right
           : op == ">=" ? left >= right : op == "<" ? left < right : left > right;
    return true;
}

}  // namespace

bool EvaluateCondition(AsmSession& session, std::string_view text, bool& result) {
    std::string_view op;
    const size_t at = FindTopLevel(text, {"&&", "||"}, op);
    if (at == std::string_view::npos) return Comparison(session, text, result);
    if (!Comparison(session, text.substr(0, at), result)) return false;
    if ((op == "&&" && !result) || (op == "||" && result)) return true;
    return EvaluateCondition(session, text.substr(at + 2), result);
}
