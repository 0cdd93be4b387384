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

// The longest table of entries `stride` apart that holds the entry at
// `place`, or none of minEntries entries.
std::optional<PointerForm> TableThrough(long fontId, PointerForm form, int64_t target, int64_t minEntries) {
    const int64_t place = form.table;
    const int64_t stride = PointerStride(form);
    if (!Plausible(form, 1, target) && !Plausible(form, -1, target)) return std::nullopt;
    int64_t back = 0;
    while (back < kLongestWalk && form.table - (back + 1) * stride >= 0 && Plausible(form, -(back + 1), target))
        ++back;
    for (int64_t start = place - back * stride; start <= place; start += stride) {
        PointerForm table = form;
        table.table = static_cast<int>(start);
        const int64_t extent = TableExtent(fontId, table, kLongestTable);
        if (extent < minEntries || start + extent * stride <= place) continue;
        table.count = static_cast<int>(extent);
        return table;
    }
    return std::nullopt;
}

bool SameTable(const PointerForm& a, const PointerForm& b) {
    return a.table == b.table && a.size == b.size && a.bigEndian == b.bigEndian && a.stride == b.stride &&
           a.base == b.base && a.map == b.map;
}

// Byte i of the candidate's value as it stands in the image.
unsigned char ByteOf(const PointerCandidate& candidate, int i) {
    const int size = candidate.form.size;
    return static_cast<unsigned char>(candidate.value >> (8 * (candidate.form.bigEndian ? size - 1 - i : i)));
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
            if (std::none_of(tables.begin(), tables.end(), [&](const PointerForm& t) { return SameTable(t, *table); }))
                tables.push_back(*table);
            break;
        }
    }
    // Longest first; of equal tables, the wider pointers (a 2-byte pointer
    // inside 3-byte records is the low part of a 3-byte one), then the
    // closer ones.
    std::stable_sort(tables.begin(), tables.end(), [](const PointerForm& a, const PointerForm& b) {
        if (a.count != b.count) return a.count > b.count;
        if (a.size != b.size) return a.size > b.size;
        return PointerStride(a) < PointerStride(b);
    });
    return tables;
}
