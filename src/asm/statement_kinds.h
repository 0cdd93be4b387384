// What a statement returns besides token kinds: the kinds that name no token.
#pragma once

#include <cstdint>

inline constexpr int32_t STATEMENT_DATA = 10001;   // .BYTE and .WORD
inline constexpr int32_t STATEMENT_LABEL = 10004;  // a label, or an instruction whose operand is one
