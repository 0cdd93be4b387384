#include "patches/patch_diff.h"

#include <string>
#include <vector>

#include "core/file_view.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "patches/bps_create.h"
#include "patches/compared_files.h"
#include "patches/ips_format.h"
#include "patches/ups_create.h"
#include "trelvane.h"

namespace {

bool RefuseLarge(const char* file, size_t size) {
    if (size <= PATCH_LARGEST_FILE) return true;
    return SetError(TLERR_DELTA_TOO_LARGE, file, 0, 0, std::to_string(PATCH_LARGEST_FILE).c_str(),
                    std::to_string(size).c_str());
}

// IPS with the truncation behind "EOF" when the modified file is shorter.
bool BuildIps(const FileView& original, const FileView& modified, const char* modifiedfile,
              std::vector<unsigned char>& patch) {
    if (modified.size() > IPS_OFFSET_LIMIT)
        return SetError(TLERR_IPS_TOO_LARGE, modifiedfile, 0, 0, std::to_string(modified.size()).c_str());
    bool shorter = modified.size() < original.size();
    switch (BuildIpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch)) {
        case IpsBuild::Identical:
            if (!shorter) return SetError(TLERR_IPS_IDENTICAL, "unknown", 0, 0);
            patch = {'P', 'A', 'T', 'C', 'H', 'E', 'O', 'F'};
            break;
        case IpsBuild::OffsetTooLarge:
            return SetError(TLERR_IPS_TOO_LARGE, modifiedfile, 0, 0, std::to_string(modified.size()).c_str());
        case IpsBuild::Built: break;
    }
    if (shorter)
        for (int shift = 16; shift >= 0; shift -= 8) patch.push_back(static_cast<unsigned char>(modified.size() >> shift));
    return true;
}

}  // namespace

bool WritePatchOfFiles(PatchKind kind, const char* patchfile, const char* originalfile, const char* modifiedfile) {
    FileView original, modified;
    if (!OpenComparedFiles(patchfile, originalfile, modifiedfile, original, modified) ||
        !RefuseLarge(originalfile, original.size()) || !RefuseLarge(modifiedfile, modified.size()))
        return false;
    std::vector<unsigned char> patch;
    if (kind == PatchKind::Ips && !BuildIps(original, modified, modifiedfile, patch)) return false;
    if (kind == PatchKind::Bps)
        BuildBpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
    if (kind == PatchKind::Ups)
        BuildUpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
    if (!WriteOutputFile(patchfile, patch.data(), patch.size())) return SetError(TLERR_FILE_NOCREATE, patchfile, 0, 0);
    return true;
}
