#include "table/table_lexicon.h"

#include <gtest/gtest.h>

#include "text/token_list.h"

namespace {

TEST(TableLexiconTest, CompiledSizes) {
    EXPECT_EQ(TableLexicon().StateCount(), 64);
    EXPECT_EQ(TableLexicon().TransitionCount(), 128);
}

TEST(TableLexiconTest, TokensOfATableFile) {
    EXPECT_EQ(Tokens(TableLexicon(), "[41]\"A\" {alt\n}; base baseline 12x 12ABh 12 FontRule=1,ROMANJI"),
              (TokenList{{TABLE_TOKEN_CODE, "[41]"}, {TABLE_TOKEN_QUOTED, "\"A\""},
                         {TABLE_TOKEN_ALTERNATIVE, "{alt\n}"}, {TABLE_TOKEN_COMMENT, ";"}, {TABLE_TOKEN_BASE, "base"},
                         {TABLE_TOKEN_WORD, "baseline"}, {TABLE_TOKEN_WORD, "12x"}, {TABLE_TOKEN_HEX, "12ABh"},
                         {TABLE_TOKEN_DECIMAL, "12"}, {TABLE_TOKEN_FONTRULE, "FontRule"}, {TABLE_TOKEN_EQUALS, "="},
                         {TABLE_TOKEN_DECIMAL, "1"}, {TABLE_TOKEN_COMMA, ","}, {TABLE_TOKEN_ROMANJI, "ROMANJI"}}));
    EXPECT_EQ(Tokens(TableLexicon(), "[8140] \"say \"\"\" newline terminal byte format image"),
              (TokenList{{TABLE_TOKEN_CODE, "[8140]"}, {TABLE_TOKEN_QUOTED, "\"say \""}, {TABLE_TOKEN_QUOTED, "\"\""},
                         {TABLE_TOKEN_NEWLINE, "newline"}, {TABLE_TOKEN_TERMINAL, "terminal"},
                         {TABLE_TOKEN_BYTE, "byte"}, {TABLE_TOKEN_FORMAT, "format"}, {TABLE_TOKEN_IMAGE, "image"}}));
}

}  // namespace
