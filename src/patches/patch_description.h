// What a patch file says about itself: its format, the files it is made for
// and makes (BPS, UPS), its records (IPS), the ranges it writes; and whether
// it fits a given image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "patches/patch_formats.h"

struct ChangedRange {
    uint64_t start = 0;
    uint64_t end = 0;  // one past the last byte
};

struct PatchDescription {
    PatchKind kind = PatchKind::None;
    uint64_t patchSize = 0;
    // BPS and UPS: the files and the patch's own CRC-32 from the footer.
    uint64_t sourceSize = 0;
    uint64_t targetSize = 0;
    uint32_t sourceCrc = 0;
    uint32_t targetCrc = 0;
    uint32_t patchCrc = 0;
    std::string metadata;  // BPS
    // IPS: records (run-length ones counted apart) and the cut behind "EOF".
    size_t records = 0;
    size_t runRecords = 0;
    bool truncates = false;
    uint64_t truncatedLength = 0;
    // Every format: the target ranges the patch writes other than by reading
    // the source in place (BPS) or XORing 0 (UPS), merged and in order, and
    // their total.
    std::vector<ChangedRange> ranges;
    uint64_t changedBytes = 0;
};

// Describes the patch (patchfile names it in messages); a patch that is not
// valid is reported as applying it would be, and false returned.
bool DescribePatch(const unsigned char* patch, size_t size, const char* patchfile, PatchDescription& description);

enum class PatchFit {
    Fits,           // BPS, UPS: the image is the source; IPS: no sign against it
    FitsToUndo,     // UPS: the image is the target, the patch turns it back
    WrongImage,     // BPS, UPS: neither size and CRC-32 match
    NeedsHeader,    // IPS made for the image with a 512-byte copier header
    NeedsNoHeader,  // IPS made for the image without its copier header
};

// Whether the patch fits image. IPS patches carry no CRC: they are judged
// only for Super NES images (superNes), by the signs of a copier header the
// patch expects differently: a record only inside the first 512 bytes of a
// file without one (size % 1024 == 0), or a record ending exactly 512 bytes
// past its end, call for a header; a record of a headered file (size % 1024
// == 512) ending exactly 512 bytes before its end calls for none.
PatchFit JudgeFit(const PatchDescription& description, const unsigned char* image, size_t size, bool superNes);
