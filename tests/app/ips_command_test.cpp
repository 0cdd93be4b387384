#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

#include "support/test_support.h"

namespace {

const Bytes kOriginal = {0x00, 0x11, 0x22, 0x33};
const Bytes kModified = {0x00, 0xAA, 0x22, 0x33};
const std::string kPatch = std::string("PATCH\0\0\1\0\1\xAA" "EOF", 14);

class IpsCommandTest : public ::testing::Test {
protected:
    RunResult Run(const std::vector<std::string>& args) { return RunTrelvane(dir.path(), args); }
    TempDir dir;
};

TEST_F(IpsCommandTest, CreateNamesThePatchAfterTheRom) {
    WriteFile(dir / "old.smc", kOriginal);
    WriteFile(dir / "new.fr.smc", kModified);
    std::filesystem::create_directories(dir / "v1.2");
    WriteFile(dir / "v1.2/game", kModified);
    // Failures are reported, yet the run ends normally.
    const std::tuple<std::vector<std::string>, std::string, std::string> cases[] = {
        {{"new.fr.smc", "i", "old.smc"}, "", "new.fr.ips"},
        {{"v1.2/game", "I", "old.smc"}, "", "v1.2/game.ips"},
        {{"new.fr.smc", "i", "old.smc", "out.ips", "ignored"}, "", "out.ips"},
        {{"old.smc", "i", "old.smc"}, "Files identical. IPS not created.\n", ""},
        {{"old.smc", "i", "gone.smc"}, "Error opening gone.smc.\n", ""},
    };
    for (const auto& [args, output, patch] : cases) {
        EXPECT_EQ(Run(args), (RunResult{0, output}));
        if (!patch.empty()) {
            EXPECT_EQ(ReadText(dir / patch), kPatch);
        }
    }
    EXPECT_FALSE(FileExists(dir / "old.ips"));
}

TEST_F(IpsCommandTest, ApplyPatchesTheRomFile) {
    WriteFile(dir / "game.smc", kOriginal);
    WriteFile(dir / "FIX.IPS", kPatch);
    EXPECT_EQ(Run({"game.smc", "p", "FIX.IPS"}), (RunResult{0, "FIX.IPS: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / "game.smc"), kModified);  // no header is skipped
}

TEST_F(IpsCommandTest, ApplyRefusals) {
    WriteFile(dir / "game.smc", kOriginal);
    WriteFile(dir / "bad.ips", "PATCH\1\2");
    WriteFile(dir / "junk.ips", "NOTAPATCH");
    WriteFile(dir / "good.ips", kPatch);
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"game.smc", "p", "bad.ips"}, "EOF not found at block marker in bad.ips.\n"},
        {{"game.smc", "p", "junk.ips"}, "junk.ips does not seem to be a valid IPS file.\n"},
        {{"game.smc", "p", "none.ips"}, "Error opening none.ips.\n"},
        {{"gone.smc", "p", "bad.ips"}, "EOF not found at block marker in bad.ips.\n"},
        {{"gone.smc", "p", "good.ips"}, "Error opening gone.smc for writing.\n"},
        // Any other extension is a patch script, which first needs a loadable image.
        {{"game.smc", "p", "fix.txt"}, "game.smc does not seem to be a valid ROM image.\n"},
        {{"game.smc", "p", "dir.ips/fix"}, "game.smc does not seem to be a valid ROM image.\n"},
    };
    for (const auto& [args, output] : cases) {
        EXPECT_EQ(Run(args), (RunResult{255, output})) << args[0] << " " << args[2];
    }
    EXPECT_EQ(ReadFile(dir / "game.smc"), kOriginal);
    EXPECT_FALSE(FileExists(dir / "gone.smc"));
}

}  // namespace
