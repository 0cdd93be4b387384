// Creating and applying IPS patch files. Both work on files on disk: the
// inputs of a new patch are mapped rather than copied; a patch is checked
// whole before its target file is read, and applied to a copy in memory;
// every file is written whole or not at all.
#include <vector>

#include "core/file_bytes.h"
#include "core/file_view.h"
#include "patches/ips_format.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "core/rom_slots.h"
#include "core/same_file.h"
#include "patches/patch_inputs.h"
#include "trelvane.h"

namespace {

// Reads the file a patch is applied to: an existing regular file this
// process may write, of at most the ROM image ceiling.
bool ReadPatchTarget(const char* romfile, std::vector<unsigned char>& rom) {
    if (!IsRewritableFile(romfile)) return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
    switch (ReadFileBytesUpTo(romfile, TRELVANE_ROM_MAX_SIZE, rom)) {
        case FileRead::Read: return true;
        case FileRead::TooLarge: return RefuseOversizedRom(romfile);
        case FileRead::Failed: break;
    }
    return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
}

}  // namespace

extern "C" {

long Trelvane_CreateIPS(const char* ipsfile, const char* originalfile, const char* modifiedfile) {
    if (!ipsfile) ipsfile = "";
    if (!originalfile) originalfile = "";
    if (!modifiedfile) modifiedfile = "";
    FileView original, modified;
    if (!OpenPatchInputs(ipsfile, originalfile, modifiedfile, original, modified)) return 0;
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
    if (!ipsfile) ipsfile = "";
    if (!romfile) romfile = "";
    FileView patch;
    if (!patch.Open(ipsfile, SameFile(ipsfile, romfile))) return SetError(TLERR_FILE_NOREAD, ipsfile, 0, 0);
    std::vector<IpsRecord> records;
    switch (ReadIpsRecords(patch.data(), patch.size(), records)) {
        case IpsRead::NotIps: return SetError(TLERR_FILE_INVALID, ipsfile, 0, 0, "IPS file");
        case IpsRead::NoEof: return SetError(TLERR_IPS_NO_EOF, ipsfile, 0, 0);
        case IpsRead::Valid: break;
    }
    // Patched in memory and written whole: a failed write leaves the file as
    // it was.
    std::vector<unsigned char> rom;
    if (!ReadPatchTarget(romfile, rom)) return 0;
    rom.resize(static_cast<size_t>(IpsPatchedLength(records, rom.size())));
    CopyIpsRecords(records, rom.data());
    if (!WriteOutputFile(romfile, rom.data(), rom.size())) return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
    return 1;
}
}
