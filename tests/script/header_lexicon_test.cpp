#include "script/header_lexicon.h"

#include <gtest/gtest.h>

#include "text/token_list.h"

namespace {

TEST(HeaderLexiconTest, TokensOfAScriptHeader) {
    EXPECT_EQ(Tokens(HeaderLexicon(), "load \"font.tbl\"\r\nTextAddress C000h (12AB)\npointertable 10h"),
              (TokenList{{HEADER_TOKEN_LOAD, "load"}, {HEADER_TOKEN_QUOTED, "\"font.tbl\""},
                         {HEADER_TOKEN_TEXTADDRESS, "TextAddress"}, {HEADER_TOKEN_HEX, "C000h"},
                         {HEADER_TOKEN_LPAREN, "("}, {HEADER_TOKEN_DECIMAL, "12AB"}, {HEADER_TOKEN_RPAREN, ")"},
                         {HEADER_TOKEN_POINTERTABLE, "pointertable"}, {HEADER_TOKEN_HEX, "10h"}}));
    EXPECT_EQ(Tokens(HeaderLexicon(), "pointertablelow pointertablehigh pointertablebank pointersize pointerl"),
              (TokenList{{HEADER_TOKEN_POINTERTABLELOW, "pointertablelow"},
                         {HEADER_TOKEN_POINTERTABLEHIGH, "pointertablehigh"},
                         {HEADER_TOKEN_POINTERTABLEBANK, "pointertablebank"},
                         {HEADER_TOKEN_POINTERSIZE, "pointersize"}, {TOKEN_UNKNOWN, "p"}, {TOKEN_UNKNOWN, "o"},
                         {TOKEN_UNKNOWN, "i"}, {TOKEN_UNKNOWN, "n"}, {TOKEN_UNKNOWN, "t"}, {TOKEN_UNKNOWN, "e"},
                         {TOKEN_UNKNOWN, "r"}, {TOKEN_UNKNOWN, "l"}}));
    EXPECT_EQ(Tokens(HeaderLexicon(), "firstpointer 8000h pointerfrequency 2 ; x\n\"\" [0000] ]"),
              (TokenList{{HEADER_TOKEN_FIRSTPOINTER, "firstpointer"}, {HEADER_TOKEN_HEX, "8000h"},
                         {HEADER_TOKEN_POINTERFREQUENCY, "pointerfrequency"}, {HEADER_TOKEN_DECIMAL, "2"},
                         {HEADER_TOKEN_COMMENT, ";"}, {TOKEN_UNKNOWN, "x"}, {TOKEN_UNKNOWN, "\""},
                         {TOKEN_UNKNOWN, "\""}, {HEADER_TOKEN_OPEN_BRACKET, "["}, {HEADER_TOKEN_DECIMAL, "0000"},
                         {HEADER_TOKEN_CLOSE_BRACKET, "]"}, {HEADER_TOKEN_CLOSE_BRACKET, "]"}}));
}

}  // namespace
