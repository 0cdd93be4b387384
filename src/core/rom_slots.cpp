#include "core/rom_slots.h"

#include <cstdio>
#include <string>
#include <vector>

#include "core/file_bytes.h"
#include "core/game_boy_header.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "core/platform_files.h"
#include "core/rom_formats.h"
#include "trelvane.h"

namespace {

RomImage currentImage;

constexpr int MAX_ROMS = 1;

struct RomSlot {
    std::vector<unsigned char> data;
    uint64_t load = 0;
    bool loaded = false;
    int32_t headerLength = 0;
    int32_t type = 0;
};

RomSlot slots[MAX_ROMS];
long slotsInUse = 0;
long mostRecentLoad = 0;
long currentHandle = 0;
uint64_t loadCount = 0;

void MakeCurrent(long handle) {
    RomSlot& slot = slots[handle - 1];
    currentHandle = handle;
    currentImage.data = slot.data.data();
    currentImage.size = static_cast<int32_t>(slot.data.size());
    currentImage.headerLength = slot.headerLength;
    currentImage.load = slot.load;
    currentImage.type = slot.type;
}

bool HoldsImage(long handle) { return handle >= 1 && handle <= slotsInUse && slots[handle - 1].loaded; }

// The Game Boy cartridge's global checksum, stored high byte first at 0x14E.
void CorrectGameBoyChecksum() {
    constexpr int32_t kChecksumAt = 0x14E;
    if (CurrentRom().size < kChecksumAt + 2) return;  // no cartridge header to correct
    const uint16_t sum = GameBoyGlobalChecksum(CurrentRom().data, static_cast<size_t>(CurrentRom().size));
    CurrentRom().data[kChecksumAt] = static_cast<unsigned char>(sum >> 8);
    CurrentRom().data[kChecksumAt + 1] = static_cast<unsigned char>(sum);
}

// Copies what is left of from, behind its current position, into to.
bool CopyRest(std::FILE* from, OutputFile& to) {
    unsigned char buffer[65536];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, from)) > 0)
        if (!to.Write(buffer, got)) return false;
    return !std::ferror(from);
}

// Writes the current image over the body of the file at path: its header
// bytes and whatever lies behind the image stay. The result is a new file
// that replaces the old one whole, or nothing at all.
bool WriteImageInto(const char* path) {
    std::FILE* old = std::fopen(path, "rb");
    if (!old) return false;
    OutputFile out(path);
    // A file shorter than its header reads as zeros where it ends.
    std::vector<unsigned char> header(static_cast<size_t>(CurrentRom().headerLength), 0);
    bool ok = (std::fread(header.data(), 1, header.size(), old) == header.size() || !std::ferror(old)) &&
              out.Write(header.data(), header.size()) &&
              out.Write(CurrentRom().data, static_cast<size_t>(CurrentRom().size)) &&
              std::fseek(old, static_cast<long>(header.size()) + CurrentRom().size, SEEK_SET) == 0 &&
              CopyRest(old, out);
    std::fclose(old);
    return ok && out.Commit();
}

}  // namespace

bool RefuseOversizedRom(const char* path) { return SetError(TLERR_FILE_TOOLARGE, path, 0, 0, "64 MiB"); }

const RomImage& CurrentRom() { return currentImage; }

bool RequireCurrentRom() {
    if (CurrentRom().type != 0) return true;
    return SetError(TLERR_ID_BAD, "", 0, 0, "ROM", "0");
}

bool RomRangeInside(int64_t offset, int64_t length) {
    return offset >= 0 && length >= 0 && offset <= CurrentRom().size && length <= CurrentRom().size - offset;
}

long LoadRomImage(const char* path, ExtensionDot dot) {
    if (!path) path = "";
    if (slotsInUse == 0)
        for (RomSlot& slot : slots) slot = RomSlot();
    const RomFormat* format = RomFormatOfPath(path, dot);
    if (!format) return 0;
    long handle = 0;
    for (int k = 0; k < MAX_ROMS && !handle; ++k)
        if (!slots[k].loaded) handle = k + 1;
    if (!handle) return SetError(TLERR_FILE_TOOMANY, path, 0, 0, "ROMs");
    RomSlot& slot = slots[handle - 1];
    slot.headerLength = format->defaultHeaderLength;
    slot.type = format->type;
    std::vector<unsigned char> bytes;
    switch (ReadFileBytesUpTo(path, TRELVANE_ROM_MAX_SIZE, bytes)) {
        case FileRead::Read: break;
        case FileRead::TooLarge: return RefuseOversizedRom(path);
        case FileRead::Failed: return SetError(TLERR_FILE_NOREAD, path, 0, 0);
    }
    slot.headerLength = RomHeaderLength(*format, bytes.data(), bytes.size());
    if (bytes.size() < static_cast<size_t>(slot.headerLength) || bytes.size() - slot.headerLength > INT32_MAX)
        return SetError(TLERR_FILE_INVALID, path, 0, 0, "ROM image");
    bytes.erase(bytes.begin(), bytes.begin() + slot.headerLength);
    slot.data = std::move(bytes);
    slot.loaded = true;
    slot.load = ++loadCount;
    MakeCurrent(handle);
    mostRecentLoad = handle;
    if (handle > slotsInUse) slotsInUse = handle;
    return handle;
}

extern "C" {

long Trelvane_LoadROM(const char* path) { return LoadRomImage(path, ExtensionDot::First); }

long Trelvane_SaveROM(const char* path) {
    if (!path) path = "";
    if (!RequireCurrentRom()) return 0;
    if (CurrentRom().type == ROM_GB) CorrectGameBoyChecksum();
    if (!IsRewritableFile(path) || !WriteImageInto(path)) return SetError(TLERR_FILE_NOWRITE, path, 0, 0);
    return 1;
}

void Trelvane_FreeROM(long handle) {
    if (handle == -1) handle = mostRecentLoad;
    if (!HoldsImage(handle)) return;
    RomSlot& slot = slots[handle - 1];
    if (handle == currentHandle) {
        currentImage = RomImage();
        currentHandle = 0;
    }
    slot.data = std::vector<unsigned char>();
    slot.loaded = false;
    if (handle == slotsInUse)
        while (slotsInUse > 0 && !slots[slotsInUse - 1].loaded) --slotsInUse;
}

long Trelvane_UseROM(long handle) {
    if (!HoldsImage(handle)) return SetError(TLERR_ID_BAD, "", 0, 0, "ROM", std::to_string(handle).c_str());
    MakeCurrent(handle);
    return 1;
}
}
