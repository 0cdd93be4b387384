// Suffix arrays by induced sorting (SA-IS, Nong, Zhang and Chan): the
// positions are classed as S (the suffix there is smaller than the next one)
// or L; the leftmost S positions of each S run (LMS) are sorted, recursively
// through their names when substrings repeat, and the order of all other
// suffixes is induced from theirs in two passes over the buckets of first
// symbols. Linear time; the text ends with a virtual sentinel, smaller than
// every symbol. The work is done inside the array being built: the sorted
// LMS positions, their names and the reduced text all fit in it, so besides
// the array only the type bits and the buckets are needed.
#include <algorithm>
#include <numeric>

#include "patches/suffix_array.h"

namespace {

// Shorter texts are sorted by comparing their suffixes.
constexpr int32_t kInduceFrom = 16;
constexpr int32_t kEmpty = -1;

template <class Symbol>
class InducedSorter {
public:
    // Sorts the suffixes of a text of size symbols, each from 0 to upper,
    // into order (size entries).
    InducedSorter(const Symbol* text, int32_t size, int32_t upper, int32_t* order)
        : text_(text), size_(size), order_(order), sType_(At(size)), buckets_(At(upper) + 1) {}

    void Sort() {
        if (size_ < kInduceFrom) return SortByComparing();
        Classify();
        PlaceLmsUnsorted();
        Induce();
        const int32_t lmsCount = GatherSortedLms();
        const int32_t names = NameLmsSubstrings(lmsCount);
        int32_t* reduced = order_ + size_ - lmsCount;
        if (names < lmsCount)
            InducedSorter<int32_t>(reduced, lmsCount, names - 1, order_).Sort();
        else
            for (int32_t at = 0; at < lmsCount; ++at) order_[reduced[At(at)]] = at;
        PlaceLmsSorted(lmsCount, reduced);
        Induce();
    }

private:
    void SortByComparing() {
        std::iota(order_, order_ + size_, 0);
        std::sort(order_, order_ + size_, [this](int32_t a, int32_t b) {
            return std::lexicographical_compare(text_ + a, text_ + size_, text_ + b, text_ + size_);
        });
    }

    // The last position is L: its suffix is larger than the sentinel's.
    void Classify() {
        for (int32_t at = size_ - 2; at >= 0; --at)
            sType_[At(at)] = text_[at] < text_[at + 1] || (text_[at] == text_[at + 1] && sType_[At(at + 1)]);
    }

    bool IsLms(int32_t at) const { return at > 0 && sType_[At(at)] && !sType_[At(at - 1)]; }

    // Where each symbol's bucket starts, or ends.
    void FindBuckets(bool ends) {
        std::fill(buckets_.begin(), buckets_.end(), 0);
        for (int32_t at = 0; at < size_; ++at) ++buckets_[At(text_[at])];
        int32_t sum = 0;
        for (int32_t& bucket : buckets_) {
            sum += bucket;
            bucket = ends ? sum : sum - bucket;
        }
    }

    void PlaceLmsUnsorted() {
        std::fill(order_, order_ + size_, kEmpty);
        FindBuckets(true);
        for (int32_t at = 1; at < size_; ++at)
            if (IsLms(at)) order_[--buckets_[At(text_[at])]] = at;
    }

    // From the LMS positions in their buckets: the L suffixes left to right
    // (the sentinel's neighbour, always L, first), then the S suffixes right
    // to left, which also puts the LMS positions in their final order.
    void Induce() {
        FindBuckets(false);
        order_[buckets_[At(text_[size_ - 1])]++] = size_ - 1;
        for (int32_t rank = 0; rank < size_; ++rank) {
            const int32_t at = order_[rank];
            if (at > 0 && !sType_[At(at - 1)]) order_[buckets_[At(text_[at - 1])]++] = at - 1;
        }
        FindBuckets(true);
        for (int32_t rank = size_ - 1; rank >= 0; --rank) {
            const int32_t at = order_[rank];
            if (at > 0 && sType_[At(at - 1)]) order_[--buckets_[At(text_[at - 1])]] = at - 1;
        }
    }

    // Moves the LMS positions, in the order induced, to the front; there are
    // at most half as many as positions, as no two are neighbours.
    int32_t GatherSortedLms() {
        int32_t count = 0;
        for (int32_t rank = 0; rank < size_; ++rank)
            if (IsLms(order_[rank])) order_[count++] = order_[rank];
        return count;
    }

    // Names each LMS substring by its rank among the different ones, and
    // leaves the names in text order at the end of the array: the reduced
    // text. A name is first kept at count + position / 2, which is free and
    // keeps the text order. Returns the number of names.
    int32_t NameLmsSubstrings(int32_t count) {
        std::fill(order_ + count, order_ + size_, kEmpty);
        int32_t names = 0, previous = kEmpty;
        for (int32_t rank = 0; rank < count; ++rank) {
            const int32_t at = order_[rank];
            if (previous == kEmpty || !SameLmsSubstring(at, previous)) {
                ++names;
                previous = at;
            }
            order_[count + at / 2] = names - 1;
        }
        for (int32_t from = size_ - 1, to = size_ - 1; from >= count; --from)
            if (order_[from] != kEmpty) order_[to--] = order_[from];
        return names;
    }

    // Whether the LMS substrings at a and b (each up to and including the
    // next LMS position) are equal; one that reaches the sentinel equals no
    // other.
    bool SameLmsSubstring(int32_t a, int32_t b) const {
        for (int32_t d = 0;; ++d) {
            if (a + d == size_ || b + d == size_) return false;
            if (text_[a + d] != text_[b + d] || sType_[At(a + d)] != sType_[At(b + d)]) return false;
            if (d > 0 && IsLms(a + d)) return true;
        }
    }

    // Turns the sorted ranks of the reduced text into LMS positions and puts
    // them at the ends of their buckets, in order, for the final induction.
    void PlaceLmsSorted(int32_t count, int32_t* reduced) {
        for (int32_t at = 1, k = 0; at < size_; ++at)
            if (IsLms(at)) reduced[k++] = at;
        for (int32_t rank = 0; rank < count; ++rank) order_[rank] = reduced[At(order_[rank])];
        std::fill(order_ + count, order_ + size_, kEmpty);
        FindBuckets(true);
        for (int32_t rank = count - 1; rank >= 0; --rank) {
            const int32_t at = order_[rank];
            order_[rank] = kEmpty;
            order_[--buckets_[At(text_[at])]] = at;
        }
    }

    template <class Number>
    static size_t At(Number at) {
        return static_cast<size_t>(at);
    }

    const Symbol* text_;
    int32_t size_;
    int32_t* order_;
    std::vector<bool> sType_;
    std::vector<int32_t> buckets_;
};

}  // namespace

std::vector<int32_t> InducedSuffixArray(const unsigned char* bytes, size_t size) {
    std::vector<int32_t> order(size);
    InducedSorter<unsigned char>(bytes, static_cast<int32_t>(size), UINT8_MAX, order.data()).Sort();
    return order;
}
