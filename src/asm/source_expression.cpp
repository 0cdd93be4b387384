#include "asm/source_expression.h"

#include <algorithm>

#include "asm/asm_session.h"
#include "asm/source_text.h"
#include "core/hex_digit.h"
#include "table/text_encoder.h"

namespace {

class ExpressionParser {
public:
    ExpressionParser(const AsmSession& session, std::string_view text, ExpressionError& error)
        : session_(session), text_(text), error_(error) {}

    bool Parse(ExpressionValue& value) {
        if (!Binary(0, value)) return false;
        SkipBlanks();
        if (at_ < text_.size()) return Fail(JoinText({"unexpected '", text_.substr(at_), "' in expression"}));
        return true;
    }

private:
    struct Operator {
        const char* text;
        int level;
    };

    bool Fail(const std::string& text) {
        if (error_.text.empty()) error_ = {text, at_};
        return false;
    }

    void SkipBlanks() {
        while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
    }

    // The binary operator at the cursor of at least the level, or null; levels from | (0) to * (5).
    const Operator* PeekOperator(int level) {
        static constexpr Operator OPERATORS[] = {{"<<", 3}, {">>", 3}, {"|", 0}, {"^", 1}, {"&", 2}, {"+", 4},
                                                 {"-", 4},  {"*", 5},  {"/", 5}, {"%", 5}};
        SkipBlanks();
        for (const Operator& op : OPERATORS)
            if (text_.substr(at_).starts_with(op.text)) return op.level >= level ? &op : nullptr;
        return nullptr;
    }

    bool Binary(int level, ExpressionValue& value) {
        if (level > 5) return Unary(value);
        if (!Binary(level + 1, value)) return false;
        while (const Operator* op = PeekOperator(level)) {
            if (op->level != level) break;
            at_ += std::char_traits<char>::length(op->text);
            ExpressionValue right;
            if (!Binary(level + 1, right)) return false;
            if (!Apply(op->text, value, right)) return false;
        }
        return true;
    }

    bool Apply(std::string_view op, ExpressionValue& left, const ExpressionValue& right) {
        const int64_t a = left.value, b = right.value;
        int width = std::max(left.width, right.width);
        if ((op == "/" || op == "%") && b == 0) return Fail("division by zero");
        if ((op == "<<" || op == ">>") && (b < 0 || b > 63)) return Fail(JoinText({"shift count ", std::to_string(b), " is out of range"}));
        if (op == ">>" && !right.hasLabel) width = std::max(1, left.width - static_cast<int>(b / 8));
        const int64_t result = op == "+" ? a + b : op == "-" ? a - b : op == "*" ? a * b : op == "/" ? a / b
                             : op == "%" ? a % b : op == "&" ? (a & b) : op == "|" ? (a | b) : op == "^" ? (a ^ b)
                             : op == "<<" ? static_cast<int64_t>(static_cast<uint64_t>(a) << b) : a >> b;
        left = {result, width, left.hasLabel || right.hasLabel, left.unknown || right.unknown};
        return true;
    }

    bool Unary(ExpressionValue& value) {
        SkipBlanks();
        if (at_ >= text_.size()) return Fail("expression ends too early");
        const char c = text_[at_];
        if (c == '-' || c == '+' || c == '~') {
            ++at_;
            if (!Unary(value)) return false;
            if (c == '-') value.value = -value.value;
            if (c == '~') value.value = static_cast<int64_t>(~static_cast<uint32_t>(value.value));
            return true;
        }
        if (c == '(') {
            ++at_;
            if (!Binary(0, value)) return false;
            SkipBlanks();
            if (at_ >= text_.size() || text_[at_] != ')') return Fail("missing ')'");
            ++at_;
            return true;
        }
        return Primary(value);
    }

    bool Primary(ExpressionValue& value) {
        const char c = text_[at_];
        if (c == '$') return Digits(16, 4, value);
        if (c == '%') return Digits(2, 1, value);
        if (c >= '0' && c <= '9') return Decimal(value);
        if (c == '\'') return Character(value);
        if (IsNameCharacter(c) || c == '.') return Label(value);
        return Fail(JoinText({"unexpected '", text_.substr(at_, 1), "' in expression"}));
    }

    bool Digits(int base, int bitsPerDigit, ExpressionValue& value) {
        const size_t start = ++at_;
        uint64_t number = 0;
        while (at_ < text_.size() && IsNameCharacter(text_[at_])) {
            const char d = text_[at_];
            const int digit = IsHexDigit(d) ? HexDigitValue(d) : 99;
            if (digit >= base) return Fail(JoinText({"'", std::string_view(&text_[at_], 1), "' is no digit of a base-", std::to_string(base), " number"}));
            if (number >> 40) return Fail("number is too large");
            number = number * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
            ++at_;
        }
        if (at_ == start) return Fail("number without digits");
        const int bits = static_cast<int>(at_ - start) * bitsPerDigit;
        value = {static_cast<int64_t>(number), std::min(3, (bits + 7) / 8), false, false};
        return true;
    }

    bool Decimal(ExpressionValue& value) {
        const size_t start = at_;
        uint64_t number = 0;
        while (at_ < text_.size() && IsNameCharacter(text_[at_])) {
            const char d = text_[at_];
            if (d < '0' || d > '9') {
                at_ = start;
                return Fail(JoinText({"'", text_.substr(start), "' is not a number (write $ for hexadecimal)"}));
            }
            if (number >> 40) return Fail("number is too large");
            number = number * 10 + static_cast<unsigned>(d - '0');
            ++at_;
        }
        value = {static_cast<int64_t>(number), number < 0x100 ? 1 : number < 0x10000 ? 2 : 3, false, false};
        return true;
    }

    bool Character(ExpressionValue& value) {
        if (at_ + 2 >= text_.size() || text_[at_ + 2] != '\'') return Fail("a character literal holds one character");
        value = {CharacterCode(session_, text_[at_ + 1]), 1, false, false};
        at_ += 3;
        return true;
    }

    bool Label(ExpressionValue& value) {
        const size_t start = at_;
        while (at_ < text_.size() && text_[at_] == '.') ++at_;
        while (at_ < text_.size() && IsNameCharacter(text_[at_])) ++at_;
        const std::string_view name = text_.substr(start, at_ - start);
        const std::optional<uint32_t> found = session_.labels.Find(name);
        if (!found && session_.finalPass) {
            at_ = start;
            return Fail(JoinText({"label ", name, " is not defined"}));
        }
        const uint32_t address = found.value_or(session_.pc);
        value = {address, (address >> 16) == (session_.pc >> 16) ? 2 : 3, true, !found};
        return true;
    }

    const AsmSession& session_;
    std::string_view text_;
    ExpressionError& error_;
    size_t at_ = 0;
};

// A whole operand of only "+" or only "-" signs.
bool AnonymousReference(const AsmSession& session, std::string_view text, ExpressionValue& value,
                        ExpressionError& error) {
    const bool plus = text[0] == '+';
    const std::optional<uint32_t> found = session.labels.FindAnonymous(static_cast<int>(text.size()), plus);
    if (!found && (session.finalPass || !plus)) {
        error = {JoinText({"no ", text, " label ", plus ? "follows" : "precedes", " this line"}), 0};
        return false;
    }
    const uint32_t address = found.value_or(session.pc);
    value = {address, (address >> 16) == (session.pc >> 16) ? 2 : 3, true, !found};
    return true;
}

}  // namespace

int64_t CharacterCode(const AsmSession& session, char c) {
    const char text[2] = {c, 0};
    const EncodedText encoded = session.tableFont ? EncodeText(session.tableFont, text, UNTERMINATED_ENCODING) : EncodedText{};
    return encoded.length == 1 ? encoded.bytes[0] : static_cast<unsigned char>(c);
}

bool EvaluateExpression(const AsmSession& session, std::string_view text, ExpressionValue& value,
                        ExpressionError& error) {
    text = TrimBlanks(text);
    if (text.empty()) {
        error = {"an expression is missing", 0};
        return false;
    }
    if (text.find_first_not_of(text[0]) == std::string_view::npos && (text[0] == '+' || text[0] == '-'))
        return AnonymousReference(session, text, value, error);
    return ExpressionParser(session, text, error).Parse(value);
}
