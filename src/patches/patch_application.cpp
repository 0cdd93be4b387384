#include "patches/patch_application.h"

#include <string>

#include "core/file_bytes.h"
#include "core/file_view.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "core/platform_files.h"
#include "core/same_file.h"
#include "trelvane.h"

bool ReadPatchTarget(const char* romfile, std::vector<unsigned char>& rom) {
    if (!IsRewritableFile(romfile)) return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
    switch (ReadFileBytesUpTo(romfile, PATCH_LARGEST_FILE, rom)) {
        case FileRead::Read: return true;
        case FileRead::TooLarge: return SetError(TLERR_FILE_TOOLARGE, romfile, 0, 0, "1 GiB");
        case FileRead::Failed: break;
    }
    return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
}

namespace {

bool OpenPatch(const char* patchfile, const char* romfile, FileView& patch) {
    return patch.Open(patchfile, SameFile(patchfile, romfile)) || SetError(TLERR_FILE_NOREAD, patchfile, 0, 0);
}

bool OpenCheckedPatch(const char* patchfile, const char* romfile, const PatchFormat& format, FileView& patch) {
    return OpenPatch(patchfile, romfile, patch) && format.check(patch.data(), patch.size(), patchfile);
}

bool ApplyOpenedPatch(const FileView& patch, const char* patchfile, const char* romfile, const PatchFormat& format,
                      std::vector<unsigned char>& rom) {
    std::vector<unsigned char> result;
    if (!format.apply(patch.data(), patch.size(), patchfile, rom, romfile, result)) return false;
    if (result.size() > PATCH_LARGEST_FILE)
        return SetError(TLERR_DELTA_TOO_LARGE, patchfile, 0, 0, std::to_string(PATCH_LARGEST_FILE).c_str(),
                        std::to_string(result.size()).c_str());
    rom.swap(result);
    return true;
}

}  // namespace

bool ApplyPatchToImage(const char* patchfile, const char* romfile, const PatchFormat& format,
                       std::vector<unsigned char>& rom) {
    FileView patch;
    return OpenCheckedPatch(patchfile, romfile, format, patch) &&
           ApplyOpenedPatch(patch, patchfile, romfile, format, rom);
}

long ApplyPatchFile(const char* patchfile, const char* romfile, const PatchFormat& format) {
    if (!patchfile) patchfile = "";
    if (!romfile) romfile = "";
    FileView patch;
    std::vector<unsigned char> rom;
    if (!OpenCheckedPatch(patchfile, romfile, format, patch) || !ReadPatchTarget(romfile, rom) ||
        !ApplyOpenedPatch(patch, patchfile, romfile, format, rom))
        return 0;
    if (!WriteOutputFile(romfile, rom.data(), rom.size())) return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
    return 1;
}
