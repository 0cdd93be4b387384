#include "patches/delta_frame.h"

#include <cstring>

#include "patches/crc32.h"
#include "core/little_endian.h"

namespace {

constexpr int kCrcBytes = 4;

void AppendCrc(std::vector<unsigned char>& patch, uint32_t crc) {
    unsigned char bytes[kCrcBytes];
    WriteLittleEndian(bytes, crc, kCrcBytes);
    patch.insert(patch.end(), bytes, bytes + kCrcBytes);
}

DeltaResult ReadSize(PatchCursor& cursor, uint64_t& size) {
    DeltaResult read = ReadDeltaNumber(cursor, size);
    if (read.ok() && size > DELTA_LARGEST_FILE) return DeltaMismatch(DeltaFault::TooLarge, DELTA_LARGEST_FILE, size);
    return read;
}

}  // namespace

DeltaResult ReadDeltaFrame(const unsigned char* patch, size_t size, const char* magic, DeltaFrame& frame) {
    if (size < DELTA_MAGIC_SIZE + DELTA_FOOTER_SIZE || std::memcmp(patch, magic, DELTA_MAGIC_SIZE) != 0)
        return DeltaFailure(DeltaFault::NotPatch);
    frame.footer = size - DELTA_FOOTER_SIZE;
    uint32_t recorded = ReadLittleEndian(patch + size - kCrcBytes, kCrcBytes);
    uint32_t actual = Crc32(patch, size - kCrcBytes);
    if (recorded != actual) return DeltaMismatch(DeltaFault::PatchCrc, recorded, actual);
    frame.sourceCrc = ReadLittleEndian(patch + frame.footer, kCrcBytes);
    frame.targetCrc = ReadLittleEndian(patch + frame.footer + kCrcBytes, kCrcBytes);
    PatchCursor cursor(patch, DELTA_MAGIC_SIZE, frame.footer);
    DeltaResult read = ReadSize(cursor, frame.sourceSize);
    if (read.ok()) read = ReadSize(cursor, frame.targetSize);
    frame.body = cursor.at();
    return read;
}

DeltaResult ReadDeltaNumber(PatchCursor& cursor, uint64_t& value) {
    size_t start = cursor.at();
    switch (cursor.Number(value)) {
        case PatchRead::Read: return {};
        case PatchRead::Truncated: return DeltaFailure(DeltaFault::Truncated, start);
        case PatchRead::Overflow: break;
    }
    return DeltaFailure(DeltaFault::Overflow, start);
}

void AppendDeltaFooter(std::vector<unsigned char>& patch, uint32_t sourceCrc, uint32_t targetCrc) {
    AppendCrc(patch, sourceCrc);
    AppendCrc(patch, targetCrc);
    AppendCrc(patch, Crc32(patch.data(), patch.size()));
}
