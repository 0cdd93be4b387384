#include "core/source_index.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15;
constexpr size_t kFewestSlots = 1 << 10;
constexpr size_t kMostSlots = 1 << 24;

}  // namespace

SourceIndex::SourceIndex(const unsigned char* source, size_t size) {
    if (size < KEY_BYTES) return;
    size_t blocks = (size - KEY_BYTES) / STRIDE + 1;
    size_t slots = std::bit_ceil(std::max(kFewestSlots, std::min(kMostSlots, blocks)));
    shift_ = 64 - std::countr_zero(slots);
    slots_.assign(slots, 0);
    for (size_t at = 0; at + KEY_BYTES <= size; at += STRIDE) slots_[Slot(source + at)] = static_cast<uint32_t>(at + 1);
}

size_t SourceIndex::Find(const unsigned char* bytes) const {
    if (slots_.empty()) return NONE;
    uint32_t entry = slots_[Slot(bytes)];
    return entry == 0 ? NONE : entry - 1;
}

size_t SourceIndex::Slot(const unsigned char* bytes) const {
    uint64_t key;
    std::memcpy(&key, bytes, sizeof key);
    return static_cast<size_t>((key * kMultiplier) >> shift_);
}
