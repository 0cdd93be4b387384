// The places of an image where given pairs of bytes stand, found in one pass,
// so that every place holding one of a string's candidate pointer values is
// known without a scan per value.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

class PointerValueIndex {
public:
    // pairs: first | second << 8 of each pair wanted.
    PointerValueIndex(const unsigned char* image, int64_t size, const std::vector<uint16_t>& pairs);

    // The offsets (ascending) where the byte first is followed by second; none
    // for a pair not asked for.
    std::span<const int32_t> OffsetsOf(unsigned char first, unsigned char second) const;

private:
    std::unordered_map<uint16_t, std::vector<int32_t>> offsets_;
};
