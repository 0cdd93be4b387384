#include "asm/symbol_table.h"

#include <algorithm>

SymbolRecord::SymbolRecord(std::string_view text, uint8_t symbolType, int32_t symbolValue)
    : type(symbolType), value(symbolValue) {
    std::copy_n(text.data(), std::min(text.size(), static_cast<size_t>(MAX_SYMBOL_NAME)), name);
}

int SymbolTable::Add(const SymbolRecord& record) {
    if (records_.size() >= static_cast<size_t>(MAX_SYMBOLS)) return -1;
    records_.push_back(record);
    return Count() - 1;
}

const SymbolRecord* SymbolTable::Find(int index) const {
    return index >= 0 && index < Count() ? &records_[static_cast<size_t>(index)] : nullptr;
}
