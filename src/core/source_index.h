// A hash index of an original file for finding where a run of target bytes
// came from: the 8-byte block starting at every eighth position, one
// position per slot, so any match of 15 bytes or more is found from one of
// its first eight positions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class SourceIndex {
public:
    static constexpr size_t KEY_BYTES = 8;
    static constexpr size_t STRIDE = 8;
    static constexpr size_t NONE = SIZE_MAX;

    SourceIndex(const unsigned char* source, size_t size);

    // A source position whose first KEY_BYTES bytes may equal those at
    // bytes (the caller compares), or NONE.
    size_t Find(const unsigned char* bytes) const;

private:
    size_t Slot(const unsigned char* bytes) const;

    std::vector<uint32_t> slots_;  // position + 1, 0 for an empty slot
    int shift_ = 64;
};
