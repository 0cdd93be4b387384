#include "table/shortest_encoding.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "table/encoder_matches.h"
#include "table/font_set.h"

namespace {

constexpr int64_t kUnreachable = std::numeric_limits<int64_t>::max() / 2;

int64_t BytesOf(const EncoderMatch& match) {
    return (match.entry >= TWO_BYTE_FIRST_ENTRY ? 2 : 1) + match.parameterCount;
}

// The best way from position i on: its bytes and its first match.
struct Step {
    int64_t cost = kUnreachable;
    EncoderMatch match;
    size_t next = 0;
};

}  // namespace

EncodedText EncodeShortest(long fontId, const char* text, EncodeRules rules) {
    const Font* font = FindFont(fontId);
    if (!font) return {};
    const size_t length = std::strlen(text);
    const int64_t terminalCost = !rules.appendTerminal ? 0
                                 : font->index.terminalEntry < 0 ? kUnreachable
                                 : font->index.terminalEntry >= TWO_BYTE_FIRST_ENTRY ? 2 : 1;
    std::vector<Step> best(length + 1);
    best[length].cost = terminalCost;  // an empty text is its terminal code
    std::vector<EncoderMatch> matches;
    for (size_t i = length; i-- > 0;) {
        AllMatchesAt(*font, text, i, rules, matches);
        for (auto m = matches.begin(); m != matches.end(); ++m) {
            const size_t next = i + m->length + LineBreakOfCode(*font, text + i, *m, rules);
            const bool ends = next >= length;
            const int64_t rest = !ends ? best[next].cost : (font->flags[m->entry] & ENTRY_TERMINAL) ? 0 : terminalCost;
            const int64_t cost = BytesOf(*m) + rest;
            // Among equal costs the longer match wins, then the lower entry.
            if (cost < best[i].cost || (cost == best[i].cost && m->length > best[i].match.length))
                best[i] = Step{cost, *m, next};
        }
    }
    if (best[0].cost >= kUnreachable) return {};
    std::vector<EncoderMatch> chosen;
    for (size_t i = 0; i < length; i = best[i].next) {
        if (best[i].cost >= kUnreachable) return {};
        chosen.push_back(best[i].match);
    }
    return EncodeMatches(*font, chosen, rules);
}
