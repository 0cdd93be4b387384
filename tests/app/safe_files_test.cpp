// What the commands promise about files: a write that fails leaves every
// file as it was, an output never lands on an input, and inputs that are
// not plain files of sensible size are refused at once.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "script/game_image.h"
#include "support/test_support.h"

namespace {

namespace fs = std::filesystem;

using Snapshot = std::map<std::string, Bytes>;

// Every file in folder with its bytes, so that a run that must change
// nothing can be checked for changed, created and left-over files alike.
Snapshot TakeSnapshot(const fs::path& folder) {
    Snapshot files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = fs::is_regular_file(entry.status()) ? ReadFile(entry.path()) : Bytes();
    return files;
}

struct Case {
    std::vector<std::string> args;
    RunResult expected;
};

// Inputs for one run of every writing command: a 64 KiB image, its original,
// a character table, a script, a bitmap, a patch, and an old file at each
// output's name.
void WriteInputs(const fs::path& folder) {
    const std::string at = folder.string() + "/";
    GameImage image(0x10000);
    image.WriteNes(at + "game.nes");
    WriteFile(at + "orig.nes", Bytes(16 + 0x10000));
    WriteFile(at + "game.tbl", GameTable());
    WriteFile(at + "s.txt", std::string("load \"game.tbl\"\ntextaddress 100h (50)\n[0000]\nHi\n"));
    WriteFile(at + "fix.ips", std::string("PATCH\0\0\x20\0\1\xAA" "EOF", 14));
    ASSERT_EQ(RunTrelvane(folder, {"orig.nes", "b", "0", "sheet.bmp"}).status, 0);
    for (const char* old : {"old.bmp", "old.ips", "old.txt", "dump.txt"}) WriteFile(at + old, std::string("old ") + old);
}

// Each command with an output that cannot be written, and what it prints.
const Case kUnwritable[] = {
    {{"game.nes", "p", "fix.ips"}, {255, "Error opening game.nes for writing.\n"}},
    {{"game.nes", "t", "s.txt"}, {255, "Error opening game.nes for writing.\n"}},
    {{"game.nes", "f", "0", "sheet.bmp"}, {255, "Error opening game.nes for writing.\n"}},
    {{"game.nes", "i", "orig.nes", "old.ips"}, {0, "Error creating old.ips.\n"}},
    {{"game.nes", "b", "0", "old.bmp"}, {255, "Error creating old.bmp.\n"}},
    {{"game.tbl", "c", "old.txt"}, {255, "Error opening old.txt for writing.\n"}},
    {{"game.nes", "d", "game.tbl", "dump.txt", "10h", "300"},
     {255, "Searching for pointer table... not found.\nError creating dump.txt.\n"}},
};

using Runner = RunResult (*)(const fs::path& folder, const std::vector<std::string>& args);

RunResult RunDirectly(const fs::path& folder, const std::vector<std::string>& args) { return RunTrelvane(folder, args); }

// Runs each case, expecting its output and status, and that no file in the
// folder changed, appeared or vanished.
void ExpectRunsChangeNothing(const fs::path& folder, std::span<const Case> cases, Runner run = RunDirectly) {
    const Snapshot before = TakeSnapshot(folder);
    for (const Case& refused : cases) {
        EXPECT_EQ(run(folder, refused.args), refused.expected) << refused.args[0] << " " << refused.args[1];
        EXPECT_EQ(TakeSnapshot(folder), before) << refused.args[0] << " " << refused.args[1];
    }
}

class SafeFilesTest : public ::testing::Test {
protected:
    TempDir dir;
};

TEST_F(SafeFilesTest, AWriteBeyondTheFileSizeLimitFailsAndChangesNothing) {
    WriteInputs(dir.path());
    ExpectRunsChangeNothing(dir.path(), kUnwritable, [](const fs::path& folder, const std::vector<std::string>& args) {
        std::vector<std::string> shell = {"-c", "ulimit -f 1 && exec \"$0\" \"$@\"", TRELVANE_EXE};
        shell.insert(shell.end(), args.begin(), args.end());
        return RunProgram(folder, "/bin/sh", shell);
    });
}

// A small file system of its own, unmounted with the object.
class SmallDisk {
public:
    explicit SmallDisk(const fs::path& at) : at_(at) {
        fs::create_directory(at);
        mounted_ = RunProgram(at, "/bin/mount", {"-t", "tmpfs", "-o", "size=1m", "tmpfs", at.string()}).status == 0;
    }
    ~SmallDisk() {
        if (mounted_) RunProgram("/", "/bin/umount", {at_.string()});
    }
    bool mounted() const { return mounted_; }

    // Takes up all the room left.
    void Fill() const {
        std::FILE* filler = std::fopen((at_ / "filler").c_str(), "wb");
        ASSERT_NE(filler, nullptr);
        const std::vector<char> block(4096, 'x');
        while (std::fwrite(block.data(), 1, block.size(), filler) == block.size() && std::fflush(filler) == 0) {
        }
        std::fclose(filler);
    }

private:
    fs::path at_;
    bool mounted_ = false;
};

TEST_F(SafeFilesTest, AFullDiskFailsEveryWriteAndChangesNothing) {
    SmallDisk disk(dir.path() / "disk");
    if (!disk.mounted()) GTEST_SKIP() << "no tmpfs can be mounted here (needs root)";
    WriteInputs(dir.path() / "disk");
    disk.Fill();
    ExpectRunsChangeNothing(dir.path() / "disk", kUnwritable);
}

TEST_F(SafeFilesTest, AnOutputThatIsAnInputIsRefusedBeforeAnythingIsRead) {
    WriteInputs(dir.path());
    fs::create_hard_link(dir / "game.nes", dir / "link.nes");
    fs::create_hard_link(dir / "game.tbl", dir / "link.tbl");
    fs::create_symlink("game.nes", dir / "soft.nes");
    WriteFile(dir / "m.ips", ReadFile(dir / "game.nes"));
    const Case cases[] = {
        {{"game.nes", "b", "0", "game.nes"}, {255, "Output game.nes is the same file as input game.nes.\n"}},
        {{"game.nes", "b", "0", "./game.nes"}, {255, "Output ./game.nes is the same file as input game.nes.\n"}},
        {{"game.nes", "b", "0", "link.nes"}, {255, "Output link.nes is the same file as input game.nes.\n"}},
        {{"game.nes", "b", "0", "soft.nes"}, {255, "Output soft.nes is the same file as input game.nes.\n"}},
        {{"game.nes", "i", "orig.nes", "game.nes"}, {255, "Output game.nes is the same file as input game.nes.\n"}},
        {{"game.nes", "i", "orig.nes", "./orig.nes"}, {255, "Output ./orig.nes is the same file as input orig.nes.\n"}},
        // The patch name derived from the changed ROM's is that ROM itself.
        {{"m.ips", "i", "orig.nes"}, {255, "Output m.ips is the same file as input m.ips.\n"}},
        {{"game.tbl", "c", "./game.tbl"}, {255, "Output ./game.tbl is the same file as input game.tbl.\n"}},
        {{"game.nes", "d", "game.tbl", "link.tbl", "0"}, {255, "Output link.tbl is the same file as input game.tbl.\n"}},
        {{"game.nes", "x2", "game.tbl", "link.nes", "0", "2", "1"},
         {255, "Output link.nes is the same file as input game.nes.\n"}},
        {{"game.nes", "f", "0", "./game.nes"}, {255, "Output game.nes is the same file as input ./game.nes.\n"}},
        {{"game.nes", "t", "link.nes"}, {255, "Output game.nes is the same file as input link.nes.\n"}},
        {{"game.nes", "p", "soft.nes"}, {255, "Output game.nes is the same file as input soft.nes.\n"}},
    };
    ExpectRunsChangeNothing(dir.path(), cases);
    // Files that merely share a folder or a name's start are not the same.
    EXPECT_EQ(RunTrelvane(dir.path(), {"game.nes", "b", "0", "game.bmp"}), (RunResult{0, ""}));
}

TEST_F(SafeFilesTest, InputsThatAreNotFilesAreRefusedAtOnce) {
    WriteInputs(dir.path());
    ASSERT_EQ(RunProgram(dir.path(), "/usr/bin/mkfifo", {"pipe.ips", "pipe.nes", "pipe.bmp", "pipe.tbl"}).status, 0);
    fs::create_directory(dir / "folder.nes");
    const Case cases[] = {
        {{"game.nes", "p", "pipe.ips"}, {255, "Error opening pipe.ips.\n"}},
        {{"pipe.nes", "p", "fix.ips"}, {255, "Error opening pipe.nes for writing.\n"}},
        {{"pipe.nes", "i", "orig.nes", "new.ips"}, {0, "Error opening pipe.nes.\n"}},
        {{"game.nes", "i", "pipe.nes", "new.ips"}, {0, "Error opening pipe.nes.\n"}},
        {{"pipe.nes", "b", "0", "new.bmp"}, {255, "Error opening pipe.nes.\n"}},
        {{"folder.nes", "b", "0", "new.bmp"}, {255, "Error opening folder.nes.\n"}},
        {{"game.nes", "f", "0", "pipe.bmp"}, {255, "Error opening pipe.bmp.\n"}},
        {{"pipe.tbl", "c", "new.txt"}, {255, "Error opening pipe.tbl.\n"}},
        {{"game.nes", "l", "pipe.tbl", "Hi"}, {255, "Error opening pipe.tbl.\n"}},
        // An existing output that is not a regular file is never replaced.
        {{"game.nes", "b", "0", "pipe.bmp"}, {255, "Error creating pipe.bmp.\n"}},
        {{"game.nes", "b", "0", "/dev/null"}, {255, "Error creating /dev/null.\n"}},
    };
    ExpectRunsChangeNothing(dir.path(), cases, [](const fs::path& folder, const std::vector<std::string>& args) {
        std::vector<std::string> timed = {"10", TRELVANE_EXE};  // a hang ends as status 124
        timed.insert(timed.end(), args.begin(), args.end());
        return RunProgram(folder, "/usr/bin/timeout", timed);
    });
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(SafeFilesTest, AnImageAboveTheCeilingIsRefusedBeforeItIsRead) {
    WriteInputs(dir.path());
    // In a folder of its own, so that the snapshot does not read it.
    fs::create_directory(dir / "big");
    WriteFile(dir / "big/huge.nes", Bytes());
    fs::resize_file(dir / "big/huge.nes", 3ull << 30);  // sparse: takes no room
    const Case cases[] = {
        {{"big/huge.nes", "b", "0", "new.bmp"}, {255, "big/huge.nes is larger than 64 MiB.\n"}},
        // The file a patch is applied to may be larger, up to 1 GiB.
        {{"big/huge.nes", "p", "fix.ips"}, {255, "big/huge.nes is larger than 1 GiB.\n"}},
        {{"big/huge.nes", "t", "s.txt"}, {255, "big/huge.nes is larger than 64 MiB.\n"}},
    };
    // Each run may take 2 s beyond one that reads nothing (the usage screen):
    // starting the program can take seconds itself, under wine for instance.
    ExpectRunsChangeNothing(dir.path(), cases, [](const fs::path& folder, const std::vector<std::string>& args) {
        auto start = std::chrono::steady_clock::now();
        RunTrelvane(folder, {});
        const auto startUp = std::chrono::steady_clock::now() - start;
        start = std::chrono::steady_clock::now();
        RunResult run = RunTrelvane(folder, args);
        EXPECT_LT(std::chrono::steady_clock::now() - start, startUp + std::chrono::seconds(2)) << args[1];
        return run;
    });
    EXPECT_EQ(fs::file_size(dir / "big/huge.nes"), 3ull << 30);
}

}  // namespace
