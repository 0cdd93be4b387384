// Patches of any content for the UPS applier: as they come and with a
// valid magic and footer around them, applied to a small source.
#include "patches/ups_apply.h"
#include "delta_fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Bytes source = FuzzSource(data, size);
    Bytes target;
    ApplyUpsPatch(data, size, source.data(), source.size(), target);
    Bytes framed = Framed("UPS1", data, size, source);
    if (SmallEnough(framed, "UPS1")) ApplyUpsPatch(framed.data(), framed.size(), source.data(), source.size(), target);
    return 0;
}
