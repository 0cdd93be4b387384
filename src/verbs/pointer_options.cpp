#include "verbs/pointer_options.h"

#include <cstdio>

#include "core/snes_mapping.h"
#include "core/text_compare.h"
#include "script/pointer_form.h"

namespace {

int MapOf(const std::string& name) {
    if (name.empty()) return POINTER_MAP_NONE;
    std::optional<SnesMapping> mapping = SnesMappingFromName(name.c_str());
    if (mapping == SnesMapping::HiRom) return POINTER_MAP_HIROM;
    if (mapping == SnesMapping::ExHiRom) return POINTER_MAP_EXHIROM;
    return POINTER_MAP_LOROM;
}

std::string Hex(int64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "%s$%llX", value < 0 ? "-" : "",
                  static_cast<unsigned long long>(value < 0 ? -value : value));
    return text;
}

}  // namespace

void AddPointerOptions(CLI::App& verb, PointerOptions& options, bool tableOptions) {
    verb.add_option("--size", options.size, "Bytes per pointer, 1 to 4 (default 2)")->check(NumberArgument());
    CLI::Option* base =
        verb.add_option("--base", options.base, "Added to a pointer's value to give the image offset (may be negative)")
            ->check(NumberArgument());
    CLI::Option* map = verb.add_option("--map", options.map, "Super NES mapping of 3- and 4-byte pointers")
                           ->check(CLI::IsMember({"lorom", "hirom", "exhirom"}, CLI::ignore_case));
    base->excludes(map);
    if (!tableOptions) return;
    verb.add_option("--stride", options.stride, "Bytes from one pointer to the next")->check(NumberArgument());
    verb.add_flag("--big-endian", options.bigEndian, "The most significant byte comes first");
}

PointerForm PointerFormOf(const PointerOptions& options, int64_t table) {
    PointerForm form = PlainPointerForm(options.size.empty() ? 2 : static_cast<int32_t>(NumberValue(options.size)), table);
    form.base = options.base.empty() ? 0 : static_cast<int>(NumberValue(options.base));
    form.map = MapOf(options.map);
    form.stride = options.stride.empty() ? 0 : static_cast<int>(NumberValue(options.stride));
    form.bigEndian = options.bigEndian ? 1 : 0;
    return form;
}

std::string DescribePointerForm(const PointerForm& form) {
    std::string text;
    if (IsSplitForm(form)) {
        text = "split table, low bytes at " + Hex(form.low);
        if (form.high >= 0) text += ", high at " + Hex(form.high);
        if (form.bank >= 0) text += ", bank at " + Hex(form.bank);
    } else {
        text = std::to_string(form.size) + "-byte pointers" + (form.bigEndian ? " (big endian)" : "");
        if (form.table >= 0) text += " at " + Hex(form.table);
    }
    if (form.count > 0) text += ", " + std::to_string(form.count) + " entries";
    if (form.stride > 0) text += ", stride " + std::to_string(form.stride);
    if (form.map != POINTER_MAP_NONE) {
        const SnesMapping mapping = form.map == POINTER_MAP_HIROM ? SnesMapping::HiRom
                                    : form.map == POINTER_MAP_EXHIROM ? SnesMapping::ExHiRom : SnesMapping::LoRom;
        text += std::string(", ") + SnesMappingTitle(mapping);
    } else {
        text += ", base " + Hex(form.base);
    }
    return text;
}
