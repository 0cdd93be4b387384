#include "patches/ups_create.h"

#include <gtest/gtest.h>

#include <random>

#include "patches/delta_patch_builder.h"
#include "patches/ups_apply.h"

namespace {

Bytes Build(const Bytes& input, const Bytes& output) {
    Bytes patch;
    BuildUpsPatch(input.data(), input.size(), output.data(), output.size(), patch);
    return patch;
}

TEST(UpsCreate, ExactHunks) {
    const Bytes four = {1, 2, 3, 4};
    EXPECT_EQ(Build(four, four), UpsPatch(four, four, {}));
    // Two changed runs: skip 1, XOR 2^9 and the 0 that covers position 2,
    // then skip 0 to position 3.
    EXPECT_EQ(Build(four, {1, 9, 3, 5}), UpsPatch(four, {1, 9, 3, 5}, Join({Numbers({1}), {2 ^ 9, 0}, Numbers({0}), {4 ^ 5, 0}})));
    // Growing: bytes past the input's end XOR with 0; a 0 byte there needs no hunk.
    EXPECT_EQ(Build({1}, {1, 0, 7}), UpsPatch({1}, {1, 0, 7}, Join({Numbers({2}), {7, 0}})));
    // Shrinking: the input's bytes past the output's end are XORed away.
    EXPECT_EQ(Build({1, 2, 3}, {1}), UpsPatch({1, 2, 3}, {1}, Join({Numbers({1}), {2, 3, 0}})));
}

// Random pairs of every shape apply both ways.
TEST(UpsCreate, RoundTripsBothWays) {
    std::mt19937 random(2026);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        Bytes input(random() % 3000), output;
        for (auto& byte : input) byte = static_cast<unsigned char>(random() % 4);
        output = input;
        output.resize(random() % 2 ? input.size() : random() % 3000, static_cast<unsigned char>(random()));
        for (int edit = random() % 20; edit > 0 && !output.empty(); --edit) output[random() % output.size()] ^= random() % 256;
        const Bytes patch = Build(input, output);
        Bytes made, back;
        ASSERT_TRUE(ApplyUpsPatch(patch.data(), patch.size(), input.data(), input.size(), made).ok());
        EXPECT_TRUE(made == output);
        ASSERT_TRUE(ApplyUpsPatch(patch.data(), patch.size(), output.data(), output.size(), back).ok());
        EXPECT_TRUE(back == input);
    }
}

}  // namespace
