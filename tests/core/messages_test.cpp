#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/last_error.h"
#include "core/message_catalogue.h"
#include "core/message_file.h"
#include "core/result_area.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

using namespace std::string_literals;

// Runs each test inside a fresh folder, so a message file written there is
// the one every lookup finds.
class MessagesTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::current_path(dir.path());
        SetError(TLERR_NONE, "", 0, 0);
    }
    void TearDown() override { std::filesystem::current_path(previous_); }
    TempDir dir;

private:
    std::filesystem::path previous_ = std::filesystem::current_path();
};

TEST_F(MessagesTest, LastErrorFillsPlaceholders) {
    SetError(TLERR_EXPECTED, "menu.txt", 12, 7, "=", "#");
    EXPECT_STREQ(Trelvane_GetLastError(), "menu.txt:12,7:Expected '=', found '#'.");
    // The nested text rides in the file field and is inserted as it stands, never read as a format.
    SetError(TLERR_NESTED, "fix.txt:3,1:bad [data0] [12] [", 0, 0, "operand");
    EXPECT_STREQ(Trelvane_GetLastError(), "fix.txt:3,1:bad [data0] [12] [");
    SetError(TLERR_NESTED, "", 0, 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Unknown error");
    EXPECT_STREQ(Trelvane_GetString(-999), "Unknown error");
    EXPECT_EQ(MessageName(-999), "-999");

    // The setters change the fields but not the code.
    SetError(TLMSG_TEXT_INSERTED, "", 0, 0);
    Trelvane_SetStringFile("script.txt");
    for (int i = -1; i < 5; ++i) Trelvane_SetStringData(i, std::to_string(10 + i).c_str());
    EXPECT_STREQ(Trelvane_GetLastError(), "script.txt:13 strings - 10/11 (12)");
    Trelvane_SetStringData(0, nullptr);
    Trelvane_SetStringFile(nullptr);
    EXPECT_STREQ(Trelvane_GetLastError(), ":13 strings - /11 (12)");
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLMSG_TEXT_INSERTED);
}

TEST_F(MessagesTest, PlaceholderNamesAndDiagnostics) {
    SetError(TLERR_FILE_NOREAD, "x.gb", 12, 34, "d0", "d1", "d2", "d3");
    const char* cases[][2] = {
        {"[FILE] [Data0] [line],[COLUMN] [data1][dAtA2][data3]", "x.gb d0 12,34 d1d2d3"},
        {"a ] b", "a ] b"},
        {"[foo]", "Unknown parameter [foo] in error format TLERR_FILE_NOREAD."},
        {"x [abcdefghijkl] y", "Unknown parameter [abcdefghi] in error format TLERR_FILE_NOREAD."},
        {"[]", "Unknown parameter [] in error format TLERR_FILE_NOREAD."},
    };
    for (const auto& [text, result] : cases) EXPECT_STREQ(FormatIntoResultArea(text), result);
    SetError(MSG_PARAM_SIZE, "", 0, 0);
    EXPECT_STREQ(FormatIntoResultArea("open [file"), "Unmatched [ in error format -664.");

    // A diagnostic leaves earlier results and the write position alone.
    FormatIntoResultArea(std::string(RESULT_AREA_SIZE - 1, '.'));  // the next result starts the area
    FormatIntoResultArea(std::string(900, 'x'));
    char* earlier = FormatIntoResultArea("earlier");
    FormatIntoResultArea("[bad]");
    EXPECT_STREQ(earlier, "earlier");
    EXPECT_EQ(FormatIntoResultArea("next"), earlier + 8);
}

TEST_F(MessagesTest, ResultAreaKeepsSeveralResultsWithinItsBounds) {
    char* start = FormatIntoResultArea(std::string(RESULT_AREA_SIZE - 1, '.'));  // fills the whole area
    std::string texts[6];
    char* results[6];
    for (int i = 0; i < 6; ++i) results[i] = FormatIntoResultArea(texts[i] = std::string(200, 'a' + i));
    for (int i = 1; i < 5; ++i) EXPECT_EQ(results[i], results[i - 1] + 201);
    // The sixth no longer fits behind the fifth: it moves to the area's
    // start, over the first.
    EXPECT_EQ(results[0], start);
    EXPECT_EQ(results[5], start);
    EXPECT_EQ(results[5], texts[5]);
    EXPECT_EQ(results[4], texts[4]);

    // A result longer than the whole area is cut to the area.
    EXPECT_EQ(FormatIntoResultArea(std::string(3000, 'z')), std::string(RESULT_AREA_SIZE - 1, 'z'));
    // A field expanded near the end of the area moves the result to the start
    // first, so a short text with a long field still fits.
    FormatIntoResultArea(std::string(900, 'y'));
    SetError(TLERR_FILE_NOREAD, std::string(1000, 'f').c_str(), 0, 0);
    char* opened = Trelvane_GetLastError();
    EXPECT_EQ(std::string(opened), "Error opening " + std::string(1000, 'f') + ".");
    EXPECT_EQ(opened, start);
}

TEST(MessageFileParsing, MalformedEntryEndsParsing) {
    MessageOverrides table;
    const std::string cases[] = {
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE(B)",        // name, no text
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE(B,\"open",  // unclosed text
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE(B",         // name reaches the end
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE B,\"b\"",   // no parenthesis
          "TRELVANE_MESSAGE(A,\"a\")\0TRELVANE_MESSAGE(B,\"b\")"s,  // a zero byte ends the text
    };
    for (const std::string& text : cases) {
        ParseMessageOverrides(text, table);
        ASSERT_EQ(table.count, 1) << text;
        EXPECT_EQ(table.entries[0].name, "A");
    }
    ParseMessageOverrides("", table);
    EXPECT_EQ(table.count, 0);

    std::string full;
    for (int i = 0; i < 70; ++i) full += "TRELVANE_MESSAGE(N" + std::to_string(i) + ", \"t\")\n";
    ParseMessageOverrides(full, table);
    EXPECT_EQ(table.count, MAX_MESSAGE_OVERRIDES);
    EXPECT_EQ(table.entries[63].name, "N63");
}

TEST_F(MessagesTest, MessageFileOverridesTexts) {
    WriteFile(dir / "trelvane.msg",
              "; comment\nMY_TRELVANE_MESSAGE( \tTLERR_NONE ,\"All fine.\")\n"
              "TRELVANE_MESSAGE(-608, \"Zeiger\nliste\") junk\n"
              "TRELVANE_MESSAGE(tlerr_file_noread, \"lower case counts for nothing\")\n"
              "TRELVANE_MESSAGE(TLERR_FILE_NOWRITE \"Kann [file] nicht schreiben\")\n"
              "TRELVANE_MESSAGE(TLERR_FILE_NOWRITE, \"second one\")\n"
              "TRELVANE_MESSAGE(TLERR_ID_BAD, \"[nope]\")\n");
    EXPECT_STREQ(Trelvane_GetString(TLERR_NONE), "All fine.");
    EXPECT_STREQ(Trelvane_GetString(MSG_USAGE_POINTER_DUMP), "Zeiger\nliste");
    SetError(TLERR_FILE_NOREAD, "a.nes", 0, 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Error opening a.nes.");
    SetError(TLERR_FILE_NOWRITE, "a.nes", 0, 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Kann a.nes nicht schreiben");
    EXPECT_STREQ(Trelvane_GetString(TLERR_ID_BAD), "Unknown parameter [nope] in error format TLERR_FILE_NOWRITE.");
    // A changed file is read again.
    WriteFile(dir / "trelvane.msg", "nothing here");
    EXPECT_STREQ(Trelvane_GetString(MSG_USAGE_POINTER_DUMP), "pointer dump");
}

// The message file is read once, not for every text printed: bytes changed
// behind its back (same size, same time) are not seen; a file that comes
// into force or goes is.
TEST_F(MessagesTest, TheMessageFileIsReadOnceWhileItStaysTheSame) {
    const std::string first = "TRELVANE_MESSAGE(TLERR_NONE, \"first\")";
    WriteFile(dir / "trelvane.msg", first);
    EXPECT_STREQ(Trelvane_GetString(TLERR_NONE), "first");
    const auto written = std::filesystem::last_write_time(dir / "trelvane.msg");
    WriteFile(dir / "trelvane.msg", "TRELVANE_MESSAGE(TLERR_NONE, \"other\")");
    std::filesystem::last_write_time(dir / "trelvane.msg", written);
    EXPECT_STREQ(Trelvane_GetString(TLERR_NONE), "first");
    std::filesystem::remove(dir / "trelvane.msg");
    EXPECT_STREQ(Trelvane_GetString(TLERR_NONE), "No errors occurred.");
    WriteFile(dir / "trelvane.msg", "TRELVANE_MESSAGE(TLERR_NONE, \"third\")");
    EXPECT_STREQ(Trelvane_GetString(TLERR_NONE), "third");
}

}  // namespace
