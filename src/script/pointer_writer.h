// Where an insertion writes the next pointer: program-wide, so a table's
// place and shape carry over from one script file to the next.
#pragma once

#include <cstdint>

constexpr int32_t POINTER_UNSET = -1;

struct PointerDestination {
    int32_t table = POINTER_UNSET;  // next pointer, or next low byte of a split pointer
    int32_t high = POINTER_UNSET;   // next high byte of a split pointer
    int32_t bank = POINTER_UNSET;   // next bank byte of a split pointer
    int32_t frequency = POINTER_UNSET;
    int32_t size = POINTER_UNSET;  // unset: the table is split
};

// The destination, read-only: only SetPointerDestination (the script
// header's pointer commands) and WritePointer change it.
const PointerDestination& CurrentPointerDestination();

void SetPointerDestination(const PointerDestination& destination);

// Strings per pointer: an unset frequency counts as 1.
int32_t PointerFrequency();

// Writes value at the destination and moves it on past the bytes written.
// Refuses (reported, nothing written) a pointer with a byte outside the image.
bool WritePointer(int64_t value);
