// Expressions of the common-syntax assembler: numbers ($1F, %101, 300,
// 'c'), labels, sub-labels, "+"/"-" labels, + - * / % & | ^ ~ << >> and
// parentheses, with C's precedence. Each value also carries a width in bytes:
// a hex or binary literal has the width of the digits written ($0F 1, $000F 2,
// $00000F 3), a decimal literal the width its value needs, a character 1, a
// label 2 when it lies in the bank of the program counter and 3 otherwise; an
// operation takes the widest of its operands, except that "x >> n" with a
// number n drops n/8 bytes from x's width (so Label>>16 is one byte).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct AsmSession;

struct ExpressionValue {
    int64_t value = 0;
    int width = 1;
    bool hasLabel = false;  // a label took part
    bool unknown = false;   // a label has no value yet (an earlier pass will give it one)
};

struct ExpressionError {
    std::string text;
    size_t offset = 0;  // into the expression text
};

// Evaluates the whole of text. False with error set when it is no expression or a label is
// missing on the final pass.
bool EvaluateExpression(const AsmSession& session, std::string_view text, ExpressionValue& value,
                        ExpressionError& error);

// The value of a character literal's character: its one-byte code in the current table, else
// its ASCII code.
int64_t CharacterCode(const AsmSession& session, char c);
