// A stored macro: its code entries and what its label slots meant when it was defined.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "asm/code_block.h"
#include "asm/patch_limits.h"

// A label slot the body uses. A label defined in the body becomes a fresh private label at
// every call; a label the body only branches to is the calling block's label of that name; a
// numeric target gets a fresh numeric slot with its value.
struct MacroLabel {
    enum Use : uint8_t { UNUSED, NUMERIC, DEFINED, REFERENCED };
    Use use = UNUSED;
    int32_t value = 0;
    std::string name;
};

struct MacroBody {
    std::vector<CodeEntry> entries;
    std::array<MacroLabel, LABEL_SLOT_COUNT> labels;
};
