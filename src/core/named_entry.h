// Looking up an entry of a constant table by its name.
#pragma once

#include <cstddef>

#include "core/text_compare.h"

// The entry of entries whose name field equals name without regard to case, or null (also for a
// null name).
template <typename Entry, size_t Count>
const Entry* FindNamedEntry(const Entry (&entries)[Count], const char* Entry::*field, const char* name) {
    if (!name) return nullptr;
    for (const Entry& entry : entries)
        if (SameTextIgnoringCase(entry.*field, name)) return &entry;
    return nullptr;
}
