// Creating BPS patches and applying BPS and UPS patches, on files. A patch
// is applied in memory and checked whole, the ROM's and the result's CRC-32
// included, before the ROM file is replaced by the result.
#include <cinttypes>
#include <cstdio>
#include <string>
#include <vector>

#include "patches/bps_apply.h"
#include "patches/bps_create.h"
#include "core/file_view.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "patches/patch_inputs.h"
#include "patches/ups_apply.h"
#include "trelvane.h"

namespace {

using DeltaApplier = DeltaResult (*)(const unsigned char*, size_t, const unsigned char*, size_t,
                                     std::vector<unsigned char>&);

std::string Crc(uint64_t crc) {
    char text[16];
    std::snprintf(text, sizeof text, "%08" PRIX64, crc);
    return text;
}

std::string Offset(uint64_t offset) {
    char text[24];
    std::snprintf(text, sizeof text, "%" PRIX64 "h", offset);
    return text;
}

long ReportTooLarge(const char* file, uint64_t size) {
    return SetError(TLERR_DELTA_TOO_LARGE, file, 0, 0, std::to_string(DELTA_LARGEST_FILE).c_str(),
                    std::to_string(size).c_str());
}

long ReportWrongRom(const DeltaResult& result, const char* romfile) {
    if (result.twoWay)
        return SetError(TLERR_DELTA_WRONG_ROM_EITHER_WAY, romfile, 0, 0, Crc(result.expected).c_str(),
                        Crc(result.alternative).c_str(), Crc(result.actual).c_str());
    return SetError(TLERR_DELTA_WRONG_ROM, romfile, 0, 0, Crc(result.expected).c_str(), Crc(result.actual).c_str());
}

long ReportAtOffset(int code, const DeltaResult& result, const char* patchfile) {
    return SetError(code, patchfile, 0, 0, Offset(result.at).c_str());
}

long ReportFault(const DeltaResult& result, const char* patchfile, const char* romfile, const char* format) {
    switch (result.fault) {
        case DeltaFault::NotPatch: return SetError(TLERR_FILE_INVALID, patchfile, 0, 0, format);
        case DeltaFault::PatchCrc:
            return SetError(TLERR_DELTA_PATCH_CRC, patchfile, 0, 0, Crc(result.expected).c_str(),
                            Crc(result.actual).c_str());
        case DeltaFault::Truncated: return ReportAtOffset(TLERR_DELTA_TRUNCATED, result, patchfile);
        case DeltaFault::Overflow: return ReportAtOffset(TLERR_DELTA_OVERFLOW, result, patchfile);
        case DeltaFault::OutOfBounds: return ReportAtOffset(TLERR_DELTA_OUT_OF_BOUNDS, result, patchfile);
        case DeltaFault::Trailing: return ReportAtOffset(TLERR_DELTA_TRAILING, result, patchfile);
        case DeltaFault::Incomplete:
            return SetError(TLERR_DELTA_INCOMPLETE, patchfile, 0, 0, std::to_string(result.expected).c_str(),
                            std::to_string(result.actual).c_str());
        case DeltaFault::TooLarge: return ReportTooLarge(patchfile, result.actual);
        case DeltaFault::WrongSource: return ReportWrongRom(result, romfile);
        case DeltaFault::ResultCrc:
            return SetError(TLERR_DELTA_RESULT_CRC, patchfile, 0, 0, Crc(result.expected).c_str(),
                            Crc(result.actual).c_str());
        case DeltaFault::None: break;
    }
    return 1;
}

long ApplyDeltaFile(const char* patchfile, const char* romfile, DeltaApplier apply, const char* format) {
    if (!patchfile) patchfile = "";
    if (!romfile) romfile = "";
    FileView patch, rom;
    if (!patch.Open(patchfile, SameFile(patchfile, romfile))) return SetError(TLERR_FILE_NOREAD, patchfile, 0, 0);
    if (!rom.Open(romfile, false)) return SetError(TLERR_FILE_NOREAD, romfile, 0, 0);
    std::vector<unsigned char> result;
    DeltaResult applied = apply(patch.data(), patch.size(), rom.data(), rom.size(), result);
    if (!applied.ok()) return ReportFault(applied, patchfile, romfile, format);
    if (!WriteOutputFile(romfile, result.data(), result.size())) return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
    return 1;
}

}  // namespace

extern "C" {

long Trelvane_CreateBPS(const char* bpsfile, const char* originalfile, const char* modifiedfile) {
    if (!bpsfile) bpsfile = "";
    if (!originalfile) originalfile = "";
    if (!modifiedfile) modifiedfile = "";
    FileView original, modified;
    if (!OpenPatchInputs(bpsfile, originalfile, modifiedfile, original, modified)) return 0;
    if (original.size() > DELTA_LARGEST_FILE) return ReportTooLarge(originalfile, original.size());
    if (modified.size() > DELTA_LARGEST_FILE) return ReportTooLarge(modifiedfile, modified.size());
    std::vector<unsigned char> patch;
    BuildBpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
    if (!WriteOutputFile(bpsfile, patch.data(), patch.size())) return SetError(TLERR_FILE_NOCREATE, bpsfile, 0, 0);
    return 1;
}

long Trelvane_ApplyBPS(const char* bpsfile, const char* romfile) {
    return ApplyDeltaFile(bpsfile, romfile, ApplyBpsPatch, "BPS file");
}

long Trelvane_ApplyUPS(const char* upsfile, const char* romfile) {
    return ApplyDeltaFile(upsfile, romfile, ApplyUpsPatch, "UPS file");
}
}
