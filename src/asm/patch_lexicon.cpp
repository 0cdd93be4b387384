#include "asm/patch_lexicon.h"

#include <vector>

const char* const MNEMONIC_NAMES[MNEMONIC_COUNT] = {
    "???", "adc", "and", "asl", "bcc", "bcs", "beq", "bge", "blt", "bmi", "bne", "bpl", "bra", "brk", "brl",
    "bvc", "bvs", "clc", "cld", "cli", "clp", "clr", "cmp", "cop", "cpa", "cpx", "cpy", "csp", "dea", "dec",
    "dex", "dey", "eor", "hlt", "ina", "inc", "inx", "iny", "jml", "jmp", "jsl", "jsr", "lda", "ldx", "ldy",
    "lsr", "mvn", "mvp", "nop", "ora", "pea", "pei", "per", "pha", "phb", "phd", "phk", "php", "phx", "phy",
    "pla", "plb", "pld", "plp", "plx", "ply", "psh", "pul", "rep", "ret", "rol", "ror", "rsl", "rti", "rtl",
    "rts", "sbc", "sec", "sed", "sei", "sep", "shl", "shr", "sta", "stx", "sty", "stz", "swa", "tad", "tas",
    "tax", "tay", "tcb", "tcd", "tcs", "tda", "tdc", "trb", "tsa", "tsb", "tsc", "tsx", "txa", "txs", "txy",
    "tya", "tyx", "wai", "wdm", "xba", "xce"};

const char* const REGISTER_NAMES[REGISTER_COUNT] = {"a", "x", "y", "s", "dbr", "pbr", "d", "m", "p"};

namespace {

// The ordered pattern list of the patch language; the generic lexicon leaves out the
// underscore names, .pointer, "@" as a token, the mnemonics and the registers, and reads
// "@" names as underscore names instead.
std::vector<LexiconPattern> PatchPatterns(bool cpu65816) {
    std::vector<LexiconPattern> patterns = {
        {TOKEN_IDENTIFIER, "[a-z|A-Z][a-z|A-Z|0-9|_]*"},
        {TOKEN_HEX, "[0-9|a-f|A-F]+h"},
        {TOKEN_DECIMAL, "[0-9]+"},
        {TOKEN_MEMORY, "\\[[0-9|a-f|A-F]+h]"},
        {TOKEN_MEMORY_S, "\\[[0-9|a-f|A-F]+h\\+s]"},
        {TOKEN_MEMORY_X, "\\[[0-9|a-f|A-F]+h\\+x]"},
        {TOKEN_MEMORY_Y, "\\[[0-9|a-f|A-F]+h\\+y]"},
        {TOKEN_MEMORY_S_Y, "\\[([0-9|a-f|A-F]+h\\+s)\\+y]"},
    };
    if (cpu65816) patterns.push_back({TOKEN_UNDERSCORE_NAME, "_[a-z|A-Z][a-z|A-Z|0-9|_]*"});
    patterns.insert(patterns.end(), {
        {TOKEN_VARIABLE, "$[a-z|A-Z|0-9|_]+"},
        {TOKEN_STRING, "\"[.|a-z|A-Z|0-9|_]+\""},
    });
    if (!cpu65816) patterns.push_back({TOKEN_UNDERSCORE_NAME, "@[a-z|A-Z|0-9|_]+"});
    patterns.insert(patterns.end(), {
        {TOKEN_PARAMETER, "?[0-9]"},
        {TOKEN_DIRECTIVE, ".[a-z|A-Z]+"},
        {TOKEN_DOT_MACRO, ".macro"},
        {TOKEN_DOT_ENDM, ".endm"},
        {TOKEN_DOT_EQL, ".eql"},
        {TOKEN_DOT_ASSUME, ".assume"},
        {TOKEN_DOT_BYTE, ".byte"},
        {TOKEN_DOT_WORD, ".word"},
        {TOKEN_DOT_CHARSET, ".charset"},
        {TOKEN_STRING, ".string"},
        {TOKEN_DOT_INCLUDE, ".include"},
        {TOKEN_DOT_ADDRESS, ".address"},
        {TOKEN_DOT_PATCH, ".patch"},
    });
    if (cpu65816) patterns.push_back({TOKEN_DOT_POINTER, ".pointer"});
    patterns.insert(patterns.end(), {
        {TOKEN_INDEX_S, "\\+s"},
        {TOKEN_INDEX_X, "\\+x"},
        {TOKEN_INDEX_Y, "\\+y"},
        {TOKEN_COLON, ":"},
        {TOKEN_COMMA, ","},
    });
    if (cpu65816) patterns.push_back({TOKEN_AT, "@"});
    patterns.insert(patterns.end(), {
        {TOKEN_COMMENT, ";^\n*"},
        {TOKEN_LPAREN, "("},
        {TOKEN_RPAREN, ")"},
        {TOKEN_BAD_MEMORY, "\\[[0-9|a-f|A-F]+]"},
        {TOKEN_BAD_MEMORY, "\\[[0-9|a-f|A-F]+\\+[s|x|y]]"},
    });
    if (!cpu65816) return patterns;
    for (int index = 0; index < MNEMONIC_COUNT; ++index) patterns.push_back({index, MNEMONIC_NAMES[index]});
    for (int row = 0; row < REGISTER_COUNT; ++row)
        patterns.push_back({TOKEN_REGISTER_BASE + FIRST_REGISTER_MODE + row, REGISTER_NAMES[row]});
    return patterns;
}

}  // namespace

const Fsa& Lexicon65816() {
    static const Fsa lexicon = CompileLexicon(PatchPatterns(true));
    return lexicon;
}

const Fsa& GenericLexicon() {
    static const Fsa lexicon = CompileLexicon(PatchPatterns(false));
    return lexicon;
}
