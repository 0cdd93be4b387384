// Finding the pointers to a string: every place that holds one in a form the
// image's system uses, and the tables of 8 or more pointers among them.
#pragma once

#include <cstdint>
#include <vector>

#include "script/pointer_candidates.h"

// A place holding a pointer to the target: form.table is the place.
struct FoundPointer {
    PointerForm form;
};

// Every place of the current image holding one of the candidates' values, by
// candidate, then offset; one pass over the image finds them all.
std::vector<FoundPointer> FindPointersTo(const std::vector<PointerCandidate>& candidates);

// The tables (plain, big endian, with a stride of up to 8 bytes) of at least
// minEntries pointers, as TableExtent measures them, that hold one of the
// pointers found; each with its first entry, count and form, longest first
// (then wider pointers, then shorter strides).
std::vector<PointerForm> FindTables(long fontId, const std::vector<FoundPointer>& pointers, int64_t target,
                                    int64_t minEntries = 8);

// Adds the split tables of 2-byte pointers (low bytes, then high bytes as many
// bytes further as the table has entries, 8 to 256) of at least minEntries
// entries that hold the low and high byte of a candidate's value, and sorts
// tables as FindTables does.
void AddSplitTables(long fontId, const std::vector<PointerCandidate>& candidates, int64_t target,
                    std::vector<PointerForm>& tables, int64_t minEntries = 8);
