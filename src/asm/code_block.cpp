#include "asm/code_block.h"

#include <algorithm>

bool CodeBlock::Append(std::span<const CodeEntry> entries) {
    if (entries.size() > static_cast<size_t>(MAX_CODE_ENTRIES - count_)) return false;
    std::copy(entries.begin(), entries.end(), entries_.begin() + count_);
    count_ += static_cast<int>(entries.size());
    return true;
}

bool CodeBlock::AppendPointer(int size, uint32_t location) {
    return Append({static_cast<CodeEntry>(ENTRY_POINTER | (size & 0xFF)), static_cast<CodeEntry>(location & 0xFFFF),
                   static_cast<CodeEntry>(location >> 16)});
}

bool CodeBlock::Holds(CodeEntry entry) const {
    for (int i = 0; i < count_; i = NextEntryIndex(Entries(), i))
        if (entries_[static_cast<size_t>(i)] == entry) return true;
    return false;
}
