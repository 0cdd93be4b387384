// Super NES memory mappings: how a 24-bit processor address ($BBAAAA) and an
// offset into the image (without a copier header) correspond.
//  - LoROM: 32 KiB of the image in the upper half of each bank; offsets map
//    to banks $80-$FF.
//  - HiROM: 64 KiB of the image per bank; offsets map to banks $C0-$FF.
//  - ExLoROM: LoROM with the first 4 MiB in banks $80-$FF and the rest in
//    banks $00-$7D.
//  - ExHiROM: the first 4 MiB in banks $C0-$FF, the rest in banks $40-$7D.
//  - SA-1: the cartridge's default layout, four 1 MiB blocks as LoROM in banks
//    $00-$1F, $20-$3F, $80-$9F and $A0-$BF (offsets map there), and all 4 MiB
//    as HiROM in banks $C0-$FF.
// Work RAM (banks $7E, $7F), the lower half of LoROM banks and the lower half
// of banks $00-$3F/$80-$BF in the HiROM layouts hold no image bytes.
#pragma once

#include <cstdint>
#include <optional>

enum class SnesMapping { LoRom, HiRom, ExLoRom, ExHiRom, Sa1 };

// The image offset that address reads, or nothing where no image byte is
// mapped there (the offset may still lie beyond a given image's end).
std::optional<uint32_t> SnesAddressToOffset(SnesMapping mapping, uint32_t address);

// The address the mapping's usual bank gives offset, or nothing for an
// offset beyond what the mapping can address.
std::optional<uint32_t> SnesOffsetToAddress(SnesMapping mapping, uint32_t offset);

// "lorom", "hirom", "exlorom", "exhirom", "sa1" (any case) and back.
std::optional<SnesMapping> SnesMappingFromName(const char* name);
const char* SnesMappingName(SnesMapping mapping);
// "LoROM", "HiROM", "ExLoROM", "ExHiROM", "SA-1": as people write them.
const char* SnesMappingTitle(SnesMapping mapping);
