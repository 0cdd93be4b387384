// Every offset of an image, grouped by the two bytes that stand there, so
// that the places holding a given pointer value are found without scanning.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

class PointerValueIndex {
public:
    PointerValueIndex(const unsigned char* image, int64_t size);

    // The offsets (ascending) where the byte first is followed by second.
    std::span<const int32_t> OffsetsOf(unsigned char first, unsigned char second) const;

private:
    std::vector<int32_t> start_;    // by first | second << 8: where its offsets begin
    std::vector<int32_t> offsets_;
};
