#include "text/fsa.h"

#include <gtest/gtest.h>

#include <string>

#include "text/source_reader.h"
#include "text/token_list.h"

namespace {

// An automaton built from patterns on a reader, as lexicons and patch files build theirs.
class PatternTest : public ::testing::Test {
protected:
    void Add(int kind, const char* pattern) { ASSERT_TRUE(reader.AddPattern(kind, pattern)) << pattern; }
    TokenList Scan(const char* text) { return ReadTokens(reader, text); }
    // The kind when the whole of text is one token, else -1.
    int WholeKind(const char* text) {
        TokenList tokens = Scan(text);
        return tokens.size() == 1 && tokens[0].second == text ? tokens[0].first : -1;
    }
    SourceReader reader{READER_SKIP_SPACE};
};

TEST_F(PatternTest, PlainEscapedAndComplementedAtoms) {
    Add(1, "ab");
    Add(2, "\\[\\^\\\\\\*\\+");
    Add(3, "^\"");
    Add(4, "[^x]y");
    Add(5, "[^\\]]z");
    EXPECT_EQ(WholeKind("ab"), 1);
    EXPECT_EQ(WholeKind("AB"), 1);
    EXPECT_EQ(WholeKind("[^\\*+"), 2);
    EXPECT_EQ(WholeKind("\n"), -1);  // skipped as space: no token at all
    EXPECT_EQ(Scan("\"")[0], TokenList::value_type(TOKEN_UNKNOWN, "\""));
    EXPECT_EQ(WholeKind("q"), 3);
    EXPECT_EQ(WholeKind("qy"), 4);
    EXPECT_EQ(Scan("xy"), (TokenList{{3, "x"}, {3, "y"}}));
    EXPECT_EQ(WholeKind("Xy"), 4);  // a complement removes no twin
    EXPECT_EQ(WholeKind("qz"), 5);
    EXPECT_EQ(Scan("]z"), (TokenList{{3, "]"}, {3, "z"}}));
}

TEST_F(PatternTest, ClassesListRangesAndTakeAnyClosingCharacter) {
    Add(1, "[a|b|c]");
    Add(2, "[d-f|\\-|7]!");
    Add(3, "[xy");
    EXPECT_EQ(WholeKind("a"), 1);
    EXPECT_EQ(WholeKind("C"), 1);
    EXPECT_EQ(WholeKind("e!"), 2);
    EXPECT_EQ(WholeKind("F!"), 2);
    EXPECT_EQ(WholeKind("-!"), 2);
    EXPECT_EQ(WholeKind("7!"), 2);
    EXPECT_EQ(Scan("g!")[0].first, TOKEN_UNKNOWN);
    EXPECT_EQ(WholeKind("x"), 3);  // "y" closed the class
    EXPECT_EQ(WholeKind("X"), 3);
    Add(4, "[ab]");
    EXPECT_EQ(WholeKind("a]"), 4);
    EXPECT_EQ(WholeKind("A]"), 4);
    EXPECT_EQ(Scan("b]"), (TokenList{{1, "b"}, {TOKEN_UNKNOWN, "]"}}));
}

TEST_F(PatternTest, PlusAndStarRepeat) {
    Add(1, "a+");
    Add(2, "\\+");
    Add(3, "xb*c");
    EXPECT_EQ(WholeKind("a"), 1);
    EXPECT_EQ(WholeKind("aAaa"), 1);
    EXPECT_EQ(WholeKind("+"), 2);
    EXPECT_EQ(WholeKind("xc"), 3);
    EXPECT_EQ(WholeKind("xbbbc"), 3);
    EXPECT_EQ(Scan("*")[0].first, TOKEN_UNKNOWN);
}

TEST_F(PatternTest, LongestMatchAndLaterPatternWins) {
    Add(15, "[a-z|A-Z|0-9|_]+");
    Add(20, "[0-9]+");
    EXPECT_EQ(WholeKind("42"), 20);
    EXPECT_EQ(WholeKind("42x"), 15);
    EXPECT_EQ(WholeKind("x42"), 15);
    Add(8, "base");
    EXPECT_EQ(WholeKind("base"), 8);
    EXPECT_EQ(WholeKind("BASE"), 8);
    EXPECT_EQ(WholeKind("bas"), 15);
    EXPECT_EQ(WholeKind("bases"), 15);
    EXPECT_EQ(WholeKind("base1"), 15);
    Add(14, "[0-9|a-f|A-F]+h");
    EXPECT_EQ(WholeKind("12h"), 14);
    EXPECT_EQ(WholeKind("12"), 20);
    EXPECT_EQ(WholeKind("12hx"), 15);
    Add(9, "base");
    EXPECT_EQ(WholeKind("base"), 9);
}

TEST_F(PatternTest, QuotedTextMaySpanLines) {
    Add(11, "\"^\"*\"");
    EXPECT_EQ(Scan(" \"a\nb\" \"\""), (TokenList{{11, "\"a\nb\""}, {11, "\"\""}}));
}

TEST_F(PatternTest, CaseSensitiveReaderAddsNoTwins) {
    SourceReader exact(READER_SKIP_SPACE | READER_CASE_SENSITIVE);
    ASSERT_TRUE(exact.AddPattern(1, "[a-c]x"));
    EXPECT_EQ(ReadTokens(exact, "bx Bx"), (TokenList{{1, "bx"}, {TOKEN_UNKNOWN, "B"}, {TOKEN_UNKNOWN, "x"}}));
}

TEST_F(PatternTest, FirstAdditionCreatesOrCopiesAPrivateAutomaton) {
    EXPECT_EQ(reader.Automaton(), nullptr);
    Add(1, "a");
    EXPECT_EQ(reader.Automaton()->Flags(), FSA_OWNED);
    EXPECT_EQ(reader.Automaton()->StateCapacity(), 2048);
    EXPECT_EQ(reader.Automaton()->TransitionCapacity(), 4096);

    const LexiconPattern patterns[] = {{1, "[a-z]+"}, {2, "if"}};
    const Fsa shared = CompileLexicon(patterns);
    const int states = shared.StateCount();
    const int transitions = shared.TransitionCount();
    SourceReader first(READER_SKIP_SPACE), second(READER_SKIP_SPACE);
    first.SetAutomaton(&shared);
    second.SetAutomaton(&shared);
    ASSERT_TRUE(first.AddPattern(3, "then"));
    EXPECT_NE(first.Automaton(), &shared);
    EXPECT_EQ(first.Automaton()->Flags(), FSA_OWNED);
    EXPECT_EQ(first.Automaton()->StateCapacity(), states + 1024);
    EXPECT_EQ(first.Automaton()->TransitionCapacity(), transitions + 2048);
    EXPECT_EQ(shared.Flags(), 0u);
    EXPECT_EQ(shared.StateCount(), states);
    EXPECT_EQ(shared.TransitionCount(), transitions);
    EXPECT_EQ(ReadTokens(first, "if then"), (TokenList{{2, "if"}, {3, "then"}}));
    EXPECT_EQ(ReadTokens(second, "if then"), (TokenList{{2, "if"}, {1, "then"}}));
}

TEST(FsaTest, RefusedPatternsLeaveTheAutomatonUnchanged) {
    Fsa fsa;
    ASSERT_TRUE(fsa.AddPattern(1, "[a-z]+", false));
    ASSERT_TRUE(fsa.AddPattern(2, "cat", false));
    const Fsa before = fsa;
    const std::string tooLong(256, 'c');
    for (const char* pattern : {"ca[t", "cab\\", "cax^", "c[^", "c[a-", "c[a-a]", "c[z-a]", "c[a|", tooLong.c_str()}) {
        EXPECT_FALSE(fsa.AddPattern(3, pattern, false)) << pattern;
        ASSERT_EQ(fsa.StateCount(), before.StateCount()) << pattern;
        ASSERT_EQ(fsa.TransitionCount(), before.TransitionCount()) << pattern;
        for (int i = 0; i < fsa.StateCount(); ++i) {
            EXPECT_EQ(fsa.Accept(i), before.Accept(i));
            for (int c = 0; c < 256; ++c) EXPECT_EQ(fsa.Next(i, static_cast<unsigned char>(c)), before.Next(i, c));
        }
        for (int i = 0; i < fsa.TransitionCount(); ++i) {
            EXPECT_EQ(fsa.Transition(i).to, before.Transition(i).to);
            EXPECT_EQ(fsa.Transition(i).set, before.Transition(i).set);
        }
    }
    EXPECT_TRUE(fsa.AddPattern(3, std::string(255, 'c').c_str(), false));
}

TEST(FsaTest, CountsStopAtTheSixteenBitLimit) {
    Fsa fsa;
    std::string word(250, 'a');
    bool refused = false;
    for (int n = 0; n < 200 && !refused; ++n) {
        word[0] = static_cast<char>('a' + n % 26);  // a fresh prefix: about 249 new states per word
        word[1] = static_cast<char>('a' + n / 26);
        const int states = fsa.StateCount();
        refused = !fsa.AddPattern(n, word.c_str(), true);
        if (refused) {
            EXPECT_EQ(fsa.StateCount(), states);
        }
    }
    EXPECT_TRUE(refused);
    EXPECT_LE(fsa.StateCount(), FSA_MAX_STATES);
    EXPECT_LE(fsa.StateCapacity(), FSA_MAX_STATES);
    EXPECT_GT(fsa.StateCount(), FSA_MAX_STATES - 250);
}

TEST_F(PatternTest, MatchLooksAheadWithoutMoving) {
    Add(1, "abc");
    Add(2, "a");
    reader.OpenText("t", "  abx");
    EXPECT_EQ(reader.Match(), 2);
    const SourceFrame& frame = *reader.Top();
    EXPECT_EQ(frame.matchLength, 1);
    EXPECT_EQ(frame.matchColumn, 5);  // started at 3, scanned "a" and "b"
    EXPECT_EQ(frame.matchText, "a");
    EXPECT_EQ(frame.column, 1);
    EXPECT_EQ(reader.NextToken(), 2);
    EXPECT_EQ(reader.TokenColumn(), 4);  // the overrun shows in the column
    EXPECT_EQ(reader.Match(), TOKEN_UNKNOWN);
    EXPECT_EQ(frame.matchLength, 0);
    EXPECT_EQ(frame.matchText, "");
    reader.OpenText("t", "   ");
    EXPECT_EQ(reader.Match(), TOKEN_END);
}

TEST(FsaTest, ConstantLexiconsKeepEachStatesTransitionsTogether) {
    const LexiconPattern patterns[] = {{1, "[a-z]+"}, {2, "ab"}, {3, "[0-9]*x"}};
    const Fsa fsa = CompileLexicon(patterns);
    for (int i = 1; i < fsa.TransitionCount(); ++i) EXPECT_LE(fsa.Transition(i - 1).from, fsa.Transition(i).from);
    EXPECT_EQ(Tokens(fsa, "ab abc 12x x"), (TokenList{{2, "ab"}, {1, "abc"}, {3, "12x"}, {3, "x"}}));
}

}  // namespace
