#include "patches/suffix_search.h"

#include <algorithm>

#include "patches/byte_compare.h"
#include "patches/suffix_array.h"

namespace {

constexpr size_t kPairSlots = 256 * 257 + 1;

}  // namespace

SuffixSearch::SuffixSearch(const unsigned char* text, size_t size)
    : text_(text), size_(size), order_(SuffixArray(text, size)), pairStart_(kPairSlots, 0) {
    CountPairs();
}

void SuffixSearch::CountPairs() {
    for (size_t at = 0; at < size_; ++at) ++pairStart_[PairSlot(text_ + at, size_ - at) + 1];
    for (size_t slot = 1; slot < kPairSlots; ++slot) pairStart_[slot] += pairStart_[slot - 1];
}

size_t SuffixSearch::PairSlot(const unsigned char* key, size_t keySize) {
    return size_t{key[0]} * 257 + (keySize > 1 ? size_t{key[1]} + 1 : 0);
}

std::array<size_t, 2> SuffixSearch::Neighbours(const unsigned char* key, size_t keySize) const {
    // Every suffix of a rank at or below `before` sorts before key, every
    // one at or above `after` at or behind it: the ranks of the key's pair of
    // first bytes lie between.
    ptrdiff_t before = -1, after = static_cast<ptrdiff_t>(size_);
    size_t commonBefore = 0, commonAfter = 0;
    if (keySize > 1) {
        size_t slot = PairSlot(key, keySize);
        before = static_cast<ptrdiff_t>(pairStart_[slot]) - 1;
        after = static_cast<ptrdiff_t>(pairStart_[slot + 1]);
    }
    while (after - before > 1) {
        ptrdiff_t middle = before + (after - before) / 2;
        size_t common = std::min(commonBefore, commonAfter);
        if (AtOrBefore(key, keySize, static_cast<size_t>(middle), common)) {
            after = middle;
            commonAfter = common;
        } else {
            before = middle;
            commonBefore = common;
        }
    }
    auto position = [this](ptrdiff_t rank) {
        return rank < 0 || rank >= static_cast<ptrdiff_t>(size_) ? NONE
                                                                   : static_cast<size_t>(order_[static_cast<size_t>(rank)]);
    };
    return {position(before), position(after)};
}

bool SuffixSearch::AtOrBefore(const unsigned char* key, size_t keySize, size_t rank, size_t& common) const {
    size_t at = static_cast<size_t>(order_[rank]), suffixSize = size_ - at;
    common = FirstDifference(text_ + at, key, common, std::min(suffixSize, keySize));
    if (common == keySize) return true;
    return common < suffixSize && text_[at + common] > key[common];
}
