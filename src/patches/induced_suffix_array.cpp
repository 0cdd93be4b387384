// Suffix arrays by induced sorting (SA-IS, Nong, Zhang and Chan): the
// positions are classed as S (the suffix there is smaller than the next one)
// or L; the leftmost S positions of each S run (LMS) are sorted, recursively
// through their names when substrings repeat, and the order of all other
// suffixes is induced from theirs in two passes over the buckets of first
// symbols. Linear time; the text ends with a virtual sentinel.
#include <algorithm>
#include <numeric>

#include "patches/suffix_array.h"

namespace {

// Shorter texts are sorted by comparing their suffixes.
constexpr int32_t kInduceFrom = 16;

template <class Symbol>
class InducedSorter {
public:
    // A text of size symbols, each from 0 to upper.
    InducedSorter(const Symbol* text, int32_t size, int32_t upper)
        : text_(text), size_(size), upper_(upper), order_(static_cast<size_t>(size)),
          sType_(static_cast<size_t>(size)), lStart_(static_cast<size_t>(upper) + 1),
          sStart_(static_cast<size_t>(upper) + 1) {}

    std::vector<int32_t> Sort() {
        if (size_ < kInduceFrom) return ComparedOrder();
        ClassifyAndCount();
        std::vector<int32_t> lms = LmsPositions();
        Induce(lms);
        if (!lms.empty()) Induce(SortedLms(lms));
        return std::move(order_);
    }

private:
    std::vector<int32_t> ComparedOrder() const {
        std::vector<int32_t> order(static_cast<size_t>(size_));
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [this](int32_t a, int32_t b) {
            return std::lexicographical_compare(text_ + a, text_ + size_, text_ + b, text_ + size_);
        });
        return order;
    }

    // Types, and where each symbol's bucket starts: its L part at lStart_,
    // its S part at sStart_.
    void ClassifyAndCount() {
        for (int32_t at = size_ - 2; at >= 0; --at)
            sType_[At(at)] = text_[at] == text_[at + 1] ? sType_[At(at + 1)] : text_[at] < text_[at + 1];
        for (int32_t at = 0; at < size_; ++at) {
            if (sType_[At(at)])
                ++lStart_[At(text_[at]) + 1];
            else
                ++sStart_[At(text_[at])];
        }
        for (int32_t symbol = 0; symbol <= upper_; ++symbol) {
            sStart_[At(symbol)] += lStart_[At(symbol)];
            if (symbol < upper_) lStart_[At(symbol) + 1] += sStart_[At(symbol)];
        }
    }

    bool IsLms(int32_t at) const { return at > 0 && sType_[At(at)] && !sType_[At(at - 1)]; }

    std::vector<int32_t> LmsPositions() const {
        std::vector<int32_t> lms;
        for (int32_t at = 1; at < size_; ++at)
            if (IsLms(at)) lms.push_back(at);
        return lms;
    }

    // Places the LMS positions in the given order, then induces the L and the
    // S suffixes from them.
    void Induce(const std::vector<int32_t>& lms) {
        std::fill(order_.begin(), order_.end(), -1);
        std::vector<int32_t> next = sStart_;
        for (int32_t at : lms) order_[At(next[At(text_[at])]++)] = at;
        next = lStart_;
        order_[At(next[At(text_[size_ - 1])]++)] = size_ - 1;
        for (int32_t rank = 0; rank < size_; ++rank) {
            int32_t at = order_[At(rank)];
            if (at >= 1 && !sType_[At(at - 1)]) order_[At(next[At(text_[at - 1])]++)] = at - 1;
        }
        next = lStart_;
        for (int32_t rank = size_ - 1; rank >= 0; --rank) {
            int32_t at = order_[At(rank)];
            if (at >= 1 && sType_[At(at - 1)]) order_[At(--next[At(text_[at - 1]) + 1])] = at - 1;
        }
    }

    // The LMS positions in the order of their suffixes: named by their
    // substrings in the order induced, sorted recursively by those names.
    std::vector<int32_t> SortedLms(const std::vector<int32_t>& lms) const {
        std::vector<int32_t> sorted;
        sorted.reserve(lms.size());
        for (int32_t at : order_)
            if (IsLms(at)) sorted.push_back(at);
        int32_t count = static_cast<int32_t>(lms.size());
        std::vector<int32_t> names(lms.size());
        int32_t name = 0;
        for (int32_t rank = 1; rank < count; ++rank) {
            if (!SameLmsSubstring(lms, sorted[At(rank - 1)], sorted[At(rank)])) ++name;
            names[Ordinal(lms, sorted[At(rank)])] = name;
        }
        std::vector<int32_t> namesOrder = InducedSorter<int32_t>(names.data(), count, name).Sort();
        for (int32_t rank = 0; rank < count; ++rank) sorted[At(rank)] = lms[At(namesOrder[At(rank)])];
        return sorted;
    }

    // Whether the LMS substrings at a and b (each up to and including the
    // next LMS position, or to the end) are equal.
    bool SameLmsSubstring(const std::vector<int32_t>& lms, int32_t a, int32_t b) const {
        int32_t endA = LmsSubstringEnd(lms, a), endB = LmsSubstringEnd(lms, b);
        if (endA - a != endB - b) return false;
        for (; a < endA; ++a, ++b)
            if (text_[a] != text_[b]) return false;
        return a < size_ && b < size_ && text_[a] == text_[b];
    }

    int32_t LmsSubstringEnd(const std::vector<int32_t>& lms, int32_t at) const {
        size_t next = Ordinal(lms, at) + 1;
        return next < lms.size() ? lms[next] : size_;
    }

    static size_t Ordinal(const std::vector<int32_t>& lms, int32_t at) {
        return static_cast<size_t>(std::lower_bound(lms.begin(), lms.end(), at) - lms.begin());
    }

    template <class Number>
    static size_t At(Number at) {
        return static_cast<size_t>(at);
    }

    const Symbol* text_;
    int32_t size_;
    int32_t upper_;
    std::vector<int32_t> order_;
    std::vector<bool> sType_;
    std::vector<int32_t> lStart_;
    std::vector<int32_t> sStart_;
};

}  // namespace

std::vector<int32_t> InducedSuffixArray(const unsigned char* bytes, size_t size) {
    return InducedSorter<unsigned char>(bytes, static_cast<int32_t>(size), UINT8_MAX).Sort();
}
