// The Super NES cartridge's internal header: where it lies tells the memory
// mapping, and it carries the title and the checksum of the image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "core/snes_mapping.h"

struct SnesHeader {
    SnesMapping mapping;
    uint32_t offset;      // image offset of the header (0x7FC0, 0xFFC0 or 0x40FFC0)
    std::string title;    // up to 21 characters, trailing blanks removed
    uint8_t mapMode;
    uint16_t checksum;    // as stored
    uint16_t complement;  // as stored; checksum ^ complement is 0xFFFF in a sound header
    uint16_t computedChecksum;
};

// The mapping whose header place holds the most convincing header: a checksum
// with its complement, a checksum that matches the image, a map mode that
// names the place, a reset vector into ROM and a readable title each count.
// data is the image without a copier header. Nothing when no place fits.
std::optional<SnesMapping> DetectSnesMapping(const unsigned char* data, size_t size);

// The header of the mapping DetectSnesMapping chooses.
std::optional<SnesHeader> ReadSnesHeader(const unsigned char* data, size_t size);

// The Super NES checksum of an image: the 16-bit sum of its bytes, a size
// that is not a power of two counted as its remainder repeated up to the next
// power of two.
uint16_t SnesChecksum(const unsigned char* data, size_t size);
