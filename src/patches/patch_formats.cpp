#include "patches/patch_formats.h"

#include <cstring>

#include "patches/bps_apply.h"
#include "patches/ups_apply.h"

namespace {

bool StartsWith(const unsigned char* patch, size_t size, const char* magic) {
    size_t length = std::strlen(magic);
    return size >= length && std::memcmp(patch, magic, length) == 0;
}

}  // namespace

PatchKind PatchKindOf(const unsigned char* patch, size_t size) {
    if (StartsWith(patch, size, "PATCH")) return PatchKind::Ips;
    if (StartsWith(patch, size, BPS_MAGIC)) return PatchKind::Bps;
    if (StartsWith(patch, size, UPS_MAGIC)) return PatchKind::Ups;
    return PatchKind::None;
}

const PatchFormat& FormatOf(PatchKind kind) {
    switch (kind) {
        case PatchKind::Bps: return BpsPatchFormat();
        case PatchKind::Ups: return UpsPatchFormat();
        default: return IpsPatchFormat();
    }
}

const char* PatchKindName(PatchKind kind) {
    switch (kind) {
        case PatchKind::Ips: return "IPS";
        case PatchKind::Bps: return "BPS";
        case PatchKind::Ups: return "UPS";
        case PatchKind::None: break;
    }
    return "";
}
