// Arbitrary pattern lists compiled into an automaton (fresh, or a copy of the
// 65816 lexicon), which must stay deterministic, then run over the same bytes.
#include <cstddef>
#include <cstdint>
#include <string>

#include "asm/patch_lexicon.h"
#include "text/source_reader.h"

namespace {

// Every state's transitions hold pairwise disjoint sets, every target exists, and the
// lookup that Match uses gives exactly the transitions of the table.
bool Deterministic(const Fsa& fsa) {
    std::vector<CharSet> taken(static_cast<size_t>(fsa.StateCount()));
    for (int i = 0; i < fsa.TransitionCount(); ++i) {
        const FsaTransition& t = fsa.Transition(i);
        if (t.from >= fsa.StateCount() || t.to >= fsa.StateCount()) return false;
        if (!t.set.Intersection(taken[t.from]).Empty()) return false;
        for (int c = 0; c < 256; ++c)
            if (t.set.Has(static_cast<unsigned char>(c))) taken[t.from].Add(static_cast<unsigned char>(c));
    }
    for (int state = 0; state < fsa.StateCount(); ++state) {
        for (int c = 0; c < 256; ++c) {
            if (!taken[state].Has(static_cast<unsigned char>(c)) && fsa.Next(state, static_cast<unsigned char>(c)) != -1)
                return false;
        }
    }
    for (int i = 0; i < fsa.TransitionCount(); ++i) {
        const FsaTransition& t = fsa.Transition(i);
        for (int c = 0; c < 256; ++c)
            if (t.set.Has(static_cast<unsigned char>(c)) && fsa.Next(t.from, static_cast<unsigned char>(c)) != t.to)
                return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t control = data[0];
    const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);
    SourceReader reader(READER_SKIP_SPACE | ((control & 1) ? READER_CASE_SENSITIVE : 0));
    if (control & 2) reader.SetAutomaton(&Lexicon65816());
    size_t start = 0;
    for (int kind = 1; start <= input.size() && kind <= 16; ++kind) {
        size_t end = input.find('\n', start);
        if (end == std::string::npos) end = input.size();
        const std::string pattern = input.substr(start, end - start);
        start = end + 1;
        const int states = reader.Automaton() ? reader.Automaton()->StateCount() : 1;
        const int transitions = reader.Automaton() ? reader.Automaton()->TransitionCount() : 0;
        if (!reader.AddPattern(kind, pattern.c_str()) &&
            (reader.Automaton()->StateCount() != states || reader.Automaton()->TransitionCount() != transitions))
            __builtin_trap();
    }
    if (reader.Automaton() && !Deterministic(*reader.Automaton())) __builtin_trap();
    reader.OpenText("fuzz", input.c_str());
    while (reader.NextToken() != TOKEN_END) {
    }
    return 0;
}
