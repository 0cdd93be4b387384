// The Game Boy cartridge header at 0x100-0x14F of the image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

struct GameBoyHeader {
    std::string title;            // up to 16 characters, trailing zeros removed
    uint8_t cartridgeType;        // 0x147
    const char* cartridgeName;    // "MBC1+RAM+BATTERY", ...; "unknown" for codes without a name
    uint64_t romSize;             // bytes the size code at 0x148 stands for (0: unknown code)
    uint8_t headerChecksum;       // 0x14D as stored
    uint8_t computedHeaderChecksum;
    uint16_t globalChecksum;      // 0x14E-0x14F as stored, high byte first
    uint16_t computedGlobalChecksum;
};

// The header of image, or nothing when the image is too short to hold one.
std::optional<GameBoyHeader> ReadGameBoyHeader(const unsigned char* image, size_t size);

// The name of a cartridge type code ("MBC1+RAM+BATTERY", ...), "unknown"
// for a code without one.
const char* GameBoyCartridgeName(uint8_t type);

// The global checksum: the 16-bit sum of every byte but its own two.
uint16_t GameBoyGlobalChecksum(const unsigned char* image, size_t size);
