#include "verbs/pointer_search.h"

#include "core/rom_slots.h"

PointerSearch SearchPointersTo(int64_t target, const PointerOptions& options, long fontId) {
    const PointerForm given = PointerFormOf(options, -1);
    const int size = options.size.empty() ? 0 : given.size;
    const std::vector<PointerCandidate> candidates =
        PointerCandidates(target, CurrentRom().type, size, !options.base.empty(), given.base, given.map);
    PointerSearch search;
    search.places = FindPointersTo(candidates);
    if (!fontId) return search;
    search.tables = FindTables(fontId, search.places, target);
    AddSplitTables(fontId, candidates, target, search.tables);
    return search;
}
