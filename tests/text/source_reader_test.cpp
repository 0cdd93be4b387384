#include "text/source_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/test_support.h"
#include "text/token_list.h"

namespace {

// Words, numbers and ";" on a skipping reader, as every toolkit reader is set up.
class ReaderTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(reader.AddPattern(1, "[a-z|0-9]+"));
        ASSERT_TRUE(reader.AddPattern(2, ";"));
    }
    std::string Position() const {
        const SourceFrame& frame = *reader.Top();
        return std::to_string(frame.line) + ":" + std::to_string(frame.column) + ":" + reader.CurrentChar();
    }
    std::string Token() const {
        return std::to_string(reader.TokenLine()) + ":" + std::to_string(reader.TokenColumn()) + ":" +
               reader.TokenText();
    }
    SourceReader reader{READER_SKIP_SPACE};
    TempDir dir;
};

TEST_F(ReaderTest, OpenAddsTheDefaultExtensionOnlyWhenTheNameHasNone) {
    std::filesystem::create_directory(dir.path() / "dir.old");
    WriteFile(dir / "script", "s");
    WriteFile(dir / "dir.old/name.txt", "n");
    WriteFile(dir / ".hidden", "h");
    EXPECT_TRUE(reader.Open((dir / "script").c_str(), ""));
    EXPECT_STREQ(reader.FileName(), "script.");
    EXPECT_STREQ(reader.LineText(), "s");
    EXPECT_TRUE(reader.Open((dir / "dir.old/name").c_str(), "txt"));
    EXPECT_STREQ(reader.FileName(), "name.txt");
    EXPECT_STREQ(reader.LineText(), "n");
    EXPECT_TRUE(reader.Open((dir / ".hidden").c_str(), "txt"));
    EXPECT_STREQ(reader.FileName(), ".hidden");
    EXPECT_TRUE(reader.Open((dir / "dir.old/name.txt").c_str(), "tbl"));
    EXPECT_STREQ(reader.FileName(), "name.txt");
}

TEST_F(ReaderTest, FailedOpenKeepsTheTextAndNamesTheFileTried) {
    reader.OpenText("mem", "ab cd");
    reader.NextToken();
    EXPECT_FALSE(reader.Open((dir / "missing").c_str(), "txt"));
    EXPECT_EQ(reader.FileName(), dir / "missing.txt");
    EXPECT_FALSE(reader.Open(dir.path().c_str(), ""));  // a folder is no source
    EXPECT_EQ(Position(), "1:3: ");
    EXPECT_EQ(reader.NextToken(), 1);
    EXPECT_STREQ(reader.TokenText(), "cd");
}

TEST_F(ReaderTest, FilesReadCarriageReturnLineFeedAsOneLineFeed) {
    WriteFile(dir / "crlf.txt", "ab\r\ncd\r\n\r\nef");
    ASSERT_TRUE(reader.Open((dir / "crlf.txt").c_str(), "txt"));
    EXPECT_EQ(reader.Top()->textBuffer, (std::vector<char>{'a', 'b', '\n', 'c', 'd', '\n', '\n', 'e', 'f', '\0'}));
    EXPECT_EQ(RemainingTokens(reader), (TokenList{{1, "ab"}, {1, "cd"}, {1, "ef"}}));
    EXPECT_EQ(reader.TokenLine(), 4);
}

TEST_F(ReaderTest, AdvanceCountsLinesAndColumns) {
    reader.OpenText("t", "ab\ncd\r\nx\ry\r");
    EXPECT_EQ(Position(), "1:1:a");
    EXPECT_EQ(reader.Advance(), 'a');
    EXPECT_EQ(reader.Advance(), 'b');
    EXPECT_EQ(reader.Advance(), '\n');
    EXPECT_EQ(Position(), "2:1:c");
    reader.Advance();
    reader.Advance();
    EXPECT_EQ(reader.Advance(), '\n');  // CR LF is one line end
    EXPECT_EQ(Position(), "3:1:x");
    reader.Advance();
    EXPECT_EQ(reader.Advance(), 'y');  // a lone CR goes with the character after it
    EXPECT_EQ(Position(), "3:4:\r");
    EXPECT_EQ(reader.Advance(), '\0');
    EXPECT_EQ(reader.Advance(), '\0');
    EXPECT_EQ(Position(), std::string("3:5:") + '\0');
}

TEST_F(ReaderTest, TokensCarryTheirStartLineAndColumn) {
    reader.OpenText("t", "\n  \t\n  abc ;\n% de");
    EXPECT_EQ(reader.NextToken(), 1);
    EXPECT_EQ(Token(), "3:3:abc");
    EXPECT_EQ(reader.NextToken(), 2);
    EXPECT_EQ(Token(), "3:7:;");
    EXPECT_EQ(reader.NextToken(), TOKEN_UNKNOWN);
    EXPECT_EQ(Token(), "4:0:%");  // an unknown character reports the column before it
    EXPECT_EQ(reader.NextToken(), 1);
    EXPECT_EQ(Token(), "4:3:de");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(reader.NextToken(), TOKEN_END);
        EXPECT_EQ(reader.Top()->tokenKind, TOKEN_END);
        EXPECT_STREQ(reader.TokenText(), "");
    }
}

TEST_F(ReaderTest, LineTextAndSkipLine) {
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

TEST_F(ReaderTest, IncludedSourcesStackUp) {
    reader.OpenText("main.s", "one two");
    EXPECT_EQ(reader.NextToken(), 1);
    reader.PushFrame();
    EXPECT_STREQ(reader.TokenText(), "");
    reader.OpenText("dir/inner.s", "\n in");
    EXPECT_EQ(reader.NextToken(), 1);
    EXPECT_EQ(Token(), "2:2:in");
    EXPECT_STREQ(reader.FileName(), "inner.s");
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    EXPECT_TRUE(reader.PopFrame());
    EXPECT_STREQ(reader.FileName(), "main.s");
    EXPECT_EQ(Token(), "1:1:one");
    EXPECT_EQ(reader.NextToken(), 1);
    EXPECT_STREQ(reader.TokenText(), "two");
    EXPECT_FALSE(reader.PopFrame());
    EXPECT_FALSE(reader.PopFrame());

    EXPECT_STREQ(reader.FileName(), "");
    EXPECT_EQ(Token(), "0:0:");
    EXPECT_EQ(reader.TokenEndColumn(), 0);
    EXPECT_EQ(reader.CurrentChar(), '\0');
    EXPECT_EQ(reader.Advance(), '\0');
    EXPECT_STREQ(reader.LineText(), "");
    EXPECT_EQ(reader.Match(), TOKEN_END);
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    reader.SkipLine();
    EXPECT_TRUE(reader.OpenText("again", "x"));  // opening gives the reader a frame again
    EXPECT_EQ(reader.NextToken(), 1);
}

TEST(SourceReaderTest, WithoutAnAutomatonEveryTokenWarns) {
    SourceReader reader(READER_SKIP_SPACE);
    reader.OpenText("t", "abc");
    testing::internal::CaptureStdout();
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    EXPECT_EQ(reader.NextToken(), TOKEN_END);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Warning: no FSA\nWarning: no FSA\n");
    EXPECT_EQ(reader.Match(), TOKEN_END);
    EXPECT_EQ(reader.CurrentChar(), 'a');
}

TEST(NumberHelpersTest, DecimalHexAndSubstring) {
    EXPECT_EQ(ParseDecimal("-12"), -12);
    EXPECT_EQ(ParseDecimal("12AB"), 12);
    EXPECT_EQ(ParseDecimal("1-2"), 12);
    EXPECT_EQ(ParseDecimal("4294967297"), 1);  // wraps at 32 bits
    EXPECT_EQ(ParseDecimal(""), 0);
    EXPECT_EQ(ParseHex("1Fh"), 0x1F);
    EXPECT_EQ(ParseHex("1F"), 0x1F);
    EXPECT_EQ(ParseHex("$1F"), 0x1F);
    EXPECT_EQ(ParseHex("0x1f"), 0x1F);
    EXPECT_EQ(ParseHex("1_F"), 0x10F);
    EXPECT_EQ(ParseHex("FFFFFFFFh"), -1);
    EXPECT_EQ(ParseHex("8000000h"), static_cast<int32_t>(0xF8000000));  // h shifts back arithmetically
    EXPECT_STREQ(Substring("\"name\"", 1, -1), "name");
    EXPECT_STREQ(Substring("abcdef", -2, 5), "ef");
    EXPECT_STREQ(Substring("abcdef", 2, 3), "cde");
    EXPECT_STREQ(Substring("abc", 5, 2), "");
    EXPECT_STREQ(Substring("abc", -9, 2), "ab");
    EXPECT_STREQ(Substring("abc", 1, -9), "");
}

}  // namespace
