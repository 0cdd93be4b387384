// The ROM image files the program knows, told apart by their extension: the
// system each names and the copier or iNES header in front of the image. The
// one list that loading, the tile commands' default format and the verbs all
// look in.
#pragma once

#include <cstddef>
#include <cstdint>

struct RomFormat {
    const char* extension;       // without the ".", compared without regard to case
    int32_t type;                // ROM_NES, ROM_SNES or ROM_GB
    int32_t defaultHeaderLength;  // the header a file of this kind has when its size does not tell
};

// The format named by extension (given without its "."), or null.
const RomFormat* FindRomFormat(const char* extension);

// Which "." of a base name the extension starts behind: the letter commands
// and Trelvane_LoadROM have always taken the first ("game.fr.smc" names no
// format); the verbs take the last, so that any name ("Game v1.1.sfc") works.
enum class ExtensionDot { First, Last };

// The format of the file at path, by the extension behind the chosen "." of
// its base name; null with TLERR_FILE_NOEXT or TLERR_FILE_BADEXT when there
// is none or it names no format.
const RomFormat* RomFormatOfPath(const char* path, ExtensionDot dot = ExtensionDot::First);

// The header in front of the image in a file of size bytes that starts with
// head (at least 16 bytes of it when the file has them):
//  - Super NES: 512 bytes when size % 1024 is 512, none when it is 0, the
//    format's default for any other size;
//  - NES: the 16-byte iNES header, and the 512-byte trainer behind it when
//    the header says there is one (flag 6, bit 2);
//  - Game Boy: none.
int32_t RomHeaderLength(const RomFormat& format, const unsigned char* head, size_t size);
