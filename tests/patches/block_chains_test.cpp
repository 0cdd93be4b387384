#include "patches/block_chains.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

#include "support/test_support.h"

namespace {

std::vector<size_t> Equal(const BlockChains& chains, const unsigned char* key, size_t most = 1000) {
    std::vector<size_t> found;
    chains.ForEachEqual(key, most, [&](size_t at) { found.push_back(at); });
    return found;
}

TEST(BlockChains, ListsTheAddedBlocksWithEqualBytesLatestFirst) {
    std::mt19937 random(3);
    Bytes bytes = RandomBytes(4096, random);
    const Bytes key(bytes.begin() + 800, bytes.begin() + 808);
    for (size_t at : {40, 1600, 3000}) std::copy(key.begin(), key.end(), bytes.begin() + at);
    std::copy(key.begin(), key.end(), bytes.begin() + 1003);  // not at a block's start
    BlockChains chains(bytes.data(), bytes.size());

    EXPECT_TRUE(Equal(chains, key.data()).empty());
    EXPECT_TRUE(chains.AddUpTo(1601));
    EXPECT_EQ(chains.Added(), 1608u);
    EXPECT_EQ(Equal(chains, key.data()), (std::vector<size_t>{1600, 800, 40}));
    EXPECT_EQ(Equal(chains, key.data(), 2), (std::vector<size_t>{1600, 800}));
    EXPECT_TRUE(chains.AddUpTo(bytes.size()));
    EXPECT_EQ(Equal(chains, key.data()), (std::vector<size_t>{3000, 1600, 800, 40}));
    Bytes other = key;
    other[7] ^= 1;
    EXPECT_TRUE(Equal(chains, other.data()).empty());
}

TEST(BlockChains, BlocksNeedEightBytes) {
    const Bytes bytes(20, 0x11);  // blocks at 0 and 8; 16 has only four bytes after it
    BlockChains chains(bytes.data(), bytes.size());
    EXPECT_TRUE(chains.AddUpTo(bytes.size()));
    EXPECT_EQ(chains.Added(), 16u);
    EXPECT_EQ(Equal(chains, bytes.data()), (std::vector<size_t>{8, 0}));
    BlockChains none(bytes.data(), 7);
    EXPECT_TRUE(none.AddUpTo(7));
    EXPECT_EQ(none.Added(), 0u);
}

TEST(BlockChains, StopsAtTheFirstBlockRepeatedTooOften) {
    std::mt19937 random(5);
    Bytes bytes = RandomBytes(8192, random);
    std::fill_n(bytes.begin() + 4000, 100, 0);  // zero blocks at 4000 .. 4088
    BlockChains chains(bytes.data(), bytes.size());
    EXPECT_FALSE(chains.AddUpTo(bytes.size(), 4));
    EXPECT_EQ(chains.Added(), 4040u);  // the fifth zero block, at 4032, had four before it
    BlockChains unique(bytes.data(), 4000);
    EXPECT_TRUE(unique.AddUpTo(4000, 1));
}

// Probing the eight positions from a place finds every earlier occurrence of
// the 15 bytes there, whatever its alignment.
TEST(BlockChains, AlignedProbesFindEveryRunOfFifteenBytes) {
    std::mt19937 random(9);
    Bytes bytes = RandomBytes(1 << 16, random);
    const Bytes run = RandomBytes(15, random);
    std::set<size_t> planted;
    for (size_t shift = 0; shift < 8; ++shift) {
        size_t at = 1000 + shift * 5000 + shift;
        std::copy(run.begin(), run.end(), bytes.begin() + at);
        planted.insert(at);
    }
    BlockChains chains(bytes.data(), bytes.size());
    ASSERT_TRUE(chains.AddUpTo(bytes.size(), 16));
    std::set<size_t> found;
    for (size_t shift = 0; shift < BlockChains::SPACING; ++shift)
        chains.ForEachEqual(run.data() + shift, 64, [&](size_t block) {
            if (block >= shift && std::equal(run.begin(), run.end(), bytes.begin() + (block - shift)))
                found.insert(block - shift);
        });
    EXPECT_EQ(found, planted);
}

}  // namespace
