#include "core/path_names.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string OrNone(const char* text) { return text ? text : "(none)"; }

TEST(PathNamesTest, BaseNameSplitsAtEitherSeparatorAndDropsADriveLetterOnlyOnWindows) {
    const struct {
        const char *path, *posix, *windows;
    } cases[] = {
        {"game.smc", "game.smc", "game.smc"},
        {"a\\b", "b", "b"},
        {"a/b", "b", "b"},
        {"roms\\snes/game.smc", "game.smc", "game.smc"},
        {"roms/snes\\game.smc", "game.smc", "game.smc"},
        {"C:\\roms\\game.smc", "game.smc", "game.smc"},
        {"C:game.smc", "C:game.smc", "game.smc"},
        {"d:", "d:", ""},
        {"1:game.smc", "1:game.smc", "1:game.smc"},  // not a drive letter
        {"dir/", "", ""},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_STREQ(BaseName(c.path, PathStyle::Posix), c.posix);
        EXPECT_STREQ(BaseName(c.path, PathStyle::Windows), c.windows);
    }
}

TEST(PathNamesTest, ExtensionDotsAreTheFirstAndTheLastOfTheBaseName) {
    const struct {
        const char *path, *first, *last;
    } cases[] = {
        {"game.fr.smc", ".fr.smc", ".smc"},
        {"game.smc", ".smc", ".smc"},
        {"game", "(none)", "(none)"},
        {"dir.v2/game", "(none)", "(none)"},
        {"dir.v2\\game", "(none)", "(none)"},
        {"dir.v2/game.gb", ".gb", ".gb"},
        {".hidden", ".hidden", ".hidden"},
        {"script.", ".", "."},
        {"", "(none)", "(none)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(OrNone(FirstDotOfBaseName(c.path)), c.first);
        EXPECT_EQ(OrNone(LastDotOfBaseName(c.path)), c.last);
    }
}

TEST(PathNamesTest, HasExtensionLooksBehindTheLastDotOfTheBaseNameInAnyCase) {
    for (const char* yes : {"fix.ips", "FIX.IPS", "a.b/fix.Ips", "game.fr.ips", "dir.v2\\fix.ips"})
        EXPECT_TRUE(HasExtension(yes, "ips")) << yes;
    for (const char* no : {"fix.ipsx", "fix", "dir.ips/fix", "dir.ips\\fix", "fix.ips.txt", "ips", ""})
        EXPECT_FALSE(HasExtension(no, "ips")) << no;
}

TEST(PathNamesTest, FolderOfKeepsTheSeparatorAndTheDriveLetter) {
    EXPECT_EQ(FolderOf("roms/snes\\game.smc", PathStyle::Posix), "roms/snes\\");
    EXPECT_EQ(FolderOf("game.smc", PathStyle::Posix), "");
    EXPECT_EQ(FolderOf("/game.smc", PathStyle::Posix), "/");
    EXPECT_EQ(FolderOf("C:game.smc", PathStyle::Windows), "C:");
    EXPECT_EQ(FolderOf("C:game.smc", PathStyle::Posix), "");
    EXPECT_EQ(FolderOf("dir/", PathStyle::Posix), "dir/");
}

}  // namespace
