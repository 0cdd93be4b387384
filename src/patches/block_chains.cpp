#include "patches/block_chains.h"

#include <algorithm>
#include <bit>

namespace {

constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15;
constexpr size_t kFewestSlots = 1 << 10;
// At least two slots a block, so that most chains are empty or short.
constexpr size_t kSlotsPerBlock = 2;
constexpr size_t kMostSlots = size_t{1} << 27;
// Blocks are added in order; the slot of the block this many further on is
// fetched into the cache meanwhile, and the latest entry of the slot of the
// block half as far on, which has arrived by then.
constexpr size_t kFetchAhead = 32;
// Chain links looked at per repeat counted.
constexpr size_t kLinksPerRepeat = 4;

}  // namespace

BlockChains::BlockChains(const unsigned char* bytes, size_t size) : bytes_(bytes), size_(size) {
    size_t blocks = size / SPACING;  // those with KEY_BYTES (= SPACING) bytes from their start
    size_t slots = std::bit_ceil(std::clamp(blocks * kSlotsPerBlock, kFewestSlots, kMostSlots));
    shift_ = 64 - std::countr_zero(slots);
    heads_.assign(slots, 0);
    entries_ = std::make_unique_for_overwrite<Entry[]>(blocks);
}

bool BlockChains::AddUpTo(size_t end, size_t limit) {
    while (added_ < end && HasBlock(added_)) {
        // The fetches stay in the loop: a function made of them alone has no
        // effect the compiler must keep.
        size_t ahead = added_ + kFetchAhead * SPACING, nearer = added_ + kFetchAhead / 2 * SPACING;
        if (HasBlock(ahead)) Prefetch(bytes_ + ahead);
        if (limit > 0 && HasBlock(nearer)) {
            uint32_t link = heads_[Print(bytes_ + nearer).slot];
            if (link != 0) __builtin_prefetch(&entries_[link - 1]);
        }
        size_t repeats = Add(added_, limit * kLinksPerRepeat);
        added_ += SPACING;
        if (limit > 0 && repeats >= limit) return false;
    }
    return true;
}

size_t BlockChains::Add(size_t at, size_t most) {
    Fingerprint print = Print(bytes_ + at);
    size_t equal = 0;
    ForEachEqual(bytes_ + at, most, [&equal](size_t) { ++equal; });
    size_t block = at / SPACING;
    entries_[block] = {heads_[print.slot], print.mark};
    heads_[print.slot] = static_cast<uint32_t>(block + 1);
    return equal;
}

BlockChains::Fingerprint BlockChains::Print(const unsigned char* key) const {
    uint64_t word;
    std::memcpy(&word, key, sizeof word);
    uint64_t hash = word * kMultiplier;
    return {static_cast<size_t>(hash >> shift_), static_cast<uint32_t>(hash >> (shift_ - 32))};
}
