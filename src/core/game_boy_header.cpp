#include "core/game_boy_header.h"

namespace {

constexpr size_t TITLE_AT = 0x134;
constexpr size_t TITLE_LENGTH = 16;
constexpr size_t TYPE_AT = 0x147;
constexpr size_t ROM_SIZE_AT = 0x148;
constexpr size_t HEADER_CHECKSUM_AT = 0x14D;
constexpr size_t GLOBAL_CHECKSUM_AT = 0x14E;
constexpr size_t HEADER_END = 0x150;

struct CartridgeName {
    uint8_t type;
    const char* name;
};

constexpr CartridgeName CARTRIDGE_NAMES[] = {
    {0x00, "ROM ONLY"},
    {0x01, "MBC1"},
    {0x02, "MBC1+RAM"},
    {0x03, "MBC1+RAM+BATTERY"},
    {0x05, "MBC2"},
    {0x06, "MBC2+BATTERY"},
    {0x08, "ROM+RAM"},
    {0x09, "ROM+RAM+BATTERY"},
    {0x0B, "MMM01"},
    {0x0C, "MMM01+RAM"},
    {0x0D, "MMM01+RAM+BATTERY"},
    {0x0F, "MBC3+TIMER+BATTERY"},
    {0x10, "MBC3+TIMER+RAM+BATTERY"},
    {0x11, "MBC3"},
    {0x12, "MBC3+RAM"},
    {0x13, "MBC3+RAM+BATTERY"},
    {0x19, "MBC5"},
    {0x1A, "MBC5+RAM"},
    {0x1B, "MBC5+RAM+BATTERY"},
    {0x1C, "MBC5+RUMBLE"},
    {0x1D, "MBC5+RUMBLE+RAM"},
    {0x1E, "MBC5+RUMBLE+RAM+BATTERY"},
    {0x20, "MBC6"},
    {0x22, "MBC7+SENSOR+RUMBLE+RAM+BATTERY"},
    {0xFC, "POCKET CAMERA"},
    {0xFD, "BANDAI TAMA5"},
    {0xFE, "HuC3"},
    {0xFF, "HuC1+RAM+BATTERY"},
};

uint8_t HeaderChecksumOf(const unsigned char* image) {
    uint8_t sum = 0;
    for (size_t i = TITLE_AT; i < HEADER_CHECKSUM_AT; ++i) sum = static_cast<uint8_t>(sum - image[i] - 1);
    return sum;
}

std::string TitleOf(const unsigned char* image) {
    std::string title(reinterpret_cast<const char*>(image + TITLE_AT), TITLE_LENGTH);
    const size_t end = title.find('\0');
    if (end != std::string::npos) title.resize(end);
    return title;
}

}  // namespace

const char* GameBoyCartridgeName(uint8_t type) {
    for (const CartridgeName& entry : CARTRIDGE_NAMES)
        if (entry.type == type) return entry.name;
    return "unknown";
}

uint16_t GameBoyGlobalChecksum(const unsigned char* image, size_t size) {
    uint32_t sum = 0;
    for (size_t i = 0; i < size; ++i)
        if (i != GLOBAL_CHECKSUM_AT && i != GLOBAL_CHECKSUM_AT + 1) sum += image[i];
    return static_cast<uint16_t>(sum);
}

std::optional<GameBoyHeader> ReadGameBoyHeader(const unsigned char* image, size_t size) {
    if (size < HEADER_END) return std::nullopt;
    const uint8_t sizeCode = image[ROM_SIZE_AT];
    return GameBoyHeader{TitleOf(image),
                         image[TYPE_AT],
                         GameBoyCartridgeName(image[TYPE_AT]),
                         sizeCode <= 8 ? (uint64_t{32 * 1024} << sizeCode) : 0,
                         image[HEADER_CHECKSUM_AT],
                         HeaderChecksumOf(image),
                         static_cast<uint16_t>(image[GLOBAL_CHECKSUM_AT] << 8 | image[GLOBAL_CHECKSUM_AT + 1]),
                         GameBoyGlobalChecksum(image, size)};
}
