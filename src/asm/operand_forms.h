// The written forms of common-syntax operands ("#e", "e,x", "(e),y", "[e]",
// ...) and the addressing modes each form stands for at each width.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "asm/instruction_set.h"

enum class OperandForm {
    None, Immediate, Plain, IndexX, IndexY, Stack, Indirect, IndirectX, IndirectY, LongIndirect,
    LongIndirectY, StackIndirectY, Pair
};

struct OperandShape {
    OperandForm form = OperandForm::None;
    std::string_view expression;  // the value's text (the first of a pair)
    std::string_view second;      // the second value of a pair ("mvn $7E,$7F")
};

// The form of operand text (blanks around it already removed); the accumulator "a" is None.
OperandShape ReadOperandShape(std::string_view text);

// The modes of form for widths 1, 2 and 3 (nothing where the form has no such width).
std::array<std::optional<CpuMode>, 3> ModesOfForm(OperandForm form);

// How the form is written, for messages ("(dp),y").
const char* FormName(OperandForm form, int width);
