// Pointers in the forms games store them (PointerForm of the C interface):
// where each pointer's bytes lie, what its value addresses and which value
// addresses a given offset.
#pragma once

#include <cstdint>
#include <optional>

#include "trelvane.h"

// A form with every field at its neutral value: a plain table of `size`
// little-endian bytes at `table`, base 0, no mapping, no split tables.
PointerForm PlainPointerForm(int32_t size, int64_t table);

// The bytes of one pointer, least significant first.
struct PointerPlace {
    int64_t byteAt[4] = {};
    int32_t size = 0;
};

// Reports TLERR_POINTER_FORM for a form that cannot be read: a size outside
// 1 to 4, a mapping on pointers of fewer than 3 bytes, a negative stride.
bool CheckPointerForm(const PointerForm& form);

// Bytes from one table entry to the next.
int64_t PointerStride(const PointerForm& form);

// True for a table split into low, high and bank byte tables.
inline bool IsSplitForm(const PointerForm& form) { return form.low >= 0; }

// The place of table entry n (plain or split).
PointerPlace PlaceOfEntry(const PointerForm& form, int64_t entry);

// The place of a pointer of the form's size and byte order at offset.
PointerPlace PlaceAtOffset(const PointerForm& form, int64_t offset);

// True when every byte of the place lies inside the current image.
bool PlaceInsideImage(const PointerPlace& place);

// The value at a place inside the current image.
uint32_t ReadPlace(const unsigned char* image, const PointerPlace& place);
void WritePlace(unsigned char* image, const PointerPlace& place, uint32_t value);

// The image offset a value addresses (base or mapping), or nothing where the
// mapping holds no image byte; the offset may lie beyond the image's end.
std::optional<int64_t> TargetOfValue(const PointerForm& form, uint32_t value);

// The value that addresses offset, keeping what the old value held beyond
// the address (a mirror bank, a fourth byte) where it still addresses the
// same offset; nothing when no value of the form's size addresses it.
std::optional<uint32_t> ValueForTarget(const PointerForm& form, int64_t offset, uint32_t oldValue);

// The offset entry n of the table addresses, or nothing when the entry or
// its target lies outside the current image.
std::optional<int64_t> EntryTarget(const PointerForm& form, int64_t entry);
