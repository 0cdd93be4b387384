// Paths as Windows users type them, run against the Windows build only:
// "\" between folders, drive letters, names with blanks and accented
// letters, the message file beside the executable, outputs replacing files
// that already exist, and outputs that would overwrite an input named
// another way.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/test_support.h"

namespace {

const Bytes kOriginal = {0x00, 0x11, 0x22, 0x33};
const Bytes kModified = {0x00, 0xAA, 0x22, 0x33};
const std::string kPatch = std::string("PATCH\0\0\1\0\1\xAA" "EOF", 14);

// path as Windows sees it under wine, which maps drive Z: to the root folder.
std::string OnDriveZ(const std::filesystem::path& path) {
    std::string name = "Z:" + path.string();
    for (char& c : name)
        if (c == '/') c = '\\';
    return name;
}

class WindowsPathsTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!TestingWindowsBuild()) GTEST_SKIP() << "runs against the Windows build only";
        std::filesystem::create_directories(dir / "roms");
        std::filesystem::create_directories(dir / "patches");
        WriteFile(dir / "roms/old.smc", kOriginal);
        WriteFile(dir / "roms/new.smc", kModified);
    }
    RunResult Run(const std::vector<std::string>& args) { return RunTrelvane(dir.path(), args); }
    TempDir dir;
};

TEST_F(WindowsPathsTest, BackslashesSeparateFolders) {
    EXPECT_EQ(Run({"roms\\new.smc", "i", "roms\\old.smc", "patches\\fix.ips"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "patches/fix.ips"), kPatch);
    EXPECT_EQ(Run({"roms\\old.smc", "p", "patches\\fix.ips"}), (RunResult{0, "patches\\fix.ips: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / "roms/old.smc"), kModified);
}

TEST_F(WindowsPathsTest, DriveLetterPaths) {
    // Without a patch name the patch is named after the changed image, in its folder.
    const std::string changed = OnDriveZ(dir.path() / "roms" / "new.smc");
    EXPECT_EQ(Run({changed, "i", "roms\\old.smc"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "roms/new.ips"), kPatch);
    EXPECT_EQ(Run({"Z:" + std::string("roms\\old.smc"), "i", "roms\\old.smc"}),
              (RunResult{0, "Files identical. IPS not created.\n"}));
    EXPECT_EQ(Run({OnDriveZ(dir.path() / "roms" / "old.smc"), "p", "roms\\new.ips"}),
              (RunResult{0, "roms\\new.ips: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / "roms/old.smc"), kModified);

    // An image loaded, and one saved, through drive-letter paths: a sheet of
    // 256 tiles (2 bits a pixel) carried from one image into another leaves
    // them the same.
    Bytes game(512 + 0x1000), blank(game.size());
    for (size_t i = 512; i < game.size(); ++i) game[i] = static_cast<unsigned char>(i * 7 + 3);
    WriteFile(dir / "roms/game.smc", game);
    WriteFile(dir / "roms/blank.smc", blank);
    EXPECT_EQ(Run({OnDriveZ(dir.path() / "roms" / "game.smc"), "b", "0", "sheet.bmp"}), (RunResult{0, ""}));
    EXPECT_EQ(Run({OnDriveZ(dir.path() / "roms" / "blank.smc"), "f", "0", "sheet.bmp"}),
              (RunResult{0, "sheet.bmp: Graphics updated\n"}));
    EXPECT_EQ(ReadFile(dir / "roms/blank.smc"), game);
}

TEST_F(WindowsPathsTest, BlanksAndAccentedLettersInTheImageName) {
    // Letters of the Windows code page, with and without a Unicode
    // counterpart at the same number.
    for (const std::string name : {"Mon jeu traduit é", "Cœur", "Ärger über Öl"}) {
        WriteFile(dir / ("roms/" + name + ".smc"), kModified);
        EXPECT_EQ(Run({"roms\\" + name + ".smc", "i", "roms\\old.smc"}), (RunResult{0, ""})) << name;
        EXPECT_EQ(ReadText(dir / ("roms/" + name + ".ips")), kPatch) << name;
    }
}

// Outputs go through the same code page as inputs: the commands that write
// a ROM, or a patch beside it, can write into a folder whose name has
// accented letters (other arguments keep to the characters the command line
// allows), and leave nothing else behind there.
TEST_F(WindowsPathsTest, WritingIntoFoldersWithAccentedLetters) {
    const std::string folder = "Jeu été", windows = "Jeu été\\";
    std::filesystem::create_directories(dir / folder);
    WriteFile(dir / (folder + "/old.smc"), kOriginal);
    WriteFile(dir / (folder + "/new.smc"), kModified);
    EXPECT_EQ(Run({windows + "new.smc", "i", "roms\\old.smc"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / (folder + "/new.ips")), kPatch);
    WriteFile(dir / "fix.ips", kPatch);
    EXPECT_EQ(Run({windows + "old.smc", "p", "fix.ips"}), (RunResult{0, "fix.ips: Patch successful\n"}));
    EXPECT_EQ(ReadFile(dir / (folder + "/old.smc")), kModified);
    Bytes game(512 + 0x1000);
    for (size_t i = 512; i < game.size(); ++i) game[i] = static_cast<unsigned char>(i * 5 + 1);
    WriteFile(dir / "roms/game.smc", game);
    WriteFile(dir / (folder + "/tiles.smc"), Bytes(game.size()));
    EXPECT_EQ(Run({"roms\\game.smc", "b", "0", "sheet.bmp"}), (RunResult{0, ""}));
    EXPECT_EQ(Run({windows + "tiles.smc", "f", "0", "sheet.bmp"}), (RunResult{0, "sheet.bmp: Graphics updated\n"}));
    EXPECT_EQ(ReadFile(dir / (folder + "/tiles.smc")), game);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir / folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"new.ips", "new.smc", "old.smc", "tiles.smc"}));
}

TEST_F(WindowsPathsTest, MessageFileBesideTheExecutable) {
    const std::filesystem::path exe = InstallTrelvane(dir / "Trelvane Übersetzung");
    WriteFile(dir / "Trelvane Übersetzung/trelvane.msg", "TRELVANE_MESSAGE(TLMSG_PATCH_SUCCESS, \"[file] angewendet\")");
    EXPECT_EQ(RunTrelvaneAt(exe, dir.path(), {"roms\\old.smc", "p", "fix.ips"}),
              (RunResult{255, "Error opening fix.ips.\n"}));
    WriteFile(dir / "fix.ips", kPatch);
    EXPECT_EQ(RunTrelvaneAt(exe, dir.path(), {"roms\\old.smc", "p", "fix.ips"}), (RunResult{0, "fix.ips angewendet\n"}));
}

TEST_F(WindowsPathsTest, OutputsReplaceExistingFiles) {
    WriteFile(dir / "patches/fix.ips", std::string(100, 'x'));
    EXPECT_EQ(Run({"roms\\new.smc", "i", "roms\\old.smc", "patches\\fix.ips"}), (RunResult{0, ""}));
    EXPECT_EQ(ReadText(dir / "patches/fix.ips"), kPatch);
    // Nothing is left beside it.
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir / "patches"))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"fix.ips"});
}

TEST_F(WindowsPathsTest, OutputOverAnInputSpelledOtherwiseIsRefused) {
    const std::string image = OnDriveZ(dir.path() / "roms" / "new.smc");
    const std::pair<std::string, std::string> cases[] = {
        {"roms\\new.smc", "ROMS\\NEW.SMC"},  // Windows names ignore case
        {"roms\\new.smc", "roms\\..\\roms\\new.smc"},
        {image, "roms/new.smc"},
    };
    for (const auto& [input, output] : cases) {
        EXPECT_EQ(Run({input, "i", "roms\\old.smc", output}),
                  (RunResult{255, "Output " + output + " is the same file as input " + input + ".\n"}));
    }
    EXPECT_EQ(ReadFile(dir / "roms/new.smc"), kModified);
}

}  // namespace
