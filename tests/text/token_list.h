// Cuts a text into (kind, text) pairs with a given automaton, for lexicon tests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "text/source_reader.h"

using TokenList = std::vector<std::pair<int, std::string>>;

// The tokens left in the reader's top source.
inline TokenList RemainingTokens(SourceReader& reader) {
    TokenList tokens;
    for (int kind = reader.NextToken(); kind != TOKEN_END; kind = reader.NextToken())
        tokens.emplace_back(kind, reader.TokenText());
    return tokens;
}

inline TokenList ReadTokens(SourceReader& reader, const char* text) {
    reader.OpenText("test", text);
    return RemainingTokens(reader);
}
