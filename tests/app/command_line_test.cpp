#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/command_table.h"
#include "app/sequence_support.h"
#include "support/test_support.h"

namespace {

const std::string kCommandLines =
    "\n f  <address> <bmpfile> [format]  -  insert tile graphics"
    "\n b  <address> <bmpfile> [format]  -  bmp tile graphics dump"
    "\n c  <fontfile>  -  convert thingy table to trelvane file, <rom> = thingy table"
    "\n l# <fontfile> \"<string>\"  -  locate string"
    "\n d# <fontfile> <dumpfile> <address> [count]  -  dump script"
    "\n x# <fontfile> <dumpfile> <address> <size> <frequency> [count]  -  pointer dump"
    "\n t# <textfile>  -  insert script"
    "\n i  <originalrom> [ipsfile]  -  create ips file"
    "\n p  <patchfile>  -  apply patch file";

std::string FullUsage(const std::string& date) {
    return "Trelvane v0.70 - " + date + " the Trelvane developers\n"
           "usage: trelvane <rom> <command> <parameters>\n\nvalid command/parameters are:" +
           kCommandLines + "\n\nwhere # is the font ID to use (1 if unspecified)\n";
}

const std::string kFontIdLine = "where # is the font ID to use (1 if unspecified)\n";

class CommandLineTest : public ::testing::Test {
protected:
    void SetUp() override { setenv("TZ", "UTC", 1); }
    TempDir dir;
};

TEST_F(CommandLineTest, FullUsageScreen) {
    for (const auto& args : std::vector<std::vector<std::string>>{{}, {"game.smc"}, {"game.smc", "z"}, {"a", ""}}) {
        RunResult run = RunTrelvane(dir.path(), args);
        EXPECT_EQ(run.status, 255);
        EXPECT_EQ(run.output, FullUsage("9/20/2000"));
    }
    // The release date is shown in local time: eight hours west of UTC it
    // is still the evening before.
    setenv("TZ", "WST8", 1);
    EXPECT_EQ(RunTrelvane(dir.path(), {"game.smc"}).output, FullUsage("9/19/2000"));
}

TEST_F(CommandLineTest, ShortUsageScreens) {
    struct Case {
        std::vector<std::string> args;
        std::string output;
    } cases[] = {
        {{"g.smc", "D2"}, "usage: trelvane <rom> d# <fontfile> <dumpfile> <address> [count] \n" + kFontIdLine},
        {{"g.smc", "dump", "a.tbl", "out.txt"},
         "usage: trelvane <rom> d# <fontfile> <dumpfile> <address> [count] \n" + kFontIdLine},
        {{"g.smc", "x", "a.tbl", "o.txt", "100", "2"},
         "usage: trelvane <rom> x# <fontfile> <dumpfile> <address> <size> <frequency> [count] \n" + kFontIdLine},
        {{"g.smc", "L", "a.tbl"}, "usage: trelvane <rom> l# <fontfile> \"<string>\" \n" + kFontIdLine},
        {{"g.smc", "b", "12G", "out.bmp"}, "usage: trelvane <rom> b <address> <bmpfile> [format] \n"},
        {{"g.smc", "f", "1FH", "out.bmp", "SNES3"}, "usage: trelvane <rom> f <address> <bmpfile> [format] \n"},
        {{"g.smc", "f", "1FH", "C:out.bmp"}, "usage: trelvane <rom> f <address> <bmpfile> [format] \n"},
        {{"thingy.tbl", "c", "my table.tbl"}, "usage: trelvane <rom> c <fontfile> \n"},
        {{"new.smc", "i"}, "usage: trelvane <rom> i <originalrom> [ipsfile] \n"},
        {{"new.smc", "i", "old.smc", "out ips"}, "usage: trelvane <rom> i <originalrom> [ipsfile] \n"},
        {{"new.smc", "p"}, "usage: trelvane <rom> p <patchfile> \n"},
        {{"g.smc", "t"}, "usage: trelvane <rom> t# <textfile> \n" + kFontIdLine},
    };
    for (const Case& c : cases) {
        RunResult run = RunTrelvane(dir.path(), c.args);
        EXPECT_EQ(run.status, 255) << c.args[1];
        EXPECT_EQ(run.output, c.output) << c.args[1];
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

TEST_F(CommandLineTest, MessageFileRewordsTheUsageScreens) {
    WriteFile(dir / "trelvane.msg",
              "TRELVANE_MESSAGE(TLMSG_USAGE_USAGE, \"Aufruf\")\n"
              "TRELVANE_MESSAGE(TLMSG_PARAM_ORIGINALFILE, \"original\")\n"
              "TRELVANE_MESSAGE(-608, \"Zeiger\")\n");
    RunResult shortUsage = RunTrelvane(dir.path(), {"new.smc", "i"});
    EXPECT_EQ(shortUsage.output, "Aufruf: trelvane <rom> i <original> [ipsfile] \n");
    RunResult full = RunTrelvane(dir.path(), {"new.smc"});
    EXPECT_NE(full.output.find("\nAufruf: trelvane <rom>"), std::string::npos);
    EXPECT_NE(full.output.find("\n x# <fontfile> <dumpfile> <address> <size> <frequency> [count]  -  Zeiger\n"),
              std::string::npos);
}

TEST_F(CommandLineTest, MessageFileBesideTheExecutable) {
    std::filesystem::create_directories(dir / "bin");
    std::filesystem::create_directories(dir / "work");
    std::filesystem::copy_file(TRELVANE_EXE, dir / "bin/trelvane");
    WriteFile(dir / "bin/trelvane.msg", "TRELVANE_MESSAGE(TLMSG_PARAM_PATCHFILE, \"fix\")");
    RunResult run = RunProgram(dir / "work", dir / "bin/trelvane", {"new.smc", "p"});
    EXPECT_EQ(run.output, "usage: trelvane <rom> p <fix> \n");
    // One in the current folder comes first.
    WriteFile(dir / "work/trelvane.msg", "TRELVANE_MESSAGE(TLMSG_PARAM_PATCHFILE, \"here\")");
    run = RunProgram(dir / "work", dir / "bin/trelvane", {"new.smc", "p"});
    EXPECT_EQ(run.output, "usage: trelvane <rom> p <here> \n");
}

TEST(ArgumentChecks, Numbers) {
    for (const char* good : {"", "0", "1FH", "1fh", "abcdef0123456789", "h", "10"}) EXPECT_TRUE(IsNumberArgument(good)) << good;
    for (const char* bad : {"12G", "1hh", "h1", "-1", "0x10", " 1", "1 "}) EXPECT_FALSE(IsNumberArgument(bad)) << bad;
    EXPECT_EQ(ParseNumberArgument("1FH"), 0x1F);
    EXPECT_EQ(ParseNumberArgument("1F"), 1);
    EXPECT_EQ(ParseNumberArgument(""), 0);
    EXPECT_EQ(ParseNumberArgument("h"), 0);
    EXPECT_EQ(ParseNumberArgument("8000h"), 0x8000);
    EXPECT_EQ(ParseNumberArgument("250"), 250);
}

TEST(ArgumentChecks, FileNamesAndFormats) {
    EXPECT_TRUE(IsFileNameArgument("Az09[\\]^_`-./&'()+!?#"));
    EXPECT_TRUE(IsFileNameArgument(""));
    for (const char* bad : {"C:game.smc", "my game.smc", "a\tb", "a*b", "a\"b", "a~b", "a@b", "a%b", "\xe9"})
        EXPECT_FALSE(IsFileNameArgument(bad)) << bad;
    for (const char* good : {"SNES1", "snes2", "Snes", "NES1", "nes", "GB1", "gb"}) EXPECT_TRUE(IsTileFormatName(good));
    for (const char* bad : {"SNES3", "", "GBC", "NES "}) EXPECT_FALSE(IsTileFormatName(bad));
}

TEST(ArgumentChecks, ParametersByCount) {
    const CommandEntry* dump = FindCommand('d');
    ASSERT_NE(dump, nullptr);
    EXPECT_STREQ(dump->name, "d#");
    char* full[] = {(char*)"t", (char*)"g.smc", (char*)"d", (char*)"a.tbl", (char*)"o.txt", (char*)"8000h", (char*)"20"};
    EXPECT_TRUE(ParametersPass(*dump, 7, full));
    EXPECT_TRUE(ParametersPass(*dump, 6, full));   // count is optional
    EXPECT_FALSE(ParametersPass(*dump, 5, full));  // address is not
    full[6] = (char*)"2O";
    EXPECT_FALSE(ParametersPass(*dump, 7, full));
    EXPECT_EQ(FindCommand('z'), nullptr);
    EXPECT_EQ(FindCommand('\0'), nullptr);
}

TEST(ArgumentChecks, FontIds) {
    EXPECT_EQ(FontIdOf("D2"), 2);
    EXPECT_EQ(FontIdOf("dump"), 1);
    EXPECT_EQ(FontIdOf("l9"), 9);
    EXPECT_EQ(FontIdOf("lj"), 2);
    EXPECT_EQ(FontIdOf("tJ"), 2);
    EXPECT_EQ(FontIdOf("t1"), 1);
    EXPECT_EQ(FontIdOf("t0"), 1);
    EXPECT_EQ(FontIdOf("t"), 1);
    EXPECT_EQ(FontIdOf(""), 1);
}

}  // namespace
