#include "asm/snes_checksum.h"

#include <cstdint>
#include <numeric>

namespace {

uint32_t Sum(const unsigned char* begin, const unsigned char* end) {
    return std::accumulate(begin, end, uint32_t{0});
}

}  // namespace

bool FixSnesChecksum(std::vector<unsigned char>& image, SnesMapping mapping) {
    const std::optional<uint32_t> at = SnesAddressToOffset(mapping, 0x00FFDC);
    if (!at || *at + 4 > image.size()) return false;
    unsigned char* field = image.data() + *at;
    field[0] = field[1] = 0xFF;
    field[2] = field[3] = 0x00;
    size_t power = 1;
    while (power * 2 <= image.size()) power *= 2;
    const unsigned char* data = image.data();
    uint32_t sum = Sum(data, data + power);
    const size_t rest = image.size() - power;
    if (rest) sum += Sum(data + power, data + image.size()) * static_cast<uint32_t>(power / rest);
    const uint16_t checksum = static_cast<uint16_t>(sum);
    field[0] = static_cast<unsigned char>(~checksum);
    field[1] = static_cast<unsigned char>(~checksum >> 8);
    field[2] = static_cast<unsigned char>(checksum);
    field[3] = static_cast<unsigned char>(checksum >> 8);
    return true;
}
