#include "patches/ups_apply.h"

#include <algorithm>

#include "patches/crc32.h"
#include "patches/delta_frame.h"

namespace {

// XORs the hunks into target (bytes beyond its end are dropped); without a
// target it only checks them.
DeltaResult RunHunks(const unsigned char* patch, const DeltaFrame& frame, unsigned char* target, uint64_t targetSize) {
    PatchCursor cursor(patch, frame.body, frame.footer);
    uint64_t position = 0;
    while (!cursor.AtEnd()) {
        uint64_t skip;
        size_t start = cursor.at();
        DeltaResult read = ReadDeltaNumber(cursor, skip);
        if (!read.ok()) return read;
        // Every later position lies within the bytes left of the patch.
        if (__builtin_add_overflow(position, skip, &position) || position > UINT64_MAX - cursor.remaining())
            return DeltaFailure(DeltaFault::Overflow, start);
        for (unsigned char byte = 1; byte != 0; ++position) {
            if (!cursor.Byte(byte)) return DeltaFailure(DeltaFault::Truncated, start);
            if (target && position < targetSize) target[position] ^= byte;
        }
    }
    return {};
}

}  // namespace

DeltaResult ApplyUpsPatch(const unsigned char* patch, size_t size, const unsigned char* source, size_t sourceSize,
                          std::vector<unsigned char>& target) {
    DeltaFrame frame;
    DeltaResult result = ReadDeltaFrame(patch, size, UPS_MAGIC, frame);
    if (!result.ok()) return result;
    result = RunHunks(patch, frame, nullptr, 0);
    if (!result.ok()) return result;
    uint32_t sourceCrc = Crc32(source, sourceSize);
    bool forward = sourceSize == frame.sourceSize && sourceCrc == frame.sourceCrc;
    bool backward = sourceSize == frame.targetSize && sourceCrc == frame.targetCrc;
    if (!forward && !backward) {
        result = DeltaMismatch(DeltaFault::WrongSource, frame.sourceCrc, sourceCrc);
        result.alternative = frame.targetCrc;
        result.twoWay = true;
        return result;
    }
    uint64_t targetSize = forward ? frame.targetSize : frame.sourceSize;
    uint32_t expectedCrc = forward ? frame.targetCrc : frame.sourceCrc;
    // Positions the source does not have read as 0.
    target.assign(targetSize, 0);
    std::copy_n(source, std::min<uint64_t>(sourceSize, targetSize), target.begin());
    RunHunks(patch, frame, target.data(), targetSize);
    uint32_t targetCrc = Crc32(target.data(), target.size());
    if (targetCrc != expectedCrc) return DeltaMismatch(DeltaFault::ResultCrc, expectedCrc, targetCrc);
    return {};
}
