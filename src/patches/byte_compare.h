// Fast comparison of byte sequences, a machine word at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// The index of the first differing byte of two words that differ.
inline size_t FirstDifferingByteOf(uint64_t difference) {
    if constexpr (std::endian::native == std::endian::little)
        return static_cast<size_t>(std::countr_zero(difference)) / 8;
    else
        return static_cast<size_t>(std::countl_zero(difference)) / 8;
}

// The first position in [from, end) where a and b differ, or end.
inline size_t FirstDifference(const unsigned char* a, const unsigned char* b, size_t from, size_t end) {
    size_t at = from;
    for (; at + sizeof(uint64_t) <= end; at += sizeof(uint64_t)) {
        uint64_t x, y;
        std::memcpy(&x, a + at, sizeof x);
        std::memcpy(&y, b + at, sizeof y);
        if (x != y) return at + FirstDifferingByteOf(x ^ y);
    }
    while (at < end && a[at] == b[at]) ++at;
    return at;
}

// How many bytes a and b have in common from their start, at most limit.
inline size_t CommonLength(const unsigned char* a, const unsigned char* b, size_t limit) {
    return FirstDifference(a, b, 0, limit);
}
