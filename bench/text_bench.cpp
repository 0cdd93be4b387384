// The tokenizer under a patch script's load: 5,000 symbol names added to a
// private copy of the 65816 lexicon, and a 1 MB script that uses them cut into tokens.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "asm/patch_lexicon.h"
#include "text/source_reader.h"

namespace {

constexpr int kSymbolCount = 5000;
constexpr size_t kScriptSize = 1024 * 1024;

std::vector<std::string> SymbolNames() {
    static const char* const stems[] = {"player", "enemy", "menu", "text", "sound", "map", "item", "flag"};
    std::vector<std::string> names;
    char name[32];
    for (int i = 0; i < kSymbolCount; ++i) {
        std::snprintf(name, sizeof name, "%s_%s%d", stems[i % 8], i % 3 ? "x" : "pos", i / 8);
        names.emplace_back(name);
    }
    return names;
}

// Adds every name as a symbol word; false when one is refused.
bool AddSymbols(SourceReader& reader, const std::vector<std::string>& names) {
    for (size_t i = 0; i < names.size(); ++i)
        if (!reader.AddPattern(TOKEN_SYMBOL_BASE + static_cast<int32_t>(i), names[i].c_str())) return false;
    return true;
}

// Statements that use the symbols: instructions, memory forms, data, labels and comments.
std::string PatchScript(const std::vector<std::string>& names) {
    std::string script = ".patch 808000h\n";
    for (size_t i = 0; script.size() < kScriptSize; i = (i + 37) % names.size()) {
        const std::string& name = names[i];
        script += "loop" + std::to_string(i) + ":\n\tlda " + name + "\n\tsta [7E0010h+x] ; keep " + name +
                  "\n\tadc #" + std::to_string(i) + "\n\t.byte 12h, 0FFh, " + name + "\n\tbne loop" +
                  std::to_string(i) + "\n";
    }
    return script;
}

void BM_AddSymbolNames(benchmark::State& state) {
    const std::vector<std::string> names = SymbolNames();
    for (auto _ : state) {
        SourceReader reader(READER_SKIP_SPACE);
        reader.SetAutomaton(&Lexicon65816());
        if (!AddSymbols(reader, names)) state.SkipWithError("a symbol name was refused");
        benchmark::DoNotOptimize(reader.Automaton()->StateCount());
    }
    state.SetItemsProcessed(state.iterations() * kSymbolCount);
}
BENCHMARK(BM_AddSymbolNames)->Unit(benchmark::kMillisecond);

void BM_TokenizePatchScript(benchmark::State& state) {
    const std::vector<std::string> names = SymbolNames();
    const std::string script = PatchScript(names);
    SourceReader reader(READER_SKIP_SPACE);
    reader.SetAutomaton(&Lexicon65816());
    if (!AddSymbols(reader, names)) state.SkipWithError("a symbol name was refused");
    long tokens = 0;
    for (auto _ : state) {
        reader.OpenText("bench.asm", script.c_str());
        while (reader.NextToken() != TOKEN_END) ++tokens;
    }
    state.counters["tokens"] = static_cast<double>(tokens) / static_cast<double>(state.iterations());
    state.counters["states"] = reader.Automaton()->StateCount();
    state.counters["transitions"] = reader.Automaton()->TransitionCount();
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * script.size()));
}
BENCHMARK(BM_TokenizePatchScript)->Unit(benchmark::kMillisecond);

}  // namespace
