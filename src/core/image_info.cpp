// Trelvane_GetImageInfo: what a ROM image file is, read from its own headers.
#include <cstring>
#include <vector>

#include "core/file_bytes.h"
#include "core/game_boy_header.h"
#include "core/image_digests.h"
#include "core/last_error.h"
#include "core/nes_header.h"
#include "core/rom_formats.h"
#include "core/rom_slots.h"
#include "core/snes_header.h"
#include "core/snes_mapping.h"
#include "trelvane.h"

namespace {

void CopyText(char* to, size_t capacity, const std::string& text) {
    const size_t length = text.size() < capacity - 1 ? text.size() : capacity - 1;
    std::memcpy(to, text.data(), length);
    to[length] = '\0';
}

void DescribeSnes(const unsigned char* image, size_t size, TrelvaneImageInfo& info) {
    const std::optional<SnesHeader> header = ReadSnesHeader(image, size);
    if (!header) return;
    info.hasInternalHeader = 1;
    CopyText(info.title, sizeof info.title, header->title);
    CopyText(info.mapping, sizeof info.mapping, SnesMappingTitle(header->mapping));
    info.checksum = header->checksum;
    info.complement = header->complement;
    info.computedChecksum = header->computedChecksum;
}

void DescribeNes(const unsigned char* file, size_t size, TrelvaneImageInfo& info) {
    const std::optional<NesHeader> header = ReadNesHeader(file, size);
    if (!header) return;
    info.hasInternalHeader = 1;
    info.nes2 = header->nes2;
    info.mapper = static_cast<int>(header->mapper);
    info.prgSize = static_cast<long long>(header->prgSize);
    info.chrSize = static_cast<long long>(header->chrSize);
    info.trainer = header->trainer;
}

void DescribeGameBoy(const unsigned char* image, size_t size, TrelvaneImageInfo& info) {
    const std::optional<GameBoyHeader> header = ReadGameBoyHeader(image, size);
    if (!header) return;
    info.hasInternalHeader = 1;
    CopyText(info.title, sizeof info.title, header->title);
    info.cartridgeType = header->cartridgeType;
    info.romSize = static_cast<long long>(header->romSize);
    info.headerChecksum = header->headerChecksum;
    info.computedHeaderChecksum = header->computedHeaderChecksum;
    info.globalChecksum = header->globalChecksum;
    info.computedGlobalChecksum = header->computedGlobalChecksum;
}

bool DescribeImage(const std::vector<unsigned char>& file, int32_t headerLength, TrelvaneImageInfo& info) {
    const unsigned char* image = file.data() + headerLength;
    const size_t size = file.size() - static_cast<size_t>(headerLength);
    if (info.type == ROM_SNES) DescribeSnes(image, size, info);
    if (info.type == ROM_NES) DescribeNes(file.data(), file.size(), info);
    if (info.type == ROM_GB) DescribeGameBoy(image, size, info);
    ImageDigests digests;
    if (!ComputeImageDigests(image, size, digests)) return false;
    info.crc32 = digests.crc32;
    CopyText(info.md5, sizeof info.md5, digests.md5);
    CopyText(info.sha1, sizeof info.sha1, digests.sha1);
    return true;
}

}  // namespace

extern "C" long Trelvane_GetImageInfo(const char* path, TrelvaneImageInfo* info) {
    if (!path) return RefuseNullArgument("Trelvane_GetImageInfo", "path");
    if (!info) return RefuseNullArgument("Trelvane_GetImageInfo", "info");
    const RomFormat* format = RomFormatOfPath(path, ExtensionDot::Last);
    if (!format) return 0;
    std::vector<unsigned char> file;
    switch (ReadFileBytesUpTo(path, TRELVANE_ROM_MAX_SIZE, file)) {
        case FileRead::Read: break;
        case FileRead::TooLarge: return RefuseOversizedRom(path);
        case FileRead::Failed: return SetError(TLERR_FILE_NOREAD, path, 0, 0);
    }
    const int32_t headerLength = RomHeaderLength(*format, file.data(), file.size());
    if (file.size() < static_cast<size_t>(headerLength)) return SetError(TLERR_FILE_INVALID, path, 0, 0, "ROM image");
    TrelvaneImageInfo described{};
    described.type = format->type;
    described.fileSize = static_cast<long long>(file.size());
    described.headerLength = headerLength;
    if (!DescribeImage(file, headerLength, described)) return 0;
    *info = described;
    return 1;
}
