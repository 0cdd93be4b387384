#include "asm/snes_checksum.h"

#include "core/snes_header.h"

bool FixSnesChecksum(std::vector<unsigned char>& image, SnesMapping mapping) {
    const std::optional<uint32_t> at = SnesAddressToOffset(mapping, 0x00FFDC);
    if (!at || *at + 4 > image.size()) return false;
    unsigned char* field = image.data() + *at;
    field[0] = field[1] = 0xFF;
    field[2] = field[3] = 0x00;
    const uint16_t checksum = SnesChecksum(image.data(), image.size());
    field[0] = static_cast<unsigned char>(~checksum);
    field[1] = static_cast<unsigned char>(~checksum >> 8);
    field[2] = static_cast<unsigned char>(checksum);
    field[3] = static_cast<unsigned char>(checksum >> 8);
    return true;
}
