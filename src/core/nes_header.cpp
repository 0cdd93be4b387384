#include "core/nes_header.h"

#include <cstring>

namespace {

constexpr size_t HEADER_LENGTH = 16;
constexpr uint64_t PRG_UNIT = 16 * 1024;
constexpr uint64_t CHR_UNIT = 8 * 1024;

// A NES 2.0 size: the low byte and the high nibble count units; a high
// nibble of 0xF makes the low byte an exponent and a multiplier instead.
uint64_t Nes2Size(uint8_t low, uint8_t highNibble, uint64_t unit) {
    if (highNibble != 0xF) return ((static_cast<uint64_t>(highNibble) << 8) | low) * unit;
    const unsigned exponent = low >> 2;
    const uint64_t multiplier = (low & 0x3) * 2u + 1u;
    return exponent < 58 ? (uint64_t{1} << exponent) * multiplier : 0;
}

}  // namespace

std::optional<NesHeader> ReadNesHeader(const unsigned char* file, size_t size) {
    if (size < HEADER_LENGTH || std::memcmp(file, "NES\x1A", 4) != 0) return std::nullopt;
    NesHeader header{};
    header.nes2 = (file[7] & 0x0C) == 0x08;
    header.trainer = (file[6] & 0x04) != 0;
    header.mapper = (file[6] >> 4) | (file[7] & 0xF0);
    if (header.nes2) {
        header.mapper |= static_cast<uint32_t>(file[8] & 0x0F) << 8;
        header.prgSize = Nes2Size(file[4], file[9] & 0x0F, PRG_UNIT);
        header.chrSize = Nes2Size(file[5], file[9] >> 4, CHR_UNIT);
    } else {
        header.prgSize = file[4] * PRG_UNIT;
        header.chrSize = file[5] * CHR_UNIT;
    }
    return header;
}
