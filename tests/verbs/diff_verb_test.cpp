// trelvane diff: IPS, BPS and UPS by the patch's extension, each applying
// back to the modified file; IPS refused where it could not reproduce it.
#include <gtest/gtest.h>

#include <random>

#include "patches/bps_create.h"
#include "patches/delta_patch_builder.h"
#include "support/test_support.h"

namespace {

// Each format's patch, applied by the apply verb, gives the modified file,
// whether it grew or shrank.
TEST(DiffVerb, EveryFormatRebuildsTheModifiedFile) {
    TempDir dir;
    std::mt19937 random(1);
    const Bytes original = RandomBytes(70000, random);
    Bytes grown = original, shrunk(original.begin(), original.begin() + 50000);
    grown.insert(grown.begin() + 3000, 500, 0xFF);
    grown[60000] ^= 0x42;
    shrunk[10] ^= 1;
    WriteFile(dir / "old game.sfc", original);
    for (const auto& [modified, name] : {std::pair{grown, "grown.sfc"}, std::pair{shrunk, "shrunk.sfc"}}) {
        WriteFile(dir / name, modified);
        for (const std::string extension : {"ips", "BPS", "ups"}) {
            SCOPED_TRACE(std::string(name) + " " + extension);
            const std::string patch = "fix \xC3\xA4." + extension;
            EXPECT_EQ(RunVerb(dir.path(), {"diff", "old game.sfc", name, "-o", patch}),
                      (VerbResult{0, patch + ": " + (extension == "BPS" ? "BPS" : extension == "ips" ? "IPS" : "UPS") +
                                         " patch from old game.sfc to " + name + "\n",
                                  ""}));
            ASSERT_EQ(RunVerb(dir.path(), {"apply", "old game.sfc", patch, "-o", "made.sfc"}).status, 0);
            EXPECT_TRUE(ReadFile(dir / "made.sfc") == modified);
        }
    }
}

// The program makes the engine's BPS patch byte for byte, through the block
// chains (a random original) and through the suffix array (one that repeats
// itself). Run against the Windows build, this compares its own suffix sorter
// with libdivsufsort.
TEST(DiffVerb, BpsPatchIsTheEnginesOnEverySystem) {
    TempDir dir;
    std::mt19937 random(2);
    const Bytes noise = RandomBytes(300000, random);
    Bytes repeating(300000);
    for (size_t at = 0; at < repeating.size(); ++at) repeating[at] = noise[at % 1000 * 7 % 993];
    for (const Bytes* original : {&noise, static_cast<const Bytes*>(&repeating)}) {
        Bytes modified = *original;
        modified.insert(modified.begin() + 1234, original->begin() + 200000, original->begin() + 203000);
        for (size_t at = 5000; at < modified.size(); at += 9000) modified[at] ^= 0x21;
        WriteFile(dir / "old.sfc", *original);
        WriteFile(dir / "new.sfc", modified);
        ASSERT_EQ(RunVerb(dir.path(), {"diff", "old.sfc", "new.sfc", "-o", "fix.bps"}).status, 0);
        Bytes expected;
        BuildBpsPatch(original->data(), original->size(), modified.data(), modified.size(), expected);
        EXPECT_TRUE(ReadFile(dir / "fix.bps") == expected);
    }
}

// The UPS patch of a one-byte change, byte for byte: skip 2, XOR 0x5A^0x11,
// the 0 that ends the hunk, and the three CRCs.
TEST(DiffVerb, UpsPatchIsExact) {
    TempDir dir;
    const Bytes original = {1, 2, 0x11, 4}, modified = {1, 2, 0x5A, 4, 9};
    WriteFile(dir / "a.bin", original);
    WriteFile(dir / "b.bin", modified);
    ASSERT_EQ(RunVerb(dir.path(), {"diff", "a.bin", "b.bin", "-o", "p.ups"}).status, 0);
    EXPECT_EQ(ReadFile(dir / "p.ups"), UpsPatch(original, modified, Bytes{0x82, 0x5A ^ 0x11, 0, 0x80, 9, 0}));
}

TEST(DiffVerb, RefusalsWriteNoPatch) {
    TempDir dir;
    WriteFile(dir / "a.bin", Bytes(100, 1));
    WriteFile(dir / "same.bin", Bytes(100, 1));
    Bytes large(0x1000001, 0);
    WriteFile(dir / "large.bin", large);
    const struct {
        std::vector<std::string> args;
        std::string errors;
    } cases[] = {
        {{"diff", "a.bin", "large.bin", "-o", "p.ips"},
         "trelvane diff: large.bin has 16777217 bytes: an IPS patch cannot describe files over 16 MiB (16777216 bytes).\n"},
        {{"diff", "a.bin", "same.bin", "-o", "p.ips"}, "trelvane diff: Files identical. IPS not created.\n"},
        {{"diff", "a.bin", "missing.bin", "-o", "p.bps"}, "trelvane diff: Error opening missing.bin.\n"},
        {{"diff", "a.bin", "same.bin", "-o", "p.patch"},
         "trelvane diff: p.patch: the patch name must end in .ips, .bps or .ups\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[2]);
        EXPECT_EQ(RunVerb(dir.path(), c.args), (VerbResult{1, "", c.errors}));
        EXPECT_FALSE(FileExists(dir / c.args[4]));
    }
    // 16 MiB exactly is still an IPS patch.
    large.pop_back();
    large.back() = 7;
    WriteFile(dir / "limit.bin", large);
    EXPECT_EQ(RunVerb(dir.path(), {"diff", "a.bin", "limit.bin", "-o", "p.ips"}).status, 0);
}

}  // namespace
