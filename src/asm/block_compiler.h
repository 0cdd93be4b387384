// Compiling the pending block into the image.
#pragma once

#include <cstdint>

#include "asm/code_block.h"
#include "asm/cpu_description.h"
#include "asm/label_table.h"
#include "asm/statement_error.h"

// Where a block goes: its address and the most bytes it may compile to.
struct BlockPlace {
    int32_t address = 0;
    uint16_t limit = 0xFFFF;
};

// Lays out block at place, resolves its branches and pointers and copies the bytes into the
// memory of cpu. A failure is reported through error; a block over its limit also leaves its
// compiled bytes there as the refused block. Empties the block and resets the labels in every case.
bool CompileBlock(CodeBlock& block, LabelTable& labels, const BlockPlace& place, const CpuDescription& cpu,
                  StatementError& error);
