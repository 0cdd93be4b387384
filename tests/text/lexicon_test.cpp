// The constant lexicons of patch files, table files and script headers.
#include <gtest/gtest.h>

#include <string>

#include "asm/patch_lexicon.h"
#include "script/header_lexicon.h"
#include "table/table_lexicon.h"
#include "text/source_reader.h"
#include "text/token_list.h"

namespace {

TEST(LexiconTest, CompiledSizes) {
    const struct {
        const Fsa& lexicon;
        int states, transitions;
    } cases[] = {{Lexicon65816(), 301, 589}, {GenericLexicon(), 106, 174}, {TableLexicon(), 64, 128}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.lexicon.StateCount(), c.states);
        EXPECT_EQ(c.lexicon.TransitionCount(), c.transitions);
    }
}

TEST(LexiconTest, TokenKindsOfEachLexicon) {
    const struct {
        const Fsa& lexicon;
        const char* text;
        TokenList tokens;
    } cases[] = {
        {Lexicon65816(), "LDA lda2 a ah dbr ??? xce ldax dbr2 FFh1 _loop $var foo",
         {{42, "LDA"}, {TOKEN_IDENTIFIER, "lda2"}, {916, "a"}, {TOKEN_HEX, "ah"}, {920, "dbr"}, {0, "???"},
          {110, "xce"}, {TOKEN_IDENTIFIER, "ldax"}, {TOKEN_IDENTIFIER, "dbr2"}, {TOKEN_IDENTIFIER, "FFh1"},
          {TOKEN_UNDERSCORE_NAME, "_loop"}, {TOKEN_VARIABLE, "$var"}, {TOKEN_IDENTIFIER, "foo"}}},
        {Lexicon65816(), "pbr d m p x y s ?3 @ : , ( )",
         {{921, "pbr"}, {922, "d"}, {923, "m"}, {924, "p"}, {917, "x"}, {918, "y"}, {919, "s"},
          {TOKEN_PARAMETER, "?3"}, {TOKEN_AT, "@"}, {TOKEN_COLON, ":"}, {TOKEN_COMMA, ","}, {TOKEN_LPAREN, "("},
          {TOKEN_RPAREN, ")"}}},
        {Lexicon65816(), "0FFh 255 12AB 12ABh FFh FFG 12hx",
         {{TOKEN_HEX, "0FFh"}, {TOKEN_DECIMAL, "255"}, {TOKEN_DECIMAL, "12AB"}, {TOKEN_HEX, "12ABh"},
          {TOKEN_HEX, "FFh"}, {TOKEN_IDENTIFIER, "FFG"}, {TOKEN_HEX, "12h"}, {917, "x"}}},
        {Lexicon65816(), "[12h] [12h+s] [12h+x] [12H+Y] [(12h+s)+y] [12+x] [12] +s +X [12h +x]",
         {{TOKEN_MEMORY, "[12h]"}, {TOKEN_MEMORY_S, "[12h+s]"}, {TOKEN_MEMORY_X, "[12h+x]"},
          {TOKEN_MEMORY_Y, "[12H+Y]"}, {TOKEN_MEMORY_S_Y, "[(12h+s)+y]"}, {TOKEN_BAD_MEMORY, "[12+x]"},
          {TOKEN_BAD_MEMORY, "[12]"}, {TOKEN_INDEX_S, "+s"}, {TOKEN_INDEX_X, "+X"}, {TOKEN_UNKNOWN, "["},
          {TOKEN_HEX, "12h"}, {TOKEN_INDEX_X, "+x"}, {TOKEN_UNKNOWN, "]"}}},
        {Lexicon65816(), ".foo .macros .MACRO .macro2 .Address .string .pointer .endm .eql .assume",
         {{TOKEN_DIRECTIVE, ".foo"}, {TOKEN_DIRECTIVE, ".macros"}, {TOKEN_DOT_MACRO, ".MACRO"},
          {TOKEN_DOT_MACRO, ".macro"}, {TOKEN_DECIMAL, "2"}, {TOKEN_DOT_ADDRESS, ".Address"},
          {TOKEN_STRING, ".string"}, {TOKEN_DOT_POINTER, ".pointer"}, {TOKEN_DOT_ENDM, ".endm"},
          {TOKEN_DOT_EQL, ".eql"}, {TOKEN_DOT_ASSUME, ".assume"}}},
        {Lexicon65816(), ".byte .word .charset .include .patch \"file.asm\" \"a b\" lda ; load it\nrts",
         {{TOKEN_DOT_BYTE, ".byte"}, {TOKEN_DOT_WORD, ".word"}, {TOKEN_DOT_CHARSET, ".charset"},
          {TOKEN_DOT_INCLUDE, ".include"}, {TOKEN_DOT_PATCH, ".patch"}, {TOKEN_STRING, "\"file.asm\""},
          {TOKEN_UNKNOWN, "\""}, {916, "a"}, {TOKEN_IDENTIFIER, "b"}, {TOKEN_UNKNOWN, "\""}, {42, "lda"},
          {TOKEN_COMMENT, "; load it"}, {75, "rts"}}},
        {GenericLexicon(), "lda a @name _x .pointer @ 12h",
         {{TOKEN_IDENTIFIER, "lda"}, {TOKEN_IDENTIFIER, "a"}, {TOKEN_UNDERSCORE_NAME, "@name"}, {TOKEN_UNKNOWN, "_"},
          {TOKEN_IDENTIFIER, "x"}, {TOKEN_DIRECTIVE, ".pointer"}, {TOKEN_UNKNOWN, "@"}, {TOKEN_HEX, "12h"}}},
        {TableLexicon(), "[41]\"A\" {alt\n}; base baseline 12x 12ABh 12 FontRule=1,ROMANJI",
         {{TABLE_TOKEN_CODE, "[41]"}, {TABLE_TOKEN_QUOTED, "\"A\""}, {TABLE_TOKEN_ALTERNATIVE, "{alt\n}"},
          {TABLE_TOKEN_COMMENT, ";"}, {TABLE_TOKEN_BASE, "base"}, {TABLE_TOKEN_WORD, "baseline"},
          {TABLE_TOKEN_WORD, "12x"}, {TABLE_TOKEN_HEX, "12ABh"}, {TABLE_TOKEN_DECIMAL, "12"},
          {TABLE_TOKEN_FONTRULE, "FontRule"}, {TABLE_TOKEN_EQUALS, "="}, {TABLE_TOKEN_DECIMAL, "1"},
          {TABLE_TOKEN_COMMA, ","}, {TABLE_TOKEN_ROMANJI, "ROMANJI"}}},
        {TableLexicon(), "[8140] \"say \"\"\" newline terminal byte format image",
         {{TABLE_TOKEN_CODE, "[8140]"}, {TABLE_TOKEN_QUOTED, "\"say \""}, {TABLE_TOKEN_QUOTED, "\"\""},
          {TABLE_TOKEN_NEWLINE, "newline"}, {TABLE_TOKEN_TERMINAL, "terminal"}, {TABLE_TOKEN_BYTE, "byte"},
          {TABLE_TOKEN_FORMAT, "format"}, {TABLE_TOKEN_IMAGE, "image"}}},
        {HeaderLexicon(), "load \"font.tbl\"\r\nTextAddress C000h (12AB)\npointertable 10h",
         {{HEADER_TOKEN_LOAD, "load"}, {HEADER_TOKEN_QUOTED, "\"font.tbl\""}, {HEADER_TOKEN_TEXTADDRESS, "TextAddress"},
          {HEADER_TOKEN_HEX, "C000h"}, {HEADER_TOKEN_LPAREN, "("}, {HEADER_TOKEN_DECIMAL, "12AB"},
          {HEADER_TOKEN_RPAREN, ")"}, {HEADER_TOKEN_POINTERTABLE, "pointertable"}, {HEADER_TOKEN_HEX, "10h"}}},
        {HeaderLexicon(), "pointertablelow pointertablehigh pointertablebank pointersize pointerl",
         {{HEADER_TOKEN_POINTERTABLELOW, "pointertablelow"}, {HEADER_TOKEN_POINTERTABLEHIGH, "pointertablehigh"},
          {HEADER_TOKEN_POINTERTABLEBANK, "pointertablebank"}, {HEADER_TOKEN_POINTERSIZE, "pointersize"},
          {TOKEN_UNKNOWN, "p"}, {TOKEN_UNKNOWN, "o"}, {TOKEN_UNKNOWN, "i"}, {TOKEN_UNKNOWN, "n"}, {TOKEN_UNKNOWN, "t"},
          {TOKEN_UNKNOWN, "e"}, {TOKEN_UNKNOWN, "r"}, {TOKEN_UNKNOWN, "l"}}},
        {HeaderLexicon(), "firstpointer 8000h pointerfrequency 2 ; x\n\"\" [0000] ]",
         {{HEADER_TOKEN_FIRSTPOINTER, "firstpointer"}, {HEADER_TOKEN_HEX, "8000h"},
          {HEADER_TOKEN_POINTERFREQUENCY, "pointerfrequency"}, {HEADER_TOKEN_DECIMAL, "2"},
          {HEADER_TOKEN_COMMENT, ";"}, {TOKEN_UNKNOWN, "x"}, {TOKEN_UNKNOWN, "\""}, {TOKEN_UNKNOWN, "\""},
          {HEADER_TOKEN_OPEN_BRACKET, "["}, {HEADER_TOKEN_DECIMAL, "0000"}, {HEADER_TOKEN_CLOSE_BRACKET, "]"},
          {HEADER_TOKEN_CLOSE_BRACKET, "]"}}},
    };
    for (const auto& c : cases) {
        SourceReader reader(READER_SKIP_SPACE);
        reader.SetAutomaton(&c.lexicon);
        EXPECT_EQ(ReadTokens(reader, c.text), c.tokens) << c.text;
    }
}

// Symbols and macro names a patch file defines become words of its reader's private copy.
TEST(LexiconTest, RunTimeWordsTakeOverTheirExactText) {
    SourceReader reader(READER_SKIP_SPACE);
    reader.SetAutomaton(&Lexicon65816());
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE, "foo"));
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE + 1, "lda"));
    ASSERT_TRUE(reader.AddPattern(TOKEN_MACRO_BASE, "_twice"));
    EXPECT_EQ(ReadTokens(reader, "foo FOO fo foobar lda ldax _twice _twice2"),
              (TokenList{{TOKEN_SYMBOL_BASE, "foo"}, {TOKEN_SYMBOL_BASE, "FOO"}, {TOKEN_IDENTIFIER, "fo"},
                         {TOKEN_IDENTIFIER, "foobar"}, {TOKEN_SYMBOL_BASE + 1, "lda"}, {TOKEN_IDENTIFIER, "ldax"},
                         {TOKEN_MACRO_BASE, "_twice"}, {TOKEN_UNDERSCORE_NAME, "_twice2"}}));
    // A starred complement would spread over every path of the copy: refused, nothing changed.
    const std::string longName(255, 'q');
    ASSERT_TRUE(reader.AddPattern(TOKEN_SYMBOL_BASE + 2, longName.c_str()));
    EXPECT_FALSE(reader.AddPattern(1, "^x*"));
    EXPECT_EQ(ReadTokens(reader, (longName + " lda").c_str()),
              (TokenList{{TOKEN_SYMBOL_BASE + 2, longName}, {TOKEN_SYMBOL_BASE + 1, "lda"}}));
}

}  // namespace
