// How far a table of pointers to strings goes. Real tables are not always in
// text order: an entry may repeat another's target, be null (value 0), or
// address the shared tail of another string. A table is a run of entries from
// the first whose strings, taken together, cover one unbroken block of text:
// every target starts a string or shares the end of the string it lies in.
// Since any byte inside a string shares its end, a table does not end on such
// a tail entry: the last entry taken in starts a string.
#pragma once

#include <cstdint>

#include "trelvane.h"

// Entries from entry 0 that form such a table (0 when the first does not
// address a string), looking at no more than maxEntries of them.
int64_t TableExtent(long fontId, const PointerForm& form, int64_t maxEntries);
