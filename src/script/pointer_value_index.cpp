#include "script/pointer_value_index.h"

PointerValueIndex::PointerValueIndex(const unsigned char* image, int64_t size, const std::vector<uint16_t>& pairs) {
    std::vector<bool> wanted(0x10000, false);
    for (uint16_t pair : pairs) {
        wanted[pair] = true;
        offsets_[pair];
    }
    for (int64_t at = 0; at + 1 < size; ++at) {
        const uint16_t pair = static_cast<uint16_t>(image[at] | image[at + 1] << 8);
        if (wanted[pair]) offsets_[pair].push_back(static_cast<int32_t>(at));
    }
}

std::span<const int32_t> PointerValueIndex::OffsetsOf(unsigned char first, unsigned char second) const {
    auto found = offsets_.find(static_cast<uint16_t>(first | second << 8));
    if (found == offsets_.end()) return {};
    return std::span<const int32_t>(found->second);
}
