// Patches of any content for the BPS applier: as they come (stopped by the
// checks of the magic and the CRC-32) and with a valid magic and footer
// around them, so that every action runs against a small source. The input
// also serves as an original/modified pair whose BPS patch must rebuild
// the modified half.
#include "patches/bps_apply.h"
#include "patches/bps_create.h"
#include "delta_fuzzing.h"

namespace {

void Apply(const uint8_t* data, size_t size) {
    const Bytes source = FuzzSource(data, size);
    Bytes target;
    ApplyBpsPatch(data, size, source.data(), source.size(), target);
    Bytes framed = Framed("BPS1", data, size, source);
    if (SmallEnough(framed, "BPS1")) ApplyBpsPatch(framed.data(), framed.size(), source.data(), source.size(), target);
}

void RoundTrip(const uint8_t* data, size_t size) {
    size_t half = size / 2;
    Bytes patch, made;
    BuildBpsPatch(data, half, data + half, size - half, patch);
    if (!ApplyBpsPatch(patch.data(), patch.size(), data, half, made).ok()) __builtin_trap();
    if (made != Bytes(data + half, data + size)) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Apply(data, size);
    RoundTrip(data, size);
    return 0;
}
