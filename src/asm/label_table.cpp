#include "asm/label_table.h"

#include <algorithm>

#include "core/text_compare.h"

int LabelTable::Lookup(std::string_view name) const {
    for (int slot = 0; slot < labelCount_; ++slot)
        if (!hidden_[static_cast<size_t>(slot)] && SameTextIgnoringCase(Name(slot), name)) return slot;
    return -1;
}

int LabelTable::Add(std::string_view name) {
    if (Full()) return -1;
    const int slot = labelCount_++;
    auto& stored = names_[static_cast<size_t>(slot)];
    const size_t length = std::min(name.size(), static_cast<size_t>(MAX_LABEL_NAME));
    std::copy_n(name.data(), length, stored.data());
    stored[length] = '\0';
    hidden_[static_cast<size_t>(slot)] = false;
    return slot;
}

int LabelTable::AddHidden(std::string_view name) {
    const int slot = Add(name);
    if (slot >= 0) hidden_[static_cast<size_t>(slot)] = true;
    return slot;
}

int LabelTable::NewNumericTarget(int32_t value) {
    if (Full()) return -1;
    values_[static_cast<size_t>(numericIndex_)] = value;
    return numericIndex_--;
}

void LabelTable::Reset() {
    labelCount_ = 0;
    numericIndex_ = LABEL_SLOT_COUNT - 1;
}
