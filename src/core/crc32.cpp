#include "core/crc32.h"

#include <libdeflate.h>

uint32_t Crc32(const unsigned char* bytes, size_t size) { return libdeflate_crc32(0, bytes, size); }
