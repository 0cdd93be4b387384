// IPS, BPS and UPS patches are applied to a file by one layer: the same
// checks in the same order, the same messages, the same ceiling.
#include "patches/patch_application.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "patches/bps_apply.h"
#include "patches/delta_patch_builder.h"
#include "trelvane.h"

namespace {

const Bytes kRom = {0x10, 0x20, 0x30, 0x40};
const Bytes kPatched = {0x10, 0x21, 0x30, 0x40};

struct Format {
    const char* name;
    long (*apply)(const char* patchfile, const char* romfile);
    Bytes patch;   // turns kRom into kPatched
    Bytes damaged;
};

std::vector<Format> Formats() {
    const Bytes ips = {'P', 'A', 'T', 'C', 'H', 0, 0, 1, 0, 1, 0x21, 'E', 'O', 'F'};
    const Bytes bps = BpsPatch(kRom, kPatched,
                                 Join({Numbers({Action(BPS_SOURCE_READ, 1), Action(BPS_TARGET_READ, 1)}), {0x21},
                                       Numbers({Action(BPS_SOURCE_READ, 2)})}));
    Bytes bpsActions = bps;
    bpsActions.insert(bpsActions.end() - 12, 0x21);  // not where the patch's CRC-32 says
    const Bytes ups = UpsPatch(kRom, kPatched, Join({Numbers({1}), {0x01, 0x00}}));
    return {
        {"fix.ips", Trelvane_ApplyIPS, ips, Bytes(ips.begin(), ips.end() - 3)},
        {"fix.bps", Trelvane_ApplyBPS, bps, bpsActions},
        {"fix.ups", Trelvane_ApplyUPS, ups, Bytes(ups.begin(), ups.begin() + 4)},
    };
}

class PatchApplicationTest : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return dir / name; }
    std::string ApplyFails(const Format& format, const std::string& patch, const std::string& rom) {
        EXPECT_EQ(format.apply(Path(patch).c_str(), Path(rom).c_str()), 0) << format.name;
        std::string message = Trelvane_GetLastError();
        const std::string folder = dir.path().string() + "/";
        for (size_t at; (at = message.find(folder)) != std::string::npos;) message.erase(at, folder.size());
        return message;
    }
    TempDir dir;
};

TEST_F(PatchApplicationTest, EveryFormatAppliesAndRefusesTheSameWay) {
    const char* damage[] = {"EOF not found at block marker in bad.", "bad.bps is damaged: its CRC-32 is",
                            "bad.ups does not seem to be a valid UPS file."};
    int k = 0;
    for (const Format& format : Formats()) {
        SCOPED_TRACE(format.name);
        const std::string ext = std::string(format.name).substr(3);
        WriteFile(Path(format.name), format.patch);
        WriteFile(Path("bad" + ext), format.damaged);
        WriteFile(Path("game.gb"), kRom);
        // A damaged patch is refused before the ROM file is looked at.
        EXPECT_TRUE(StartsWith(ApplyFails(format, "bad" + ext, "gone.gb"), damage[k++]));
        EXPECT_EQ(ApplyFails(format, "none" + ext, "game.gb"), "Error opening none" + ext + ".");
        EXPECT_EQ(ApplyFails(format, format.name, "gone.gb"), "Error opening gone.gb for writing.");
        std::filesystem::create_directory(Path("folder.gb"));
        EXPECT_EQ(ApplyFails(format, format.name, "folder.gb"), "Error opening folder.gb for writing.");
        WriteFile(Path("huge.gb"), Bytes());
        std::filesystem::resize_file(Path("huge.gb"), PATCH_LARGEST_FILE + 1);  // sparse: takes no room
        EXPECT_EQ(ApplyFails(format, format.name, "huge.gb"), "huge.gb is larger than 1 GiB.");
        EXPECT_EQ(std::filesystem::file_size(Path("huge.gb")), PATCH_LARGEST_FILE + 1);
        EXPECT_EQ(ReadFile(Path("game.gb")), kRom);
        EXPECT_FALSE(FileExists(Path("gone.gb")));
        ASSERT_EQ(format.apply(Path(format.name).c_str(), Path("game.gb").c_str()), 1);
        EXPECT_EQ(ReadFile(Path("game.gb")), kPatched);
    }
}

// A ROM file larger than the image ceiling (64 MiB) is still a file that
// patches apply to.
TEST_F(PatchApplicationTest, AFileAboveTheImageCeilingIsPatched) {
    Bytes rom(TRELVANE_ROM_MAX_SIZE + 4, 0xEE);
    std::copy(kRom.begin(), kRom.end(), rom.begin());
    WriteFile(Path("big.gb"), rom);
    const Format ips = Formats()[0];
    WriteFile(Path(ips.name), ips.patch);
    ASSERT_EQ(Trelvane_ApplyIPS(Path(ips.name).c_str(), Path("big.gb").c_str()), 1);
    rom[1] = 0x21;
    EXPECT_TRUE(ReadFile(Path("big.gb")) == rom);
}

}  // namespace
