#include "patches/ups_apply.h"

#include <gtest/gtest.h>

#include <string>

#include "patches/delta_patch_builder.h"

namespace {

Bytes Text(const std::string& text) { return Bytes(text.begin(), text.end()); }

const Bytes kInput = Text("ABCDEF");
const Bytes kOutput = Text("AbCDEFGH");
// Position 1 XOR 0x20; then from position 6 (beyond the input, read as 0)
// the bytes G and H.
const Bytes kHunks = Join({Numbers({1}), {0x20, 0x00}, Numbers({3}), Text("GH"), {0x00}});

DeltaResult Apply(const Bytes& patch, const Bytes& source, Bytes& target) {
    return ApplyUpsPatch(patch.data(), patch.size(), source.data(), source.size(), target);
}

TEST(UpsApply, AppliesInBothDirections) {
    const Bytes patch = UpsPatch(kInput, kOutput, kHunks);
    Bytes made;
    ASSERT_TRUE(Apply(patch, kInput, made).ok());
    EXPECT_EQ(made, kOutput);
    // Backwards the result is sized from the header; bytes beyond it drop.
    ASSERT_TRUE(Apply(patch, kOutput, made).ok());
    EXPECT_EQ(made, kInput);
    // Positions behind the last hunk keep the input's bytes.
    const Bytes longer = Text("ABCDEFGHIJ"), changed = Text("ABXDEFGHIJ");
    ASSERT_TRUE(Apply(UpsPatch(longer, changed, Join({Numbers({2}), {'C' ^ 'X', 0}})), longer, made).ok());
    EXPECT_EQ(made, changed);
    ASSERT_TRUE(Apply(UpsPatch({}, {}, {}), {}, made).ok());
    EXPECT_TRUE(made.empty());
}

TEST(UpsApply, RefusesDamagedPatchesAndWrongFiles) {
    Bytes wrongCrc = UpsPatch(kInput, kOutput, kHunks);
    wrongCrc[8] ^= 1;
    const struct {
        const char* what;
        Bytes patch;
        Bytes source;
        DeltaFault fault;
        uint64_t at;
    } refusals[] = {
        {"magic", Join({Text("UPS0"), Bytes(12, 0)}), kInput, DeltaFault::NotPatch, 0},
        {"patch CRC", wrongCrc, kInput, DeltaFault::PatchCrc, 0},
        {"size cut short", DeltaPatch("UPS1", {0x86, 0x00}, kInput, kOutput), kInput, DeltaFault::Truncated, 5},
        {"hunk without its end", UpsPatch(kInput, kOutput, Join({Numbers({1}), {0x20}})), kInput,
         DeltaFault::Truncated, 6},
        {"skip cut short", UpsPatch(kInput, kOutput, Join({Numbers({1}), {0x20, 0x00, 0x01}})), kInput,
         DeltaFault::Truncated, 9},
        {"skip overflows", UpsPatch(kInput, kOutput, Join({Numbers({UINT64_MAX}), {0x20, 0x00}})), kInput,
         DeltaFault::Overflow, 6},
        {"input too large", DeltaPatch("UPS1", Numbers({DELTA_LARGEST_FILE + 1, 8}), kInput, kOutput), kInput,
         DeltaFault::TooLarge, 0},
        {"result CRC", UpsPatch(kInput, kOutput, Join({Numbers({1}), {0x21, 0x00}})), kInput,
         DeltaFault::ResultCrc, 0},
        {"result CRC backwards", UpsPatch(kInput, kOutput, Join({Numbers({1}), {0x21, 0x00}})), kOutput,
         DeltaFault::ResultCrc, 0},
    };
    for (const auto& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        Bytes made;
        DeltaResult result = Apply(refusal.patch, refusal.source, made);
        EXPECT_EQ(result.fault, refusal.fault);
        EXPECT_EQ(result.at, refusal.at);
    }
}

TEST(UpsApply, WrongFileNamesBothSides) {
    const Bytes other = Text("ABCDEX");
    for (const Bytes& crcSource : {kInput, kOutput}) {
        // A file of the right size with the wrong content, either side.
        Bytes sameSize = crcSource;
        sameSize.back() ^= 1;
        for (const Bytes& source : {other, sameSize}) {
            Bytes made;
            DeltaResult result = Apply(UpsPatch(kInput, kOutput, kHunks), source, made);
            EXPECT_EQ(result.fault, DeltaFault::WrongSource);
            EXPECT_TRUE(result.twoWay);
            EXPECT_EQ(result.expected, CrcOf(kInput));
            EXPECT_EQ(result.alternative, CrcOf(kOutput));
            EXPECT_EQ(result.actual, CrcOf(source));
        }
    }
    Bytes made;
    DeltaResult result = Apply(UpsPatch(kInput, kOutput, kHunks, {.source = 1}), kInput, made);
    EXPECT_EQ(result.fault, DeltaFault::WrongSource);
    EXPECT_EQ(result.expected, 1u);
}

}  // namespace
