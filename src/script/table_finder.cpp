#include "script/table_finder.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "core/rom_slots.h"
#include "script/pointer_form.h"
#include "script/pointer_value_index.h"
#include "script/table_extent.h"

namespace {

constexpr int32_t kLongestStride = 8;
constexpr int64_t kNear = 0x2000;  // how far from the string asked for the walk back takes a table's strings
constexpr int64_t kLongestWalk = 0x1000;   // entries looked at before the pointer found
constexpr int64_t kLongestTable = 0x10000;
constexpr int64_t kLongestSplit = 0x100;  // split tables serve an 8-bit index

// The byte value of a candidate, most significant last for little endian.
bool HoldsValue(const unsigned char* at, const PointerCandidate& candidate) {
    for (int i = 2; i < candidate.form.size; ++i) {
        int shift = candidate.form.bigEndian ? candidate.form.size - 1 - i : i;
        if (at[i] != static_cast<unsigned char>(candidate.value >> (8 * shift))) return false;
    }
    return true;
}

// An entry that may belong to a table of strings near target: null, or
// addressing a byte of the image not far from it.
bool Plausible(const PointerForm& form, int64_t entry, int64_t target) {
    const PointerPlace place = PlaceOfEntry(form, entry);
    if (!PlaceInsideImage(place)) return false;
    if (ReadPlace(CurrentRom().data, place) == 0) return true;
    std::optional<int64_t> at = EntryTarget(form, entry);
    return at && std::llabs(*at - target) < kNear;
}

// The offset of a table's first byte: its first pointer, or its first low byte.
int64_t FirstByte(const PointerForm& form) { return IsSplitForm(form) ? form.low : form.table; }

// The table moved to begin at start; a split table keeps the distance from
// its low bytes to its high bytes.
PointerForm StartingAt(PointerForm form, int64_t start) {
    if (!IsSplitForm(form)) {
        form.table = static_cast<int>(start);
        return form;
    }
    form.high += static_cast<int>(start - form.low);
    form.low = static_cast<int>(start);
    return form;
}

// A split table's low bytes end where its high bytes begin.
int64_t LongestTable(const PointerForm& form) {
    return IsSplitForm(form) && form.high > form.low ? form.high - form.low : kLongestTable;
}

// The longest table of entries `stride` apart that holds the entry at
// `place`, or none of minEntries entries.
std::optional<PointerForm> TableThrough(long fontId, PointerForm form, int64_t target, int64_t minEntries) {
    const int64_t place = FirstByte(form);
    const int64_t stride = PointerStride(form);
    if (!Plausible(form, 1, target) && !Plausible(form, -1, target)) return std::nullopt;
    int64_t back = 0;
    while (back < kLongestWalk && place - (back + 1) * stride >= 0 && Plausible(form, -(back + 1), target))
        ++back;
    for (int64_t start = place - back * stride; start <= place; start += stride) {
        PointerForm table = StartingAt(form, start);
        const int64_t extent = TableExtent(fontId, table, LongestTable(table));
        if (extent < minEntries || start + extent * stride <= place) continue;
        table.count = static_cast<int>(extent);
        return table;
    }
    return std::nullopt;
}

bool SameTable(const PointerForm& a, const PointerForm& b) {
    return a.table == b.table && a.low == b.low && a.high == b.high && a.size == b.size && a.bigEndian == b.bigEndian && a.stride == b.stride &&
           a.base == b.base && a.map == b.map;
}

// Byte i of the candidate's value as it stands in the image.
unsigned char ByteOf(const PointerCandidate& candidate, int i) {
    const int size = candidate.form.size;
    return static_cast<unsigned char>(candidate.value >> (8 * (candidate.form.bigEndian ? size - 1 - i : i)));
}

void AddTable(std::vector<PointerForm>& tables, const PointerForm& table) {
    if (std::none_of(tables.begin(), tables.end(), [&](const PointerForm& t) { return SameTable(t, table); }))
        tables.push_back(table);
}

// Longest first; of equal tables, the wider pointers (a 2-byte pointer
// inside 3-byte records is the low part of a 3-byte one), then the closer
// ones.
void SortTables(std::vector<PointerForm>& tables) {
    std::stable_sort(tables.begin(), tables.end(), [](const PointerForm& a, const PointerForm& b) {
        if (a.count != b.count) return a.count > b.count;
        if (a.size != b.size) return a.size > b.size;
        return PointerStride(a) < PointerStride(b);
    });
}

// The split tables through the low byte at `at` whose high bytes lie as many
// bytes after their low bytes as the table has entries.
void AddSplitTablesAt(long fontId, const PointerCandidate& candidate, int64_t at, int64_t target,
                      int64_t minEntries, std::vector<PointerForm>& tables) {
    const RomImage& image = CurrentRom();
    const unsigned char high = static_cast<unsigned char>(candidate.value >> 8);
    for (int64_t distance = minEntries; distance <= kLongestSplit && at + distance < image.size; ++distance) {
        if (image.data[at + distance] != high) continue;
        PointerForm form = candidate.form;
        form.table = -1;
        form.size = 0;
        form.low = static_cast<int>(at);
        form.high = static_cast<int>(at + distance);
        std::optional<PointerForm> table = TableThrough(fontId, form, target, minEntries);
        if (table && table->high - table->low == table->count) AddTable(tables, *table);
    }
}

}  // namespace

std::vector<FoundPointer> FindPointersTo(const std::vector<PointerCandidate>& candidates) {
    std::vector<FoundPointer> found;
    const RomImage& image = CurrentRom();
    std::vector<uint16_t> pairs;
    for (const PointerCandidate& candidate : candidates)
        pairs.push_back(static_cast<uint16_t>(ByteOf(candidate, 0) | ByteOf(candidate, 1) << 8));
    const PointerValueIndex index(image.data, image.size, pairs);
    for (const PointerCandidate& candidate : candidates) {
        const int size = candidate.form.size;
        for (int32_t at : index.OffsetsOf(ByteOf(candidate, 0), ByteOf(candidate, 1))) {
            if (!RomRangeInside(at, size) || !HoldsValue(image.data + at, candidate)) continue;
            PointerForm form = candidate.form;
            form.table = at;
            found.push_back({form});
        }
    }
    return found;
}

std::vector<PointerForm> FindTables(long fontId, const std::vector<FoundPointer>& pointers, int64_t target,
                                    int64_t minEntries) {
    std::vector<PointerForm> tables;
    for (const FoundPointer& pointer : pointers) {
        for (int32_t stride = pointer.form.size; stride <= kLongestStride; ++stride) {
            PointerForm form = pointer.form;
            form.stride = stride == form.size ? 0 : stride;
            std::optional<PointerForm> table = TableThrough(fontId, form, target, minEntries);
            if (!table) continue;
            AddTable(tables, *table);
            break;
        }
    }
    SortTables(tables);
    return tables;
}

void AddSplitTables(long fontId, const std::vector<PointerCandidate>& candidates, int64_t target,
                    std::vector<PointerForm>& tables, int64_t minEntries) {
    const RomImage& image = CurrentRom();
    for (const PointerCandidate& candidate : candidates) {
        if (candidate.form.size != 2 || candidate.form.bigEndian || candidate.form.map != POINTER_MAP_NONE) continue;
        const unsigned char low = static_cast<unsigned char>(candidate.value);
        for (int64_t at = 0; at + minEntries < image.size; ++at)
            if (image.data[at] == low) AddSplitTablesAt(fontId, candidate, at, target, minEntries, tables);
    }
    SortTables(tables);
}
