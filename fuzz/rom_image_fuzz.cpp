// Arbitrary file bytes as a ROM image under each extension the loader knows
// (and some it does not): a load keeps exactly the bytes behind the header
// the file's kind and size give, and saving a changed image writes it back
// behind that header, leaving the header and the handles as they were.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "core/rom_slots.h"
#include "scratch_files.h"
#include "trelvane.h"

namespace {

enum class Kind { Nes, Snes, GameBoy, Refused };

struct Extension {
    const char* name;
    Kind kind;
    size_t snesDefaultHeader;  // a Super NES file's header when its size does not tell
};

constexpr Extension kExtensions[] = {
    {".nes", Kind::Nes, 0},        {".smc", Kind::Snes, 512}, {".fig", Kind::Snes, 512}, {".gb", Kind::GameBoy, 0},
    {".gbc", Kind::GameBoy, 0},    {".NES", Kind::Nes, 0},    {".Fig", Kind::Snes, 512}, {".sfc", Kind::Snes, 0},
    {".swc", Kind::Snes, 512},     {".x.gb", Kind::Refused, 0}, {"", Kind::Refused, 0}};
constexpr size_t kExtensionCount = sizeof kExtensions / sizeof kExtensions[0];

// The header in front of the image: a Super NES copier header by the file's
// size (512 when it leaves 512 over a multiple of 1024, none for a multiple,
// the extension's default otherwise); the iNES header with the trainer its
// flags announce; none on the Game Boy.
size_t ExpectedHeader(const Extension& extension, const uint8_t* file, size_t size) {
    switch (extension.kind) {
        case Kind::Snes: return size % 1024 == 512 ? 512 : size % 1024 == 0 ? 0 : extension.snesDefaultHeader;
        case Kind::Nes: return size >= 16 && std::memcmp(file, "NES\x1A", 4) == 0 && (file[6] & 4) ? 528 : 16;
        default: return 0;
    }
}

std::vector<unsigned char> ReadBack(const std::string& path) {
    std::vector<unsigned char> bytes;
    if (std::FILE* file = std::fopen(path.c_str(), "rb")) {
        for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) bytes.push_back(static_cast<unsigned char>(c));
        std::fclose(file);
    }
    return bytes;
}

// Game Boy images get their global checksum corrected on saving.
bool IsChecksum(const RomImage& image, size_t at) { return image.type == ROM_GB && (at == 0x14E || at == 0x14F); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const Extension& extension = kExtensions[data[0] % kExtensionCount];
    const std::string path = ScratchName(std::string("-rom") + extension.name);
    if (!WriteInput(path, data + 1, size - 1)) return 0;
    const size_t fileSize = size - 1;
    Trelvane_FreeROM(-1);
    const long handle = Trelvane_LoadROM(path.c_str());
    const size_t header = ExpectedHeader(extension, data + 1, fileSize);
    const bool loadable = extension.kind != Kind::Refused && fileSize >= header;
    if ((handle != 0) != loadable) __builtin_trap();
    if (!handle) return 0;
    const RomImage& image = CurrentRom();
    if (static_cast<size_t>(image.size) != fileSize - header || static_cast<size_t>(image.headerLength) != header ||
        (image.size && std::memcmp(image.data, data + 1 + header, fileSize - header) != 0))
        __builtin_trap();

    for (int32_t i = 0; i < image.size; ++i) image.data[i] = static_cast<unsigned char>(image.data[i] ^ (i * 7 + 1));
    const std::vector<unsigned char> changed(image.data, image.data + image.size);
    if (Trelvane_SaveROM(path.c_str()) != 1) __builtin_trap();
    const std::vector<unsigned char> saved = ReadBack(path);
    if (saved.size() != fileSize || (header && std::memcmp(saved.data(), data + 1, header) != 0)) __builtin_trap();
    for (size_t at = 0; at < changed.size(); ++at)
        if (saved[header + at] != image.data[at] || (saved[header + at] != changed[at] && !IsChecksum(image, at)))
            __builtin_trap();

    if (Trelvane_UseROM(handle) != 1 || Trelvane_UseROM(handle + 1) != 0) __builtin_trap();
    Trelvane_FreeROM(-1);
    if (Trelvane_UseROM(handle) != 0 || CurrentRom().data) __builtin_trap();
    return 0;
}
