#include "script/pointer_table.h"

#include <algorithm>

#include "core/last_error.h"
#include "core/little_endian.h"
#include "core/rom_slots.h"
#include "script/string_measure.h"

namespace {

bool ReadImageByte(int64_t offset, int64_t& byte) {
    if (!RomRangeInside(offset, 1)) return false;
    byte = CurrentRom().data[offset];
    return true;
}

bool IsSplit(const PointerTable& table) { return table.low != 0; }

int32_t PlainSize(const PointerTable& table) { return std::clamp(table.size, 1, 4); }

bool ReadSplitEntry(const PointerTable& table, int64_t entry, int64_t& value) {
    int64_t low = 0, high = 0, bank = 0;
    if (!ReadImageByte(table.low + entry, low)) return false;
    if (table.high != 0) {
        if (!ReadImageByte(table.high + entry, high)) return false;
        if (table.bank != 0 && !ReadImageByte(table.bank + entry, bank)) return false;
    }
    value = low | high << 8 | bank << 16;
    return true;
}

bool ReadPlainEntry(const PointerTable& table, int64_t entry, int64_t& value) {
    int32_t size = PlainSize(table);
    int64_t at = table.table + entry * size;
    if (!RomRangeInside(at, size)) return false;
    value = ReadLittleEndian(CurrentRom().data + at, size);
    return true;
}

// The backward step may not pass the start of the image, nor bring a split
// table's offsets down to 0, which would mean "no such table".
bool CanMoveBack(const PointerTable& table) {
    if (!IsSplit(table)) return table.table >= PlainSize(table);
    if (table.low <= 1) return false;
    if (table.high == 0) return true;
    return table.high > 1 && (table.bank == 0 || table.bank > 1);
}

void MoveStart(PointerTable& table, int step) {
    if (!IsSplit(table)) {
        table.table += step * PlainSize(table);
        return;
    }
    table.low += step;
    if (table.high == 0) return;
    table.high += step;
    if (table.bank != 0) table.bank += step;
}

// Walks back from the first entry while each earlier entry repeats the next
// one's target or addresses strings that end exactly there. Returns the count
// of entries taken in, plus the one that ended the walk on a wrong length.
int32_t ExtendBackward(long fontId, PointerTable& table, int32_t frequency) {
    int32_t count = 0;
    int64_t next = 0, target = 0;
    while (PointerEntryTarget(table, 0, next) && CanMoveBack(table)) {
        MoveStart(table, -1);
        PointerEntryTarget(table, 0, target);
        if (target == next) continue;
        if (target < next) {
            ++count;
            if (EndOfStrings(fontId, target, frequency) == next) continue;
        }
        MoveStart(table, +1);
        break;
    }
    return count;
}

// True when entry target next continues a table whose previous entry
// addresses current.
bool ContinuesTable(long fontId, int64_t current, int64_t next, int32_t frequency) {
    if (next < current) return false;
    if (next == current) return true;
    int64_t end = EndOfStrings(fontId, current, frequency);
    if (end == next) return true;
    return frequency == 1 && end >= 0 && EndOfStrings(fontId, next, 1) == end;
}

}  // namespace

int32_t EffectiveFrequency(const PointerTable& table) { return std::max(table.frequency, 1); }

bool ReadPointerEntry(const PointerTable& table, int64_t entry, int64_t& value) {
    return IsSplit(table) ? ReadSplitEntry(table, entry, value) : ReadPlainEntry(table, entry, value);
}

bool PointerEntryTarget(const PointerTable& table, int64_t entry, int64_t& target) {
    if (!ReadPointerEntry(table, entry, target)) return false;
    target += table.base;
    return true;
}

extern "C" {

long Trelvane_GetPointer(long id, PointerTable* table, long index) {
    if (!table) {
        RefuseNullArgument("Trelvane_GetPointer", "table");
        return -1;
    }
    if (index < 0 || !RequireCurrentRom()) return -1;
    int32_t frequency = EffectiveFrequency(*table);
    int64_t address = 0;
    if (!PointerEntryTarget(*table, index / frequency, address)) return -1;
    int64_t end = EndOfStrings(id, address, static_cast<int32_t>(index % frequency));
    return static_cast<long>(end);
}

void Trelvane_AdjustPointerTable(long id, PointerTable* table) {
    if (!table) {
        RefuseNullArgument("Trelvane_AdjustPointerTable", "table");
        return;
    }
    if (!RequireCurrentRom()) return;
    int32_t frequency = EffectiveFrequency(*table);
    table->count = 0;
    int64_t entry = ExtendBackward(id, *table, frequency);
    int64_t current = 0, next = 0;
    while (PointerEntryTarget(*table, entry, current)) {
        bool readable = PointerEntryTarget(*table, entry + 1, next);
        ++entry;
        if (!readable || !ContinuesTable(id, current, next, frequency)) break;
    }
    table->count = static_cast<int>(std::min<int64_t>(entry * frequency, INT32_MAX));
}
}
