// The labels and numeric branch targets of the pending block. Named slots count
// up from 0, numeric slots down from 127; together they share the 128 slots.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "asm/patch_limits.h"

class LabelTable {
public:
    // The named slot whose name equals name without regard to case, or -1. Hidden slots are
    // never found.
    int Lookup(std::string_view name) const;
    // The next named slot, or -1 when every slot is taken. name is cut to MAX_LABEL_NAME.
    int Add(std::string_view name);
    // Like Add, but Lookup never finds the slot: a label private to one macro call.
    int AddHidden(std::string_view name);
    // Stores a numeric branch target in the next numeric slot; -1 when every slot is taken.
    int NewNumericTarget(int32_t value);
    // No labels and no numeric targets.
    void Reset();

    int LabelCount() const { return labelCount_; }
    int NumericIndex() const { return numericIndex_; }
    bool IsNamed(int slot) const { return slot >= 0 && slot < labelCount_; }
    bool IsNumeric(int slot) const { return slot > numericIndex_ && slot < LABEL_SLOT_COUNT; }
    // slot is 0 to 127 (the 7 bits of a code entry).
    int32_t& Value(int slot) { return values_[static_cast<size_t>(slot & 0x7F)]; }
    int32_t Value(int slot) const { return values_[static_cast<size_t>(slot & 0x7F)]; }
    const char* Name(int slot) const { return IsNamed(slot) ? names_[static_cast<size_t>(slot)].data() : ""; }

private:
    bool Full() const { return labelCount_ > numericIndex_; }

    int labelCount_ = 0;
    int numericIndex_ = LABEL_SLOT_COUNT - 1;
    std::array<int32_t, LABEL_SLOT_COUNT> values_{};
    std::array<std::array<char, MAX_LABEL_NAME + 1>, LABEL_SLOT_COUNT> names_{};
    std::array<bool, LABEL_SLOT_COUNT> hidden_{};
};
