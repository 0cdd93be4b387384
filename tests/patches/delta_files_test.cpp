// The exported BPS and UPS functions on files: what they write, what they
// say, and that a refusal leaves every file as it was.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "patches/bps_apply.h"
#include "patches/delta_patch_builder.h"
#include "trelvane.h"

namespace {

Bytes Text(const std::string& text) { return Bytes(text.begin(), text.end()); }

std::string Hex(uint32_t crc) {
    char text[9];
    std::snprintf(text, sizeof text, "%08X", crc);
    return text;
}

const Bytes kOriginal = Text("The lighthouse keeper waits on the beach.");
const Bytes kModified = Text("Le gardien du phare attend sur la plage. The lighthouse keeper");

class DeltaFilesTest : public ::testing::Test {
protected:
    std::string Path(const char* name) const { return dir / name; }
    TempDir dir;
};

TEST_F(DeltaFilesTest, CreatedPatchTurnsTheOriginalIntoTheModifiedFile) {
    WriteFile(Path("old.smc"), kOriginal);
    WriteFile(Path("new.smc"), kModified);
    ASSERT_EQ(Trelvane_CreateBPS(Path("fix.bps").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str()), 1);
    WriteFile(Path("game.smc"), kOriginal);
    ASSERT_EQ(Trelvane_ApplyBPS(Path("fix.bps").c_str(), Path("game.smc").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("game.smc")), kModified);
    // Applied again, the patch finds the wrong file and leaves it alone.
    EXPECT_EQ(Trelvane_ApplyBPS(Path("fix.bps").c_str(), Path("game.smc").c_str()), 0);
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLERR_DELTA_WRONG_ROM);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Wrong ROM: " + Path("game.smc") + " has CRC-32 " +
                                                        Hex(CrcOf(kModified)) + ", the patch expects " +
                                                        Hex(CrcOf(kOriginal)) + ".");
    EXPECT_EQ(ReadFile(Path("game.smc")), kModified);
}

TEST_F(DeltaFilesTest, CreateOverAnInputStillDescribesIt) {
    WriteFile(Path("old.smc"), kOriginal);
    WriteFile(Path("new.smc"), kModified);
    ASSERT_EQ(Trelvane_CreateBPS(Path("new.smc").c_str(), Path("old.smc").c_str(), Path("new.smc").c_str()), 1);
    Bytes made, patch = ReadFile(Path("new.smc"));
    ASSERT_TRUE(ApplyBpsPatch(patch.data(), patch.size(), kOriginal.data(), kOriginal.size(), made).ok());
    EXPECT_EQ(made, kModified);
}

TEST_F(DeltaFilesTest, CreateRefusals) {
    WriteFile(Path("old.smc"), kOriginal);
    EXPECT_EQ(Trelvane_CreateBPS(Path("fix.bps").c_str(), Path("old.smc").c_str(), Path("gone.smc").c_str()), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Error opening " + Path("gone.smc") + ".");
    EXPECT_EQ(Trelvane_CreateBPS(Path("no/such/dir.bps").c_str(), Path("old.smc").c_str(), Path("old.smc").c_str()),
              0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Error creating " + Path("no/such/dir.bps") + ".");
    EXPECT_FALSE(FileExists(Path("fix.bps")));
}

// Each refusal names its reason, and the ROM file keeps its bytes.
TEST_F(DeltaFilesTest, ApplyRefusalsLeaveTheRomAlone) {
    const Bytes rom = Text("ABCDEFGH"), target = Text("ABCD");
    const Bytes read4 = Numbers({Action(BPS_SOURCE_READ, 4)});
    const Bytes good = BpsPatch(rom, target, read4);
    Bytes damaged = good;
    damaged[7] ^= 1;
    auto crcBeforeFooterEnd = [](const Bytes& patch) { return Hex(CrcOf(Bytes(patch.begin(), patch.end() - 4))); };
    const std::string patchPath = Path("fix.bps");
    const struct {
        Bytes patch;
        std::string message;
    } cases[] = {
        {Text("IPS!"), patchPath + " does not seem to be a valid BPS file."},
        {damaged, patchPath + " is damaged: its CRC-32 is " + crcBeforeFooterEnd(damaged) + ", its footer says " +
                      crcBeforeFooterEnd(good) + "."},
        {BpsPatch(rom, target, {0x00}), patchPath + " is damaged: the entry at offset 7h is cut short."},
        {BpsPatch(rom, target, Join({{0x00}, Bytes(11, 0x00)})),
         patchPath + " is damaged: the number at offset 7h is too large."},
        {BpsPatch(rom, target, Numbers({Action(BPS_SOURCE_COPY, 4), 9 << 1})),
         patchPath + " is damaged: the action at offset 7h reaches outside the files."},
        {BpsPatch(rom, target, Numbers({Action(BPS_SOURCE_READ, 4), Action(BPS_SOURCE_READ, 1)})),
         patchPath + " is damaged: bytes follow its last action, from offset 8h."},
        {BpsPatch(rom, target, Numbers({Action(BPS_SOURCE_READ, 2)})),
         patchPath + " is damaged: its actions make 2 of the 4 bytes it promises."},
        {BpsPatch(rom, target, read4, {.target = 0xABCDEF01}),
         patchPath + " is damaged: the patched file has CRC-32 " + Hex(CrcOf(target)) +
             ", the patch expects ABCDEF01."},
        {BpsPatch(rom, target, read4, {.source = 0x0000BEEF}),
         "Wrong ROM: " + Path("game.smc") + " has CRC-32 " + Hex(CrcOf(rom)) + ", the patch expects 0000BEEF."},
        {DeltaPatch("BPS1", Numbers({8, uint64_t{1} << 40, 0}), rom, target),
         patchPath + ": a file of 1099511627776 bytes is too large (at most 1073741824)."},
    };
    for (const auto& [patch, message] : cases) {
        WriteFile(Path("game.smc"), rom);
        WriteFile(patchPath, patch);
        EXPECT_EQ(Trelvane_ApplyBPS(patchPath.c_str(), Path("game.smc").c_str()), 0);
        EXPECT_EQ(std::string(Trelvane_GetLastError()), message);
        EXPECT_EQ(ReadFile(Path("game.smc")), rom);
    }
    EXPECT_EQ(Trelvane_ApplyBPS(Path("none.bps").c_str(), Path("game.smc").c_str()), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Error opening " + Path("none.bps") + ".");
    WriteFile(patchPath, BpsPatch(rom, target, read4));
    EXPECT_EQ(Trelvane_ApplyBPS(patchPath.c_str(), Path("gone.smc").c_str()), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Error opening " + Path("gone.smc") + " for writing.");
    EXPECT_FALSE(FileExists(Path("gone.smc")));
}

TEST_F(DeltaFilesTest, UpsAppliesEitherWay) {
    const Bytes input = Text("ABCDEF"), output = Text("AbCDEFGH");
    const Bytes patch = UpsPatch(input, output, Join({Numbers({1}), {0x20, 0x00}, Numbers({3}), Text("GH"), {0}}));
    WriteFile(Path("fix.ups"), patch);
    WriteFile(Path("game.gb"), input);
    ASSERT_EQ(Trelvane_ApplyUPS(Path("fix.ups").c_str(), Path("game.gb").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("game.gb")), output);
    ASSERT_EQ(Trelvane_ApplyUPS(Path("fix.ups").c_str(), Path("game.gb").c_str()), 1);
    EXPECT_EQ(ReadFile(Path("game.gb")), input);

    const Bytes other = Text("ABCDEX");
    WriteFile(Path("game.gb"), other);
    EXPECT_EQ(Trelvane_ApplyUPS(Path("fix.ups").c_str(), Path("game.gb").c_str()), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), "Wrong ROM: " + Path("game.gb") + " has CRC-32 " +
                                                        Hex(CrcOf(other)) + ", the patch expects " + Hex(CrcOf(input)) +
                                                        " (or " + Hex(CrcOf(output)) + " to undo it).");
    EXPECT_EQ(ReadFile(Path("game.gb")), other);
    WriteFile(Path("bad.ups"), Text("BPS1............"));
    EXPECT_EQ(Trelvane_ApplyUPS(Path("bad.ups").c_str(), Path("game.gb").c_str()), 0);
    EXPECT_EQ(std::string(Trelvane_GetLastError()), Path("bad.ups") + " does not seem to be a valid UPS file.");
}

}  // namespace
