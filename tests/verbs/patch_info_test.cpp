// trelvane info PATCH: every field of hand-built IPS, BPS and UPS patches,
// the CRC-32s checked against Python's zlib; whether a patch fits an image.
#include <gtest/gtest.h>

#include "patches/bps_apply.h"
#include "patches/delta_patch_builder.h"
#include "support/test_support.h"

namespace {

// The CRC-32 of the file's bytes, less its last `drop`, by Python's zlib.
std::string ZlibCrc(const TempDir& dir, const std::string& name, int drop = 0) {
    const std::string script = "import sys, zlib; b = open(sys.argv[1], 'rb').read(); b = b[:len(b) - int(sys.argv[2])]; "
                               "print('%08X' % zlib.crc32(b), end='')";
    return RunProgram(dir.path(), "/usr/bin/python3", {"-c", script, dir / name, std::to_string(drop)}).output;
}

Bytes Image(size_t size) {
    Bytes image(size);
    for (size_t i = 0; i < size; ++i) image[i] = static_cast<unsigned char>(i * 13 + 1);
    return image;
}

TEST(PatchInfo, BpsFields) {
    TempDir dir;
    const Bytes source = Image(100);
    Bytes target = source;
    target[10] = 0xAA, target[11] = 0xBB;
    target.resize(104, 0);
    target[100] = target[101] = target[102] = target[103] = 7;
    const std::string meta = "<b>\xC3\xA4</b>";
    // SourceRead 10, TargetRead 2, SourceRead 88, TargetRead 1, TargetCopy 3 from 100.
    const Bytes actions = Join({Numbers({Action(BPS_SOURCE_READ, 10), Action(BPS_TARGET_READ, 2)}), {0xAA, 0xBB},
                                Numbers({Action(BPS_SOURCE_READ, 88), Action(BPS_TARGET_READ, 1)}), {7},
                                Numbers({Action(BPS_TARGET_COPY, 3), 100 << 1})});
    WriteFile(dir / "source.bin", source);
    WriteFile(dir / "target.bin", target);
    WriteFile(dir / "hack.bps", DeltaPatch("BPS1", Join({Numbers({100, 104, meta.size()}), Bytes(meta.begin(), meta.end()),
                                                          actions}), source, target));
    const std::string patchCrc = ZlibCrc(dir, "hack.bps", 4), size = std::to_string(ReadFile(dir / "hack.bps").size());
    ASSERT_EQ(patchCrc.size(), 8u);
    EXPECT_EQ(RunVerb(dir.path(), {"info", "hack.bps", "--json"}),
              (VerbResult{0, "{\"file\": \"hack.bps\", \"format\": \"BPS\", \"patchSize\": " + size +
                                 ", \"patchCrc32\": \"" + patchCrc + "\", \"sourceSize\": 100, \"sourceCrc32\": \"" +
                                 ZlibCrc(dir, "source.bin") + "\", \"targetSize\": 104, \"targetCrc32\": \"" +
                                 ZlibCrc(dir, "target.bin") + "\", \"metadata\": \"<b>\xC3\xA4</b>\", \"changedBytes\": 6, " +
                                 "\"ranges\": [[10,12],[100,104]]}\n",
                          ""}));
    EXPECT_EQ(RunVerb(dir.path(), {"info", "hack.bps"}).output,
              "File: hack.bps\nFormat: BPS\nPatch size: " + size + " bytes\nPatch CRC-32: " + patchCrc +
                  "\nSource size: 100 bytes\nSource CRC-32: " + ZlibCrc(dir, "source.bin") +
                  "\nTarget size: 104 bytes\nTarget CRC-32: " + ZlibCrc(dir, "target.bin") +
                  "\nMetadata: <b>\xC3\xA4</b>\nBytes changed: 6 bytes\nRanges: Ah-Bh, 64h-67h\n");
    // Fits its source, not its target.
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "hack.bps", "--image", "source.bin"}).output,
                         "Image: source.bin\nFit: fits\n"));
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "hack.bps", "--image", "target.bin", "--json"}).output,
                         "\"image\": \"target.bin\", \"fits\": false, \"fit\": \"does not fit: its size or CRC-32 "
                         "differs from the patch's source\"}\n"));
}

TEST(PatchInfo, UpsFieldsAndBothDirections) {
    TempDir dir;
    const Bytes input = Image(50);
    Bytes output = input;
    output[3] ^= 0x10, output[4] ^= 0x20, output[40] ^= 1;
    WriteFile(dir / "in.bin", input);
    WriteFile(dir / "out.bin", output);
    WriteFile(dir / "fix.ups", UpsPatch(input, output, Join({Numbers({3}), {0x10, 0x20, 0}, Numbers({34}), {1, 0}})));
    const std::string size = std::to_string(ReadFile(dir / "fix.ups").size());
    EXPECT_EQ(RunVerb(dir.path(), {"info", "fix.ups", "--json"}).output,
              "{\"file\": \"fix.ups\", \"format\": \"UPS\", \"patchSize\": " + size + ", \"patchCrc32\": \"" +
                  ZlibCrc(dir, "fix.ups", 4) + "\", \"sourceSize\": 50, \"sourceCrc32\": \"" + ZlibCrc(dir, "in.bin") +
                  "\", \"targetSize\": 50, \"targetCrc32\": \"" + ZlibCrc(dir, "out.bin") +
                  "\", \"changedBytes\": 3, \"ranges\": [[3,5],[40,41]]}\n");
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "fix.ups", "--image", "out.bin"}).output,
                         "Fit: fits to undo: it is the patch's target\n"));
}

Bytes IpsRecord(uint32_t offset, const Bytes& data) {
    return Join({{static_cast<unsigned char>(offset >> 16), static_cast<unsigned char>(offset >> 8),
                  static_cast<unsigned char>(offset), static_cast<unsigned char>(data.size() >> 8),
                  static_cast<unsigned char>(data.size())},
                 data});
}

TEST(PatchInfo, IpsRecordsRunsAndTruncation) {
    TempDir dir;
    // A literal record, a run of 300 bytes (size 0, count 012Ch, byte), one
    // overlapping the literal, and a cut to 4096 bytes behind EOF.
    const Bytes patch = Join({{'P', 'A', 'T', 'C', 'H'}, IpsRecord(0x20, {1, 2, 3}), {0, 0x10, 0, 0, 0, 0x01, 0x2C, 0xFF},
                              IpsRecord(0x22, {5, 6}), {'E', 'O', 'F', 0, 0x10, 0}});
    WriteFile(dir / "t.ips", patch);
    EXPECT_EQ(RunVerb(dir.path(), {"info", "t.ips"}),
              (VerbResult{0, "File: t.ips\nFormat: IPS\nPatch size: " + std::to_string(patch.size()) +
                                 " bytes\nRecords: 3\nRun-length records: 1\nTruncates to: 4096 bytes\n"
                                 "Bytes changed: 304 bytes\nRanges: 20h-23h, 1000h-112Bh\n",
                          ""}));
}

// The copier-header signs on Super NES images; other images are not judged.
TEST(PatchInfo, IpsCopierHeaderSigns) {
    TempDir dir;
    WriteFile(dir / "bare.sfc", Bytes(2048, 0));
    WriteFile(dir / "headered.smc", Bytes(2048 + 512, 0));
    WriteFile(dir / "bare.gb", Bytes(2048, 0));
    WriteFile(dir / "header-only.ips", Join({{'P', 'A', 'T', 'C', 'H'}, IpsRecord(0x1F0, {1}), {'E', 'O', 'F'}}));
    WriteFile(dir / "past-end.ips", Join({{'P', 'A', 'T', 'C', 'H'}, IpsRecord(2048 + 510, {1, 2}), {'E', 'O', 'F'}}));
    WriteFile(dir / "short-end.ips", Join({{'P', 'A', 'T', 'C', 'H'}, IpsRecord(2046, {1, 2}), {'E', 'O', 'F'}}));
    const std::string add = "Fit: the patch expects a 512-byte copier header the image lacks (apply --add-header)\n";
    const std::string remove = "Fit: the patch expects no copier header, the image has one (apply --remove-header)\n";
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "header-only.ips", "--image", "bare.sfc"}).output, add));
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "past-end.ips", "--image", "bare.sfc"}).output, add));
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "short-end.ips", "--image", "headered.smc"}).output, remove));
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "short-end.ips", "--image", "bare.sfc"}).output, "Fit: fits\n"));
    EXPECT_TRUE(EndsWith(RunVerb(dir.path(), {"info", "header-only.ips", "--image", "bare.gb"}).output, "Fit: fits\n"));
}

TEST(PatchInfo, DamagedPatchesAreReported) {
    TempDir dir;
    Bytes bad = UpsPatch(Image(4), Image(4), {});
    bad[5] ^= 1;
    WriteFile(dir / "bad.ups", bad);
    WriteFile(dir / "cut.ips", Bytes{'P', 'A', 'T', 'C', 'H', 0, 0, 1, 0, 9});
    VerbResult run = RunVerb(dir.path(), {"info", "bad.ups"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(StartsWith(run.errors, "trelvane info: bad.ups is damaged: its CRC-32 is ")) << run.errors;
    EXPECT_EQ(RunVerb(dir.path(), {"info", "cut.ips"}),
              (VerbResult{1, "", "trelvane info: EOF not found at block marker in cut.ips.\n"}));
    EXPECT_EQ(RunVerb(dir.path(), {"info", "cut.ips", "--image", "missing.sfc"}).status, 1);
}

}  // namespace
