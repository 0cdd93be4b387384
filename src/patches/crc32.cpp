#include "patches/crc32.h"

#include <zlib.h>

uint32_t Crc32(const unsigned char* bytes, size_t size) {
    return static_cast<uint32_t>(crc32_z(0, bytes, size));
}
