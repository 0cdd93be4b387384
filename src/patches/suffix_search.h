// Finds where a key would stand among the suffixes of a text, through the
// text's suffix array: the suffixes on either side of that place are those
// that have the most bytes in common with the key.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

class SuffixSearch {
public:
    static constexpr size_t NONE = SIZE_MAX;

    SuffixSearch(const unsigned char* text, size_t size);

    // The start positions of the suffixes just before and just after key in
    // sorted order (NONE where there is none). One of them shares the most
    // bytes with key of any suffix.
    std::array<size_t, 2> Neighbours(const unsigned char* key, size_t keySize) const;

private:
    // The ranks of the suffixes whose first two bytes sort before the pair
    // of first bytes (a single last byte as the pair (byte, -1)).
    void CountPairs();
    static size_t PairSlot(const unsigned char* key, size_t keySize);
    // Whether key sorts at or before the suffix of the given rank; common
    // holds the bytes already known to be shared and receives their count.
    bool AtOrBefore(const unsigned char* key, size_t keySize, size_t rank, size_t& common) const;

    const unsigned char* text_;
    size_t size_;
    std::vector<int32_t> order_;
    std::vector<uint32_t> pairStart_;
};
