// The pointer finder as the verbs drive it: the places holding a pointer to
// a string, in the forms the options allow or the image's system uses, and
// the tables among them.
#pragma once

#include <cstdint>
#include <vector>

#include "script/table_finder.h"
#include "verbs/pointer_options.h"

struct PointerSearch {
    std::vector<FoundPointer> places;
    std::vector<PointerForm> tables;  // longest first; none without a table (fontId 0)
};

PointerSearch SearchPointersTo(int64_t target, const PointerOptions& options, long fontId);
