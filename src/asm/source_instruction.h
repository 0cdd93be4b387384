// Instructions in the common syntax: "lda.w #$05", "sta $7E0010,x",
// "jml [$0002]", "bne -"... The operand's form picks the addressing-mode
// family, the width (a .b/.w/.l suffix, else the operand's width, see
// source_expression.h) picks the member; a family without a member of that
// width moves to the next wider one unless a suffix forced it. A value that
// does not fit the chosen width is refused, never cut.
#pragma once

#include <string_view>

struct AsmSession;

enum class InstructionResult { NotInstruction, Assembled, Failed };

// Assembles the instruction word (a mnemonic, perhaps with a suffix) with its operand text;
// NotInstruction when word is no mnemonic of the 65816.
InstructionResult AssembleSourceInstruction(AsmSession& session, std::string_view word, std::string_view operand);

// True when word (with or without a suffix) is a 65816 mnemonic.
bool IsSourceMnemonic(std::string_view word);
