#include "text/fsa.h"

#include <gtest/gtest.h>

#include <string>

#include "text/source_reader.h"
#include "text/token_list.h"

namespace {

// Patterns added one by one to a skipping reader, as patch files add theirs.
TEST(PatternTest, AtomsClassesRepeatsAndPrecedence) {
    using Patterns = std::vector<LexiconPattern>;
    const struct Case {
        Patterns patterns;
        const char* text;
        TokenList tokens;
        uint32_t flags = READER_SKIP_SPACE;
    } cases[] = {
        {{{1, "ab"}, {2, "\\[\\^\\\\\\*\\+"}, {3, "^\""}, {4, "[^x]y"}, {5, "[^\\]]z"}},
         "ab AB [^\\*+ \n q qy xy Xy qz ]z \"",  // a complement removes no twin: "X" stays in [^x]
         {{1, "ab"}, {1, "AB"}, {2, "[^\\*+"}, {3, "q"}, {4, "qy"}, {3, "x"}, {3, "y"}, {4, "Xy"}, {5, "qz"},
          {3, "]"}, {3, "z"}, {TOKEN_UNKNOWN, "\""}}},
        {{{1, "[a|b|c]"}, {2, "[d-f|\\-|7]!"}, {3, "[xy"}, {4, "[ab]"}},  // "y" and "b" close their classes
         "a C e! F! -! 7! g! x X a] A] b]",
         {{1, "a"}, {1, "C"}, {2, "e!"}, {2, "F!"}, {2, "-!"}, {2, "7!"}, {TOKEN_UNKNOWN, "g"}, {TOKEN_UNKNOWN, "!"},
          {3, "x"}, {3, "X"}, {4, "a]"}, {4, "A]"}, {1, "b"}, {TOKEN_UNKNOWN, "]"}}},
        {{{1, "a+"}, {2, "\\+"}, {3, "xb*c"}},
         "a aAaa + xc xbbbc *",
         {{1, "a"}, {1, "aAaa"}, {2, "+"}, {3, "xc"}, {3, "xbbbc"}, {TOKEN_UNKNOWN, "*"}}},
        {{{15, "[a-z|A-Z|0-9|_]+"}, {20, "[0-9]+"}, {8, "base"}, {14, "[0-9|a-f|A-F]+h"}},
         "42 42x x42 base BASE bas bases base1 12h 12 12hx",
         {{20, "42"}, {15, "42x"}, {15, "x42"}, {8, "base"}, {8, "BASE"}, {15, "bas"}, {15, "bases"}, {15, "base1"},
          {14, "12h"}, {20, "12"}, {15, "12hx"}}},
        {{{15, "[a-z]+"}, {8, "base"}, {9, "base"}}, "base", {{9, "base"}}},
        {{{11, "\"^\"*\""}}, " \"a\nb\" \"\"", {{11, "\"a\nb\""}, {11, "\"\""}}},
        {{{1, "[a-c]x"}}, "bx Bx", {{1, "bx"}, {TOKEN_UNKNOWN, "B"}, {TOKEN_UNKNOWN, "x"}},
         READER_SKIP_SPACE | READER_CASE_SENSITIVE},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        SourceReader reader(c.flags);
        for (const LexiconPattern& p : c.patterns) ASSERT_TRUE(reader.AddPattern(p.kind, p.pattern)) << p.pattern;
        EXPECT_EQ(ReadTokens(reader, c.text), c.tokens);
    }
}

TEST(PatternTest, FirstAdditionCreatesOrCopiesAPrivateAutomaton) {
    const LexiconPattern patterns[] = {{1, "[a-z]+"}, {2, "if"}};
    const Fsa shared = CompileLexicon(patterns);
    const int states = shared.StateCount(), transitions = shared.TransitionCount();
    SourceReader first(READER_SKIP_SPACE), second(READER_SKIP_SPACE);
    first.SetAutomaton(&shared);
    second.SetAutomaton(&shared);
    ASSERT_TRUE(first.AddPattern(3, "then"));
    EXPECT_NE(first.Automaton(), &shared);
    EXPECT_EQ(first.Automaton()->Flags(), FSA_OWNED);
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
        SCOPED_TRACE(pattern);
        EXPECT_FALSE(fsa.AddPattern(3, pattern, false));
        ASSERT_EQ(fsa.StateCount(), before.StateCount());
        ASSERT_EQ(fsa.TransitionCount(), before.TransitionCount());
        for (int i = 0; i < fsa.StateCount(); ++i) {  // same accepting kinds, same moves
            ASSERT_EQ(fsa.Accept(i), before.Accept(i));
            for (int c = 0; c < 256; ++c) ASSERT_EQ(fsa.Next(i, static_cast<unsigned char>(c)), before.Next(i, c));
        }
    }
    EXPECT_TRUE(fsa.AddPattern(3, std::string(255, 'c').c_str(), false));
}

TEST(FsaTest, CountsStopAtTheSixteenBitLimit) {
    Fsa fsa;
    std::string word(250, 'a');
    int n = 0;
    for (; n < 200; ++n) {
        word[0] = static_cast<char>('a' + n % 26);  // a fresh prefix: about 249 new states per word
        word[1] = static_cast<char>('a' + n / 26);
        const int states = fsa.StateCount();
        if (!fsa.AddPattern(n, word.c_str(), true)) {
            EXPECT_EQ(fsa.StateCount(), states);
            break;
        }
    }
    EXPECT_LT(n, 200);
    EXPECT_GT(fsa.StateCount(), FSA_MAX_STATES - 250);
}

}  // namespace
