// The digests ROM databases and patch pages list for an image: CRC-32, MD5
// and SHA-1. MD5 and SHA-1 come from the platform's library (nettle, or CNG
// on Windows).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct ImageDigests {
    uint32_t crc32 = 0;
    std::string md5;   // 32 lower-case hexadecimal digits
    std::string sha1;  // 40 lower-case hexadecimal digits
};

// The digests of size bytes at data. False (with TLERR_UNSUPPORTED) when the
// platform's library cannot compute them.
bool ComputeImageDigests(const unsigned char* data, size_t size, ImageDigests& digests);
