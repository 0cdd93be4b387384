// trelvane apply: patches of every format stacked in order into one result,
// written once; overlapping changes refused naming both patches; copier
// headers added or taken off for IPS patches; nothing written on a refusal.
#include <gtest/gtest.h>

#include "patches/bps_create.h"
#include "patches/delta_patch_builder.h"
#include "support/test_support.h"

namespace {

struct Record {
    uint32_t offset;
    Bytes data;
};

Bytes Ips(const std::vector<Record>& records) {
    Bytes patch = {'P', 'A', 'T', 'C', 'H'};
    for (const Record& record : records) {
        Bytes head = {static_cast<unsigned char>(record.offset >> 16), static_cast<unsigned char>(record.offset >> 8),
                      static_cast<unsigned char>(record.offset), static_cast<unsigned char>(record.data.size() >> 8),
                      static_cast<unsigned char>(record.data.size())};
        patch = Join({patch, head, record.data});
    }
    return Join({patch, {'E', 'O', 'F'}});
}

Bytes Bps(const Bytes& original, const Bytes& modified) {
    Bytes patch;
    BuildBpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
    return patch;
}

Bytes Image(size_t size) {
    Bytes image(size);
    for (size_t i = 0; i < size; ++i) image[i] = static_cast<unsigned char>(i * 7 + 3);
    return image;
}

Bytes With(Bytes bytes, size_t at, const Bytes& data) {
    if (bytes.size() < at + data.size()) bytes.resize(at + data.size());
    std::copy(data.begin(), data.end(), bytes.begin() + static_cast<ptrdiff_t>(at));
    return bytes;
}

class ApplyVerb : public ::testing::Test {
protected:
    void SetUp() override { WriteFile(dir / "game.sfc", image); }
    VerbResult Apply(const std::vector<std::string>& args) {
        std::vector<std::string> all = {"apply"};
        all.insert(all.end(), args.begin(), args.end());
        return RunVerb(dir.path(), all);
    }
    TempDir dir;
    const Bytes image = Image(4096);
};

// Patches of the three formats apply in the order given; each BPS or UPS is
// made for the image as the patches before it leave it.
TEST_F(ApplyVerb, StacksEveryFormatInOrder) {
    const Bytes afterIps = With(image, 0x100, {1, 2, 3});
    const Bytes afterBps = With(afterIps, 0x800, {9, 9, 9, 9});
    const Bytes afterUps = With(afterBps, 0x1000, {0x55});  // grows the image by one byte
    WriteFile(dir / "1 fix.ips", Ips({{0x100, {1, 2, 3}}}));
    WriteFile(dir / "2.bps", Bps(afterIps, afterBps));
    Bytes hunk = {0x55, 0};
    WriteFile(dir / "3.ups", UpsPatch(afterBps, afterUps, Join({Numbers({0x1000}), hunk})));
    EXPECT_EQ(Apply({"game.sfc", "1 fix.ips", "2.bps", "3.ups", "-o", "out \xC3\xA4.sfc"}),
              (VerbResult{0, "out \xC3\xA4.sfc: 1 fix.ips, 2.bps, 3.ups applied\n", ""}));
    EXPECT_EQ(ReadFile(dir / "out \xC3\xA4.sfc"), afterUps);
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
    // Without -o the image itself is replaced.
    EXPECT_EQ(Apply({"game.sfc", "1 fix.ips", "2.bps"}), (VerbResult{0, "game.sfc: 1 fix.ips, 2.bps applied\n", ""}));
    EXPECT_EQ(ReadFile(dir / "game.sfc"), afterBps);
}

// The BPS patch was made for the image before the IPS fix: after the fix its
// source CRC no longer matches, and nothing is written.
TEST_F(ApplyVerb, ABpsThatNoLongerMatchesIsRefused) {
    WriteFile(dir / "fix.ips", Ips({{0x10, {0xEE}}}));
    WriteFile(dir / "hack.bps", Bps(image, With(image, 0x800, {1})));
    const VerbResult run = Apply({"game.sfc", "fix.ips", "hack.bps"});
    char expected[128];
    std::snprintf(expected, sizeof expected, "trelvane apply: Wrong ROM: game.sfc has CRC-32 %08X, the patch expects %08X.\n",
                  CrcOf(With(image, 0x10, {0xEE})), CrcOf(image));
    EXPECT_EQ(run, (VerbResult{1, "", expected}));
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
    // In the other order both fit.
    EXPECT_EQ(Apply({"game.sfc", "hack.bps", "fix.ips", "-o", "out.sfc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "out.sfc"), With(With(image, 0x800, {1}), 0x10, {0xEE}));
}

TEST_F(ApplyVerb, OverlappingChangesAreRefusedUnlessAllowed) {
    WriteFile(dir / "a.ips", Ips({{0x20, {1, 2, 3, 4}}}));
    WriteFile(dir / "b.ips", Ips({{0x10, {5}}, {0x22, {3, 9}}}));  // 0x22 writes what a.ips wrote: no conflict
    WriteFile(dir / "same.ips", Ips({{0x21, {2, 3}}}));
    WriteFile(dir / "out.sfc", std::string("keep"));
    EXPECT_EQ(Apply({"game.sfc", "a.ips", "b.ips", "-o", "out.sfc"}),
              (VerbResult{1, "", "trelvane apply: a.ips and b.ips change the same bytes differently, first at offset 23h.\n"}));
    EXPECT_EQ(ReadText(dir / "out.sfc"), "keep");
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
    EXPECT_EQ(Apply({"game.sfc", "a.ips", "same.ips", "-o", "out.sfc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "out.sfc"), With(image, 0x20, {1, 2, 3, 4}));
    EXPECT_EQ(Apply({"game.sfc", "a.ips", "b.ips", "--allow-overlap", "-o", "out.sfc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "out.sfc"), With(With(image, 0x20, {1, 2, 3, 9}), 0x10, {5}));
    // A BPS patch made on top of the first one conflicts the same way.
    WriteFile(dir / "c.bps", Bps(With(image, 0x20, {1, 2, 3, 4}), With(image, 0x20, {1, 7, 3, 4})));
    EXPECT_EQ(Apply({"game.sfc", "a.ips", "c.bps"}).errors,
              "trelvane apply: a.ips and c.bps change the same bytes differently, first at offset 21h.\n");
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
}

// A patch made for the image with a copier header applies to the bare
// image with --add-header, and one made without to a headered image with
// --remove-header: every offset moves by 512.
TEST_F(ApplyVerb, CopierHeadersAddedOrTakenOffForIps) {
    WriteFile(dir / "headered.ips", Ips({{0x200 + 0x40, {0xAB}}}));
    EXPECT_EQ(Apply({"game.sfc", "headered.ips", "--add-header", "-o", "out.sfc"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "out.sfc"), With(image, 0x40, {0xAB}));
    const Bytes headered = Join({Bytes(512, 0x11), image});
    WriteFile(dir / "game.smc", headered);
    WriteFile(dir / "bare.ips", Ips({{0x40, {0xCD}}}));
    EXPECT_EQ(Apply({"game.smc", "bare.ips", "--remove-header"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "game.smc"), With(headered, 0x240, {0xCD}));
    WriteFile(dir / "tiny.smc", Bytes(100, 1));
    EXPECT_EQ(Apply({"tiny.smc", "bare.ips", "--remove-header"}),
              (VerbResult{1, "", "trelvane apply: tiny.smc has no 512-byte copier header to take off (100 bytes).\n"}));
    EXPECT_EQ(Apply({"game.sfc", "bare.ips", "--remove-header", "--add-header"}).status, 1);
    EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
}

TEST_F(ApplyVerb, RefusalsWriteNothing) {
    WriteFile(dir / "good.ips", Ips({{0x10, {1}}}));
    WriteFile(dir / "text.txt", std::string("hello"));
    WriteFile(dir / "cut.ips", Bytes{'P', 'A', 'T', 'C', 'H', 0, 0, 1, 0, 9, 1});
    const struct {
        std::vector<std::string> args;
        std::string errors;
    } cases[] = {
        {{"game.sfc", "good.ips", "text.txt"}, "trelvane apply: text.txt is not an IPS, BPS or UPS patch.\n"},
        {{"game.sfc", "good.ips", "missing.ips"}, "trelvane apply: Error opening missing.ips.\n"},
        {{"game.sfc", "good.ips", "cut.ips"}, "trelvane apply: EOF not found at block marker in cut.ips.\n"},
        {{"missing.sfc", "good.ips", "-o", "out.sfc"}, "trelvane apply: Error opening missing.sfc.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[2]);
        std::vector<std::string> args = c.args;
        EXPECT_EQ(Apply(args), (VerbResult{1, "", c.errors}));
        EXPECT_EQ(ReadFile(dir / "game.sfc"), image);
        EXPECT_FALSE(FileExists(dir / "out.sfc"));
    }
    EXPECT_EQ(Apply({"game.sfc"}).status, 1);
}

}  // namespace
