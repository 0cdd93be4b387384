#include "core/rom_formats.h"

#include "core/text_compare.h"
#include "trelvane.h"

namespace {

constexpr RomFormat kRomFormats[] = {
    {"nes", ROM_NES, 16}, {"smc", ROM_SNES, 512}, {"fig", ROM_SNES, 512}, {"gb", ROM_GB, 0}, {"gbc", ROM_GB, 0},
};

}  // namespace

const RomFormat* FindRomFormat(const char* extension) {
    if (!extension) return nullptr;
    for (const RomFormat& format : kRomFormats)
        if (SameTextIgnoringCase(format.extension, extension)) return &format;
    return nullptr;
}
