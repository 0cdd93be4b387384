// Creating BPS patches and applying BPS and UPS patches, on files. A patch
// is applied as every format is (patch_application.h), checked whole, the
// ROM's and the result's CRC-32 included, before the ROM file is replaced.
#include <cinttypes>
#include <cstdio>
#include <string>
#include <vector>

#include "patches/bps_apply.h"
#include "patches/bps_create.h"
#include "patches/delta_frame.h"
#include "core/file_view.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "patches/patch_application.h"
#include "patches/patch_formats.h"
#include "patches/compared_files.h"
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

template <const char* kMagic, const char* kFormatName>
bool CheckDelta(const unsigned char* patch, size_t patchSize, const char* patchfile) {
    DeltaFrame frame;
    DeltaResult read = ReadDeltaFrame(patch, patchSize, kMagic, frame);
    return read.ok() || ReportFault(read, patchfile, "", kFormatName);
}

template <const char* kFormatName, DeltaApplier kApply>
bool ApplyDelta(const unsigned char* patch, size_t patchSize, const char* patchfile,
                const std::vector<unsigned char>& rom, const char* romfile, std::vector<unsigned char>& result) {
    DeltaResult applied = kApply(patch, patchSize, rom.data(), rom.size(), result);
    return applied.ok() || ReportFault(applied, patchfile, romfile, kFormatName);
}

constexpr char kBpsName[] = "BPS file", kUpsName[] = "UPS file";
constexpr PatchFormat kBps = {CheckDelta<BPS_MAGIC, kBpsName>, ApplyDelta<kBpsName, ApplyBpsPatch>};
constexpr PatchFormat kUps = {CheckDelta<UPS_MAGIC, kUpsName>, ApplyDelta<kUpsName, ApplyUpsPatch>};

}  // namespace

const PatchFormat& BpsPatchFormat() { return kBps; }
const PatchFormat& UpsPatchFormat() { return kUps; }

extern "C" {

long Trelvane_CreateBPS(const char* bpsfile, const char* originalfile, const char* modifiedfile) {
    if (!bpsfile) bpsfile = "";
    if (!originalfile) originalfile = "";
    if (!modifiedfile) modifiedfile = "";
    FileView original, modified;
    if (!OpenComparedFiles(bpsfile, originalfile, modifiedfile, original, modified)) return 0;
    if (original.size() > DELTA_LARGEST_FILE) return ReportTooLarge(originalfile, original.size());
    if (modified.size() > DELTA_LARGEST_FILE) return ReportTooLarge(modifiedfile, modified.size());
    std::vector<unsigned char> patch;
    BuildBpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch);
    if (!WriteOutputFile(bpsfile, patch.data(), patch.size())) return SetError(TLERR_FILE_NOCREATE, bpsfile, 0, 0);
    return 1;
}

long Trelvane_ApplyBPS(const char* bpsfile, const char* romfile) { return ApplyPatchFile(bpsfile, romfile, kBps); }

long Trelvane_ApplyUPS(const char* upsfile, const char* romfile) { return ApplyPatchFile(upsfile, romfile, kUps); }
}
