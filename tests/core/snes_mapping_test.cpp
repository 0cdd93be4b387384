// Super NES mappings both ways: processor address to image offset and back,
// at the edges of each layout and in the areas that hold no image byte.
#include <gtest/gtest.h>

#include "core/snes_mapping.h"

namespace {

TEST(SnesMappingTest, AddressesToOffsets) {
    using M = SnesMapping;
    constexpr uint32_t NONE = 0xFFFFFFFF;
    const struct {
        M mapping;
        uint32_t address, offset;
    } cases[] = {
        {M::LoRom, 0x808000, 0x000000}, {M::LoRom, 0x008000, 0x000000}, {M::LoRom, 0x018000, 0x008000},
        {M::LoRom, 0x7D8000, 0x3E8000}, {M::LoRom, 0xFFFFFF, 0x3FFFFF}, {M::LoRom, 0x80FFFF, 0x007FFF},
        {M::LoRom, 0x807FFF, NONE},     {M::LoRom, 0x7E8000, NONE},     {M::LoRom, 0x7F0000, NONE},
        {M::HiRom, 0xC12345, 0x012345}, {M::HiRom, 0xC00000, 0x000000}, {M::HiRom, 0x008000, 0x008000},
        {M::HiRom, 0x400000, 0x000000}, {M::HiRom, 0xFFFFFF, 0x3FFFFF}, {M::HiRom, 0x007FFF, NONE},
        {M::HiRom, 0x7E8000, NONE},     {M::HiRom, 0xBF7FFF, NONE},
        {M::ExLoRom, 0x808000, 0x000000}, {M::ExLoRom, 0x008000, 0x400000}, {M::ExLoRom, 0xFFFFFF, 0x3FFFFF},
        {M::ExLoRom, 0x7D8000, 0x7E8000}, {M::ExLoRom, 0x7E8000, NONE},     {M::ExLoRom, 0x000000, NONE},
        {M::ExHiRom, 0xC00000, 0x000000}, {M::ExHiRom, 0x400000, 0x400000}, {M::ExHiRom, 0x008000, 0x408000},
        {M::ExHiRom, 0xFFFFFF, 0x3FFFFF}, {M::ExHiRom, 0x7DFFFF, 0x7DFFFF}, {M::ExHiRom, 0x7E0000, NONE},
        {M::ExHiRom, 0x807FFF, NONE},
        {M::Sa1, 0x008000, 0x000000}, {M::Sa1, 0x208000, 0x100000}, {M::Sa1, 0x808000, 0x200000},
        {M::Sa1, 0xA08000, 0x300000}, {M::Sa1, 0xBFFFFF, 0x3FFFFF}, {M::Sa1, 0xC00000, 0x000000},
        {M::Sa1, 0xE00000, 0x200000}, {M::Sa1, 0xFFFFFF, 0x3FFFFF}, {M::Sa1, 0x400000, NONE},
        {M::Sa1, 0x7FFFFF, NONE},     {M::Sa1, 0x007FFF, NONE},
    };
    for (const auto& c : cases) {
        const std::optional<uint32_t> offset = SnesAddressToOffset(c.mapping, c.address);
        const std::optional<uint32_t> expected = c.offset == NONE ? std::nullopt : std::optional<uint32_t>(c.offset);
        EXPECT_EQ(offset, expected) << SnesMappingName(c.mapping) << " " << std::hex << c.address;
    }
}

TEST(SnesMappingTest, OffsetsToAddresses) {
    using M = SnesMapping;
    const struct {
        M mapping;
        uint32_t offset;
        std::optional<uint32_t> address;
    } cases[] = {
        {M::LoRom, 0x000000, 0x808000},   {M::LoRom, 0x007FFF, 0x80FFFF}, {M::LoRom, 0x008000, 0x818000},
        {M::LoRom, 0x3FFFFF, 0xFFFFFF},   {M::LoRom, 0x400000, std::nullopt},
        {M::HiRom, 0x000000, 0xC00000},   {M::HiRom, 0x3FFFFF, 0xFFFFFF}, {M::HiRom, 0x400000, std::nullopt},
        {M::ExLoRom, 0x000000, 0x808000}, {M::ExLoRom, 0x400000, 0x008000}, {M::ExLoRom, 0x7EFFFF, 0x7DFFFF},
        {M::ExLoRom, 0x7F0000, std::nullopt},
        {M::ExHiRom, 0x000000, 0xC00000}, {M::ExHiRom, 0x400000, 0x400000}, {M::ExHiRom, 0x7DFFFF, 0x7DFFFF},
        {M::ExHiRom, 0x7E0000, std::nullopt},
        {M::Sa1, 0x000000, 0x008000},     {M::Sa1, 0x100000, 0x208000},   {M::Sa1, 0x200000, 0x808000},
        {M::Sa1, 0x3FFFFF, 0xBFFFFF},     {M::Sa1, 0x400000, std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(SnesOffsetToAddress(c.mapping, c.offset), c.address) << SnesMappingName(c.mapping) << " " << std::hex << c.offset;
}

TEST(SnesMappingTest, EveryOffsetComesBackThroughItsAddress) {
    for (SnesMapping mapping : {SnesMapping::LoRom, SnesMapping::HiRom, SnesMapping::ExLoRom, SnesMapping::ExHiRom,
                                SnesMapping::Sa1})
        for (uint32_t offset = 0; offset < 0x800000; offset += 0x1FFF) {
            const std::optional<uint32_t> address = SnesOffsetToAddress(mapping, offset);
            if (address) {
                EXPECT_EQ(SnesAddressToOffset(mapping, *address), offset) << SnesMappingName(mapping) << " " << offset;
            }
        }
}

TEST(SnesMappingTest, NamesBothWays) {
    EXPECT_EQ(SnesMappingFromName("HiROM"), SnesMapping::HiRom);
    EXPECT_EQ(SnesMappingFromName("sa1"), SnesMapping::Sa1);
    EXPECT_EQ(SnesMappingFromName("sa-1"), std::nullopt);
    EXPECT_EQ(SnesMappingFromName(nullptr), std::nullopt);
    EXPECT_STREQ(SnesMappingName(SnesMapping::ExLoRom), "exlorom");
    EXPECT_STREQ(SnesMappingTitle(SnesMapping::Sa1), "SA-1");
}

}  // namespace
