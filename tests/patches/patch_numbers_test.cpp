#include "patches/patch_numbers.h"

#include <gtest/gtest.h>

#include <tuple>

#include "patches/crc32.h"
#include "support/test_support.h"

namespace {

TEST(PatchNumbers, EncodingsAreUniqueAndExact) {
    const std::tuple<uint64_t, Bytes> cases[] = {
        {0, {0x80}},
        {1, {0x81}},
        {127, {0xFF}},
        {128, {0x00, 0x80}},
        {129, {0x01, 0x80}},
        {16511, {0x7F, 0xFF}},
        {16512, {0x00, 0x00, 0x80}},
        {UINT64_MAX, {0x7F, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x80}},
    };
    for (const auto& [value, encoding] : cases) {
        SCOPED_TRACE(value);
        Bytes written;
        AppendPatchNumber(written, value);
        EXPECT_EQ(written, encoding);
        EXPECT_EQ(PatchNumberSize(value), encoding.size());
        PatchCursor cursor(encoding.data(), 0, encoding.size());
        uint64_t read = 0;
        EXPECT_EQ(cursor.Number(read), PatchRead::Read);
        EXPECT_EQ(read, value);
        EXPECT_TRUE(cursor.AtEnd());
    }
}

TEST(PatchNumbers, RefusesNumbersCutShortOrTooLarge) {
    const std::tuple<Bytes, PatchRead> cases[] = {
        {Bytes{}, PatchRead::Truncated},
        {{0x00}, PatchRead::Truncated},
        {{0x7F, 0x7F, 0x7F}, PatchRead::Truncated},
        // One more than the largest value, and ten bytes that overflow.
        {{0x7F, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x81}, PatchRead::Overflow},
        {{0x7F, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7F, 0x80}, PatchRead::Overflow},
        {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x80}, PatchRead::Overflow},
        {Bytes(200, 0x00), PatchRead::Overflow},
    };
    for (const auto& [bytes, result] : cases) {
        PatchCursor cursor(bytes.data(), 0, bytes.size());
        uint64_t value;
        EXPECT_EQ(cursor.Number(value), result) << bytes.size();
    }
    // The cursor's end bounds it, not the buffer's.
    const Bytes two = {0x00, 0x80};
    PatchCursor cursor(two.data(), 0, 1);
    uint64_t value;
    EXPECT_EQ(cursor.Number(value), PatchRead::Truncated);
}

TEST(PatchNumbers, TakesBytesWithinItsRange) {
    const Bytes bytes = {1, 2, 3, 4, 5};
    PatchCursor cursor(bytes.data(), 1, 4);
    const unsigned char* taken = nullptr;
    EXPECT_FALSE(cursor.Take(4, taken));
    EXPECT_FALSE(cursor.Take(UINT64_MAX, taken));
    ASSERT_TRUE(cursor.Take(2, taken));
    EXPECT_EQ(taken, bytes.data() + 1);
    unsigned char byte = 0;
    EXPECT_TRUE(cursor.Byte(byte));
    EXPECT_EQ(byte, 4);
    EXPECT_FALSE(cursor.Byte(byte));
    EXPECT_EQ(cursor.at(), 4u);
}

TEST(Crc32, MatchesTheCommonCheckValue) {
    const std::string text = "123456789";
    EXPECT_EQ(Crc32(reinterpret_cast<const unsigned char*>(text.data()), text.size()), 0xCBF43926u);
    EXPECT_EQ(Crc32(nullptr, 0), 0u);
}

}  // namespace
