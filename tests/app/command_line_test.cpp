#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/command_table.h"
#include "app/sequence_support.h"
#include "support/test_support.h"

namespace {

const char* const kFontIdLine = "where # is the font ID to use (1 if unspecified)\n";

std::string FullUsage(const std::string& date) {
    return "Trelvane v0.70 - " + date + " the Trelvane developers\n"
           "usage: trelvane <rom> <command> <parameters>\n\nvalid command/parameters are:"
           "\n f  <address> <bmpfile> [format]  -  insert tile graphics"
           "\n b  <address> <bmpfile> [format]  -  bmp tile graphics dump"
           "\n c  <fontfile>  -  convert thingy table to trelvane file, <rom> = thingy table"
           "\n l# <fontfile> \"<string>\"  -  locate string"
           "\n d# <fontfile> <dumpfile> <address> [count]  -  dump script"
           "\n x# <fontfile> <dumpfile> <address> <size> <frequency> [count]  -  pointer dump"
           "\n t# <textfile>  -  insert script"
           "\n i  <originalrom> [ipsfile]  -  create ips file"
           "\n p  <patchfile>  -  apply patch file\n\n" +
           kFontIdLine;
}

class CommandLineTest : public ::testing::Test {
protected:
    void SetUp() override { setenv("TZ", "UTC", 1); }
    TempDir dir;
};

TEST_F(CommandLineTest, FullUsageScreen) {
    for (const auto& args : std::vector<std::vector<std::string>>{{}, {"game.smc"}, {"game.smc", "z"}, {"a", ""}})
        EXPECT_EQ(RunTrelvane(dir.path(), args), (RunResult{255, FullUsage("9/20/2000")}));
    // The release date is shown in local time: eight hours west of UTC it
    // is still the evening before.
    setenv("TZ", "WST8", 1);
    EXPECT_EQ(RunTrelvane(dir.path(), {"game.smc"}).output, FullUsage("9/19/2000"));
}

TEST_F(CommandLineTest, ShortUsageScreens) {
    const std::string dump = "d# <fontfile> <dumpfile> <address> [count] ", tiles = "<address> <bmpfile> [format] ";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"g.smc", "D2"}, dump},
        {{"g.smc", "dump", "a.tbl", "out.txt"}, dump},
        {{"g.smc", "x", "a.tbl", "o.txt", "1", "2"}, "x# <fontfile> <dumpfile> <address> <size> <frequency> [count] "},
        {{"g.smc", "L", "a.tbl"}, "l# <fontfile> \"<string>\" "},
        {{"g.smc", "b", "12G", "out.bmp"}, "b " + tiles + "\n'12G' is not a number: write 10976, 0x2AE0, $2AE0 or 2AE0h."},
        {{"g.smc", "b", "2AE0", "out.bmp"}, "b " + tiles + "\n'2AE0' is not a number: write 10976, 0x2AE0, $2AE0 or 2AE0h."},
        {{"g.smc", "x", "a.tbl", "o.txt", "8000h", "2", "12AB"},
         "x# <fontfile> <dumpfile> <address> <size> <frequency> [count] \n"
         "'12AB' is not a number: write 10976, 0x2AE0, $2AE0 or 2AE0h."},
        {{"g.smc", "f", "1FH", "out.bmp", "SNES3"}, "f " + tiles},
        {{"thingy.tbl", "c", "my table.tbl"}, "c <fontfile> "},
        {{"new.smc", "i"}, "i <originalrom> [ipsfile] "},
        {{"new.smc", "p"}, "p <patchfile> "},
        {{"g.smc", "t"}, "t# <textfile> "},
    };
    for (const auto& [args, line] : cases) {
        // A refused number is named on a line of its own, after the font ID line.
        const size_t named = line.find('\n');
        const std::string usage = "usage: trelvane <rom> " + line.substr(0, named) + "\n" +
                                  (line[1] == '#' ? kFontIdLine : "") +
                                  (named == std::string::npos ? "" : line.substr(named + 1) + "\n");
        EXPECT_EQ(RunTrelvane(dir.path(), args), (RunResult{255, usage}));
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

TEST_F(CommandLineTest, MessageFileRewordsTheUsageScreens) {
    std::filesystem::create_directories(dir / "work");
    const std::filesystem::path exe = InstallTrelvane(dir / "bin");
    auto run = [&](std::vector<std::string> args) { return RunTrelvaneAt(exe, dir / "work", args); };
    WriteFile(dir / "bin/trelvane.msg", "TRELVANE_MESSAGE(TLMSG_PARAM_PATCHFILE, \"fix\")");
    EXPECT_EQ(run({"new.smc", "p"}).output, "usage: trelvane <rom> p <fix> \n");
    // One in the current folder comes first.
    WriteFile(dir / "work/trelvane.msg",
              "TRELVANE_MESSAGE(TLMSG_USAGE_USAGE, \"Aufruf\")\n"
              "TRELVANE_MESSAGE(TLMSG_PARAM_PATCHFILE, \"hier\")\n");
    EXPECT_EQ(run({"new.smc", "p"}).output, "Aufruf: trelvane <rom> p <hier> \n");
}

TEST(ArgumentChecks, NumbersFileNamesFormatsAndFontIds) {
    for (const char* good : {"", "0", "1FH", "1fh", "0x10", "$10", "250"}) EXPECT_TRUE(IsNumberArgument(good)) << good;
    // A number followed directly by letters used to read as its leading digits (2AE0 as 2).
    for (const char* bad : {"12G", "1hh", "h1", "-1", " 1", "1 ", "2AE0", "12AB", "1F", "abcdef0123456789", "h"})
        EXPECT_FALSE(IsNumberArgument(bad)) << bad;
    for (auto [text, value] :
         {std::pair{"1FH", 0x1F}, {"", 0}, {"8000h", 0x8000}, {"250", 250}, {"0x10", 16}, {"$2AE0", 0x2AE0}})
        EXPECT_EQ(ParseNumberArgument(text), value) << text;

    EXPECT_TRUE(IsFileNameArgument("Az09[\\]^_`-./&'()+!?#"));
    EXPECT_TRUE(IsFileNameArgument(""));
    for (const char* bad : {"C:game.smc", "my game.smc", "a\tb", "a*b", "a\"b", "a~b", "a@b", "a%b", "\xe9"})
        EXPECT_FALSE(IsFileNameArgument(bad)) << bad;

    for (auto [command, font] :
         {std::pair{"D2", 2}, {"dump", 1}, {"l9", 9}, {"lj", 2}, {"tJ", 2}, {"t1", 1}, {"t0", 1}, {"t", 1}, {"", 1}})
        EXPECT_EQ(FontIdOf(command), font) << command;
}

}  // namespace
