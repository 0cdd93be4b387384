#include "core/snes_header.h"

#include "core/little_endian.h"

namespace {

constexpr size_t TITLE_LENGTH = 21;
constexpr size_t MAP_MODE_AT = 0x15;
constexpr size_t ROM_SIZE_AT = 0x17;
constexpr size_t COMPLEMENT_AT = 0x1C;
constexpr size_t CHECKSUM_AT = 0x1E;
constexpr size_t RESET_VECTOR_AT = 0x3C;
constexpr size_t HEADER_SPAN = 0x40;
constexpr uint8_t SA1_MAP_MODE = 0x23;

struct HeaderPlace {
    SnesMapping mapping;
    uint32_t offset;
    uint8_t mapModeLow;  // the low nibble of the map mode a header at this place names
};

constexpr HeaderPlace HEADER_PLACES[] = {
    {SnesMapping::LoRom, 0x7FC0, 0x0},
    {SnesMapping::HiRom, 0xFFC0, 0x1},
    {SnesMapping::ExHiRom, 0x40FFC0, 0x5},
};

uint32_t Sum(const unsigned char* data, size_t size) {
    uint32_t sum = 0;
    for (size_t i = 0; i < size; ++i) sum += data[i];
    return sum;
}

// The sum of data repeated as mirrors do up to span bytes (span a power of
// two at least size).
uint32_t MirroredSum(const unsigned char* data, size_t size, size_t span) {
    if (size == 0) return 0;
    size_t part = 1;
    while (part * 2 <= size) part *= 2;
    if (part == size) return Sum(data, size) * static_cast<uint32_t>(span / size);
    return Sum(data, part) + MirroredSum(data + part, size - part, span - part);
}

bool IsReadableTitle(const unsigned char* title) {
    for (size_t i = 0; i < TITLE_LENGTH; ++i)
        if (title[i] < 0x20 || title[i] > 0x7E) return false;
    return true;
}

bool MapModeNames(uint8_t mapMode, const HeaderPlace& place) {
    const uint8_t low = mapMode & 0x0F;
    const bool loRomFamily = low == 0x0 || low == 0x2 || low == 0x3;  // LoROM, S-DD1, SA-1
    return (mapMode & 0xE0) == 0x20 && (place.mapModeLow == 0x0 ? loRomFamily : low == place.mapModeLow);
}

int HeaderScore(const unsigned char* header, const HeaderPlace& place, uint16_t computedChecksum) {
    const uint16_t checksum = static_cast<uint16_t>(ReadLittleEndian(header + CHECKSUM_AT, 2));
    const uint16_t complement = static_cast<uint16_t>(ReadLittleEndian(header + COMPLEMENT_AT, 2));
    int score = 0;
    if ((checksum ^ complement) == 0xFFFF) score += 8;
    if (checksum == computedChecksum) score += 8;
    if (MapModeNames(header[MAP_MODE_AT], place)) score += 4;
    score += ReadLittleEndian(header + RESET_VECTOR_AT, 2) >= 0x8000 ? 2 : -4;
    if (IsReadableTitle(header)) score += 2;
    if (header[ROM_SIZE_AT] >= 0x08 && header[ROM_SIZE_AT] <= 0x0D) score += 1;
    return score;
}

// The place of the highest score above the least that a header must reach:
// a checksum and complement that hold, or map mode, reset vector and title.
const HeaderPlace* BestHeaderPlace(const unsigned char* data, size_t size, uint16_t computedChecksum) {
    constexpr int SCORE_BELOW_A_HEADER = 7;
    const HeaderPlace* best = nullptr;
    int bestScore = SCORE_BELOW_A_HEADER;
    for (const HeaderPlace& place : HEADER_PLACES) {
        if (size < place.offset + HEADER_SPAN) continue;
        const int score = HeaderScore(data + place.offset, place, computedChecksum);
        if (score > bestScore) best = &place, bestScore = score;
    }
    return best;
}

SnesMapping MappingOf(const HeaderPlace& place, uint8_t mapMode) {
    return place.mapping == SnesMapping::LoRom && mapMode == SA1_MAP_MODE ? SnesMapping::Sa1 : place.mapping;
}

std::string TitleOf(const unsigned char* header) {
    std::string title(reinterpret_cast<const char*>(header), TITLE_LENGTH);
    while (!title.empty() && (title.back() == ' ' || title.back() == '\0')) title.pop_back();
    return title;
}

}  // namespace

uint16_t SnesChecksum(const unsigned char* data, size_t size) {
    size_t span = 1;
    while (span < size) span *= 2;
    return static_cast<uint16_t>(MirroredSum(data, size, span));
}

std::optional<SnesHeader> ReadSnesHeader(const unsigned char* data, size_t size) {
    const uint16_t computed = SnesChecksum(data, size);
    const HeaderPlace* place = BestHeaderPlace(data, size, computed);
    if (!place) return std::nullopt;
    const unsigned char* header = data + place->offset;
    return SnesHeader{MappingOf(*place, header[MAP_MODE_AT]),
                      place->offset,
                      TitleOf(header),
                      header[MAP_MODE_AT],
                      static_cast<uint16_t>(ReadLittleEndian(header + CHECKSUM_AT, 2)),
                      static_cast<uint16_t>(ReadLittleEndian(header + COMPLEMENT_AT, 2)),
                      computed};
}

std::optional<SnesMapping> DetectSnesMapping(const unsigned char* data, size_t size) {
    const std::optional<SnesHeader> header = ReadSnesHeader(data, size);
    if (!header) return std::nullopt;
    return header->mapping;
}
