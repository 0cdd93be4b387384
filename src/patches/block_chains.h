// An index of the 8-byte blocks that start at every 8th position of a byte
// sequence, chained by hash: it lists every indexed block with given bytes,
// the one added last first. A run of bytes of 15 or more that occurs in the
// sequence always holds an indexed block within its first 8 positions, so
// probing the 8 positions from a key's start finds every such occurrence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

class BlockChains {
public:
    static constexpr size_t KEY_BYTES = 8;
    static constexpr size_t SPACING = 8;

    // An empty index with room for the blocks of bytes (size of them).
    BlockChains(const unsigned char* bytes, size_t size);

    // Adds, in order, the blocks not added yet that start before `end`.
    // Given a limit, it stops at the first block whose bytes that many
    // blocks added before have, and returns false.
    bool AddUpTo(size_t end, size_t limit = 0);
    // Fetches into the cache the chain of the block with key's bytes.
    void Prefetch(const unsigned char* key) const { __builtin_prefetch(&heads_[Print(key).slot]); }

    // Where the next block to add starts.
    size_t Added() const { return added_; }

    // Calls visit(position) for each indexed block whose bytes equal those
    // at key, the latest first, looking at no more than `most` chain links.
    template <class Visit>
    void ForEachEqual(const unsigned char* key, size_t most, Visit&& visit) const {
        Fingerprint print = Print(key);
        for (uint32_t link = heads_[print.slot]; link != 0 && most > 0; --most) {
            const Entry& entry = entries_[link - 1];
            size_t at = size_t{link - 1} * SPACING;
            if (entry.mark == print.mark && std::memcmp(bytes_ + at, key, KEY_BYTES) == 0) visit(at);
            link = entry.next;
        }
    }

private:
    bool HasBlock(size_t at) const { return at < size_ && size_ - at >= KEY_BYTES; }
    // Adds the block at `at` and returns how many blocks with the same bytes
    // its chain held already, looking at no more than `most` links.
    size_t Add(size_t at, size_t most);

    struct Fingerprint {
        size_t slot;
        uint32_t mark;  // further hash bits, which spare most byte comparisons
    };
    Fingerprint Print(const unsigned char* key) const;

    const unsigned char* bytes_;
    size_t size_;
    int shift_;
    // Blocks are numbered from 1 in the chains, 0 ending one. Each block's
    // entry is written when it is added, before any read.
    struct Entry {
        uint32_t next;  // the block before it in its chain
        uint32_t mark;  // its fingerprint's mark
    };
    std::vector<uint32_t> heads_;       // per slot: its latest block
    std::unique_ptr<Entry[]> entries_;  // per block
    size_t added_ = 0;                  // where the next block to add starts
};
