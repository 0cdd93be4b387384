#include "patches/patch_stack.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "core/file_view.h"
#include "core/last_error.h"
#include "patches/patch_formats.h"
#include "trelvane.h"

namespace {

constexpr size_t kCopierHeader = 512;
constexpr size_t kMostPatches = UINT16_MAX;

bool RecogniseAll(const std::vector<std::string>& patchfiles, std::vector<PatchKind>& kinds) {
    if (patchfiles.size() > kMostPatches) return SetError(TLERR_UNSUPPORTED, "", 0, 0, "More than 65535 patches");
    for (const std::string& name : patchfiles) {
        FileView patch;
        if (!patch.Open(name.c_str(), false)) return SetError(TLERR_FILE_NOREAD, name.c_str(), 0, 0);
        kinds.push_back(PatchKindOf(patch.data(), patch.size()));
        if (kinds.back() == PatchKind::None) return SetError(TLERR_PATCH_UNKNOWN_FORMAT, name.c_str(), 0, 0);
    }
    return true;
}

// Applies an IPS patch to the image as though it had (Add) or had not
// (Remove) a copier header in front.
bool ApplyShiftedIps(const char* patchfile, const char* imagefile, HeaderShift shift,
                     std::vector<unsigned char>& image) {
    if (shift == HeaderShift::Add) {
        std::vector<unsigned char> headed(kCopierHeader + image.size(), 0);
        std::copy(image.begin(), image.end(), headed.begin() + kCopierHeader);
        if (!ApplyPatchToImage(patchfile, imagefile, IpsPatchFormat(), headed)) return false;
        headed.resize(std::max(headed.size(), kCopierHeader));
        image.assign(headed.begin() + kCopierHeader, headed.end());
        return true;
    }
    if (image.size() < kCopierHeader)
        return SetError(TLERR_PATCH_NO_HEADER, imagefile, 0, 0, std::to_string(image.size()).c_str());
    std::vector<unsigned char> body(image.begin() + kCopierHeader, image.end());
    if (!ApplyPatchToImage(patchfile, imagefile, IpsPatchFormat(), body)) return false;
    image.resize(kCopierHeader + body.size());
    std::copy(body.begin(), body.end(), image.begin() + kCopierHeader);
    return true;
}

// Which patch (numbered from 1) last changed each byte of the image.
class ChangeOwners {
public:
    // Records the bytes patch changed from before to after (bytes cut off
    // are not changes); with overlap refused, reports the first byte an
    // earlier patch changed and returns false.
    bool Record(const std::vector<unsigned char>& before, const std::vector<unsigned char>& after, uint16_t patch,
                const std::vector<std::string>& names, bool refuseOverlap) {
        if (owners_.size() < after.size()) owners_.resize(after.size(), 0);
        for (size_t at = 0; at < after.size(); ++at) {
            if (at < before.size() && before[at] == after[at]) continue;
            if (refuseOverlap && owners_[at] != 0) return ReportOverlap(names, owners_[at], patch, at);
            owners_[at] = patch;
        }
        return true;
    }

private:
    static bool ReportOverlap(const std::vector<std::string>& names, uint16_t earlier, uint16_t later, size_t at) {
        char offset[24];
        std::snprintf(offset, sizeof offset, "%" PRIX64 "h", static_cast<uint64_t>(at));
        return SetError(TLERR_PATCH_OVERLAP, names[later - 1u].c_str(), 0, 0, names[earlier - 1u].c_str(), offset);
    }

    std::vector<uint16_t> owners_;
};

}  // namespace

bool ApplyPatchStack(const std::vector<std::string>& patchfiles, const char* imagefile,
                     const PatchStackOptions& options, std::vector<unsigned char>& image) {
    std::vector<PatchKind> kinds;
    if (!RecogniseAll(patchfiles, kinds)) return false;
    ChangeOwners owners;
    for (size_t k = 0; k < patchfiles.size(); ++k) {
        const char* patchfile = patchfiles[k].c_str();
        std::vector<unsigned char> patched = image;
        bool shifted = kinds[k] == PatchKind::Ips && options.ipsHeader != HeaderShift::None;
        if (!(shifted ? ApplyShiftedIps(patchfile, imagefile, options.ipsHeader, patched)
                      : ApplyPatchToImage(patchfile, imagefile, FormatOf(kinds[k]), patched)))
            return false;
        if (!owners.Record(image, patched, static_cast<uint16_t>(k + 1), patchfiles, !options.allowOverlap))
            return false;
        image.swap(patched);
    }
    return true;
}
