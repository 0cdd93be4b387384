#include "script/script_extraction.h"

#include <algorithm>
#include <optional>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "script/literal_string_text.h"
#include "script/pointer_form.h"
#include "script/string_measure.h"
#include "table/font_set.h"

namespace {

std::string HexText(int64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "%06llXh", static_cast<unsigned long long>(value));
    return text;
}

// The place of string i's first pointer, or none for strings end to end.
std::optional<PointerPlace> FirstPointerOf(const ScriptSource& source, int64_t i) {
    if (source.pointers == ScriptPointers::Table) return PlaceOfEntry(source.form, i);
    if (source.pointers == ScriptPointers::List) return PlaceAtOffset(source.form, source.pointerLists[i].at(0));
    return std::nullopt;
}

bool ReportOutside(int64_t i, int64_t at) {
    return SetError(TLERR_POINTER_OUTSIDE, "", 0, 0, std::to_string(i).c_str(), HexText(at).c_str());
}

// Reads string i into entry; next is where a string end to end would start.
bool ExtractEntry(const ScriptSource& source, int64_t i, int64_t& next, ScriptEntry& entry) {
    std::optional<PointerPlace> place = FirstPointerOf(source, i);
    int64_t offset = next;
    if (place) {
        if (!PlaceInsideImage(*place)) return ReportOutside(i, place->byteAt[0]);
        uint32_t value = ReadPlace(CurrentRom().data, *place);
        entry.null = source.pointers == ScriptPointers::Table && value == 0 && i > 0;
        if (entry.null) return true;
        std::optional<int64_t> target = TargetOfValue(source.form, value);
        if (!target || !RomRangeInside(*target, 1)) return ReportOutside(i, place->byteAt[0]);
        offset = *target;
    }
    int32_t length = MeasureString(source.fontId, offset);
    if (length < 0) return ReportOutside(i, offset);
    entry.offset = offset;
    entry.length = length;
    entry.text = LiteralTextOfString(source.fontId, CurrentRom().data + offset, length);
    next = offset + length;
    return true;
}

// Runs of strings that touch or overlap, in ascending order.
std::vector<TextRegion> RegionsOf(const std::vector<ScriptEntry>& entries) {
    std::vector<TextRegion> strings;
    for (const ScriptEntry& entry : entries)
        if (!entry.null) strings.push_back({entry.offset, entry.length});
    std::sort(strings.begin(), strings.end(), [](const TextRegion& a, const TextRegion& b) { return a.start < b.start; });
    std::vector<TextRegion> regions;
    for (const TextRegion& string : strings) {
        if (!regions.empty() && string.start <= regions.back().start + regions.back().size) {
            TextRegion& last = regions.back();
            last.size = std::max(last.size, string.start + string.size - last.start);
        } else {
            regions.push_back(string);
        }
    }
    return regions;
}

int64_t StringCount(const ScriptSource& source) {
    if (source.pointers == ScriptPointers::Table) return source.form.count;
    if (source.pointers == ScriptPointers::List) return static_cast<int64_t>(source.pointerLists.size());
    return source.count;
}

int32_t PadByteOf(long fontId) {
    const Font* font = FindFont(fontId);
    int terminal = font ? font->index.terminalEntry : -1;
    return terminal >= 0 && terminal < TWO_BYTE_FIRST_ENTRY ? terminal : -1;
}

}  // namespace

bool ExtractScript(const ScriptSource& source, ScriptDocument& document) {
    if (!RequireCurrentRom() || (source.pointers != ScriptPointers::None && !CheckPointerForm(source.form)))
        return false;
    document = ScriptDocument{};
    document.tableFile = source.tableFile;
    document.literalLines = true;
    document.pointers = source.pointers;
    document.form = source.form;
    document.pointerLists = source.pointerLists;
    int64_t next = source.textAddress;
    const int64_t count = StringCount(source);
    document.entries.resize(static_cast<size_t>(count));
    for (int64_t i = 0; i < count; ++i)
        if (!ExtractEntry(source, i, next, document.entries[i])) return false;
    document.regions = RegionsOf(document.entries);
    document.padByte = PadByteOf(source.fontId);
    return true;
}
