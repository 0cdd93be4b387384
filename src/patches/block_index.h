// A hash index of the 8-byte blocks at chosen positions of a byte sequence,
// for finding where a run of bytes occurred before: one position per slot,
// the one added last.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class BlockIndex {
public:
    static constexpr size_t KEY_BYTES = 8;
    static constexpr size_t NONE = SIZE_MAX;

    // An index of bytes (size of them) with room for about `positions`
    // positions before slots are shared.
    BlockIndex(const unsigned char* bytes, size_t size, size_t positions);

    // Adds the block at `at` (ignored when fewer than KEY_BYTES bytes follow).
    void Add(size_t at);
    // A position whose first KEY_BYTES bytes may equal those at key (the
    // caller compares), or NONE.
    size_t Find(const unsigned char* key) const;

private:
    size_t Slot(const unsigned char* key) const;

    const unsigned char* bytes_;
    size_t size_;
    std::vector<uint32_t> slots_;  // position + 1, 0 for an empty slot
    int shift_;
};
