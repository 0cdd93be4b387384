#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "core/last_error.h"
#include "core/message_catalogue.h"
#include "core/message_file.h"
#include "core/result_area.h"
#include "support/test_support.h"
#include "trelvane.h"

namespace {

// Runs each test inside a fresh folder, so a message file written there is
// the one every lookup finds.
class MessagesTest : public ::testing::Test {
protected:
    void SetUp() override {
        previous_ = std::filesystem::current_path();
        std::filesystem::current_path(dir.path());
        SetError(TLERR_NONE, "", 0, 0);
    }
    void TearDown() override { std::filesystem::current_path(previous_); }
    void WriteMessageFile(const std::string& text) { WriteFile(dir / "trelvane.msg", text); }
    TempDir dir;

private:
    std::filesystem::path previous_;
};

TEST_F(MessagesTest, DefaultTextsAndNames) {
    EXPECT_STREQ(Trelvane_GetString(TLERR_IPS_IDENTICAL), "Files identical. IPS not created.");
    EXPECT_STREQ(Trelvane_GetString(-999), "Unknown error");
    EXPECT_STREQ(Trelvane_GetString(MSG_USAGE_POINTER_DUMP), "pointer dump");
    EXPECT_STREQ(Trelvane_GetString(TLMSG_USAGE_THINGY_CONVERT),
                 "convert thingy table to trelvane file, <rom> = thingy table");
    EXPECT_EQ(MessageName(TLERR_NONE), "TLERR_NONE");
    EXPECT_EQ(MessageName(TLWRN_OBSOLETE), "TLWRN_OBSOLETE");
    EXPECT_EQ(MessageName(MSG_PARAM_FREQUENCY), "-665");
    EXPECT_EQ(MessageName(-999), "-999");
}

TEST_F(MessagesTest, LastErrorFillsPlaceholders) {
    SetError(TLERR_FILE_NOREAD, "a.smc", 0, 0, "", "", "", "");
    EXPECT_STREQ(Trelvane_GetLastError(), "Error opening a.smc.");
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLERR_FILE_NOREAD);

    SetError(TLERR_EXPECTED, "menu.txt", 12, 7, "=", "#");
    EXPECT_STREQ(Trelvane_GetLastError(), "menu.txt:12,7:Expected '=', found '#'.");

    // The setters change the fields but not the code.
    SetError(TLMSG_TEXT_INSERTED, "", 0, 0);
    Trelvane_SetStringFile("script.txt");
    for (int i = 0; i < 4; ++i) Trelvane_SetStringData(i, std::to_string(10 + i).c_str());
    Trelvane_SetStringData(4, "ignored");
    Trelvane_SetStringData(-1, "ignored");
    EXPECT_STREQ(Trelvane_GetLastError(), "script.txt:13 strings - 10/11 (12)");
    Trelvane_SetStringData(0, nullptr);
    Trelvane_SetStringFile(nullptr);
    EXPECT_STREQ(Trelvane_GetLastError(), ":13 strings - /11 (12)");
    EXPECT_EQ(Trelvane_GetLastErrorCode(), TLMSG_TEXT_INSERTED);
}

TEST_F(MessagesTest, NestedErrorCarriesItsTextInTheFileField) {
    SetError(TLERR_NESTED, "fix.txt:3,1:bad [data0]", 0, 0, "operand");
    EXPECT_STREQ(Trelvane_GetLastError(), "fix.txt:3,1:bad operand");
    SetError(TLERR_NESTED, "", 0, 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Unknown error");
}

TEST_F(MessagesTest, PlaceholderNamesAndDiagnostics) {
    SetError(TLERR_FILE_NOREAD, "x.gb", 12, 34, "d0", "d1", "d2", "d3");
    EXPECT_STREQ(FormatIntoResultArea("[FILE] [Data0] [line],[COLUMN] [data1][dAtA2][data3]"),
                 "x.gb d0 12,34 d1d2d3");
    EXPECT_STREQ(FormatIntoResultArea("a ] b"), "a ] b");
    EXPECT_STREQ(FormatIntoResultArea("[foo]"), "Unknown parameter [foo] in error format TLERR_FILE_NOREAD.");
    EXPECT_STREQ(FormatIntoResultArea("x [abcdefghijkl] y"),
                 "Unknown parameter [abcdefghi] in error format TLERR_FILE_NOREAD.");
    EXPECT_STREQ(FormatIntoResultArea("[]"), "Unknown parameter [] in error format TLERR_FILE_NOREAD.");
    SetError(MSG_PARAM_SIZE, "", 0, 0);
    EXPECT_STREQ(FormatIntoResultArea("open [file"), "Unmatched [ in error format -664.");
}

TEST_F(MessagesTest, DiagnosticLeavesEarlierResultsAlone) {
    FormatIntoResultArea(std::string(900, 'x'));
    char* third = FormatIntoResultArea("third");
    FormatIntoResultArea("[bad]");
    EXPECT_STREQ(third, "third");
    char* fourth = FormatIntoResultArea("fourth");
    EXPECT_EQ(fourth, third + 6);
}

TEST_F(MessagesTest, ResultAreaKeepsSeveralResultsValid) {
    char* start = FormatIntoResultArea(std::string(RESULT_AREA_SIZE - 1, '.'));  // fills the whole area
    std::string texts[6];
    char* results[6];
    for (int i = 0; i < 6; ++i) {
        texts[i] = std::string(200, static_cast<char>('a' + i));
        results[i] = FormatIntoResultArea(texts[i]);
    }
    for (int i = 1; i < 5; ++i) {
        EXPECT_EQ(results[i], results[i - 1] + 201);
        EXPECT_EQ(results[i], texts[i]);
    }
    // The sixth no longer fits behind the fifth: it moves to the area's
    // start, over the first.
    EXPECT_EQ(results[0], start);
    EXPECT_EQ(results[5], start);
    EXPECT_EQ(results[5], texts[5]);
    EXPECT_NE(std::string(results[0]), texts[0]);
    EXPECT_EQ(results[4], texts[4]);
}

TEST_F(MessagesTest, ResultAreaBounds) {
    // A result longer than the whole area is cut to the area.
    char* whole = FormatIntoResultArea(std::string(3000, 'z'));
    EXPECT_EQ(std::string(whole), std::string(RESULT_AREA_SIZE - 1, 'z'));
    // A field expanded near the end of the area moves the result to the start
    // first, so a short text with a long field still fits.
    FormatIntoResultArea(std::string(900, 'y'));
    SetError(TLERR_FILE_NOREAD, std::string(1000, 'f').c_str(), 0, 0);
    char* opened = Trelvane_GetLastError();
    EXPECT_EQ(std::string(opened), "Error opening " + std::string(1000, 'f') + ".");
    EXPECT_EQ(opened, whole);
}

TEST(MessageFileParsing, EntriesBetweenOtherText) {
    MessageOverrides table;
    ParseMessageOverrides(
        "; comment\nMY_TRELVANE_MESSAGE( \tTLERR_NONE ,\"All fine.\")\n"
        "TRELVANE_MESSAGE(-608,\"two\nlines\") junk TRELVANE_MESSAGE(TLERR_NONE \"again\")",
        table);
    ASSERT_EQ(table.count, 3);
    EXPECT_EQ(table.entries[0].name, "TLERR_NONE");
    EXPECT_EQ(table.entries[0].text, "All fine.");
    EXPECT_EQ(table.entries[1].name, "-608");
    EXPECT_EQ(table.entries[1].text, "two\nlines");
    EXPECT_EQ(*FindOverride(table, "TLERR_NONE"), "All fine.");
    EXPECT_EQ(FindOverride(table, "tlerr_none"), nullptr);
}

TEST(MessageFileParsing, MalformedEntryEndsParsing) {
    MessageOverrides table;
    const char* cases[] = {
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE(B)",            // name, no text
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE(B,\"open",      // unclosed text
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE(B",             // name reaches the end
        "TRELVANE_MESSAGE(A,\"a\") TRELVANE_MESSAGE B,\"b\"",       // no parenthesis
        "TRELVANE_MESSAGE(A,\"a\")\0TRELVANE_MESSAGE(B,\"b\")",      // a zero byte ends the text
    };
    for (const char* text : cases) {
        ParseMessageOverrides(std::string_view(text, std::strlen(text) + 30 * (text == cases[4])), table);
        ASSERT_EQ(table.count, 1) << text;
        EXPECT_EQ(table.entries[0].name, "A");
    }
    ParseMessageOverrides("", table);
    EXPECT_EQ(table.count, 0);
}

TEST(MessageFileParsing, TableHoldsAtMostItsCapacity) {
    std::string text;
    for (int i = 0; i < 70; ++i) text += "TRELVANE_MESSAGE(N" + std::to_string(i) + ", \"t\")\n";
    MessageOverrides table;
    ParseMessageOverrides(text, table);
    EXPECT_EQ(table.count, MAX_MESSAGE_OVERRIDES);
    EXPECT_EQ(table.entries[63].name, "N63");
    EXPECT_EQ(FindOverride(table, "N64"), nullptr);
}

TEST_F(MessagesTest, MessageFileOverridesTexts) {
    WriteMessageFile(
        "TRELVANE_MESSAGE(-608, \"Zeigerliste\")\n"
        "TRELVANE_MESSAGE(tlerr_file_noread, \"lower case counts for nothing\")\n"
        "TRELVANE_MESSAGE(TLERR_FILE_NOWRITE, \"Kann [file] nicht schreiben\")\n"
        "TRELVANE_MESSAGE(TLERR_FILE_NOWRITE, \"second one\")\n"
        "TRELVANE_MESSAGE(TLERR_ID_BAD, \"[nope]\")\n");
    EXPECT_STREQ(Trelvane_GetString(MSG_USAGE_POINTER_DUMP), "Zeigerliste");
    SetError(TLERR_FILE_NOREAD, "a.nes", 0, 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Error opening a.nes.");
    SetError(TLERR_FILE_NOWRITE, "a.nes", 0, 0);
    EXPECT_STREQ(Trelvane_GetLastError(), "Kann a.nes nicht schreiben");
    EXPECT_STREQ(Trelvane_GetString(TLERR_ID_BAD), "Unknown parameter [nope] in error format TLERR_FILE_NOWRITE.");
    // The file is read anew for every lookup.
    WriteMessageFile("nothing here");
    EXPECT_STREQ(Trelvane_GetString(MSG_USAGE_POINTER_DUMP), "pointer dump");
}

}  // namespace
