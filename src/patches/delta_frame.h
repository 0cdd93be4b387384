// The frame that BPS and UPS patches share: a 4-byte magic, the source and
// target sizes as patch numbers, the body, and a 12-byte footer holding the
// CRC-32 of the source, of the target and of every patch byte before the
// last four (little-endian).
#pragma once

#include <cstddef>
#include <cstdint>

#include "patches/delta_result.h"
#include "patches/patch_numbers.h"

constexpr size_t DELTA_MAGIC_SIZE = 4;
constexpr size_t DELTA_FOOTER_SIZE = 12;

struct DeltaFrame {
    uint64_t sourceSize = 0;
    uint64_t targetSize = 0;
    uint32_t sourceCrc = 0;
    uint32_t targetCrc = 0;
    size_t body = 0;    // the first byte behind the two sizes
    size_t footer = 0;  // the first byte of the footer
};

// Checks the magic and the patch's own CRC-32, then reads the sizes; sizes
// over DELTA_LARGEST_FILE are refused.
DeltaResult ReadDeltaFrame(const unsigned char* patch, size_t size, const char* magic, DeltaFrame& frame);

// Reads a number at the cursor; a failure names the offset it started at.
DeltaResult ReadDeltaNumber(PatchCursor& cursor, uint64_t& value);

// Appends the footer to a patch that holds everything before it.
void AppendDeltaFooter(std::vector<unsigned char>& patch, uint32_t sourceCrc, uint32_t targetCrc);
