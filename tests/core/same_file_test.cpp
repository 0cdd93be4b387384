#include "core/same_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "support/test_support.h"

namespace {

TEST(SameFileTest, NamesLinksAndSpellingsOfOneFile) {
    TempDir dir;
    WriteFile(dir / "a.nes", std::string("a"));
    WriteFile(dir / "b.nes", std::string("a"));  // equal bytes, another file
    std::filesystem::create_directory(dir / "sub");
    std::filesystem::create_hard_link(dir / "a.nes", dir / "hard.nes");
    std::filesystem::create_symlink("a.nes", dir / "soft.nes");
    const std::tuple<std::string, std::string, bool> cases[] = {
        {dir / "a.nes", dir / "a.nes", true},
        {dir / "a.nes", dir / "sub/../a.nes", true},
        {dir / "a.nes", dir / "./a.nes", true},
        {dir / "a.nes", dir / "hard.nes", true},
        {dir / "soft.nes", dir / "a.nes", true},
        {dir / "a.nes", dir / "b.nes", false},
        {dir / "a.nes", dir / "none.nes", false},
        {dir / "none.nes", dir / "none.nes", false},
    };
    for (const auto& [first, second, same] : cases) EXPECT_EQ(SameFile(first.c_str(), second.c_str()), same) << second;
}

}  // namespace
