#include "patches/bps_apply.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "patches/delta_patch_builder.h"

namespace {

const Bytes kSource = {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'};

Bytes Text(const std::string& text) { return Bytes(text.begin(), text.end()); }

DeltaResult Apply(const Bytes& patch, const Bytes& source, Bytes& target) {
    return ApplyBpsPatch(patch.data(), patch.size(), source.data(), source.size(), target);
}

// Every action, including copies that go backwards and TargetCopy reading
// the bytes it writes (runs of one and of two bytes).
TEST(BpsApply, EveryAction) {
    const Bytes target = Text("ABCxyGHBCxyGHHHHHH12121");
    const Bytes actions = Join({
        Numbers({Action(BPS_SOURCE_READ, 3)}),
        Numbers({Action(BPS_TARGET_READ, 2)}), Text("xy"),
        Numbers({Action(BPS_SOURCE_COPY, 2), 6 << 1}),      // GH
        Numbers({Action(BPS_SOURCE_COPY, 2), 7 << 1 | 1}),  // BC, back from 8 to 1
        Numbers({Action(BPS_TARGET_COPY, 4), 3 << 1}),      // xyGH
        Numbers({Action(BPS_TARGET_COPY, 5), 5 << 1}),      // H repeated from 12
        Numbers({Action(BPS_TARGET_READ, 2)}), Text("12"),
        Numbers({Action(BPS_TARGET_COPY, 3), 1 << 1}),      // 12 repeated from 18
    });
    Bytes made;
    ASSERT_EQ(Apply(BpsPatch(kSource, target, actions), kSource, made).fault, DeltaFault::None);
    EXPECT_EQ(made, target);
}

TEST(BpsApply, EmptyFilesAndMetadata) {
    Bytes made = {1};
    EXPECT_TRUE(Apply(BpsPatch({}, {}, {}), {}, made).ok());
    EXPECT_TRUE(made.empty());
    const Bytes withMetadata = DeltaPatch(
        "BPS1", Join({Numbers({8, 8, 5}), Text("<x/>!"), Numbers({Action(BPS_SOURCE_READ, 8)})}), kSource, kSource);
    EXPECT_TRUE(Apply(withMetadata, kSource, made).ok());
    EXPECT_EQ(made, kSource);
}

struct Refusal {
    const char* what;
    Bytes patch;
    DeltaResult result;
};

DeltaResult At(DeltaFault fault, uint64_t at) { return DeltaFailure(fault, at); }

// Actions start at offset 7 behind "BPS1" and three one-byte numbers.
TEST(BpsApply, RefusesDamagedPatches) {
    const Bytes target = Text("ABCD");
    const Bytes good = BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 4)}));
    Bytes wrongCrc = good;
    wrongCrc[7] ^= 1;
    const uint64_t tooLarge = DELTA_LARGEST_FILE + 1;
    const Refusal refusals[] = {
        {"magic only", Text("BPS1"), At(DeltaFault::NotPatch, 0)},
        {"other magic", Join({Text("BPS2"), Bytes(good.begin() + 4, good.end())}), At(DeltaFault::NotPatch, 0)},
        {"no room for a footer", Join({Text("BPS1"), Bytes(11, 0)}), At(DeltaFault::NotPatch, 0)},
        {"patch CRC", wrongCrc, DeltaMismatch(DeltaFault::PatchCrc, CrcOf(Bytes(good.begin(), good.end() - 4)),
                                              CrcOf(Bytes(wrongCrc.begin(), wrongCrc.end() - 4)))},
        {"size cut short", DeltaPatch("BPS1", {0x88, 0x00}, kSource, target), At(DeltaFault::Truncated, 5)},
        {"size overflows", DeltaPatch("BPS1", Join({{0x88}, Bytes(11, 0x7F), {0x80}}), kSource, target),
         At(DeltaFault::Overflow, 5)},
        {"target too large", DeltaPatch("BPS1", Numbers({8, tooLarge, 0}), kSource, target),
         DeltaMismatch(DeltaFault::TooLarge, DELTA_LARGEST_FILE, tooLarge)},
        {"metadata past the end", DeltaPatch("BPS1", Numbers({8, 4, 2}), kSource, target),
         At(DeltaFault::Truncated, 7)},
        {"action cut short", BpsPatch(kSource, target, {0x00}), At(DeltaFault::Truncated, 7)},
        {"literal bytes past the end", BpsPatch(kSource, target, Join({Numbers({Action(BPS_TARGET_READ, 4)}), Text("ABC")})),
         At(DeltaFault::Truncated, 8)},
        {"copy offset cut short", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_COPY, 4)})),
         At(DeltaFault::Truncated, 8)},
        {"copy offset overflows", BpsPatch(kSource, target, Join({Numbers({Action(BPS_SOURCE_COPY, 4)}), Bytes(11, 0)})),
         At(DeltaFault::Overflow, 8)},
        {"longer than the target", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 5)})),
         At(DeltaFault::OutOfBounds, 7)},
        {"read past the source", BpsPatch(Bytes(kSource.begin(), kSource.begin() + 3), target,
                                          Numbers({Action(BPS_SOURCE_READ, 4)})),
         At(DeltaFault::OutOfBounds, 7)},
        {"copy before the source", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_COPY, 4), 1 << 1 | 1})),
         At(DeltaFault::OutOfBounds, 7)},
        {"copy past the source", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_COPY, 4), 5 << 1})),
         At(DeltaFault::OutOfBounds, 7)},
        {"copy offset beyond any size", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_COPY, 4), UINT64_MAX - 1})),
         At(DeltaFault::OutOfBounds, 7)},
        {"target copy with nothing written", BpsPatch(kSource, target, Numbers({Action(BPS_TARGET_COPY, 4), 0})),
         At(DeltaFault::OutOfBounds, 7)},
        {"target copy of the byte being written",
         BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 1), Action(BPS_TARGET_COPY, 3), 1 << 1})),
         At(DeltaFault::OutOfBounds, 8)},
        {"bytes behind the last action",
         BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 4), Action(BPS_SOURCE_READ, 1)})),
         At(DeltaFault::Trailing, 8)},
        {"actions end early", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 3)})),
         DeltaMismatch(DeltaFault::Incomplete, 4, 3)},
        {"result CRC", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 4)}), {.target = 0x12345678}),
         DeltaMismatch(DeltaFault::ResultCrc, 0x12345678, CrcOf(target))},
        {"source CRC", BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 4)}), {.source = 0xCAFEF00D}),
         DeltaMismatch(DeltaFault::WrongSource, 0xCAFEF00D, CrcOf(kSource))},
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        Bytes made;
        DeltaResult result = Apply(refusal.patch, kSource, made);
        EXPECT_EQ(result.fault, refusal.result.fault);
        EXPECT_EQ(result.at, refusal.result.at);
        EXPECT_EQ(result.expected, refusal.result.expected);
        EXPECT_EQ(result.actual, refusal.result.actual);
    }
}

// The patch is checked whole before the source is looked at: a damaged
// patch says so even when applied to the wrong file.
TEST(BpsApply, WrongSourceAfterThePatchChecks) {
    const Bytes target = Text("ABCD");
    const Bytes patch = BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 4)}));
    const Bytes other = Text("ABCDEFGX"), shorter = Text("ABCDEFG");
    for (const Bytes& source : {other, shorter}) {
        Bytes made;
        DeltaResult result = Apply(patch, source, made);
        EXPECT_EQ(result.fault, DeltaFault::WrongSource);
        EXPECT_EQ(result.expected, CrcOf(kSource));
        EXPECT_EQ(result.actual, CrcOf(source));
        EXPECT_FALSE(result.twoWay);
    }
    const Bytes damaged = BpsPatch(kSource, target, Numbers({Action(BPS_SOURCE_READ, 5)}));
    Bytes made;
    EXPECT_EQ(Apply(damaged, other, made).fault, DeltaFault::OutOfBounds);
}

}  // namespace
