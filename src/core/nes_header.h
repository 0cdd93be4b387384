// The iNES and NES 2.0 header in front of a NES image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

struct NesHeader {
    bool nes2;         // NES 2.0 rather than plain iNES
    uint32_t mapper;
    uint64_t prgSize;  // bytes of program ROM
    uint64_t chrSize;  // bytes of character ROM (0: the cartridge has RAM instead)
    bool trainer;      // 512 bytes between the header and the program ROM
};

// The header at the start of file, or nothing when file does not start with
// "NES" and 0x1A.
std::optional<NesHeader> ReadNesHeader(const unsigned char* file, size_t size);
