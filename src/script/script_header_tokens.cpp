#include "script/script_header_tokens.h"

#include <cctype>

#include "core/blank.h"
#include "core/number_text.h"

namespace {

bool IsWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$' || c == '-';
}

}  // namespace

HeaderTokens::HeaderTokens(const std::string& text) : source_(text) {}

void HeaderTokens::SkipBlanksAndComments() {
    while (at_ < source_.size()) {
        char c = source_[at_];
        if (c == ';') {
            while (at_ < source_.size() && source_[at_] != '\n') ++at_;
        } else if (c == '\n') {
            ++at_;
            ++lineAt_;
            lineStartAt_ = at_;
        } else if (IsWhiteSpace(c)) {
            ++at_;
        } else {
            return;
        }
    }
}

HeaderToken HeaderTokens::Classify() {
    const char c = source_[at_];
    size_t end = at_ + 1;
    HeaderToken kind = HeaderToken::Other;
    if (c == '(') kind = HeaderToken::Open;
    else if (c == ')') kind = HeaderToken::Close;
    else if (c == '[') kind = HeaderToken::Bracket;
    else if (c == '"') {
        end = source_.find('"', at_ + 1);
        end = end == std::string::npos ? source_.size() : end + 1;
        kind = HeaderToken::Quoted;
    } else if (IsWordCharacter(c)) {
        while (end < source_.size() && IsWordCharacter(source_[end])) ++end;
        kind = HeaderToken::Word;
    }
    text_ = source_.substr(at_, end - at_);
    at_ = end;
    if (kind == HeaderToken::Word && ReadNumberText(text_.c_str(), value_)) kind = HeaderToken::Number;
    return kind;
}

HeaderToken HeaderTokens::Next() {
    SkipBlanksAndComments();
    line_ = lineAt_;
    column_ = static_cast<int32_t>(at_ - lineStartAt_ + 1);
    tokenLineStart_ = lineStartAt_;
    if (at_ >= source_.size()) {
        text_.clear();
        return kind_ = HeaderToken::End;
    }
    return kind_ = Classify();
}

HeaderToken HeaderTokens::Peek() {
    HeaderTokens copy = *this;
    return copy.Next();
}
