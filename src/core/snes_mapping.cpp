#include "core/snes_mapping.h"

#include "core/named_entry.h"

namespace {

constexpr uint32_t FOUR_MIB = 0x400000;

struct MappingNames {
    SnesMapping mapping;
    const char* name;
    const char* title;
};

constexpr MappingNames MAPPING_NAMES[] = {
    {SnesMapping::LoRom, "lorom", "LoROM"},       {SnesMapping::HiRom, "hirom", "HiROM"},
    {SnesMapping::ExLoRom, "exlorom", "ExLoROM"}, {SnesMapping::ExHiRom, "exhirom", "ExHiROM"},
    {SnesMapping::Sa1, "sa1", "SA-1"},
};

bool IsWorkRam(uint32_t bank) { return bank == 0x7E || bank == 0x7F; }

std::optional<uint32_t> LoRomOffset(uint32_t bank, uint32_t low) {
    if (low < 0x8000 || IsWorkRam(bank)) return std::nullopt;
    return ((bank & 0x7F) << 15) | (low & 0x7FFF);
}

std::optional<uint32_t> HiRomOffset(uint32_t bank, uint32_t low) {
    if (IsWorkRam(bank) || ((bank & 0x40) == 0 && low < 0x8000)) return std::nullopt;
    return ((bank & 0x3F) << 16) | low;
}

std::optional<uint32_t> ExLoRomOffset(uint32_t bank, uint32_t low) {
    const std::optional<uint32_t> offset = LoRomOffset(bank, low);
    if (!offset) return offset;
    return bank & 0x80 ? *offset : *offset + FOUR_MIB;
}

std::optional<uint32_t> ExHiRomOffset(uint32_t bank, uint32_t low) {
    const std::optional<uint32_t> offset = HiRomOffset(bank, low);
    if (!offset) return offset;
    return bank & 0x80 ? *offset : *offset + FOUR_MIB;
}

// Banks $00-$1F, $20-$3F, $80-$9F, $A0-$BF hold the 1 MiB blocks 0 to 3 as
// LoROM; banks $C0-$FF all 4 MiB as HiROM; banks $40-$7F hold no image.
std::optional<uint32_t> Sa1Offset(uint32_t bank, uint32_t low) {
    if (bank >= 0xC0) return ((bank - 0xC0) << 16) | low;
    if ((bank & 0x40) || low < 0x8000) return std::nullopt;
    const uint32_t block = ((bank & 0x80) >> 6) | ((bank & 0x20) >> 5);
    return block * 0x100000 + (((bank & 0x1F) << 15) | (low & 0x7FFF));
}

std::optional<uint32_t> Sa1Address(uint32_t offset) {
    if (offset >= FOUR_MIB) return std::nullopt;
    constexpr uint32_t BLOCK_BANKS[] = {0x00, 0x20, 0x80, 0xA0};
    const uint32_t bank = BLOCK_BANKS[offset >> 20] + ((offset >> 15) & 0x1F);
    return (bank << 16) | 0x8000 | (offset & 0x7FFF);
}

}  // namespace

std::optional<uint32_t> SnesAddressToOffset(SnesMapping mapping, uint32_t address) {
    const uint32_t bank = (address >> 16) & 0xFF;
    const uint32_t low = address & 0xFFFF;
    switch (mapping) {
        case SnesMapping::LoRom: return LoRomOffset(bank, low);
        case SnesMapping::HiRom: return HiRomOffset(bank, low);
        case SnesMapping::ExLoRom: return ExLoRomOffset(bank, low);
        case SnesMapping::ExHiRom: return ExHiRomOffset(bank, low);
        case SnesMapping::Sa1: return Sa1Offset(bank, low);
    }
    return std::nullopt;
}

std::optional<uint32_t> SnesOffsetToAddress(SnesMapping mapping, uint32_t offset) {
    switch (mapping) {
        case SnesMapping::LoRom:
            if (offset >= FOUR_MIB) return std::nullopt;
            return 0x800000 | ((offset << 1) & 0x7F0000) | 0x8000 | (offset & 0x7FFF);
        case SnesMapping::HiRom:
            if (offset >= FOUR_MIB) return std::nullopt;
            return 0xC00000 | offset;
        case SnesMapping::ExLoRom:
            if (offset >= 2 * FOUR_MIB - 0x10000) return std::nullopt;
            return (offset < FOUR_MIB ? 0x800000 : 0) | (((offset % FOUR_MIB) << 1) & 0x7F0000) | 0x8000 |
                   (offset & 0x7FFF);
        case SnesMapping::ExHiRom:
            if (offset >= 2 * FOUR_MIB - 0x20000) return std::nullopt;
            return offset < FOUR_MIB ? 0xC00000 | offset : 0x400000 | (offset - FOUR_MIB);
        case SnesMapping::Sa1: return Sa1Address(offset);
    }
    return std::nullopt;
}

std::optional<SnesMapping> SnesMappingFromName(const char* name) {
    const MappingNames* names = FindNamedEntry(MAPPING_NAMES, &MappingNames::name, name);
    if (!names) return std::nullopt;
    return names->mapping;
}

const char* SnesMappingName(SnesMapping mapping) {
    for (const MappingNames& names : MAPPING_NAMES)
        if (names.mapping == mapping) return names.name;
    return "";
}

const char* SnesMappingTitle(SnesMapping mapping) {
    for (const MappingNames& names : MAPPING_NAMES)
        if (names.mapping == mapping) return names.title;
    return "";
}
