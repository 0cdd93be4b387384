#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "core/little_endian.h"
#include "core/rom_slots.h"
#include "script/pointer_table.h"
#include "script/pointer_width.h"
#include "script/string_measure.h"
#include "script/string_search.h"

// Finding a pointer table from the address of a script's first string.
//
// The strings that follow the first one are measured once (at most 256 of
// them); a table with f strings per pointer and s bytes per pointer matches
// at offset T with phase j when its 16 pointers rise exactly as the strings
// j, f + j, 2f + j, ... do. The winner is the first in the order: frequency
// 1, 2, 4, 8, 16; then size 3, 2, 1; then the lowest offset; then the lowest
// phase. Rather than testing every phase of every frequency at every offset,
// one pass per size reads each offset's first rise once and looks it up among
// the rises still able to win.

namespace {

constexpr int kPointersTested = 16;
constexpr int kFrequencies[] = {1, 2, 4, 8, 16};
constexpr int kMaxStrings = kPointersTested * 16;

// Offsets of the strings behind the first one, relative to the first of them.
struct StringRun {
    int64_t start = 0;  // image offset of string 0 (just behind the given string)
    int32_t count = 0;  // strings whose offsets are known
    int64_t offset[kMaxStrings] = {};
};

struct TableMatch {
    int32_t frequency = 0;  // 0 while nothing matched
    int32_t size = 0;
    int32_t phase = 0;
    int64_t at = 0;
    int64_t base = 0;  // pointer value that would address string 0
};

// The rise from pointer 0 to pointer 1 that a table of one frequency and
// phase must show.
struct Rise {
    int32_t frequency;
    int32_t phase;
    int64_t value;
};

void MeasureRun(long fontId, StringRun& run) {
    run.offset[0] = 0;
    run.count = 1;
    while (run.count < kMaxStrings) {
        int32_t length = MeasureString(fontId, run.start + run.offset[run.count - 1]);
        if (length < 0) return;
        run.offset[run.count] = run.offset[run.count - 1] + length;
        ++run.count;
    }
}

int64_t ReadValue(const unsigned char* at, int32_t size) { return ReadLittleEndian(at, size); }

bool PassesFullTest(const StringRun& run, const unsigned char* at, int32_t size, const Rise& rise) {
    int64_t base = ReadValue(at, size) - run.offset[rise.phase];
    for (int32_t n = kPointersTested - 1; n >= 1; --n) {
        int64_t difference = ReadValue(at + n * size, size) - base - run.offset[n * rise.frequency + rise.phase];
        if (size == 1) difference &= 0xFF;
        if (difference != 0) return false;
    }
    return true;
}

// The rises of every frequency below maxFrequency whose 16 pointers' strings
// are all known, in the order frequency then phase.
int32_t CollectRises(const StringRun& run, int32_t maxFrequency, Rise* rises) {
    int32_t count = 0;
    for (int32_t frequency : kFrequencies) {
        if (frequency >= maxFrequency) break;
        for (int32_t phase = 0; phase < frequency; ++phase) {
            if ((kPointersTested - 1) * frequency + phase >= run.count) break;
            rises[count++] = {frequency, phase, run.offset[frequency + phase] - run.offset[phase]};
        }
    }
    return count;
}

// One pass over the image for tables of one size that beat best (a smaller
// frequency than best's). Single-byte tables start at offset 1: a low-byte
// table at 0 could not be told from "no split table".
void ScanSize(const StringRun& run, int32_t size, TableMatch& best) {
    Rise rises[31];
    int32_t riseCount = CollectRises(run, best.frequency ? best.frequency : 32, rises);
    if (riseCount == 0) return;
    unsigned char seen[65536 / 8] = {};
    for (int32_t i = 0; i < riseCount; ++i) seen[(rises[i].value & 0xFFFF) >> 3] |= 1 << (rises[i].value & 7);
    const unsigned char* image = CurrentRom().data;
    int64_t last = int64_t{CurrentRom().size} - kPointersTested * size;
    for (int64_t at = size == 1 ? 1 : 0; at <= last; ++at) {
        int64_t rise = ReadValue(image + at + size, size) - ReadValue(image + at, size);
        uint32_t key = static_cast<uint32_t>(rise) & 0xFFFF;
        if (!(seen[key >> 3] & (1 << (key & 7)))) continue;
        for (int32_t i = 0; i < riseCount; ++i) {
            const Rise& candidate = rises[i];
            if (best.frequency && candidate.frequency >= best.frequency) break;
            if (candidate.value != rise || !PassesFullTest(run, image + at, size, candidate)) continue;
            best = {candidate.frequency, size, candidate.phase, at,
                    ReadValue(image + at, size) - run.offset[candidate.phase]};
            if (best.frequency == 1) return;
            break;
        }
    }
}

// Offset of the copy of pattern closest to low: matches at or before low are
// taken while they come, then the first one beyond low if it is nearer. Like
// every search, this one cannot report offset 0: a copy there ends it.
int64_t NearestMatch(const unsigned char* pattern, int64_t low) {
    int32_t choice = FindPlainMatch(pattern, kPointersTested, 0);
    if (choice == 0) return 0;
    while (choice >= 0 && choice <= low) {
        int32_t next = FindPlainMatch(pattern, kPointersTested, choice + 1);
        if (next < 0) break;
        if (next > low) {
            if (next - low < low - choice) choice = next;
            break;
        }
        choice = next;
    }
    return choice < 0 ? 0 : choice;
}

// A single-byte table holds the low bytes of split pointers; the high bytes,
// if the image has them, form a table of the same shape somewhere else.
void FillSplitTable(const StringRun& run, const TableMatch& match, PointerTable& table) {
    table.low = static_cast<int>(match.at);
    table.size = 1;
    unsigned char highBytes[kPointersTested];
    for (int32_t n = 0; n < kPointersTested; ++n)
        highBytes[n] = static_cast<unsigned char>((run.start + run.offset[n * match.frequency + match.phase]) >> 8);
    table.high = static_cast<int>(NearestMatch(highBytes, match.at));
    if (table.high == 0) {
        table.base = static_cast<int>(run.start & ~int64_t{0xFF});
        return;
    }
    table.size = 2;
    table.base = static_cast<int>(run.start & ~int64_t{0xFFFF});
}

void FillTable(const StringRun& run, const TableMatch& match, PointerTable& table) {
    table.frequency = match.frequency;
    if (match.size == 1) {
        FillSplitTable(run, match, table);
        return;
    }
    table.table = static_cast<int>(match.at);
    table.size = match.size;
    int64_t base = run.start - match.base;
    if (match.frequency > 1) base &= PointerWidthMask(match.size);
    table.base = static_cast<int>(base);
}

}  // namespace

extern "C" {

PointerTable* Trelvane_FindPointerTable(long id, long address) {
    if (!RequireCurrentRom()) return nullptr;
    int32_t firstLength = MeasureString(id, address);
    if (firstLength < 0) return nullptr;
    StringRun run;
    run.start = int64_t{address} + firstLength;
    MeasureRun(id, run);
    TableMatch best;
    for (int32_t size : {3, 2, 1}) {
        if (best.frequency == 1) break;
        ScanSize(run, size, best);
    }
    if (!best.frequency) return nullptr;
    auto* table = static_cast<PointerTable*>(std::calloc(1, sizeof(PointerTable)));
    if (!table) return nullptr;
    FillTable(run, best, *table);
    Trelvane_AdjustPointerTable(id, table);
    return table;
}
}
