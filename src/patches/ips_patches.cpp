// Creating and applying IPS patch files. Both work on files on disk: the
// files a new patch is made from are mapped rather than copied; a patch is
// applied as every format is (patch_application.h); every file is written
// whole or not at all.
#include <vector>

#include "core/file_view.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "patches/ips_format.h"
#include "patches/patch_application.h"
#include "patches/patch_formats.h"
#include "patches/compared_files.h"
#include "trelvane.h"

namespace {

bool ReadCheckedRecords(const unsigned char* patch, size_t patchSize, const char* patchfile,
                        std::vector<IpsRecord>& records) {
    switch (ReadIpsRecords(patch, patchSize, records)) {
        case IpsRead::NotIps: return SetError(TLERR_FILE_INVALID, patchfile, 0, 0, "IPS file");
        case IpsRead::NoEof: return SetError(TLERR_IPS_NO_EOF, patchfile, 0, 0);
        case IpsRead::Valid: break;
    }
    return true;
}

bool CheckIps(const unsigned char* patch, size_t patchSize, const char* patchfile) {
    std::vector<IpsRecord> records;
    return ReadCheckedRecords(patch, patchSize, patchfile, records);
}

bool ApplyIps(const unsigned char* patch, size_t patchSize, const char* patchfile, const std::vector<unsigned char>& rom,
              const char* /*romfile*/, std::vector<unsigned char>& result) {
    std::vector<IpsRecord> records;
    if (!ReadCheckedRecords(patch, patchSize, patchfile, records)) return false;
    result = rom;
    result.resize(static_cast<size_t>(IpsPatchedLength(records, rom.size())));
    CopyIpsRecords(records, result.data());
    return true;
}

constexpr PatchFormat kIps = {CheckIps, ApplyIps};

}  // namespace

const PatchFormat& IpsPatchFormat() { return kIps; }

extern "C" {

long Trelvane_CreateIPS(const char* ipsfile, const char* originalfile, const char* modifiedfile) {
    if (!ipsfile) ipsfile = "";
    if (!originalfile) originalfile = "";
    if (!modifiedfile) modifiedfile = "";
    FileView original, modified;
    if (!OpenComparedFiles(ipsfile, originalfile, modifiedfile, original, modified)) return 0;
    std::vector<unsigned char> patch;
    switch (BuildIpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch)) {
        case IpsBuild::Identical: return SetError(TLERR_IPS_IDENTICAL, "unknown", 0, 0);
        case IpsBuild::OffsetTooLarge:
            return SetError(TLERR_UNSUPPORTED, "", 0, 0, "Changes at or beyond 16 MiB in an IPS file");
        case IpsBuild::Built: break;
    }
    if (!WriteOutputFile(ipsfile, patch.data(), patch.size())) return SetError(TLERR_FILE_NOCREATE, ipsfile, 0, 0);
    return 1;
}

long Trelvane_ApplyIPS(const char* ipsfile, const char* romfile) {
    return ApplyPatchFile(ipsfile, romfile, kIps);
}
}
