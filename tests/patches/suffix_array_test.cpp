#include "patches/suffix_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>

#include "support/test_support.h"

namespace {

// The suffix array by its definition: positions sorted by their suffixes.
std::vector<int32_t> SortedSuffixes(const Bytes& text) {
    std::vector<int32_t> order(text.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&text](int32_t a, int32_t b) {
        return std::lexicographical_compare(text.begin() + a, text.end(), text.begin() + b, text.end());
    });
    return order;
}

void ExpectBothBuildersAgree(const Bytes& text, const std::vector<int32_t>& expected, const std::string& what) {
    EXPECT_EQ(SuffixArray(text.data(), text.size()), expected) << what;
    EXPECT_EQ(InducedSuffixArray(text.data(), text.size()), expected) << what;
}

// Every text of up to 13 symbols over two letters and up to 8 over three:
// the induced sorter recurses on texts like these.
TEST(SuffixArray, EveryShortTextOverSmallAlphabets) {
    for (unsigned letters : {2u, 3u}) {
        size_t longest = letters == 2 ? 13 : 8;
        for (size_t size = 0; size <= longest; ++size) {
            size_t count = 1;
            for (size_t i = 0; i < size; ++i) count *= letters;
            for (size_t code = 0; code < count; ++code) {
                Bytes text(size);
                for (size_t i = 0, rest = code; i < size; ++i, rest /= letters)
                    text[i] = static_cast<unsigned char>('a' + rest % letters);
                ExpectBothBuildersAgree(text, SortedSuffixes(text), std::string(text.begin(), text.end()));
                if (HasFailure()) return;
            }
        }
    }
}

// Texts long enough to be sorted by induction, over few letters so that LMS
// substrings repeat and the sorter recurses, some levels deep.
TEST(SuffixArray, InducedSortingOfShortTextsOverFewLetters) {
    std::mt19937 random(5);
    for (int round = 0; round < 4000; ++round) {
        const unsigned letters = 2 + round % 3;
        Bytes text(16 + random() % 400);
        for (auto& byte : text) byte = static_cast<unsigned char>('a' + random() % letters);
        ExpectBothBuildersAgree(text, SortedSuffixes(text), std::string(text.begin(), text.end()));
        if (HasFailure()) return;
    }
}

Bytes Repeated(const Bytes& pattern, size_t size) {
    Bytes text(size);
    for (size_t i = 0; i < size; ++i) text[i] = pattern[i % pattern.size()];
    return text;
}

// Larger texts of the kinds patches are made of: random bytes, a repeating
// pattern with scattered edits, long runs, and a text followed by an edited
// copy of itself. The induced sorter must give the library's array exactly.
TEST(SuffixArray, InducedSortingGivesTheLibrarysArray) {
    std::mt19937 random(77);
    const Bytes noise = RandomBytes(70000, random);
    const Bytes pattern = RandomBytes(64, random);
    Bytes edited = Repeated(pattern, 90000);
    for (int edit = 0; edit < 40; ++edit) edited[random() % edited.size()] = static_cast<unsigned char>(random());
    Bytes doubled = noise;
    doubled.insert(doubled.end(), noise.begin(), noise.end());
    for (int edit = 0; edit < 50; ++edit) doubled[noise.size() + random() % noise.size()] ^= 0x5A;
    Bytes texts[] = {noise, edited, Bytes(50000, 0), Repeated({1, 2}, 40001), Repeated({0, 0, 1}, 30000), doubled};
    for (const Bytes& text : texts) {
        std::vector<int32_t> induced = InducedSuffixArray(text.data(), text.size());
        ASSERT_EQ(induced, SuffixArray(text.data(), text.size())) << text.size();
        for (size_t rank = 1; rank < std::min<size_t>(induced.size(), 2000); ++rank)
            ASSERT_TRUE(std::lexicographical_compare(text.begin() + induced[rank - 1], text.end(),
                                                     text.begin() + induced[rank], text.end()));
    }
}

}  // namespace
