// Applying a patch file to a ROM file on disk, the same way for IPS, BPS and
// UPS: the patch is read whole; the ROM file must be an existing regular
// file this process may write, of at most PATCH_LARGEST_FILE bytes; the
// format checks the whole patch and builds the result in memory; a result
// over the same ceiling is refused; only then is the ROM file replaced,
// whole or not at all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "patches/delta_result.h"

// Neither a patched file nor its result may be larger (1 GiB); patches are
// not made from larger files either.
constexpr uint64_t PATCH_LARGEST_FILE = DELTA_LARGEST_FILE;

// One patch format: check looks at the patch alone (patchSize bytes at
// patch), so that a damaged patch is refused before the ROM file is read;
// apply checks the patch whole and makes result from rom. Both report what
// is wrong and return false. The file names are for the messages.
struct PatchFormat {
    bool (*check)(const unsigned char* patch, size_t patchSize, const char* patchfile);
    bool (*apply)(const unsigned char* patch, size_t patchSize, const char* patchfile,
                  const std::vector<unsigned char>& rom, const char* romfile, std::vector<unsigned char>& result);
};

// Reads the ROM file a patch is applied to: TLERR_FILE_NOWRITE when it is
// not an existing regular file this process may write, TLERR_FILE_TOOLARGE
// above PATCH_LARGEST_FILE.
bool ReadPatchTarget(const char* romfile, std::vector<unsigned char>& rom);

// Applies the patch file to rom in memory (romfile names it in messages);
// on failure reports and leaves rom as it was. TLERR_FILE_NOREAD for a
// patch that cannot be read, TLERR_DELTA_TOO_LARGE for a result above
// PATCH_LARGEST_FILE.
bool ApplyPatchToImage(const char* patchfile, const char* romfile, const PatchFormat& format,
                       std::vector<unsigned char>& rom);

// Reads and checks the patch, reads the ROM file, applies the patch and
// writes the result over the ROM file (TLERR_FILE_NOWRITE when that fails).
// 1 on success, 0 after reporting.
long ApplyPatchFile(const char* patchfile, const char* romfile, const PatchFormat& format);
