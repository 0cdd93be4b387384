#include "script/table_extent.h"

#include <iterator>
#include <map>
#include <optional>

#include "core/rom_slots.h"
#include "script/pointer_form.h"
#include "script/string_measure.h"

namespace {

// Entries past the last unbroken block that are still read before giving up.
constexpr int64_t kPatience = 64;

enum class Entry { Contradiction, Tail, Start };

// The strings of a table so far, as disjoint [start, end) intervals, and how
// many unbroken blocks they make.
class StringBlocks {
public:
    // Contradiction when target cannot belong to a table: it lies inside a
    // string whose end it does not share, or its string runs into the next
    // one. Tail when it addresses the end part of a string already taken in.
    Entry Add(int64_t target, int64_t end) {
        auto next = strings_.upper_bound(target);
        if (next != strings_.begin()) {
            auto before = std::prev(next);
            if (target == before->first) return before->second == end ? Entry::Start : Entry::Contradiction;
            if (target < before->second) return before->second == end ? Entry::Tail : Entry::Contradiction;
        }
        if (next != strings_.end() && end > next->first) {
            if (next->second != end) return Entry::Contradiction;
            Remove(next);  // a tail of this string, taken in before it
            next = strings_.upper_bound(target);
        }
        bool joinsBefore = next != strings_.begin() && std::prev(next)->second == target;
        bool joinsAfter = next != strings_.end() && next->first == end;
        strings_.emplace(target, end);
        blocks_ += 1 - (joinsBefore ? 1 : 0) - (joinsAfter ? 1 : 0);
        return Entry::Start;
    }
    bool Unbroken() const { return blocks_ == 1; }

private:
    void Remove(std::map<int64_t, int64_t>::iterator at) {
        bool joinsBefore = at != strings_.begin() && std::prev(at)->second == at->first;
        bool joinsAfter = std::next(at) != strings_.end() && std::next(at)->first == at->second;
        blocks_ -= 1 - (joinsBefore ? 1 : 0) - (joinsAfter ? 1 : 0);
        strings_.erase(at);
    }

    std::map<int64_t, int64_t> strings_;
    int64_t blocks_ = 0;
};

bool IsNullEntry(const PointerForm& form, int64_t entry) {
    const PointerPlace place = PlaceOfEntry(form, entry);
    return PlaceInsideImage(place) && ReadPlace(CurrentRom().data, place) == 0;
}

}  // namespace

int64_t TableExtent(long fontId, const PointerForm& form, int64_t maxEntries) {
    StringBlocks blocks;
    int64_t extent = 0;
    for (int64_t entry = 0; entry < maxEntries && entry - extent < kPatience; ++entry) {
        if (entry > 0 && IsNullEntry(form, entry)) continue;
        std::optional<int64_t> target = EntryTarget(form, entry);
        int32_t length = target ? MeasureString(fontId, *target) : -1;
        const Entry added = length < 0 ? Entry::Contradiction : blocks.Add(*target, *target + length);
        if (added == Entry::Contradiction) break;
        // A table does not end on tails: any byte inside a string is one.
        if (blocks.Unbroken() && added == Entry::Start) extent = entry + 1;
    }
    return extent;
}
