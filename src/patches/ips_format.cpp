#include "patches/ips_format.h"

#include <algorithm>
#include <cstring>

#include "patches/byte_compare.h"

namespace {

constexpr unsigned char kMagic[] = {'P', 'A', 'T', 'C', 'H'};
constexpr unsigned char kEndMarker[] = {'E', 'O', 'F'};
constexpr size_t kRecordHeaderSize = 5;
// A run-length record's count and byte, behind its size of 0.
constexpr size_t kRunFieldsSize = 3;
// The length behind "EOF" that cuts the target.
constexpr size_t kTruncationSize = 3;
// The offset whose three bytes spell the end marker.
constexpr size_t kEndMarkerOffset = 0x454F46;
// Equal bytes a run may carry between two changes.
constexpr size_t kLongestCarriedStretch = 8;

// Compares an original with a modified sequence; positions the original does
// not have always differ.
class Comparison {
public:
    Comparison(const unsigned char* original, size_t originalSize, const unsigned char* modified, size_t modifiedSize)
        : original_(original), modified_(modified), shared_(std::min(originalSize, modifiedSize)) {}

    // The first differing position at or behind from (at least the end of
    // the shared part).
    size_t NextDifference(size_t from) const {
        return from < shared_ ? FirstDifference(original_, modified_, from, shared_) : from;
    }

private:
    const unsigned char* original_;
    const unsigned char* modified_;
    size_t shared_;
};

void AppendRecord(size_t offset, const unsigned char* data, size_t size, std::vector<unsigned char>& patch) {
    const unsigned char header[kRecordHeaderSize] = {
        static_cast<unsigned char>(offset >> 16), static_cast<unsigned char>(offset >> 8),
        static_cast<unsigned char>(offset),       static_cast<unsigned char>(size >> 8),
        static_cast<unsigned char>(size),
    };
    patch.insert(patch.end(), header, header + kRecordHeaderSize);
    patch.insert(patch.end(), data, data + size);
}

// Writes the run [start, end) of modified as records of at most 32768 bytes.
bool AppendRun(size_t start, size_t end, const unsigned char* modified, std::vector<unsigned char>& patch) {
    while (start < end) {
        if (start == kEndMarkerOffset) --start;  // its offset would read as the end marker
        if (start >= IPS_OFFSET_LIMIT) return false;
        size_t size = std::min(end - start, IPS_MAX_RECORD_SIZE);
        AppendRecord(start, modified + start, size, patch);
        start += size;
    }
    return true;
}

size_t ReadNumber(const unsigned char* bytes, size_t count) {
    size_t value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | bytes[i];
    return value;
}

bool IsEndMarkerAt(const unsigned char* patch, size_t size, size_t at) {
    return size - at >= sizeof kEndMarker && std::memcmp(patch + at, kEndMarker, sizeof kEndMarker) == 0;
}

enum class Reading { Literal, RunLength };

// Reads the records behind "PATCH" up to the end marker. Returns the
// position behind "EOF", or 0 when a record runs past the end of the patch
// or, read with run-length records, repeats its byte 0 times.
size_t ReadRecordsBehindMagic(const unsigned char* patch, size_t size, Reading reading,
                              std::vector<IpsRecord>& records) {
    size_t at = sizeof kMagic;
    for (bool first = true;; first = false) {
        if (!first && IsEndMarkerAt(patch, size, at)) return at + sizeof kEndMarker;
        if (size - at < kRecordHeaderSize) return 0;
        auto offset = static_cast<uint32_t>(ReadNumber(patch + at, 3));
        auto length = static_cast<uint32_t>(ReadNumber(patch + at + 3, 2));
        at += kRecordHeaderSize;
        if (length == 0 && reading == Reading::RunLength) {
            if (size - at < kRunFieldsSize) return 0;
            auto count = static_cast<uint32_t>(ReadNumber(patch + at, 2));
            if (count == 0) return 0;
            records.push_back(IpsRecord{offset, count, patch + at + 2, IpsRecordKind::Run});
            at += kRunFieldsSize;
            continue;
        }
        if (size - at < length) return 0;
        records.push_back(IpsRecord{offset, length, patch + at});
        at += length;
    }
}

// Adds the length to cut the target to when exactly that many bytes follow
// the end marker, which ends at end.
void AddTruncation(const unsigned char* patch, size_t size, size_t end, std::vector<IpsRecord>& records) {
    if (size - end != kTruncationSize) return;
    auto length = static_cast<uint32_t>(ReadNumber(patch + end, kTruncationSize));
    records.push_back(IpsRecord{length, 0, patch + end, IpsRecordKind::Truncate});
}

// The length a Truncate record cuts the target to, or no limit.
uint64_t CutLength(const std::vector<IpsRecord>& records) {
    if (records.empty() || records.back().kind != IpsRecordKind::Truncate) return UINT64_MAX;
    return records.back().offset;
}

}  // namespace

IpsBuild BuildIpsPatch(const unsigned char* original, size_t originalSize, const unsigned char* modified,
                       size_t modifiedSize, std::vector<unsigned char>& patch) {
    Comparison comparison(original, originalSize, modified, modifiedSize);
    size_t start = comparison.NextDifference(0);
    if (originalSize != 0 && start >= modifiedSize) return IpsBuild::Identical;
    patch.assign(std::begin(kMagic), std::end(kMagic));
    while (start < modifiedSize) {
        size_t last = start;
        size_t next = comparison.NextDifference(last + 1);
        while (next < modifiedSize && next - last - 1 <= kLongestCarriedStretch) {
            last = next;
            next = comparison.NextDifference(last + 1);
        }
        if (!AppendRun(start, last + 1, modified, patch)) return IpsBuild::OffsetTooLarge;
        start = next;
    }
    patch.insert(patch.end(), std::begin(kEndMarker), std::end(kEndMarker));
    return IpsBuild::Built;
}

IpsRead ReadIpsRecords(const unsigned char* patch, size_t size, std::vector<IpsRecord>& records) {
    records.clear();
    if (size < sizeof kMagic || std::memcmp(patch, kMagic, sizeof kMagic) != 0) return IpsRead::NotIps;
    if (size_t end = ReadRecordsBehindMagic(patch, size, Reading::RunLength, records)) {
        AddTruncation(patch, size, end, records);
        return IpsRead::Valid;
    }
    records.clear();
    if (ReadRecordsBehindMagic(patch, size, Reading::Literal, records)) return IpsRead::Valid;
    records.clear();
    if (!IsEndMarkerAt(patch, size, sizeof kMagic)) return IpsRead::NoEof;
    AddTruncation(patch, size, sizeof kMagic + sizeof kEndMarker, records);
    return IpsRead::Valid;
}

uint64_t IpsPatchedLength(const std::vector<IpsRecord>& records, uint64_t currentLength) {
    uint64_t length = currentLength;
    for (const IpsRecord& record : records)
        if (record.size > 0) length = std::max<uint64_t>(length, uint64_t{record.offset} + record.size);
    return std::min(length, CutLength(records));
}

void CopyIpsRecords(const std::vector<IpsRecord>& records, unsigned char* target) {
    const uint64_t limit = CutLength(records);
    for (const IpsRecord& record : records) {
        if (record.size == 0 || record.offset >= limit) continue;
        const auto count = static_cast<size_t>(std::min<uint64_t>(record.size, limit - record.offset));
        if (record.kind == IpsRecordKind::Run)
            std::memset(target + record.offset, *record.data, count);
        else
            std::memcpy(target + record.offset, record.data, count);
    }
}
