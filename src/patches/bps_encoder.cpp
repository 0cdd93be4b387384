#include "patches/bps_encoder.h"

#include "patches/patch_numbers.h"

namespace {

uint64_t ActionNumber(BpsAction action, size_t length) { return (uint64_t{length} - 1) << 2 | action; }

}  // namespace

void BpsEncoder::TargetRead(const unsigned char* bytes, size_t length) {
    AppendAction(BPS_TARGET_READ, length);
    patch_.insert(patch_.end(), bytes, bytes + length);
}

size_t BpsEncoder::ActionCost(size_t length) { return PatchNumberSize(ActionNumber(BPS_SOURCE_READ, length)); }

void BpsEncoder::AppendAction(BpsAction action, size_t length) { AppendPatchNumber(patch_, ActionNumber(action, length)); }

void BpsEncoder::AppendCopy(BpsAction action, uint64_t& relative, size_t from, size_t length) {
    AppendAction(action, length);
    AppendPatchNumber(patch_, OffsetNumber(relative, from));
    relative = from + length;
}

// The distance from relative to from, shifted left, with the low bit set
// when it goes backwards.
uint64_t BpsEncoder::OffsetNumber(uint64_t relative, size_t from) {
    return from >= relative ? (from - relative) << 1 : (relative - from) << 1 | 1;
}

size_t BpsEncoder::CopyCost(uint64_t relative, size_t from, size_t length) {
    return ActionCost(length) + PatchNumberSize(OffsetNumber(relative, from));
}
