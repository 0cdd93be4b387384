#include "patch/patch_lexicon.h"

#include <gtest/gtest.h>

#include <string>

#include "text/source_reader.h"
#include "text/token_list.h"

namespace {

TEST(PatchLexiconTest, CompiledSizes) {
    EXPECT_EQ(Lexicon65816().StateCount(), 301);
    EXPECT_EQ(Lexicon65816().TransitionCount(), 589);
    EXPECT_EQ(GenericLexicon().StateCount(), 106);
    EXPECT_EQ(GenericLexicon().TransitionCount(), 174);
}

TEST(PatchLexiconTest, WordsMnemonicsAndRegisters) {
    EXPECT_EQ(Tokens(Lexicon65816(), "LDA lda2 a ah dbr ??? xce ldax dbr2 FFh1 _loop $var"),
              (TokenList{{42, "LDA"}, {TOKEN_IDENTIFIER, "lda2"}, {916, "a"}, {TOKEN_HEX, "ah"}, {920, "dbr"},
                         {0, "???"}, {110, "xce"}, {TOKEN_IDENTIFIER, "ldax"}, {TOKEN_IDENTIFIER, "dbr2"},
                         {TOKEN_IDENTIFIER, "FFh1"}, {TOKEN_UNDERSCORE_NAME, "_loop"}, {TOKEN_VARIABLE, "$var"}}));
    EXPECT_EQ(Tokens(Lexicon65816(), "pbr d m p x y s ?3 @ : , ( )"),
              (TokenList{{921, "pbr"}, {922, "d"}, {923, "m"}, {924, "p"}, {917, "x"}, {918, "y"}, {919, "s"},
                         {TOKEN_PARAMETER, "?3"}, {TOKEN_AT, "@"}, {TOKEN_COLON, ":"}, {TOKEN_COMMA, ","},
                         {TOKEN_LPAREN, "("}, {TOKEN_RPAREN, ")"}}));
}

TEST(PatchLexiconTest, NumbersAndMemoryForms) {
    EXPECT_EQ(Tokens(Lexicon65816(), "0FFh 255 12AB 12ABh FFh FFG 12hx"),
              (TokenList{{TOKEN_HEX, "0FFh"}, {TOKEN_DECIMAL, "255"}, {TOKEN_DECIMAL, "12AB"}, {TOKEN_HEX, "12ABh"},
                         {TOKEN_HEX, "FFh"}, {TOKEN_IDENTIFIER, "FFG"}, {TOKEN_HEX, "12h"}, {917, "x"}}));
    EXPECT_EQ(Tokens(Lexicon65816(), "[12h] [12h+s] [12h+x] [12H+Y] [(12h+s)+y] [12+x] [12] +s +X"),
              (TokenList{{TOKEN_MEMORY, "[12h]"}, {TOKEN_MEMORY_S, "[12h+s]"}, {TOKEN_MEMORY_X, "[12h+x]"},
                         {TOKEN_MEMORY_Y, "[12H+Y]"}, {TOKEN_MEMORY_S_Y, "[(12h+s)+y]"},
                         {TOKEN_BAD_MEMORY, "[12+x]"}, {TOKEN_BAD_MEMORY, "[12]"}, {TOKEN_INDEX_S, "+s"},
                         {TOKEN_INDEX_X, "+X"}}));
    EXPECT_EQ(Tokens(Lexicon65816(), "[12h +x]"),
              (TokenList{{TOKEN_UNKNOWN, "["}, {TOKEN_HEX, "12h"}, {TOKEN_INDEX_X, "+x"}, {TOKEN_UNKNOWN, "]"}}));
}

TEST(PatchLexiconTest, DirectivesStringsAndComments) {
    EXPECT_EQ(Tokens(Lexicon65816(), ".foo .macros .MACRO .macro2 .Address .string .pointer .endm .eql .assume"),
              (TokenList{{TOKEN_DIRECTIVE, ".foo"}, {TOKEN_DIRECTIVE, ".macros"}, {TOKEN_DOT_MACRO, ".MACRO"},
                         {TOKEN_DOT_MACRO, ".macro"}, {TOKEN_DECIMAL, "2"}, {TOKEN_DOT_ADDRESS, ".Address"},
                         {TOKEN_STRING, ".string"}, {TOKEN_DOT_POINTER, ".pointer"}, {TOKEN_DOT_ENDM, ".endm"},
                         {TOKEN_DOT_EQL, ".eql"}, {TOKEN_DOT_ASSUME, ".assume"}}));
    EXPECT_EQ(Tokens(Lexicon65816(), ".byte .word .charset .include .patch"),
              (TokenList{{TOKEN_DOT_BYTE, ".byte"}, {TOKEN_DOT_WORD, ".word"}, {TOKEN_DOT_CHARSET, ".charset"},
                         {TOKEN_DOT_INCLUDE, ".include"}, {TOKEN_DOT_PATCH, ".patch"}}));
    EXPECT_EQ(Tokens(Lexicon65816(), "\"file.asm\" \"a b\""),
              (TokenList{{TOKEN_STRING, "\"file.asm\""}, {TOKEN_UNKNOWN, "\""}, {916, "a"}, {TOKEN_IDENTIFIER, "b"},
                         {TOKEN_UNKNOWN, "\""}}));
    SourceReader reader(READER_SKIP_SPACE);
    reader.SetAutomaton(&Lexicon65816());
    EXPECT_EQ(ReadTokens(reader, "lda ; load it\nrts"),
              (TokenList{{42, "lda"}, {TOKEN_COMMENT, "; load it"}, {75, "rts"}}));
    EXPECT_EQ(reader.TokenLine(), 2);
}

TEST(PatchLexiconTest, RunTimeWordsTakeOverTheirExactText) {
    SourceReader reader(READER_SKIP_SPACE);
    reader.SetAutomaton(&Lexicon65816());
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE, "foo"));
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE + 1, "lda"));
    ASSERT_TRUE(reader.AddPattern(TOKEN_MACRO_BASE, "_twice"));
    EXPECT_EQ(ReadTokens(reader, "foo FOO fo foobar lda ldax _twice _twice2"),
              (TokenList{{TOKEN_SYMBOL_BASE, "foo"}, {TOKEN_SYMBOL_BASE, "FOO"}, {TOKEN_IDENTIFIER, "fo"},
                         {TOKEN_IDENTIFIER, "foobar"}, {TOKEN_SYMBOL_BASE + 1, "lda"}, {TOKEN_IDENTIFIER, "ldax"},
                         {TOKEN_MACRO_BASE, "_twice"}, {TOKEN_UNDERSCORE_NAME, "_twice2"}}));
    EXPECT_EQ(Tokens(Lexicon65816(), "foo lda"), (TokenList{{TOKEN_IDENTIFIER, "foo"}, {42, "lda"}}));
}

TEST(PatchLexiconTest, PatternsThatWouldFloodTheCopyAreRefused) {
    SourceReader reader(READER_SKIP_SPACE);
    reader.SetAutomaton(&Lexicon65816());
    const std::string longName(255, 'q');
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE, longName.c_str()));
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE + 1, longName.c_str()));
    const int states = reader.Automaton()->StateCount();
    const int transitions = reader.Automaton()->TransitionCount();
    EXPECT_FALSE(reader.AddPattern(1, "^x*"));  // a starred complement spreads over every path
    EXPECT_EQ(reader.Automaton()->StateCount(), states);
    EXPECT_EQ(reader.Automaton()->TransitionCount(), transitions);
    EXPECT_EQ(ReadTokens(reader, (longName + " lda").c_str()),
              (TokenList{{TOKEN_SYMBOL_BASE + 1, longName}, {42, "lda"}}));
}

TEST(PatchLexiconTest, GenericLexiconHasNoInstructions) {
    EXPECT_EQ(Tokens(GenericLexicon(), "lda a @name _x .pointer @ 12h"),
              (TokenList{{TOKEN_IDENTIFIER, "lda"}, {TOKEN_IDENTIFIER, "a"}, {TOKEN_UNDERSCORE_NAME, "@name"},
                         {TOKEN_UNKNOWN, "_"}, {TOKEN_IDENTIFIER, "x"}, {TOKEN_DIRECTIVE, ".pointer"},
                         {TOKEN_UNKNOWN, "@"}, {TOKEN_HEX, "12h"}}));
}

}  // namespace
