// The i and p commands with BPS and UPS patch files.
#include <gtest/gtest.h>

#include <string>

#include "patches/bps_apply.h"
#include "patches/delta_patch_builder.h"
#include "support/test_support.h"

namespace {

const Bytes kOriginal = {0x00, 0x11, 0x22, 0x33};
const Bytes kModified = {0x00, 0xAA, 0x22, 0x33};
// TargetRead 00 AA, SourceRead 2.
const Bytes kPatch = BpsPatch(kOriginal, kModified, Join({Numbers({Action(BPS_TARGET_READ, 2)}), {0x00, 0xAA},
                                                          Numbers({Action(BPS_SOURCE_READ, 2)})}));

class DeltaCommandTest : public ::testing::Test {
protected:
    RunResult Run(const std::vector<std::string>& args) { return RunTrelvane(dir.path(), args); }
    TempDir dir;
};

TEST_F(DeltaCommandTest, CreateWritesBpsForABpsName) {
    WriteFile(dir / "old.smc", kOriginal);
    WriteFile(dir / "new.smc", kModified);
    EXPECT_EQ(Run({"new.smc", "i", "old.smc", "fix.bps"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadFile(dir / "fix.bps"), kPatch);
    // Another name than the first, as Windows would take FIX.Bps for fix.bps.
    EXPECT_EQ(Run({"new.smc", "i", "old.smc", "OTHER.Bps"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadFile(dir / "OTHER.Bps"), kPatch);
    // Identical files make a patch that changes nothing, unlike IPS.
    EXPECT_EQ(Run({"old.smc", "i", "old.smc", "same.bps"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadFile(dir / "same.bps"), BpsPatch(kOriginal, kOriginal, Numbers({Action(BPS_SOURCE_READ, 4)})));
    // Failures are reported and end the run normally, as for IPS.
    EXPECT_EQ(Run({"gone.smc", "i", "old.smc", "x.bps"}), (RunResult{0, "Error opening gone.smc.\n"}));
    EXPECT_FALSE(FileExists(dir / "x.bps"));
    // A name of another extension, or a derived one, still makes IPS.
    EXPECT_EQ(Run({"new.smc", "i", "old.smc", "fix.bps.ips"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "fix.bps.ips").substr(0, 5), "PATCH");
}

TEST_F(DeltaCommandTest, ApplyByExtension) {
    WriteFile(dir / "game.smc", kOriginal);
    WriteFile(dir / "FIX.BPS", kPatch);
    EXPECT_EQ(Run({"game.smc", "p", "FIX.BPS"}), (RunResult{0, "FIX.BPS: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / "game.smc"), kModified);

    const Bytes ups = UpsPatch(kOriginal, kModified, Join({Numbers({1}), {0x11 ^ 0xAA, 0x00}}));
    WriteFile(dir / "fix.Ups", ups);
    EXPECT_EQ(Run({"game.smc", "p", "fix.Ups"}), (RunResult{0, "fix.Ups: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / "game.smc"), kOriginal);
    EXPECT_EQ(Run({"game.smc", "p", "fix.Ups"}), (RunResult{0, "fix.Ups: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / "game.smc"), kModified);
}

TEST_F(DeltaCommandTest, ApplyRefusals) {
    const Bytes other = {0x01, 0x11, 0x22, 0x33};
    WriteFile(dir / "game.smc", other);
    WriteFile(dir / "fix.bps", kPatch);
    WriteFile(dir / "fix.ups", std::string("UPS1"));
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"game.smc", "p", "fix.bps"}, "Wrong ROM: game.smc has CRC-32 9C7E5608, the patch expects 24C2316D.\n"},
        {{"game.smc", "p", "fix.ups"}, "fix.ups does not seem to be a valid UPS file.\n"},
        {{"game.smc", "p", "none.bps"}, "Error opening none.bps.\n"},
        {{"gone.smc", "p", "fix.bps"}, "Error opening gone.smc for writing.\n"},
        // Not a BPS name: read as a patch script, which first loads the image.
        {{"game.smc", "p", "dir.bps/fix"}, "game.smc does not seem to be a valid ROM image.\n"},
    };
    for (const auto& [args, output] : cases) {
        EXPECT_EQ(Run(args), (RunResult{255, output})) << args[2];
    }
    EXPECT_EQ(ReadFile(dir / "game.smc"), other);
    EXPECT_FALSE(FileExists(dir / "gone.smc"));
}

TEST_F(DeltaCommandTest, MessagesCanBeReworded) {
    WriteFile(dir / "game.smc", Bytes{0x01, 0x11, 0x22, 0x33});
    WriteFile(dir / "fix.bps", kPatch);
    WriteFile(dir / "trelvane.msg",
              std::string("TRELVANE_MESSAGE(TLERR_DELTA_WRONG_ROM, \"Falsches ROM [file]: [data1] statt [data0]\")"));
    EXPECT_EQ(Run({"game.smc", "p", "fix.bps"}), (RunResult{255, "Falsches ROM game.smc: 9C7E5608 statt 24C2316D\n"}));
}

}  // namespace
