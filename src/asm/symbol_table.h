// The variables and constants of a patch file, numbered in the order of definition.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "asm/patch_limits.h"

inline constexpr uint8_t SYMBOL_VARIABLE = 0;  // $name: a memory address
inline constexpr uint8_t SYMBOL_CONSTANT = 2;  // name .EQL value

struct SymbolRecord {
    char name[MAX_SYMBOL_NAME + 1] = {};
    uint8_t type = SYMBOL_VARIABLE;
    int32_t value = 0;

    SymbolRecord() = default;
    // name is cut to MAX_SYMBOL_NAME characters.
    SymbolRecord(std::string_view name, uint8_t type, int32_t value);
};

class SymbolTable {
public:
    // Appends record and returns its number, or -1 when the table holds MAX_SYMBOLS records.
    int Add(const SymbolRecord& record);
    // Symbol index, or null when there is none with that number.
    const SymbolRecord* Find(int index) const;
    int32_t Count() const { return static_cast<int32_t>(records_.size()); }

private:
    std::vector<SymbolRecord> records_;
};
