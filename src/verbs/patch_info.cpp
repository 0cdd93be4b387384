#include "verbs/patch_info.h"

#include <cstring>
#include <fstream>

bool LooksLikePatch(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    char magic[5] = {};
    file.read(magic, sizeof magic);
    return std::memcmp(magic, "PATCH", 5) == 0 || std::memcmp(magic, "BPS1", 4) == 0 ||
           std::memcmp(magic, "UPS1", 4) == 0;
}

int RunPatchInfo(const CLI::App& verb, const std::string&, bool, const std::string&) {
    return VerbError(verb, "patch descriptions are not available yet");
}
