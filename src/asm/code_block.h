// Code entries and the pending block that collects them until it is compiled.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>

#include "asm/patch_limits.h"

// A 16-bit code entry; its upper bits tell its kind:
//   0x00bb            the byte bb (opcode, operand or data byte)
//   0x01nn            a pointer of nn bytes, followed by two raw entries holding
//                     bits 0 to 15 and 16 to 31 of its location
//   0x4000 + p<<8 + m instruction m whose operand is macro parameter p
//   0x8000 + s<<8     the label of slot s stands here
//   0x8000 + s<<8 + m instruction m (not 0) whose target is slot s
using CodeEntry = uint16_t;

inline constexpr CodeEntry ENTRY_POINTER = 0x0100;
inline constexpr CodeEntry ENTRY_MACRO_PARAMETER = 0x4000;
inline constexpr CodeEntry ENTRY_LABEL = 0x8000;
inline constexpr int POINTER_ENTRY_COUNT = 3;  // the pointer entry and its two raw location entries

inline bool IsByteEntry(CodeEntry e) { return e < ENTRY_POINTER; }
inline bool IsPointerEntry(CodeEntry e) { return (e & 0xFF00) == ENTRY_POINTER; }
inline bool IsMacroParameterEntry(CodeEntry e) { return (e & 0xC000) == ENTRY_MACRO_PARAMETER; }
inline bool IsLabelDefinition(CodeEntry e) { return (e & 0x8000) && (e & 0xFF) == 0; }
inline bool IsBranchReference(CodeEntry e) { return (e & 0x8000) && (e & 0xFF) != 0; }
// The slot of a label definition or branch reference, the parameter of a macro-parameter entry.
inline int EntrySlot(CodeEntry e) { return (e >> 8) & 0x7F; }
inline int EntryParameter(CodeEntry e) { return (e >> 8) & 0x3F; }
// The instruction of a branch reference or macro-parameter entry; the size of a pointer.
inline int EntryLow(CodeEntry e) { return e & 0xFF; }

inline CodeEntry LabelDefinitionEntry(int slot) { return static_cast<CodeEntry>(ENTRY_LABEL | (slot & 0x7F) << 8); }
inline CodeEntry BranchEntry(int slot, int mnemonic) {
    return static_cast<CodeEntry>(LabelDefinitionEntry(slot) | (mnemonic & 0xFF));
}
inline CodeEntry MacroParameterEntry(int parameter, int mnemonic) {
    return static_cast<CodeEntry>(ENTRY_MACRO_PARAMETER | (parameter & 0x3F) << 8 | (mnemonic & 0xFF));
}

// The index of the entry after the one at index: a pointer's raw location entries are passed over.
inline int NextEntryIndex(std::span<const CodeEntry> entries, int index) {
    return index + (IsPointerEntry(entries[static_cast<size_t>(index)]) ? POINTER_ENTRY_COUNT : 1);
}

// At most MAX_CODE_ENTRIES entries; an append that does not fit whole appends nothing.
class CodeBlock {
public:
    bool Append(std::initializer_list<CodeEntry> entries) { return Append(std::span(entries.begin(), entries.size())); }
    bool Append(std::span<const CodeEntry> entries);
    bool AppendPointer(int size, uint32_t location);

    std::span<const CodeEntry> Entries() const { return std::span(entries_.data(), static_cast<size_t>(count_)); }
    bool Empty() const { return count_ == 0; }
    int Size() const { return count_; }
    // Drops the entries from index count on (those a failed statement appended).
    void Truncate(int count) {
        if (count >= 0 && count < count_) count_ = count;
    }
    // True when the block holds this exact entry (a label's definition marker).
    bool Holds(CodeEntry entry) const;  // raw location entries are not compared
    void Clear() { count_ = 0; }

private:
    std::array<CodeEntry, MAX_CODE_ENTRIES> entries_{};
    int count_ = 0;
};
