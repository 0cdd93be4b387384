#include "text/source_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

#include "support/test_support.h"
#include "text/token_list.h"

namespace {

using namespace std::string_literals;

// Words, numbers and ";" on a skipping reader, as every toolkit reader is set up.
class ReaderTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(reader.AddPattern(1, "[a-z|0-9]+"));
        ASSERT_TRUE(reader.AddPattern(2, ";"));
    }
    // "line:column:character" of the reading position.
    std::string Position() const {
        return std::to_string(reader.Top()->line) + ":" + std::to_string(reader.Top()->column) + ":" +
               reader.CurrentChar();
    }
    // "kind@line:column:text" of the next token.
    std::string NextToken() {
        const int kind = reader.NextToken();
        return std::to_string(kind) + "@" + std::to_string(reader.TokenLine()) + ":" +
               std::to_string(reader.TokenColumn()) + ":" + reader.TokenText();
    }
    SourceReader reader{READER_SKIP_SPACE};
    TempDir dir;
};

TEST_F(ReaderTest, OpenAddsTheDefaultExtensionAndReadsCarriageReturnLineFeedAsOneLineFeed) {
    std::filesystem::create_directory(dir.path() / "dir.old");
    WriteFile(dir / "script", "s");
    WriteFile(dir / "dir.old/name.txt", "n");
    WriteFile(dir / ".hidden", "h");
    const struct {
        const char *path, *extension, *shownName, *text;
    } cases[] = {{"script", "", "script.", "s"},
                 {"dir.old/name", "txt", "name.txt", "n"},
                 {".hidden", "txt", ".hidden", "h"},
                 {"dir.old/name.txt", "tbl", "name.txt", "n"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_TRUE(reader.Open((dir / c.path).c_str(), c.extension));
        EXPECT_STREQ(reader.FileName(), c.shownName);
        EXPECT_STREQ(reader.LineText(), c.text);
    }
    WriteFile(dir / "crlf.txt", "ab\r\ncd\r\n\r\nef");
    ASSERT_TRUE(reader.Open((dir / "crlf").c_str(), "txt"));
    EXPECT_EQ(RemainingTokens(reader), (TokenList{{1, "ab"}, {1, "cd"}, {1, "ef"}}));
    EXPECT_EQ(reader.TokenLine(), 4);
    // A failed open names the file it tried and keeps reading the text it had.
    reader.OpenText("mem", "ab cd");
    reader.NextToken();
    EXPECT_FALSE(reader.Open((dir / "missing").c_str(), "txt"));
    EXPECT_EQ(reader.FileName(), dir / "missing.txt");
    EXPECT_FALSE(reader.Open(dir.path().c_str(), ""));  // a folder is no source
    EXPECT_EQ(Position(), "1:3: ");
    EXPECT_EQ(RemainingTokens(reader), (TokenList{{1, "cd"}}));
}

TEST_F(ReaderTest, AdvanceAndSkipLineCountLinesAndColumns) {
    reader.OpenText("t", "ab\ncd\r\nx\ry\r");
    EXPECT_EQ(Position(), "1:1:a");
    std::string read;
    for (int i = 0; i < 8; ++i) read += reader.Advance();
    EXPECT_EQ(read, "ab\ncd\nx\n");  // CR LF is one line end, and so is a lone CR
    EXPECT_EQ(Position(), "4:1:y");
    EXPECT_EQ(reader.Advance(), 'y');
    EXPECT_EQ(reader.Advance(), '\n');
    EXPECT_EQ(reader.Advance(), '\0');
    EXPECT_EQ(Position(), std::string("5:1:") + '\0');

    reader.OpenText("t", "ab cd\r\nnext\n");
    reader.NextToken();
    reader.NextToken();
    EXPECT_STREQ(reader.LineText(), "ab cd");
    EXPECT_STREQ(reader.TokenText(), "ab cd");
    reader.SkipLine();
    EXPECT_EQ(Position(), "2:1:n");
    reader.SkipLine();
    reader.SkipLine();
    EXPECT_EQ(Position(), std::string("3:1:") + '\0');
    EXPECT_STREQ(reader.LineText(), "");
}

TEST_F(ReaderTest, TokensCarryTheirStartLineAndColumn) {
    reader.OpenText("t", "\n  \t\n  abc ;\n% de");
    EXPECT_EQ(NextToken(), "1@3:3:abc");
    EXPECT_EQ(NextToken(), "2@3:7:;");
    EXPECT_EQ(NextToken(), std::to_string(TOKEN_UNKNOWN) + "@4:0:%");  // the column before an unknown character
    EXPECT_EQ(NextToken(), "1@4:3:de");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(NextToken(), std::to_string(TOKEN_END) + "@4:5:");
}

TEST_F(ReaderTest, IncludedSourcesStackUp) {
    reader.OpenText("main.s", "one two");
    EXPECT_EQ(NextToken(), "1@1:1:one");
    reader.PushFrame();
    EXPECT_STREQ(reader.TokenText(), "");
    reader.OpenText("dir/inner.s", "\n in");
    EXPECT_EQ(NextToken(), "1@2:2:in");
    EXPECT_STREQ(reader.FileName(), "inner.s");
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    EXPECT_TRUE(reader.PopFrame());
    EXPECT_STREQ(reader.FileName(), "main.s");
    EXPECT_STREQ(reader.TokenText(), "one");
    EXPECT_EQ(NextToken(), "1@1:5:two");
    EXPECT_FALSE(reader.PopFrame());
    EXPECT_FALSE(reader.PopFrame());
    // With no source left every call answers as at the end of a text.
    reader.SkipLine();
    EXPECT_EQ(reader.Advance(), '\0');
    EXPECT_EQ(NextToken(), std::to_string(TOKEN_END) + "@0:0:");
    EXPECT_EQ(ReadTokens(reader, "x"), (TokenList{{1, "x"}}));  // opening gives the reader a frame again
}

// A zero byte inside a file is read where it lies: as a token of its own at its own line and
// column, never as the end of the text. A token whose scan it stops before anything was
// accepted passes with it; skipped lines pass it, and the line text keeps it.
TEST_F(ReaderTest, AZeroByteIsATokenOfItsOwnNeverTheEnd) {
    ASSERT_TRUE(reader.AddPattern(3, "\"^\"*\""));
    WriteFile(dir / "zero.txt", "ab\0cd\n  \"x\0y \"\n; skipped\0 to\nlast\0"s);
    ASSERT_TRUE(reader.Open((dir / "zero.txt").c_str(), ""));
    const std::string zero = std::to_string(TOKEN_UNKNOWN) + "@";
    const std::string expected[] = {"1@1:1:ab", zero + "1:3:\\0", "1@1:4:cd", zero + "2:5:\\0", "1@2:6:y",
                                    zero + "3:10:\\0", "1@3:12:to", "1@4:1:last", zero + "4:5:\\0"};
    for (const std::string& token : expected) EXPECT_EQ(NextToken(), token);
    EXPECT_EQ(reader.Match(), TOKEN_END);
    EXPECT_EQ(NextToken(), std::to_string(TOKEN_END) + "@4:6:");

    ASSERT_TRUE(reader.Open((dir / "zero.txt").c_str(), ""));
    EXPECT_EQ(reader.Match(), 1);
    reader.SkipLine();
    EXPECT_EQ(Position(), "2:1: ");
    EXPECT_STREQ(reader.LineText(), "  \"x");
    EXPECT_EQ(reader.TokenString(), "  \"x\0y \""s);
    reader.SkipLine();
    reader.SkipLine();
    reader.Advance();
    reader.Advance();
    reader.Advance();
    reader.Advance();
    EXPECT_EQ(reader.Match(), TOKEN_UNKNOWN);
    EXPECT_EQ(reader.Advance(), '\0');
    EXPECT_EQ(Position(), "4:6:"s + '\0');
    EXPECT_EQ(reader.Match(), TOKEN_END);
}

TEST(SourceReaderTest, MatchLooksAheadWithoutMovingAndEndsWithoutAnAutomaton) {
    SourceReader reader(READER_SKIP_SPACE);
    reader.OpenText("t", "abc");
    testing::internal::CaptureStdout();
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(reader.Match(), TOKEN_END);
    EXPECT_EQ(reader.CurrentChar(), 'a');
    ASSERT_TRUE(reader.AddPattern(1, "abc"));
    ASSERT_TRUE(reader.AddPattern(2, "a"));
    reader.OpenText("t", "  abx");
    EXPECT_EQ(reader.Match(), 2);
    EXPECT_EQ(reader.Top()->column, 1);
    EXPECT_EQ(reader.NextToken(), 2);
    EXPECT_EQ(reader.TokenColumn(), 4);  // started at 3; the scan of "b" shows in the column
    EXPECT_EQ(reader.Match(), TOKEN_UNKNOWN);
    reader.OpenText("t", "   ");
    EXPECT_EQ(reader.Match(), TOKEN_END);
}

TEST(SourceReaderTest, WordsWinWhereNoPatternReadsFurther) {
    SourceReader reader(READER_SKIP_SPACE);
    ASSERT_TRUE(reader.AddPattern(1, "[a-z|A-Z][a-z|A-Z|0-9|_]*"));
    ASSERT_TRUE(reader.AddPattern(2, "[0-9]+h"));
    reader.AddWord(7, "Count");
    reader.AddWord(8, "12hx");
    reader.AddWord(9, "12h");
    reader.AddWord(10, "lives");
    reader.AddWord(11, "LIVES");  // the same word again: the new kind
    reader.OpenText("t", "count COUNT counter coun 12hx 12h 12hxy lives+x");
    const TokenList expected = {{7, "count"}, {7, "COUNT"}, {1, "counter"}, {1, "coun"}, {8, "12hx"},
                                {9, "12h"}, {8, "12hx"}, {1, "y"}, {11, "lives"}, {TOKEN_UNKNOWN, "+"}, {1, "x"}};
    EXPECT_EQ(RemainingTokens(reader), expected);
    reader.OpenText("t", "  12hx");
    reader.NextToken();
    EXPECT_EQ(reader.TokenColumn(), 3);
    EXPECT_EQ(reader.TokenEndColumn(), 7);
}

TEST(NumberHelpersTest, DecimalHexAndSubstring) {
    // Decimal skips what is not a digit and wraps at 32 bits; a final "h" shifts back arithmetically.
    const std::pair<const char*, int32_t> decimals[] = {
        {"-12", -12}, {"12AB", 12}, {"1-2", 12}, {"4294967297", 1}, {"", 0}};
    for (const auto& [text, value] : decimals) EXPECT_EQ(ParseDecimal(text), value) << text;
    const std::pair<const char*, int32_t> hexes[] = {{"1Fh", 0x1F}, {"1F", 0x1F}, {"$1F", 0x1F}, {"0x1f", 0x1F},
        {"1_F", 0x10F}, {"FFFFFFFFh", -1}, {"8000000h", static_cast<int32_t>(0xF8000000)}};
    for (const auto& [text, value] : hexes) EXPECT_EQ(ParseHex(text), value) << text;
    // The exact value, refused where it needs more than 32 bits instead of wrapping.
    const std::tuple<const char*, bool, bool, uint32_t> exact[] = {
        {"4294967295", false, true, 0xFFFFFFFF}, {"4294967296", false, false, 0}, {"0004294967295", false, true, 0xFFFFFFFF},
        {"12AB", false, true, 12}, {"FFFFFFFFh", true, true, 0xFFFFFFFF}, {"100000000h", true, false, 0},
        {"12345678h", true, true, 0x12345678}, {"000000001Fh", true, true, 0x1F}, {"1_F", true, true, 0x10F},
        {"10001D040h", true, false, 0}};
    for (const auto& [text, hex, fits, value] : exact) {
        uint32_t read = 0;
        EXPECT_EQ(ExactNumber(text, hex, read), fits) << text;
        EXPECT_EQ(read, value) << text;
    }
    const std::tuple<const char*, int, int, const char*> substrings[] = {
        {"\"name\"", 1, -1, "name"}, {"abcdef", -2, 5, "ef"}, {"abcdef", 2, 3, "cde"},
        {"abc", 5, 2, ""}, {"abc", -9, 2, "ab"}, {"abc", 1, -9, ""}};
    for (const auto& [text, start, length, part] : substrings) EXPECT_STREQ(Substring(text, start, length), part);
}

}  // namespace
