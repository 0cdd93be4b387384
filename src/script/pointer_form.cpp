#include "script/pointer_form.h"

#include <string>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "core/snes_mapping.h"
#include "script/pointer_width.h"

namespace {

SnesMapping MappingOf(int map) {
    switch (map) {
        case POINTER_MAP_HIROM: return SnesMapping::HiRom;
        case POINTER_MAP_EXHIROM: return SnesMapping::ExHiRom;
        default: return SnesMapping::LoRom;
    }
}

int32_t ValueBytes(const PointerForm& form) {
    if (!IsSplitForm(form)) return form.size;
    return form.high < 0 ? 1 : form.bank < 0 ? 2 : 3;
}

bool Refuse(const std::string& why) { return SetError(TLERR_POINTER_FORM, "", 0, 0, why.c_str()); }

}  // namespace

PointerForm PlainPointerForm(int32_t size, int64_t table) {
    PointerForm form{};
    form.size = size;
    form.table = static_cast<int>(table);
    form.low = form.high = form.bank = -1;
    return form;
}

bool CheckPointerForm(const PointerForm& form) {
    if (!IsSplitForm(form) && (form.size < 1 || form.size > 4)) return Refuse("pointers have 1 to 4 bytes");
    if (form.stride < 0) return Refuse("the stride cannot be negative");
    if (form.map < POINTER_MAP_NONE || form.map > POINTER_MAP_EXHIROM) return Refuse("unknown mapping");
    if (form.map != POINTER_MAP_NONE && ValueBytes(form) < 3)
        return Refuse("a mapping needs pointers of 3 or 4 bytes (use a base for shorter ones)");
    return true;
}

int64_t PointerStride(const PointerForm& form) {
    if (form.stride > 0) return form.stride;
    return IsSplitForm(form) ? 1 : form.size;
}

PointerPlace PlaceOfEntry(const PointerForm& form, int64_t entry) {
    int64_t step = PointerStride(form) * entry;
    if (!IsSplitForm(form)) return PlaceAtOffset(form, form.table + step);
    PointerPlace place;
    place.size = ValueBytes(form);
    const int tables[] = {form.low, form.high, form.bank};
    for (int32_t i = 0; i < place.size; ++i) place.byteAt[i] = tables[i] + step;
    return place;
}

PointerPlace PlaceAtOffset(const PointerForm& form, int64_t offset) {
    PointerPlace place;
    place.size = ValueBytes(form);
    for (int32_t i = 0; i < place.size; ++i)
        place.byteAt[i] = offset + (form.bigEndian && !IsSplitForm(form) ? place.size - 1 - i : i);
    return place;
}

bool PlaceInsideImage(const PointerPlace& place) {
    if (place.size < 1) return false;
    for (int32_t i = 0; i < place.size; ++i)
        if (!RomRangeInside(place.byteAt[i], 1)) return false;
    return true;
}

uint32_t ReadPlace(const unsigned char* image, const PointerPlace& place) {
    uint32_t value = 0;
    for (int32_t i = place.size - 1; i >= 0; --i) value = value << 8 | image[place.byteAt[i]];
    return value;
}

void WritePlace(unsigned char* image, const PointerPlace& place, uint32_t value) {
    for (int32_t i = 0; i < place.size; ++i) image[place.byteAt[i]] = static_cast<unsigned char>(value >> (8 * i));
}

std::optional<int64_t> TargetOfValue(const PointerForm& form, uint32_t value) {
    if (form.map == POINTER_MAP_NONE) return int64_t{value} + form.base;
    std::optional<uint32_t> offset = SnesAddressToOffset(MappingOf(form.map), value & 0xFFFFFF);
    if (!offset) return std::nullopt;
    return int64_t{*offset};
}

std::optional<uint32_t> ValueForTarget(const PointerForm& form, int64_t offset, uint32_t oldValue) {
    const int64_t mask = PointerWidthMask(ValueBytes(form));
    if (form.map == POINTER_MAP_NONE) {
        int64_t value = offset - form.base;
        if (value < 0 || value > mask) return std::nullopt;
        return static_cast<uint32_t>(value);
    }
    if (offset < 0 || offset > 0xFFFFFFFF) return std::nullopt;
    const SnesMapping mapping = MappingOf(form.map);
    std::optional<uint32_t> address = SnesOffsetToAddress(mapping, static_cast<uint32_t>(offset));
    if (!address) return std::nullopt;
    // The game may address the bank's mirror ($00-$7D for $80-$FD).
    uint32_t mirror = *address ^ 0x800000;
    if (((oldValue ^ *address) & 0x800000) && SnesAddressToOffset(mapping, mirror) == offset) address = mirror;
    return static_cast<uint32_t>((oldValue & ~0xFFFFFFu & mask) | *address);
}

std::optional<int64_t> EntryTarget(const PointerForm& form, int64_t entry) {
    const PointerPlace place = PlaceOfEntry(form, entry);
    if (!PlaceInsideImage(place)) return std::nullopt;
    std::optional<int64_t> target = TargetOfValue(form, ReadPlace(CurrentRom().data, place));
    if (!target || !RomRangeInside(*target, 1)) return std::nullopt;
    return target;
}

extern "C" long Trelvane_GetPointerTarget(const PointerForm* form, long index) {
    if (!form || !RequireCurrentRom() || !CheckPointerForm(*form)) return -1;
    const PointerPlace place = PlaceOfEntry(*form, index);
    if (index < 0 || (form->count > 0 && index >= form->count) || !PlaceInsideImage(place)) {
        SetError(TLERR_POINTER_OUTSIDE, "", 0, 0, std::to_string(index).c_str(), "the table's end");
        return -1;
    }
    std::optional<int64_t> target = TargetOfValue(*form, ReadPlace(CurrentRom().data, place));
    if (!target || !RomRangeInside(*target, 1)) {
        SetError(TLERR_POINTER_OUTSIDE, "", 0, 0, std::to_string(index).c_str(),
                 std::to_string(place.byteAt[0]).c_str());
        return -1;
    }
    return static_cast<long>(*target);
}
