#include "patches/block_index.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15;
constexpr size_t kFewestSlots = 1 << 10;
constexpr size_t kMostSlots = 1 << 24;

}  // namespace

BlockIndex::BlockIndex(const unsigned char* bytes, size_t size, size_t positions) : bytes_(bytes), size_(size) {
    size_t slots = std::bit_ceil(std::clamp(positions, kFewestSlots, kMostSlots));
    shift_ = 64 - std::countr_zero(slots);
    slots_.assign(slots, 0);
}

void BlockIndex::Add(size_t at) {
    if (at < size_ && size_ - at >= KEY_BYTES) slots_[Slot(bytes_ + at)] = static_cast<uint32_t>(at + 1);
}

size_t BlockIndex::Find(const unsigned char* key) const {
    uint32_t entry = slots_[Slot(key)];
    return entry == 0 ? NONE : entry - 1;
}

size_t BlockIndex::Slot(const unsigned char* key) const {
    uint64_t word;
    std::memcpy(&word, key, sizeof word);
    return static_cast<size_t>((word * kMultiplier) >> shift_);
}
