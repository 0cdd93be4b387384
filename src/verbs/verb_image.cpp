#include "verbs/verb_image.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "core/file_bytes.h"
#include "core/output_file.h"

#include "core/rom_slots.h"
#include "trelvane.h"

namespace {

std::string HeaderKind(int type, long long headerLength) {
    if (headerLength == 0) return "none";
    if (type == ROM_SNES) return std::to_string(headerLength) + "-byte copier header";
    if (type == ROM_NES && headerLength > 16) return "16-byte iNES header and 512-byte trainer";
    if (type == ROM_NES) return "16-byte iNES header";
    return std::to_string(headerLength) + "-byte header";
}

}  // namespace

std::string HeaderDescription(int type, long long headerLength, long long fileSize) {
    std::string description = HeaderKind(type, headerLength);
    if (type == ROM_SNES && fileSize % 1024 != 0 && fileSize % 1024 != 512)
        description += " (the size is no multiple of 1024: the extension's default)";
    return description;
}

bool LoadVerbImage(const CLI::App& verb, const std::string& path) {
    if (!LoadRomImage(path.c_str(), ExtensionDot::Last)) return VerbEngineError(verb), false;
    const RomImage& image = CurrentRom();
    const std::string header = HeaderDescription(image.type, image.headerLength, image.size + image.headerLength);
    std::fprintf(stderr, "trelvane %s: %s: header: %s\n", verb.get_name().c_str(), path.c_str(), header.c_str());
    return true;
}

bool SaveVerbImage(const CLI::App& verb, const std::string& source, const std::string& target) {
    const RomImage& image = CurrentRom();
    std::vector<unsigned char> file;
    if (!ReadFileBytes(source.c_str(), file) ||
        file.size() < static_cast<size_t>(image.headerLength) + static_cast<size_t>(image.size))
        return VerbError(verb, "cannot read " + source + " again"), false;
    std::copy(image.data, image.data + image.size, file.begin() + image.headerLength);
    if (!WriteOutputFile(target.c_str(), file.data(), file.size()))
        return VerbError(verb, "cannot write " + target), false;
    return true;
}
