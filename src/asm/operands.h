// Instructions: reading an operand, choosing the opcode and appending the code entries.
#pragma once

#include <cstdint>

struct PatchFile;

// Assembles the instruction of mnemonic (reading its operand from the reader) into the pending
// block. Returns the mnemonic after alias mapping, STATEMENT_LABEL for a label operand,
// TOKEN_UNDERSCORE_NAME for a macro parameter, 0 on failure with the message set.
int32_t AssembleInstruction(PatchFile& patch, int mnemonic);

// Appends the entries of opcode with its operand value; a branch form becomes a branch reference
// to a numeric target. Returns mnemonic, or 0 when a table is full.
int32_t EmitInstruction(PatchFile& patch, int opcode, uint32_t value, int mnemonic);
