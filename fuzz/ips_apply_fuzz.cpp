// Patches of any content: reading them must stay inside the patch, and
// applying a valid one must write only inside the grown target. The input
// also serves as an original/modified pair whose patch must rebuild the
// modified half.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "patches/ips_format.h"

namespace {

constexpr uint64_t kLargestTarget = 1 << 20;

void ApplyToTarget(const uint8_t* data, size_t size) {
    std::vector<IpsRecord> records;
    if (ReadIpsRecords(data, size, records) != IpsRead::Valid) return;
    std::vector<unsigned char> target(size % 64, 0x5A);
    uint64_t length = IpsPatchedLength(records, target.size());
    if (length > kLargestTarget) return;
    target.resize(length);
    CopyIpsRecords(records, target.data());
}

void RoundTrip(const uint8_t* data, size_t size) {
    size_t half = size / 2;
    const unsigned char* original = data;
    const unsigned char* modified = data + half;
    size_t modifiedSize = size - half;
    std::vector<unsigned char> patch;
    if (BuildIpsPatch(original, half, modified, modifiedSize, patch) != IpsBuild::Built) return;
    std::vector<IpsRecord> records;
    if (ReadIpsRecords(patch.data(), patch.size(), records) != IpsRead::Valid) __builtin_trap();
    std::vector<unsigned char> target(original, original + half);
    target.resize(std::max<uint64_t>(IpsPatchedLength(records, half), modifiedSize));
    CopyIpsRecords(records, target.data());
    if (!std::equal(modified, modified + modifiedSize, target.begin())) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ApplyToTarget(data, size);
    RoundTrip(data, size);
    return 0;
}
