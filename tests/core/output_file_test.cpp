#include "core/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

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
}

TEST_F(OutputFileTest, AnUnfinishedOutputLeavesTheOldFileAndNoTrace) {
    WriteFile(dir / "a.bin", std::string("old"));
    {
        OutputFile file((dir / "a.bin").c_str());
        ASSERT_TRUE(file.is_open());
        EXPECT_TRUE(file.Write("new", 3));
        EXPECT_EQ(NamesIn(dir.path()).size(), 2u);  // the temporary file beside it
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
