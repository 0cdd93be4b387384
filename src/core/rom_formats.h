// The ROM file extensions the program knows: the system each names and the
// length of the copier header in front of the image. The one list that
// loading, the tile commands' default format and the verbs all look in.
#pragma once

#include <cstdint>

struct RomFormat {
    const char* extension;  // without its ".", compared without regard to case
    int32_t type;           // ROM_NES, ROM_SNES or ROM_GB
    int32_t headerLength;
};

// The format of this extension (given without its "."); null if none.
const RomFormat* FindRomFormat(const char* extension);
