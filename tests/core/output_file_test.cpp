#include "core/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "core/platform_files.h"
#include "core/temporary_files.h"
#include "support/test_support.h"

namespace {

namespace fs = std::filesystem;

mode_t ModeOf(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

std::vector<std::string> NamesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

bool Write(const std::string& path, const std::string& text) { return WriteOutputFile(path.c_str(), text.data(), text.size()); }

class OutputFileTest : public ::testing::Test {
protected:
    TempDir dir;
};

TEST_F(OutputFileTest, NewFilesFollowTheUmaskAndReplacedFilesKeepTheirMode) {
    const mode_t saved = umask(022);
    ASSERT_TRUE(Write(dir / "a.bin", "one"));
    umask(077);
    ASSERT_TRUE(Write(dir / "b.bin", "two"));
    umask(saved);
    EXPECT_EQ(ModeOf(dir / "a.bin"), 0644u);
    EXPECT_EQ(ModeOf(dir / "b.bin"), 0600u);

    chmod((dir / "a.bin").c_str(), 0640);
    ASSERT_TRUE(Write(dir / "a.bin", "replaced"));
    EXPECT_EQ(ReadText(dir / "a.bin"), "replaced");
    EXPECT_EQ(ModeOf(dir / "a.bin"), 0640u);

    // A link stays a link; the file it names gets the bytes.
    fs::create_symlink("b.bin", dir / "link.bin");
    ASSERT_TRUE(Write(dir / "link.bin", "through"));
    EXPECT_TRUE(fs::is_symlink(dir / "link.bin"));
    EXPECT_EQ(ReadText(dir / "b.bin"), "through");
    EXPECT_EQ(NamesIn(dir.path()), (std::vector<std::string>{"a.bin", "b.bin", "link.bin"}));

    // Links are followed to the end, a dangling one too: the link stays and
    // the file it names is made, in the folder the link points into.
    fs::create_directory(dir / "sub");
    fs::create_symlink("sub/chain.bin", dir / "first.bin");
    fs::create_symlink("missing.bin", dir / "sub/chain.bin");
    ASSERT_TRUE(Write(dir / "first.bin", "dangling"));
    EXPECT_TRUE(fs::is_symlink(dir / "first.bin"));
    EXPECT_TRUE(fs::is_symlink(dir / "sub/chain.bin"));
    EXPECT_EQ(ReadText(dir / "sub/missing.bin"), "dangling");
    fs::create_symlink(dir / "sub/absolute.bin", dir / "absolute-link.bin");
    ASSERT_TRUE(Write(dir / "absolute-link.bin", "absolute"));
    EXPECT_EQ(ReadText(dir / "sub/absolute.bin"), "absolute");
    EXPECT_TRUE(fs::is_symlink(dir / "absolute-link.bin"));
}

// Temporaries are named ".trelvane-PID-N.tmp"; those of processes that have
// ended are removed by the next output into their folder, nothing else is.
TEST_F(OutputFileTest, LeftoverTemporariesOfEndedProcessesAreRemoved) {
    const pid_t ended = fork();
    if (ended == 0) _exit(0);
    ASSERT_GT(ended, 0);
    waitpid(ended, nullptr, 0);
    const std::string endedName = ".trelvane-" + std::to_string(ended) + "-7.tmp";
    const std::string kept[] = {".trelvane-1-0.tmp",  // a running process (init)
                                ".trelvane-" + std::to_string(getpid()) + "-999.tmp",
                                ".trelvane-" + std::to_string(ended) + "-7.tmp.old",
                                ".trelvane-x-7.tmp", ".trelvane--7.tmp", "trelvane-" + std::to_string(ended) + "-7.tmp"};
    WriteFile(dir / endedName, std::string(100, 'x'));
    for (const std::string& name : kept) WriteFile(dir / name, std::string("keep"));
    EXPECT_EQ(WriterOfTemporary(endedName.c_str()), ended);
    EXPECT_EQ(WriterOfTemporary(".trelvane-12-3.tmp"), 12);
    for (const char* other : {".trelvane-12-3.tm", ".trelvane-12.tmp", ".trelvane-99999999999-1.tmp", "a.tmp"})
        EXPECT_EQ(WriterOfTemporary(other), 0) << other;

    fs::create_directory(dir / "other");
    WriteFile(dir / ("other/" + endedName), std::string("another folder"));
    ASSERT_TRUE(Write(dir / "out.bin", "written"));
    std::vector<std::string> expected(std::begin(kept), std::end(kept));
    expected.insert(expected.end(), {"other", "out.bin"});
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(NamesIn(dir.path()), expected);
    EXPECT_TRUE(FileExists(dir / ("other/" + endedName)));
}

TEST_F(OutputFileTest, AnUnfinishedOutputLeavesTheOldFileAndNoTrace) {
    WriteFile(dir / "a.bin", std::string("old"));
    {
        OutputFile file((dir / "a.bin").c_str());
        ASSERT_TRUE(file.is_open());
        EXPECT_TRUE(file.Write("new", 3));
        // The temporary beside it has no name where the file system allows it.
        const std::vector<std::string> names = NamesIn(dir.path());
        EXPECT_TRUE(names.size() == 1 || (names.size() == 2 && WriterOfTemporary(names[0].c_str()) == getpid()));
    }
    EXPECT_EQ(ReadText(dir / "a.bin"), "old");
    EXPECT_EQ(NamesIn(dir.path()), std::vector<std::string>{"a.bin"});

    OutputFile file((dir / "a.bin").c_str());
    EXPECT_TRUE(file.Write("", 0));
    EXPECT_TRUE(file.Commit());
    EXPECT_FALSE(file.Commit());  // once only
    EXPECT_EQ(ReadText(dir / "a.bin"), "");
}

TEST_F(OutputFileTest, OnlyRegularFilesAreReplaced) {
    fs::create_directory(dir / "folder");
    ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
    WriteFile(dir / "locked", std::string("keep"));
    chmod((dir / "locked").c_str(), 0444);
    std::vector<std::string> refused = {dir / "folder", dir / "pipe", dir / "none/a.bin", "/dev/null"};
    if (geteuid() != 0) refused.push_back(dir / "locked");  // root may write anything
    for (const std::string& path : refused) {
        EXPECT_FALSE(OutputFile(path.c_str()).is_open()) << path;
        EXPECT_FALSE(Write(path, "x")) << path;
    }
    EXPECT_EQ(NamesIn(dir.path()), (std::vector<std::string>{"folder", "locked", "pipe"}));
    EXPECT_TRUE(fs::is_fifo(dir / "pipe"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    EXPECT_TRUE(IsRewritableFile((dir / "locked").c_str()) == (geteuid() == 0));
    for (const std::string& path : {dir / "folder", dir / "pipe", dir / "none"})
        EXPECT_FALSE(IsRewritableFile(path.c_str())) << path;
}

}  // namespace
