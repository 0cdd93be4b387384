// Finding the pointers to a string: every place that holds one in a form the
// image's system uses, and the tables of 8 or more pointers among them.
#pragma once

#include <cstdint>
#include <vector>

#include "script/pointer_candidates.h"
#include "script/pointer_value_index.h"

// A place holding a pointer to the target: form.table is the place.
struct FoundPointer {
    PointerForm form;
};

// Every place holding one of the candidates' values, by candidate, then offset.
std::vector<FoundPointer> FindPointersTo(const PointerValueIndex& index, const std::vector<PointerCandidate>& candidates);

// The tables (plain, big endian, with a stride of up to 8 bytes) of at least
// minEntries pointers, as TableExtent measures them, that hold one of the
// pointers found; each with its first entry, count and form, longest first
// (then wider pointers, then shorter strides).
std::vector<PointerForm> FindTables(long fontId, const std::vector<FoundPointer>& pointers, int64_t target,
                                    int64_t minEntries = 8);
