#include "script/pointer_value_index.h"

namespace {

constexpr size_t kPairs = 0x10000;

uint32_t PairAt(const unsigned char* at) { return at[0] | uint32_t{at[1]} << 8; }

}  // namespace

// A counting sort of the offsets by their pair of bytes.
PointerValueIndex::PointerValueIndex(const unsigned char* image, int64_t size) : start_(kPairs + 1, 0) {
    const int64_t pairs = size > 1 ? size - 1 : 0;
    for (int64_t at = 0; at < pairs; ++at) ++start_[PairAt(image + at) + 1];
    for (size_t pair = 1; pair <= kPairs; ++pair) start_[pair] += start_[pair - 1];
    offsets_.resize(static_cast<size_t>(pairs));
    std::vector<int32_t> next(start_.begin(), start_.end() - 1);
    for (int64_t at = 0; at < pairs; ++at) offsets_[next[PairAt(image + at)]++] = static_cast<int32_t>(at);
}

std::span<const int32_t> PointerValueIndex::OffsetsOf(unsigned char first, unsigned char second) const {
    const uint32_t pair = first | uint32_t{second} << 8;
    return std::span<const int32_t>(offsets_.data() + start_[pair], offsets_.data() + start_[pair + 1]);
}
