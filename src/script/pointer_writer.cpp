#include "script/pointer_writer.h"

#include <cstdio>

#include "core/last_error.h"
#include "core/little_endian.h"
#include "core/rom_slots.h"
#include "trelvane.h"

namespace {

PointerDestination destination;

bool RefusePointerAt(int64_t offset) {
    char what[64];
    std::snprintf(what, sizeof what, "Pointer at %06Xh outside the image", static_cast<unsigned>(offset));
    return SetError(TLERR_UNSUPPORTED, "", 0, 0, what);
}

bool Inside(int64_t offset, int64_t length) { return offset != POINTER_UNSET && RomRangeInside(offset, length); }

}  // namespace

const PointerDestination& CurrentPointerDestination() { return destination; }

void SetPointerDestination(const PointerDestination& changed) { destination = changed; }

int32_t PointerFrequency() { return destination.frequency == POINTER_UNSET ? 1 : destination.frequency; }

bool WritePointer(int64_t value) {
    PointerDestination& at = destination;
    if (at.size != POINTER_UNSET) {
        if (!Inside(at.table, at.size)) return RefusePointerAt(at.table);
        WriteLittleEndian(CurrentRom().data + at.table, static_cast<uint32_t>(value), at.size);
        at.table += at.size;
        return true;
    }
    bool high = at.high != POINTER_UNSET, bank = high && at.bank != POINTER_UNSET;
    if (!Inside(at.table, 1)) return RefusePointerAt(at.table);
    if (high && !Inside(at.high, 1)) return RefusePointerAt(at.high);
    if (bank && !Inside(at.bank, 1)) return RefusePointerAt(at.bank);
    CurrentRom().data[at.table++] = static_cast<unsigned char>(value);
    if (high) CurrentRom().data[at.high++] = static_cast<unsigned char>(value >> 8);
    if (bank) CurrentRom().data[at.bank++] = static_cast<unsigned char>(value >> 16);
    return true;
}
