#include "table/table_lexicon.h"

namespace {

constexpr LexiconPattern TABLE_PATTERNS[] = {
    {TABLE_TOKEN_WORD, "[a-z|A-Z|0-9|_]+"},
    {TABLE_TOKEN_DECIMAL, "[0-9]+"},
    {TABLE_TOKEN_HEX, "[0-9|a-f|A-F]+h"},
    {TABLE_TOKEN_CODE, "\\[[0-9|a-f|A-F]+]"},
    {TABLE_TOKEN_QUOTED, "\"^\"*\""},
    {TABLE_TOKEN_ALTERNATIVE, "{^}*}"},
    {TABLE_TOKEN_BASE, "base"},
    {TABLE_TOKEN_FORMAT, "format"},
    {TABLE_TOKEN_IMAGE, "image"},
    {TABLE_TOKEN_FONTRULE, "fontrule"},
    {TABLE_TOKEN_NEWLINE, "newline"},
    {TABLE_TOKEN_TERMINAL, "terminal"},
    {TABLE_TOKEN_BYTE, "byte"},
    {TABLE_TOKEN_COMMENT, ";"},
    {TABLE_TOKEN_COMMA, ","},
    {TABLE_TOKEN_EQUALS, "="},
    {TABLE_TOKEN_ROMANJI, "romanji"},
};

}  // namespace

const Fsa& TableLexicon() {
    static const Fsa lexicon = CompileLexicon(TABLE_PATTERNS);
    return lexicon;
}
