#include "core/rom_formats.h"

#include <cstring>

#include "core/last_error.h"
#include "core/named_entry.h"
#include "core/path_names.h"
#include "trelvane.h"

namespace {

constexpr RomFormat ROM_FORMATS[] = {
    {"nes", ROM_NES, 16},   {"smc", ROM_SNES, 512}, {"fig", ROM_SNES, 512}, {"swc", ROM_SNES, 512},
    {"sfc", ROM_SNES, 0},   {"gb", ROM_GB, 0},      {"gbc", ROM_GB, 0},
};

constexpr int32_t COPIER_HEADER_LENGTH = 512;
constexpr int32_t INES_HEADER_LENGTH = 16;
constexpr int32_t NES_TRAINER_LENGTH = 512;

bool HasNesTrainer(const unsigned char* head, size_t size) {
    return size >= INES_HEADER_LENGTH && std::memcmp(head, "NES\x1A", 4) == 0 && (head[6] & 0x04) != 0;
}

}  // namespace

const RomFormat* FindRomFormat(const char* extension) {
    return FindNamedEntry(ROM_FORMATS, &RomFormat::extension, extension);
}

const RomFormat* RomFormatOfPath(const char* path, ExtensionDot which) {
    const char* dot = which == ExtensionDot::First ? FirstDotOfBaseName(path) : LastDotOfBaseName(path);
    if (!dot) return SetError(TLERR_FILE_NOEXT, path, 0, 0), nullptr;
    const RomFormat* format = FindRomFormat(dot + 1);
    if (!format) SetError(TLERR_FILE_BADEXT, path, 0, 0, dot);
    return format;
}

int32_t RomHeaderLength(const RomFormat& format, const unsigned char* head, size_t size) {
    switch (format.type) {
        case ROM_SNES:
            if (size % 1024 == COPIER_HEADER_LENGTH) return COPIER_HEADER_LENGTH;
            if (size % 1024 == 0) return 0;
            return format.defaultHeaderLength;
        case ROM_NES:
            return HasNesTrainer(head, size) ? INES_HEADER_LENGTH + NES_TRAINER_LENGTH : format.defaultHeaderLength;
        default: return format.defaultHeaderLength;
    }
}
