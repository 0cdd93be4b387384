// The slot table of loaded ROM images and the current image.
#pragma once

#include <cstdint>

#include "core/rom_formats.h"

// The image every text, search, pointer and tile function works on: the
// file's bytes without its copier header. Offsets into data are "addresses".
struct RomImage {
    unsigned char* data = nullptr;
    int32_t size = 0;
    int32_t headerLength = 0;
    int32_t type = 0;
    // Tells the loads apart: every load gets a new number, so whoever borrows the bytes can
    // tell whether they are still these (0 when no image is current).
    uint64_t load = 0;
};

// The current image, read-only: only loading, using and freeing a slot change
// it. Its bytes stay writable through data.
const RomImage& CurrentRom();

// True when an image is current; otherwise reports TLERR_ID_BAD ("ROM", "0").
bool RequireCurrentRom();

// True when [offset, offset + length) lies inside the current image.
bool RomRangeInside(int64_t offset, int64_t length);

// Reports TLERR_FILE_TOOLARGE for a ROM file above the size ceiling; returns
// false.
bool RefuseOversizedRom(const char* path);

// Loads the image at path into a free slot and makes it current, as
// Trelvane_LoadROM does, telling its format by the extension behind the
// chosen dot. The handle, or 0 with the error reported.
long LoadRomImage(const char* path, ExtensionDot dot);
