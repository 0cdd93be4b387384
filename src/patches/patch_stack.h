// Applying several patch files, one after the other, to one image in
// memory: each is recognised by its first bytes and applied to the image as
// the patches before it left it, so a BPS or UPS patch is checked against
// that. Patches that change the same bytes differently are refused unless
// the caller lets the later one win.
#pragma once

#include <string>
#include <vector>

enum class HeaderShift {
    None,
    Add,     // IPS patches made for the image with a 512-byte copier header it lacks
    Remove,  // IPS patches made for the image without the copier header it has
};

struct PatchStackOptions {
    bool allowOverlap = false;
    HeaderShift ipsHeader = HeaderShift::None;
};

// Applies the patch files in order to image, the contents of imagefile
// (named in messages). A patch that changes a byte an earlier one changed
// (to another value, as every change is) is refused with TLERR_PATCH_OVERLAP
// naming both and the first such offset, unless options.allowOverlap. Every
// patch file is recognised before any is applied (TLERR_PATCH_UNKNOWN_FORMAT).
// On failure, reported, image holds anything: the caller keeps nothing of it.
bool ApplyPatchStack(const std::vector<std::string>& patchfiles, const char* imagefile,
                     const PatchStackOptions& options, std::vector<unsigned char>& image);
