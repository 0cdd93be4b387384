#include "script/script_placement.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "script/pointer_form.h"
#include "table/shortest_encoding.h"
#include "table/text_encoder.h"

namespace {

std::string HexText(int64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "%06llXh", static_cast<unsigned long long>(value));
    return text;
}

// Strings that share one pointer (one string but in tables of several
// strings per pointer), encoded, with where they are to go.
struct Unit {
    size_t firstEntry = 0;
    std::string bytes;
    int64_t original = -1;  // where the dump found it
    int64_t placed = -1;
    bool null = false;
};

class Placement {
public:
    Placement(long fontId, const ScriptDocument& document, const PlacementOptions& options, const char* file)
        : fontId_(fontId), document_(document), options_(options), file_(file),
          image_(CurrentRom().data, CurrentRom().data + CurrentRom().size),
          written_(image_.size(), false) {}

    bool Run(PlacementReport& report);

private:
    bool Encode(const ScriptEntry& entry, std::string& bytes);
    bool BuildUnits();
    bool PlaceFixed();
    bool CheckRegions();
    bool PlaceAll();
    int64_t FindRoom(int64_t length);
    bool FitsAtCursor(int64_t length) const {
        return region_ < regions_.size() && cursor_ + length <= regions_[region_].start + regions_[region_].size;
    }
    bool Overflow(size_t failedAt);
    bool WritePointers();
    bool WritePointer(const Unit& unit, const PointerPlace& place);
    void Write(int64_t at, const std::string& bytes);
    bool StandsAt(int64_t at, const std::string& bytes) const;
    const std::string& Number(const Unit& unit) const { return document_.entries[unit.firstEntry].number; }

    long fontId_;
    const ScriptDocument& document_;
    const PlacementOptions& options_;
    const char* file_;
    std::vector<unsigned char> image_;  // the image as it will be
    std::vector<bool> written_;         // bytes this insertion wrote
    std::vector<Unit> units_;
    std::vector<TextRegion> regions_;
    size_t region_ = 0;
    int64_t cursor_ = 0;  // next free byte of the current region
    int64_t leftover_ = 0;  // bytes left behind in the regions filled so far
    std::vector<size_t> order_;  // units in the order they are placed
    PlacementReport report_;
};

bool Placement::Encode(const ScriptEntry& entry, std::string& bytes) {
    const EncodeRules rules = document_.literalLines ? LITERAL_ENCODING : CLASSIC_ENCODING;
    const EncodedText longest = EncodeText(fontId_, entry.text.c_str(), rules);
    if (!longest.bytes) return SetError(TLERR_TEXT_NOENCODE, file_, 0, 0, entry.text.c_str());
    report_.longestMatch += longest.length;
    const EncodedText chosen = options_.optimal ? EncodeShortest(fontId_, entry.text.c_str(), rules) : longest;
    if (!chosen.bytes) return SetError(TLERR_TEXT_NOENCODE, file_, 0, 0, entry.text.c_str());
    if (options_.optimal) report_.optimal += chosen.length;
    bytes.append(reinterpret_cast<const char*>(chosen.bytes), static_cast<size_t>(chosen.length));
    return true;
}

bool Placement::BuildUnits() {
    const size_t group = document_.pointers == ScriptPointers::Table ? document_.frequency : 1;
    const std::vector<ScriptEntry>& entries = document_.entries;
    for (size_t first = 0; first < entries.size(); first += group) {
        Unit unit;
        unit.firstEntry = first;
        unit.original = entries[first].offset;
        unit.null = entries[first].null;
        for (size_t i = first; i < std::min(first + group, entries.size()); ++i)
            if (!entries[i].null && !Encode(entries[i], unit.bytes)) return false;
        units_.push_back(unit);
        if (!unit.null) report_.strings += static_cast<int64_t>(std::min(group, entries.size() - first));
    }
    return true;
}

void Placement::Write(int64_t at, const std::string& bytes) {
    std::memcpy(image_.data() + at, bytes.data(), bytes.size());
    std::fill(written_.begin() + at, written_.begin() + at + static_cast<int64_t>(bytes.size()), true);
    report_.used += static_cast<int64_t>(bytes.size());
}

// Every string at the place and length the dump found, padded.
bool Placement::PlaceFixed() {
    for (Unit& unit : units_) {
        if (unit.null) continue;
        const ScriptEntry& entry = document_.entries[unit.firstEntry];
        if (entry.offset < 0 || entry.length < 0 || !RomRangeInside(entry.offset, entry.length))
            return SetError(TLERR_SCRIPT_NO_PLACE, file_, 0, 0, entry.number.c_str(), "no offset and length");
        if (document_.padByte < 0)
            return SetError(TLERR_SCRIPT_NO_PLACE, file_, 0, 0, entry.number.c_str(), "no padbyte declared");
        int64_t excess = static_cast<int64_t>(unit.bytes.size()) - entry.length;
        if (excess > 0)
            return SetError(TLERR_SCRIPT_FIXED_TOO_LONG, file_, 0, 0, entry.number.c_str(),
                            std::to_string(excess).c_str());
        std::string padded = unit.bytes;
        padded.resize(static_cast<size_t>(entry.length), static_cast<char>(document_.padByte));
        Write(entry.offset, padded);
        report_.space += entry.length;
        unit.placed = entry.offset;
    }
    return true;
}

// Regions without a size run to the end of the image.
bool Placement::CheckRegions() {
    for (TextRegion region : document_.regions) {
        if (region.size < 0 && region.start < static_cast<int64_t>(image_.size()))
            region.size = static_cast<int64_t>(image_.size()) - region.start;
        if (!RomRangeInside(region.start, region.size))
            return SetError(TLERR_REGION_OUTSIDE, file_, 0, 0, HexText(region.start).c_str());
        regions_.push_back(region);
        report_.space += region.size;
    }
    if (!regions_.empty()) cursor_ = regions_[0].start;
    return true;
}

// Where length new bytes go: behind the text so far, or in the next region
// with room for them; -1 when none has.
int64_t Placement::FindRoom(int64_t length) {
    while (region_ < regions_.size()) {
        const TextRegion& region = regions_[region_];
        if (cursor_ + length <= region.start + region.size) {
            cursor_ += length;
            return cursor_ - length;
        }
        leftover_ += region.start + region.size - cursor_;
        if (++region_ < regions_.size()) cursor_ = regions_[region_].start;
    }
    return -1;
}

// Counts what the strings from the one that failed on still need, less the
// room the regions have left.
bool Placement::Overflow(size_t failedAt) {
    int64_t missing = -leftover_;
    std::unordered_set<std::string> counted;
    for (size_t i = failedAt; i < order_.size(); ++i) {
        const Unit& unit = units_[order_[i]];
        if (!unit.null && counted.insert(unit.bytes).second) missing += static_cast<int64_t>(unit.bytes.size());
    }
    const std::string missingText = std::to_string(std::max<int64_t>(missing, 1));
    return SetError(TLERR_SCRIPT_OVERFLOW, file_, 0, 0, Number(units_[order_[failedAt]]).c_str(), missingText.c_str());
}

// In the order the dump found the strings (when it gave every place), so
// that an unchanged script places every string back where it was: a string
// whose old place is the next free byte goes there, even when the same
// string was written before (the game stored it twice). Otherwise a string
// already standing at its old place in what was written, or written once
// already, is not written again.
bool Placement::PlaceAll() {
    for (size_t i = 0; i < units_.size(); ++i) order_.push_back(i);
    bool everyPlaceKnown = std::all_of(units_.begin(), units_.end(), [](const Unit& u) { return u.null || u.original >= 0; });
    if (everyPlaceKnown)
        std::stable_sort(order_.begin(), order_.end(),
                         [this](size_t a, size_t b) { return units_[a].original < units_[b].original; });
    std::unordered_map<std::string, int64_t> stored;
    for (size_t at = 0; at < order_.size(); ++at) {
        Unit& unit = units_[order_[at]];
        if (unit.null) continue;
        const int64_t length = static_cast<int64_t>(unit.bytes.size());
        if (StandsAt(unit.original, unit.bytes)) unit.placed = unit.original;
        else if (unit.original >= 0 && unit.original == cursor_ && FitsAtCursor(length))
            Write(unit.placed = FindRoom(length), unit.bytes);
        else if (auto found = stored.find(unit.bytes); found != stored.end()) unit.placed = found->second;
        else if ((unit.placed = FindRoom(length)) < 0) return Overflow(at);
        else Write(unit.placed, unit.bytes);
        stored.try_emplace(unit.bytes, unit.placed);
    }
    return true;
}

bool Placement::StandsAt(int64_t at, const std::string& bytes) const {
    const int64_t length = static_cast<int64_t>(bytes.size());
    if (at < 0 || at > static_cast<int64_t>(image_.size()) - length) return false;
    if (!std::all_of(written_.begin() + at, written_.begin() + at + length, [](bool b) { return b; })) return false;
    return std::memcmp(image_.data() + at, bytes.data(), bytes.size()) == 0;
}

bool Placement::WritePointer(const Unit& unit, const PointerPlace& place) {
    if (!PlaceInsideImage(place))
        return SetError(TLERR_POINTER_OUTSIDE, file_, 0, 0, Number(unit).c_str(), HexText(place.byteAt[0]).c_str());
    std::optional<uint32_t> value = ValueForTarget(document_.form, unit.placed, ReadPlace(image_.data(), place));
    if (!value)
        return SetError(TLERR_POINTER_UNREACHABLE, file_, 0, 0, Number(unit).c_str(), HexText(place.byteAt[0]).c_str(),
                        HexText(unit.placed).c_str());
    WritePlace(image_.data(), place, *value);
    return true;
}

// Table pointers go to consecutive entries; a list gives each string's own.
bool Placement::WritePointers() {
    for (size_t u = 0; u < units_.size(); ++u) {
        const Unit& unit = units_[u];
        if (unit.null || document_.pointers == ScriptPointers::None) continue;
        if (document_.pointers == ScriptPointers::Table) {
            if (document_.form.count > 0 && u >= static_cast<size_t>(document_.form.count))
                return SetError(TLERR_SCRIPT_NO_PLACE, file_, 0, 0, Number(unit).c_str(), "no pointer left in the table");
            if (!WritePointer(unit, PlaceOfEntry(document_.form, static_cast<int64_t>(u)))) return false;
            continue;
        }
        if (unit.firstEntry >= document_.pointerLists.size())
            return SetError(TLERR_SCRIPT_NO_PLACE, file_, 0, 0, Number(unit).c_str(), "no pointerlist line");
        for (int64_t at : document_.pointerLists[unit.firstEntry])
            if (!WritePointer(unit, PlaceAtOffset(document_.form, at))) return false;
    }
    return true;
}

bool Placement::Run(PlacementReport& report) {
    if (document_.pointers != ScriptPointers::None && !CheckPointerForm(document_.form)) return false;
    if (!BuildUnits()) return false;
    if (options_.fixedLength) {
        if (!PlaceFixed()) return false;
    } else if (!CheckRegions() || !PlaceAll() || !WritePointers()) {
        return false;
    }
    std::memcpy(CurrentRom().data, image_.data(), image_.size());
    report = report_;
    return true;
}

}  // namespace

bool PlaceScript(long fontId, const ScriptDocument& document, const PlacementOptions& options, const char* file,
                 PlacementReport& report) {
    if (!RequireCurrentRom()) return false;
    Placement placement(fontId, document, options, file);
    return placement.Run(report);
}
