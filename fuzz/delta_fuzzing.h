// What the BPS and UPS harnesses share: wrapping fuzz input in a valid
// magic and footer, so that it gets past the patch checks to the actions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "patches/crc32.h"
#include "patches/delta_frame.h"

using Bytes = std::vector<unsigned char>;

// Files larger than this are not made: a few patch bytes can ask for (and
// make) a gigabyte.
constexpr uint64_t kLargestFuzzedFile = 1 << 20;

// The source a patch is applied to: the input's first bytes.
inline Bytes FuzzSource(const uint8_t* data, size_t size) { return Bytes(data, data + std::min<size_t>(size, 64)); }

// magic + data + a footer naming source's CRC-32 and the patch's own.
inline Bytes Framed(const char* magic, const uint8_t* data, size_t size, const Bytes& source) {
    Bytes patch(magic, magic + DELTA_MAGIC_SIZE);
    patch.insert(patch.end(), data, data + size);
    AppendDeltaFooter(patch, Crc32(source.data(), source.size()), 0);
    return patch;
}

// True when the framed patch reads as one whose files are small enough.
inline bool SmallEnough(const Bytes& patch, const char* magic) {
    DeltaFrame frame;
    return ReadDeltaFrame(patch.data(), patch.size(), magic, frame).ok() && frame.sourceSize <= kLargestFuzzedFile &&
           frame.targetSize <= kLargestFuzzedFile;
}
