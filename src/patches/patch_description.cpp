#include "patches/patch_description.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "core/last_error.h"
#include "core/little_endian.h"
#include "patches/bps_apply.h"
#include "patches/crc32.h"
#include "patches/delta_frame.h"
#include "patches/ips_format.h"
#include "patches/ups_apply.h"
#include "trelvane.h"

namespace {

constexpr uint64_t kCopierHeader = 512;

// Adds [start, end) to ranges kept in order, merging it with the last one
// when they touch.
void AddRange(std::vector<ChangedRange>& ranges, uint64_t start, uint64_t end) {
    if (start >= end) return;
    if (!ranges.empty() && start <= ranges.back().end) {
        ranges.back().end = std::max(ranges.back().end, end);
        return;
    }
    ranges.push_back({start, end});
}

void MergeRanges(PatchDescription& description) {
    std::vector<ChangedRange> sorted = description.ranges, merged;
    std::sort(sorted.begin(), sorted.end(), [](const ChangedRange& a, const ChangedRange& b) { return a.start < b.start; });
    for (const ChangedRange& range : sorted) AddRange(merged, range.start, range.end);
    description.ranges = merged;
    description.changedBytes = 0;
    for (const ChangedRange& range : merged) description.changedBytes += range.end - range.start;
}

bool ReportDamage(const char* patchfile, size_t at) {
    char offset[24];
    std::snprintf(offset, sizeof offset, "%" PRIX64 "h", static_cast<uint64_t>(at));
    return SetError(TLERR_DELTA_TRUNCATED, patchfile, 0, 0, offset);
}

void DescribeIps(const unsigned char* patch, size_t size, PatchDescription& description) {
    std::vector<IpsRecord> records;
    ReadIpsRecords(patch, size, records);
    for (const IpsRecord& record : records) {
        if (record.kind == IpsRecordKind::Truncate) {
            description.truncates = true;
            description.truncatedLength = record.offset;
            continue;
        }
        ++description.records;
        if (record.kind == IpsRecordKind::Run) ++description.runRecords;
        description.ranges.push_back({record.offset, uint64_t{record.offset} + record.size});
    }
}

// The BPS actions: every one but SourceRead writes its range.
bool DescribeBpsActions(const unsigned char* patch, PatchCursor& cursor, const char* patchfile,
                        PatchDescription& description) {
    uint64_t out = 0, number = 0, offset = 0;
    while (!cursor.AtEnd()) {
        size_t at = cursor.at();
        if (cursor.Number(number) != PatchRead::Read) return ReportDamage(patchfile, at);
        uint64_t length = (number >> 2) + 1;
        const unsigned char* literal = patch;
        if ((number & 3) == BPS_TARGET_READ && !cursor.Take(length, literal)) return ReportDamage(patchfile, at);
        if ((number & 3) >= BPS_SOURCE_COPY && cursor.Number(offset) != PatchRead::Read)
            return ReportDamage(patchfile, at);
        if ((number & 3) != BPS_SOURCE_READ) AddRange(description.ranges, out, out + length);
        out += length;
    }
    return true;
}

bool DescribeBps(const unsigned char* patch, const DeltaFrame& frame, const char* patchfile,
                 PatchDescription& description) {
    PatchCursor cursor(patch, frame.body, frame.footer);
    uint64_t metadataSize = 0;
    const unsigned char* metadata = patch;
    if (cursor.Number(metadataSize) != PatchRead::Read || !cursor.Take(metadataSize, metadata))
        return ReportDamage(patchfile, frame.body);
    description.metadata.assign(reinterpret_cast<const char*>(metadata), static_cast<size_t>(metadataSize));
    return DescribeBpsActions(patch, cursor, patchfile, description);
}

// The UPS hunks: each byte other than the 0 that ends a hunk changes its
// position.
bool DescribeUps(const unsigned char* patch, const DeltaFrame& frame, const char* patchfile,
                 PatchDescription& description) {
    PatchCursor cursor(patch, frame.body, frame.footer);
    uint64_t position = 0, skip = 0;
    while (!cursor.AtEnd()) {
        size_t at = cursor.at();
        if (cursor.Number(skip) != PatchRead::Read) return ReportDamage(patchfile, at);
        position += skip;
        for (unsigned char byte = 1; byte != 0; ++position) {
            if (!cursor.Byte(byte)) return ReportDamage(patchfile, cursor.at());
            if (byte != 0) AddRange(description.ranges, position, position + 1);
        }
    }
    return true;
}

}  // namespace

bool DescribePatch(const unsigned char* patch, size_t size, const char* patchfile, PatchDescription& description) {
    description = PatchDescription{};
    description.kind = PatchKindOf(patch, size);
    description.patchSize = size;
    if (description.kind == PatchKind::None) return SetError(TLERR_PATCH_UNKNOWN_FORMAT, patchfile, 0, 0);
    if (!FormatOf(description.kind).check(patch, size, patchfile)) return false;
    if (description.kind == PatchKind::Ips) {
        DescribeIps(patch, size, description);
    } else {
        DeltaFrame frame;
        ReadDeltaFrame(patch, size, description.kind == PatchKind::Bps ? BPS_MAGIC : UPS_MAGIC, frame);
        description.sourceSize = frame.sourceSize;
        description.targetSize = frame.targetSize;
        description.sourceCrc = frame.sourceCrc;
        description.targetCrc = frame.targetCrc;
        description.patchCrc = static_cast<uint32_t>(ReadLittleEndian(patch + size - 4, 4));
        bool read = description.kind == PatchKind::Bps ? DescribeBps(patch, frame, patchfile, description)
                                                       : DescribeUps(patch, frame, patchfile, description);
        if (!read) return false;
    }
    MergeRanges(description);
    return true;
}

PatchFit JudgeFit(const PatchDescription& description, const unsigned char* image, size_t size, bool superNes) {
    if (description.kind != PatchKind::Ips) {
        uint32_t crc = Crc32(image, size);
        if (size == description.sourceSize && crc == description.sourceCrc) return PatchFit::Fits;
        if (description.kind == PatchKind::Ups && size == description.targetSize && crc == description.targetCrc)
            return PatchFit::FitsToUndo;
        return PatchFit::WrongImage;
    }
    if (!superNes) return PatchFit::Fits;
    bool headered = size % 1024 == kCopierHeader;
    for (const ChangedRange& range : description.ranges) {
        if (!headered && (range.end <= kCopierHeader || range.end == size + kCopierHeader)) return PatchFit::NeedsHeader;
        if (headered && range.end + kCopierHeader == size) return PatchFit::NeedsNoHeader;
    }
    return PatchFit::Fits;
}
