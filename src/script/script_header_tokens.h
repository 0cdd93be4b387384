// The tokens of a script file's header: words, numbers in every form the
// number reader takes, quoted names, parentheses, and "[" that ends the
// header; ";" comments run to the end of their line.
#pragma once

#include <cstdint>
#include <string>

enum class HeaderToken { End, Word, Number, Quoted, Open, Close, Bracket, Other };

class HeaderTokens {
public:
    explicit HeaderTokens(const std::string& text);

    // Reads the next token; its kind, text, value and place stay until then.
    HeaderToken Next();
    // The kind of the next token, without reading it.
    HeaderToken Peek();

    HeaderToken kind() const { return kind_; }
    const std::string& text() const { return text_; }
    int64_t value() const { return value_; }
    int32_t line() const { return line_; }
    int32_t column() const { return column_; }
    // Offset of the start of the current token's line.
    size_t lineStart() const { return tokenLineStart_; }

private:
    void SkipBlanksAndComments();
    HeaderToken Classify();

    const std::string& source_;
    size_t at_ = 0;
    size_t lineStartAt_ = 0;
    int32_t lineAt_ = 1;
    HeaderToken kind_ = HeaderToken::End;
    std::string text_;
    int64_t value_ = 0;
    int32_t line_ = 0;
    int32_t column_ = 0;
    size_t tokenLineStart_ = 0;
};
