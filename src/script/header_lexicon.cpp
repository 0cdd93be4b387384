#include "script/header_lexicon.h"

namespace {

constexpr LexiconPattern HEADER_PATTERNS[] = {
    {HEADER_TOKEN_QUOTED, "\"^\"+\""},
    {HEADER_TOKEN_DECIMAL, "[0-9]+"},
    {HEADER_TOKEN_HEX, "[0-9|a-f|A-F]+h"},
    {HEADER_TOKEN_LOAD, "load"},
    {HEADER_TOKEN_TEXTADDRESS, "textaddress"},
    {HEADER_TOKEN_FIRSTPOINTER, "firstpointer"},
    {HEADER_TOKEN_POINTERTABLE, "pointertable"},
    {HEADER_TOKEN_POINTERTABLELOW, "pointertablelow"},
    {HEADER_TOKEN_POINTERTABLEHIGH, "pointertablehigh"},
    {HEADER_TOKEN_POINTERTABLEBANK, "pointertablebank"},
    {HEADER_TOKEN_POINTERFREQUENCY, "pointerfrequency"},
    {HEADER_TOKEN_POINTERSIZE, "pointersize"},
    {HEADER_TOKEN_OPEN_BRACKET, "\\["},
    {HEADER_TOKEN_CLOSE_BRACKET, "]"},
    {HEADER_TOKEN_LPAREN, "("},
    {HEADER_TOKEN_RPAREN, ")"},
    {HEADER_TOKEN_COMMENT, ";"},
};

}  // namespace

const Fsa& HeaderLexicon() {
    static const Fsa lexicon = CompileLexicon(HEADER_PATTERNS);
    return lexicon;
}
