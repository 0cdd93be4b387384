#include <gtest/gtest.h>

#include "core/game_boy_header.h"
#include "core/nes_header.h"
#include "core/rom_formats.h"
#include "core/snes_header.h"
#include "trelvane.h"
#include "verbs/test_images.h"

namespace {

int32_t HeaderOf(const char* extension, const Bytes& file) {
    return RomHeaderLength(*FindRomFormat(extension), file.data(), file.size());
}

TEST(RomFormats, SuperNesHeaderFollowsTheSizeThenTheExtension) {
    const struct {
        const char* extension;
        size_t size;
        int32_t header;
    } cases[] = {
        {"sfc", 0x80000, 0},   {"sfc", 0x80200, 512}, {"sfc", 0x80100, 0},   {"SFC", 0x80000 + 700, 0},
        {"smc", 0x80000, 0},   {"smc", 0x80200, 512}, {"smc", 0x80100, 512}, {"fig", 0x80000, 0},
        {"swc", 0x80200, 512}, {"swc", 0x80001, 512}, {"Smc", 1024, 0},      {"smc", 512, 512},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.extension) + " " + std::to_string(c.size));
        EXPECT_EQ(HeaderOf(c.extension, Bytes(c.size, 0)), c.header);
        EXPECT_EQ(FindRomFormat(c.extension)->type, ROM_SNES);
    }
}

TEST(RomFormats, NesTrainerGoesWithTheHeaderGameBoyHasNone) {
    EXPECT_EQ(HeaderOf("nes", NesFile(1, 1, 0x00, 0)), 16);
    EXPECT_EQ(HeaderOf("nes", NesFile(1, 1, 0x04, 0)), 16 + 512);
    Bytes noMagic = NesFile(1, 1, 0x04, 0);
    noMagic[3] = 0;  // not an iNES header: the old 16 bytes, whatever flag 6 holds
    EXPECT_EQ(HeaderOf("nes", noMagic), 16);
    EXPECT_EQ(HeaderOf("nes", Bytes(3, 0)), 16);
    EXPECT_EQ(HeaderOf("gb", Bytes(0x8200, 0)), 0);
    EXPECT_EQ(HeaderOf("gbc", Bytes(0x8200, 0)), 0);
    EXPECT_EQ(FindRomFormat("bin"), nullptr);
}

TEST(SnesHeader, MappingFollowsTheBestHeaderPlace) {
    EXPECT_EQ(DetectSnesMapping(SnesImage(0x80000, "lorom", "LO").data(), 0x80000), SnesMapping::LoRom);
    EXPECT_EQ(DetectSnesMapping(SnesImage(0x80000, "hirom", "HI").data(), 0x80000), SnesMapping::HiRom);
    EXPECT_EQ(DetectSnesMapping(SnesImage(0x600000, "exhirom", "EX").data(), 0x600000), SnesMapping::ExHiRom);
    Bytes sa1 = SnesImage(0x80000, "lorom", "SA");
    sa1[0x7FD5] = 0x23;
    EXPECT_EQ(DetectSnesMapping(sa1.data(), sa1.size()), SnesMapping::Sa1);
    // Too small for any header place, and a place full of zeros convinces nobody.
    EXPECT_EQ(DetectSnesMapping(Bytes(0x7FFF, 0).data(), 0x7FFF), std::nullopt);
    EXPECT_EQ(DetectSnesMapping(Bytes(0x10000, 0).data(), 0x10000), std::nullopt);
}

TEST(SnesHeader, HiRomHeaderWinsOverLoRomLookalikeWithoutChecksum) {
    Bytes image = SnesImage(0x80000, "hirom", "REAL");
    for (size_t i = 0; i < 21; ++i) image[0x7FC0 + i] = 'A';  // readable title, map mode 0x20, nothing else
    image[0x7FD5] = 0x20;
    image[0x7FFD] = 0x80;
    const std::optional<SnesHeader> header = ReadSnesHeader(image.data(), image.size());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->mapping, SnesMapping::HiRom);
    EXPECT_EQ(header->offset, 0xFFC0u);
    EXPECT_EQ(header->title, "REAL");
}

TEST(SnesHeader, FieldsAndChecksums) {
    Bytes image = SnesImage(0x80000, "lorom", "MY GAME");
    std::optional<SnesHeader> header = ReadSnesHeader(image.data(), image.size());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->title, "MY GAME");
    EXPECT_EQ(header->mapMode, 0x20);
    EXPECT_EQ(header->checksum, header->computedChecksum);
    EXPECT_EQ(header->checksum ^ header->complement, 0xFFFF);
    image[0] ^= 1;  // the stored checksum no longer holds, the header is still found
    header = ReadSnesHeader(image.data(), image.size());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->computedChecksum, static_cast<uint16_t>(header->checksum + (image[0] & 1 ? 1 : -1)));
}

TEST(SnesHeader, ChecksumMirrorsTheRemainderOfAnOddSize) {
    // 3 bytes: the first two, then the third repeated to fill four.
    const unsigned char bytes[] = {1, 2, 10};
    EXPECT_EQ(SnesChecksum(bytes, 3), 1 + 2 + 10 + 10);
    const unsigned char six[] = {1, 1, 1, 1, 5, 6};  // 4 + (5 + 6) x 2
    EXPECT_EQ(SnesChecksum(six, 6), 4 + 22);
    EXPECT_EQ(SnesChecksum(bytes, 0), 0);
}

TEST(NesHeader, InesAndNes2Fields) {
    Bytes ines = NesFile(2, 1, 0x14, 0x30);
    std::optional<NesHeader> header = ReadNesHeader(ines.data(), ines.size());
    ASSERT_TRUE(header);
    EXPECT_FALSE(header->nes2);
    EXPECT_TRUE(header->trainer);
    EXPECT_EQ(header->mapper, 0x31u);
    EXPECT_EQ(header->prgSize, 32768u);
    EXPECT_EQ(header->chrSize, 8192u);
    Bytes nes2 = NesFile(2, 0, 0x40, 0x18, 0x01);  // mapper 0x114, NES 2.0
    header = ReadNesHeader(nes2.data(), nes2.size());
    ASSERT_TRUE(header);
    EXPECT_TRUE(header->nes2);
    EXPECT_EQ(header->mapper, 0x114u);
    EXPECT_EQ(header->chrSize, 0u);
    nes2[9] = 0x0F;  // exponent form: 2^(0x0A >> 2) x (0x0A & 3) * 2 + 1
    nes2[4] = 0x0A;
    EXPECT_EQ(ReadNesHeader(nes2.data(), nes2.size())->prgSize, 4u * 5u);
    nes2[9] = 0x01;  // high nibble counts 256 units
    EXPECT_EQ(ReadNesHeader(nes2.data(), nes2.size())->prgSize, (0x100u + 0x0A) * 16384u);
    EXPECT_EQ(ReadNesHeader(Bytes(16, 0).data(), 16), std::nullopt);
    EXPECT_EQ(ReadNesHeader(ines.data(), 15), std::nullopt);
}

TEST(GameBoyHeader, FieldsAndChecksums) {
    Bytes image = GameBoyImage(0x8000, "POCKET TEST", 0x03, 0x00);
    std::optional<GameBoyHeader> header = ReadGameBoyHeader(image.data(), image.size());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->title, "POCKET TEST");
    EXPECT_EQ(header->cartridgeType, 0x03);
    EXPECT_STREQ(header->cartridgeName, "MBC1+RAM+BATTERY");
    EXPECT_EQ(header->romSize, 0x8000u);
    EXPECT_EQ(header->headerChecksum, header->computedHeaderChecksum);
    EXPECT_EQ(header->globalChecksum, header->computedGlobalChecksum);
    image[0x134] ^= 0xFF;
    header = ReadGameBoyHeader(image.data(), image.size());
    EXPECT_NE(header->headerChecksum, header->computedHeaderChecksum);
    EXPECT_NE(header->globalChecksum, header->computedGlobalChecksum);
    EXPECT_STREQ(GameBoyCartridgeName(0x04), "unknown");
    EXPECT_EQ(ReadGameBoyHeader(image.data(), 0x14F), std::nullopt);
}

}  // namespace
