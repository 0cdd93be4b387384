// The IPS patch format: "PATCH", records of (3-byte offset, 2-byte size,
// data), "EOF"; numbers big-endian. Other patchers also write run-length
// records (size 0, 2-byte count, the byte) and may put a 3-byte length
// behind "EOF" to which the target is cut. Building a patch from two byte
// sequences and reading one back, independent of files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

constexpr size_t IPS_MAX_RECORD_SIZE = 32768;
// Records cannot start at or beyond 16 MiB: offsets have 3 bytes.
constexpr size_t IPS_OFFSET_LIMIT = 0x1000000;

enum class IpsRecordKind : uint8_t {
    Literal,   // size bytes of data
    Run,       // size copies of the one byte at data
    Truncate,  // the target is cut to offset bytes; size is 0
};

struct IpsRecord {
    uint32_t offset;
    uint32_t size;              // bytes written at offset
    const unsigned char* data;  // points into the patch
    IpsRecordKind kind = IpsRecordKind::Literal;
};

enum class IpsBuild { Built, Identical, OffsetTooLarge };

// Builds the patch that turns original into modified. Runs of differing
// bytes become records; equal stretches of up to 8 bytes inside a run are
// carried along, 9 equal bytes end a record; a run longer than 32768 bytes
// is split. A modified sequence that equals the start of a non-empty
// original is Identical. A record that would start at offset 0x454F46
// (whose offset bytes read "EOF") starts one byte earlier instead.
IpsBuild BuildIpsPatch(const unsigned char* original, size_t originalSize, const unsigned char* modified,
                       size_t modifiedSize, std::vector<unsigned char>& patch);

enum class IpsRead { Valid, NotIps, NoEof };

// Reads every record of patch, checking the whole of it. The first record
// behind "PATCH" is always read as a record; after it, "EOF" ends the patch.
// The patch is read with run-length records when the whole of it is valid
// that way; exactly three bytes behind "EOF" then add a Truncate record at
// the end. Otherwise it is read literally: a record of size 0 is empty and
// anything behind "EOF" is ignored. A patch that starts with "EOF" behind
// "PATCH" and cannot be read either way has no records but the truncation.
IpsRead ReadIpsRecords(const unsigned char* patch, size_t size, std::vector<IpsRecord>& records);

// The length a target of currentLength bytes has once the records are
// applied: records reaching past its end lengthen it (empty ones do not),
// then a Truncate record cuts it to its length if that is shorter.
uint64_t IpsPatchedLength(const std::vector<IpsRecord>& records, uint64_t currentLength);

// Writes the records, in order, into target, which holds at least
// IpsPatchedLength bytes; nothing is written at or beyond the length of a
// Truncate record.
void CopyIpsRecords(const std::vector<IpsRecord>& records, unsigned char* target);
