// The text an insertion has written so far, indexed so that the first place
// where a new group of strings already stands is found without rescanning.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

class WrittenText {
public:
    WrittenText();

    void Append(const unsigned char* bytes, int32_t length);

    // Offset of the first place where all length bytes stand, or -1.
    int32_t Find(const unsigned char* bytes, int32_t length) const;

private:
    static constexpr int32_t kKeyLength = 4;

    void Index(int32_t position);

    std::vector<unsigned char> text_;
    std::vector<int32_t> firstByte_;  // first offset of each byte value, -1 for none
    std::vector<int32_t> firstPair_;  // first offset of each two-byte sequence
    std::unordered_map<uint32_t, int32_t> firstTriple_;
    std::unordered_map<uint32_t, std::vector<int32_t>> quadruples_;  // every offset of each four-byte sequence
};
