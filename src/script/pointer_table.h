// Reading through a pointer table, and growing a table description to the
// full run of entries that address the script's strings.
#pragma once

#include <cstdint>

#include "trelvane.h"

// Value of entry n: size bytes little-endian in a plain table, or the bytes at
// low + n, high + n and bank + n of a split table. False when a byte lies
// outside the current image. Sizes outside 1 to 4 read as the nearest of them.
bool ReadPointerEntry(const PointerTable& table, int64_t entry, int64_t& value);

// Image offset that entry n addresses (its value plus base), as above.
bool PointerEntryTarget(const PointerTable& table, int64_t entry, int64_t& target);

// Strings per pointer as the readers use it: a frequency below 1 counts as 1.
int32_t EffectiveFrequency(const PointerTable& table);
